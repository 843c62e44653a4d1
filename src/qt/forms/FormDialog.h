#pragma once

#include <QDialog>
#include <map>

#include "qt/forms/ItemView.h"

class QLabel;
class QPushButton;
class QToolButton;
class QVBoxLayout;

namespace corvane::qt {

class FormRows;
class GrowingArea;

/// The window of a form: its title, its items in order, a line for what is wrong, its buttons. Fields with
/// labels are in two columns, hints below them in the second. What doesn't fit the screen scrolls; results,
/// problems and buttons stay in sight. Deletes itself when it is closed. Main thread.
class FormDialog final : public QDialog, private FormSurface {
public:
    /// `form` lives until this is told to let go of it.
    FormDialog(forms::Form& form, HandlerGuard& guard, QWidget* parent);
    FormDialog(const FormDialog&) = delete;
    FormDialog& operator=(const FormDialog&) = delete;
    ~FormDialog() override;

    /// Hides the window; nothing is reported from here on.
    void letGo();

    void showItem(const forms::Item& item);
    void showButtons();
    void showTitle();
    void showProblem(const std::string& itemName, const std::string& text);
    void suggest(const std::string& itemName, const std::vector<std::string>& values);

    void reject() override;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    struct Group {
        std::string name;
        QToolButton* title;
        QWidget* content;
        std::vector<std::string> members;
    };
    struct Shown {
        std::unique_ptr<ItemView> view;
        FormRows* form; ///< that the row is in; null for none
    };
    /// Where items go: rows of two columns for as long as there are fields with labels, one column otherwise.
    struct Place {
        QWidget* parent;
        QVBoxLayout* column;
        FormRows* form = nullptr;
    };

    void act(const char* gesture, const std::function<void(forms::Form&)>& report) override;
    void press(const std::string& buttonName) override;
    [[nodiscard]] const forms::Form& form() const override { return *form_; }
    [[nodiscard]] HandlerGuard& guard() override { return guard_; }
    void contentGrew() override { fitHeight(); }

    void build();
    void add(const forms::Item& item, Place& place, QVBoxLayout& below);
    void addGroup(const forms::Item& item, Place& place, QVBoxLayout& below);
    void addRow(const forms::Item& item, ItemView& view, Place& place, Shown& shown);
    [[nodiscard]] QWidget* buttonRow();
    void setShown(const forms::Item& item, Shown& shown);
    void showGroup(const forms::Item& item);
    void setFolded(const std::string& groupName, bool folded);
    void unfoldAround(const std::string& itemName);
    void focusFirst();
    void fitHeight();
    template <typename Visit>
    void forEachButton(Visit visit);

    forms::Form* form_;
    HandlerGuard& guard_;
    bool hasList_ = false;
    int leastHeight_;
    QLabel* heading_ = nullptr;
    QLabel* problem_ = nullptr;
    GrowingArea* area_ = nullptr; ///< null where a list takes the room
    std::map<std::string, Shown> items_;
    std::vector<Shown> nameless_;
    std::vector<Group> groups_;
    std::map<QWidget*, std::string> enterPresses_; ///< from fields to buttons
};

} // namespace corvane::qt
