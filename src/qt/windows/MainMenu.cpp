#include "qt/windows/MainMenu.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <algorithm>

#include "qt/Text.h"

namespace corvane::qt {

namespace {

QString tr(const char* text) { return QCoreApplication::translate("MainMenu", text); }

bool hasSlot(const QObject* object, const char* slot) {
    return object && object->metaObject()->indexOfMethod(QByteArray(slot) + "()") >= 0;
}

} // namespace

class MainMenu::Item final : public toolkit::MenuItem {
public:
    Item(QAction& shown, std::string action) : shown_(shown), action_(std::move(action)) {}
    [[nodiscard]] std::string action() const override { return action_; }
    void setTitle(std::string_view title) override {
        if (fromUtf8(title) != visibleText(shown_.text())) shown_.setText(withoutMnemonics(fromUtf8(title)));
    }
    [[nodiscard]] std::string title() const override { return toUtf8(visibleText(shown_.text())); }
    [[nodiscard]] QAction& shown() const { return shown_; }

    std::function<void()> performOwn;
    std::function<bool()> validateOwn;

private:
    QAction& shown_;
    std::string action_;
};

MainMenu::MainMenu(QMenuBar& bar, QtApplication& application, HandlerGuard& guard)
    : bar_(bar), application_(application), guard_(guard) {
    addProgramItems();
}

MainMenu::~MainMenu() = default;

void MainMenu::addProgramItems() {
    auto& program = *addMenu(tr("&Corvane"));
    add(program, "showAboutWindow", tr("&About Corvane"));
    program.addSeparator();
    addOwn(program, tr("&Quit Corvane"), QKeySequence(Qt::CTRL | Qt::Key_Q),
           [this] { application_.terminate(); });

    auto& file = *addMenu(tr("&File"));
    add(file, "connect", tr("&Connect…"), QKeySequence(Qt::CTRL | Qt::Key_K));
    add(file, "disconnect", tr("&Disconnect"));
    file.addSeparator();
    add(file, "saveChanges", tr("&Save"), QKeySequence(Qt::CTRL | Qt::Key_S));
    add(file, "revertAction", tr("&Revert"));
    file.addSeparator();
    const auto closeWindow = [] {
        if (auto* window = QApplication::activeWindow()) window->close();
    };
    addOwn(file, tr("C&lose Window"), QKeySequence(Qt::CTRL | Qt::Key_W), closeWindow);

    auto& edit = *addMenu(tr("&Edit"));
    addTextItem(edit, tr("&Undo"), QKeySequence::Undo, "undo");
    addTextItem(edit, tr("&Redo"), QKeySequence::Redo, "redo");
    edit.addSeparator();
    addTextItem(edit, tr("Cu&t"), QKeySequence::Cut, "cut");
    addTextItem(edit, tr("&Copy"), QKeySequence::Copy, "copy");
    addTextItem(edit, tr("&Paste"), QKeySequence::Paste, "paste");
    addTextItem(edit, tr("Select &All"), QKeySequence::SelectAll, "selectAll");
    edit.addSeparator();
    add(edit, "enableRootUser", tr("Enable Root User"));
    add(edit, "changeRootPassword", tr("Change Root Password…"));

    auto& window = *addMenu(tr("&Window"));
    const auto minimize = [] {
        if (auto* active = QApplication::activeWindow()) active->showMinimized();
    };
    addOwn(window, tr("&Minimize"), QKeySequence(Qt::CTRL | Qt::Key_M), minimize);

    auto& help = *addMenu(tr("&Help"));
    add(help, "mainWindowHelpButtonHit", tr("Corvane &Help"), QKeySequence(QKeySequence::HelpContents));
}

// While a menu is open, what can't be chosen is gray. Afterwards every item is live again, because Qt ignores
// the shortcut of one that isn't, and whether it may be chosen then is asked at that time.
QMenu* MainMenu::addMenu(const QString& title) {
    auto* menu = bar_.addMenu(title);
    const auto each = [this, menu](auto&& action) {
        for (const auto& item : items_)
            if (item->shown().parent() == menu) action(*item);
    };
    QObject::connect(menu, &QMenu::aboutToShow, &context_,
                     [this, each] { each([this](Item& item) { validate(item); }); });
    QObject::connect(menu, &QMenu::aboutToHide, &context_,
                     [each] { each([](Item& item) { item.shown().setEnabled(true); }); });
    return menu;
}

void MainMenu::add(QMenu& menu, const char* action, const QString& title, const QKeySequence& keys) {
    auto* shown = new QAction(title, &menu);
    shown->setMenuRole(QAction::NoRole);
    shown->setShortcut(keys);
    menu.addAction(shown);
    items_.push_back(std::make_unique<Item>(*shown, action));
    QObject::connect(shown, &QAction::triggered, &context_,
                     [this, item = items_.back().get()] { triggered(*item); });
}

void MainMenu::addOwn(QMenu& menu, const QString& title, const QKeySequence& keys,
                      std::function<void()> perform, std::function<bool()> validate) {
    add(menu, "", title, keys);
    items_.back()->performOwn = std::move(perform);
    items_.back()->validateOwn = std::move(validate);
}

void MainMenu::addTextItem(QMenu& menu, const QString& title, QKeySequence::StandardKey keys,
                           const char* slot) {
    const auto perform = [slot] {
        auto* field = QApplication::focusWidget();
        if (hasSlot(field, slot)) QMetaObject::invokeMethod(field, slot);
    };
    addOwn(menu, title, QKeySequence(keys), perform,
           [slot] { return hasSlot(QApplication::focusWidget(), slot); });
}

void MainMenu::validate(Item& item) {
    const bool valid = guard_.answer("a menu", false, [&] {
        if (item.performOwn) return !item.validateOwn || item.validateOwn();
        return !validateMenuItem || validateMenuItem(item);
    });
    item.shown().setEnabled(valid);
}

void MainMenu::triggered(Item& item) {
    validate(item);
    const bool valid = item.shown().isEnabled();
    item.shown().setEnabled(true);
    if (!valid) return;
    guard_.run("a menu item's action", [&] {
        if (item.performOwn)
            item.performOwn();
        else if (performMenuItem)
            performMenuItem(item);
    });
}

QAction* MainMenu::itemNamed(std::string_view action) const {
    const auto found = std::ranges::find(items_, action, [](const auto& item) { return item->action(); });
    return found == items_.end() || action.empty() ? nullptr : &(*found)->shown();
}

} // namespace corvane::qt
