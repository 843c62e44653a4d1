#pragma once

#include <QMenuBar>
#include <functional>
#include <memory>
#include <vector>

#include "qt/HandlerGuard.h"
#include "qt/adapters/QtApplication.h"
#include "toolkit/Application.h"

class QAction;

namespace corvane::qt {

/// The menu bar. Items that name an operation of the program are the program's business: it says which may be
/// chosen, each time a menu opens and each time a shortcut is pressed. Items for text fields and the window
/// are handled here.
class MainMenu final {
public:
    MainMenu(QMenuBar& bar, QtApplication& application, HandlerGuard& guard);
    ~MainMenu();
    MainMenu(const MainMenu&) = delete;
    MainMenu& operator=(const MainMenu&) = delete;

    /// May the item be chosen? It may get another title here, too. Empty: always.
    std::function<bool(toolkit::MenuItem& item)> validateMenuItem;
    /// Runs the operation that the item names.
    std::function<void(toolkit::MenuItem& item)> performMenuItem;

    /// Null when no item names that operation.
    [[nodiscard]] QAction* itemNamed(std::string_view action) const;

private:
    class Item;
    void addProgramItems();
    QMenu* addMenu(const QString& title);
    void add(QMenu& menu, const char* action, const QString& title, const QKeySequence& keys = {});
    void addOwn(QMenu& menu, const QString& title, const QKeySequence& keys, std::function<void()> perform,
                std::function<bool()> validate = {});
    /// An item for the text field that has the keyboard: runs its slot of that name.
    void addTextItem(QMenu& menu, const QString& title, QKeySequence::StandardKey keys, const char* slot);
    void validate(Item& item);
    void triggered(Item& item);

    QMenuBar& bar_;
    QtApplication& application_;
    HandlerGuard& guard_;
    std::vector<std::unique_ptr<Item>> items_;
    QObject context_;
};

} // namespace corvane::qt
