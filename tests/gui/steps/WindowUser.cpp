#include "gui/steps/WindowUser.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QProcess>
#include <QTabBar>
#include <QTest>
#include <QWindow>
#include <stdexcept>

#include "qt/windows/MainWindowInterface.h"

namespace corvane::gui {
namespace {

[[noreturn]] void fail(const QString& what) { throw std::runtime_error(what.toStdString()); }

QAbstractItemView& view(QWidget& table) {
    if (auto* itself = qobject_cast<QAbstractItemView*>(&table)) return *itself;
    auto* inside = table.findChild<QAbstractItemView*>();
    if (inside == nullptr) fail(table.objectName() + " is no table");
    return *inside;
}

/// A check box reacts to its box and its words, not to the empty space behind them.
QPoint placeToClick(const QAbstractButton& button) {
    constexpr int insideTheBox = 8;
    const auto middle = button.rect().center();
    return qobject_cast<const QCheckBox*>(&button) != nullptr ? QPoint(insideTheBox, middle.y()) : middle;
}

QString plain(QString text) { return text.remove('&'); }

QAction& actionNamed(const QWidget& menu, const QString& title) {
    for (auto* each : menu.actions())
        if (plain(each->text()).startsWith(title)) return *each;
    fail("no menu says " + title);
}

} // namespace

void settle(int milliseconds) {
    QTest::qWait(milliseconds);
    QCoreApplication::processEvents();
}

QWidget& WindowUser::widget(const QString& name) const {
    for (auto* each : shell_.findChildren<QWidget*>(name))
        if (each->isVisible()) return *each;
    fail("there is no visible " + name + " in the window");
}

void WindowUser::clickAt(QWidget& target, QPoint where, bool twice, Qt::KeyboardModifiers modifiers) {
    auto* window = target.window()->windowHandle();
    if (window == nullptr) fail(target.objectName() + " is in no window");
    const auto position = target.mapTo(target.window(), where);
    QTest::mouseMove(window, position);
    if (twice)
        QTest::mouseDClick(window, Qt::LeftButton, modifiers, position);
    else
        QTest::mouseClick(window, Qt::LeftButton, modifiers, position);
    settle();
}

void WindowUser::click(const QString& name) {
    auto& target = widget(name);
    if (!target.isEnabled()) fail(name + " is disabled");
    clickAt(target, target.rect().center());
}

void WindowUser::clickTab(const QString& title) {
    for (auto* bar : shell_.findChildren<QTabBar*>())
        for (int tab = 0; tab < bar->count(); ++tab)
            if (bar->isVisible() && plain(bar->tabText(tab)) == title)
                return clickAt(*bar, bar->tabRect(tab).center());
    fail("there is no visible tab " + title);
}

QPoint WindowUser::placeOfRow(const QString& table, int row) const {
    auto& items = view(widget(table));
    const auto index = items.model()->index(row, 0);
    if (!index.isValid()) fail(table + " has no row " + QString::number(row));
    items.scrollTo(index);
    return items.visualRect(index).center();
}

void WindowUser::clickRow(const QString& table, int row, Qt::KeyboardModifiers modifiers) {
    const auto place = placeOfRow(table, row);
    clickAt(*view(widget(table)).viewport(), place, false, modifiers);
}

void WindowUser::dragRow(const QString& table, int row, int place) {
    auto& items = view(widget(table));
    const auto from = placeOfRow(table, row);
    const int rows = items.model()->rowCount();
    const auto target = items.visualRect(items.model()->index(std::min(place, rows - 1), 0));
    const QPoint to(from.x(), place < rows ? target.top() + 1 : target.bottom() - 1);
    if (QGuiApplication::platformName() != "xcb") fail("dragging needs an X display with a pointer");
    // The drag is the X server's own business, so the server's pointer is what has to move.
    QStringList words;
    const auto moveTo = [&](QPoint point) {
        const auto global = items.viewport()->mapToGlobal(point);
        words << "mousemove" << QString::number(global.x()) << QString::number(global.y()) << "sleep"
              << "0.08";
    };
    moveTo(from);
    words << "mousedown"
          << "1"
          << "sleep"
          << "0.08";
    moveTo(from + QPoint(QApplication::startDragDistance() + 6, 3));
    moveTo((from + to) / 2);
    moveTo(to - QPoint(0, 1));
    moveTo(to);
    words << "sleep"
          << "0.2"
          << "mouseup"
          << "1";
    QProcess pointer;
    pointer.start("xdotool", words);
    if (!pointer.waitForStarted()) fail("xdotool is not installed");
    while (pointer.state() != QProcess::NotRunning)
        settle();
    settle(200);
}

void WindowUser::type(const QString& field, const QString& text) {
    click(field);
    press(Qt::Key_A, Qt::ControlModifier);
    auto* window = QGuiApplication::focusWindow();
    for (const auto letter : text)
        QTest::keyClick(window != nullptr ? window : shell_.windowHandle(), letter.toLatin1());
    settle();
}

void WindowUser::doubleClickRow(const QString& table, int row) {
    const auto place = placeOfRow(table, row);
    clickAt(*view(widget(table)).viewport(), place, true);
}

void WindowUser::choose(const QString& popUp, const QString& item) {
    auto* box = qobject_cast<QComboBox*>(&widget(popUp));
    if (box == nullptr) fail(popUp + " is no pop-up button");
    const int row = box->findText(item, Qt::MatchStartsWith);
    if (row < 0) fail(popUp + " has no item " + item);
    click(popUp);
    auto& list = *box->view();
    if (!list.isVisible()) fail(popUp + " doesn't open");
    settle(QApplication::doubleClickInterval() + 20); // a quick second click would only close it
    clickAt(*list.viewport(), list.visualRect(list.model()->index(row, box->modelColumn())).center());
    settle(100);
}

void WindowUser::chooseFromMenu(const QString& menu, const QString& item) {
    auto* bar = shell_.findChild<QMenuBar*>();
    if (bar == nullptr) fail("the window has no menu bar");
    auto& title = actionNamed(*bar, menu);
    clickAt(*bar, bar->actionGeometry(&title).center());
    auto& shown = *title.menu();
    if (!shown.isVisible()) fail("the menu " + menu + " doesn't open");
    auto& action = actionNamed(shown, item);
    if (!action.isEnabled()) fail(menu + " > " + item + " can't be chosen");
    clickAt(shown, shown.actionGeometry(&action).center());
    settle(100);
}

void WindowUser::press(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    auto* window = QGuiApplication::focusWindow();
    QTest::keyClick(window != nullptr ? window : shell_.windowHandle(), key, modifiers);
    settle();
}

void WindowUser::answer(const QString& button) {
    for (auto* top : QApplication::topLevelWidgets())
        for (auto* each : top->findChildren<QAbstractButton*>())
            if (each->isVisible() && each->isEnabled() && plain(each->text()) == button)
                return clickAt(*each, placeToClick(*each));
    fail("no visible button says " + button);
}

bool WindowUser::isEnabled(const QString& name) const { return widget(name).isEnabled(); }

bool WindowUser::isVisible(const QString& name) const {
    for (auto* each : shell_.findChildren<QWidget*>(name))
        if (each->isVisible()) return true;
    return false;
}

QStringList WindowUser::rowsOf(const QString& table) const {
    const auto* model = view(widget(table)).model();
    QStringList rows;
    for (int row = 0; row < model->rowCount(); ++row)
        rows << model->index(row, 0).data().toString();
    return rows;
}

QString WindowUser::visibleText() const {
    QStringList lines;
    for (auto* top : QApplication::topLevelWidgets())
        for (auto* label : top->findChildren<QLabel*>())
            if (label->isVisible() && !label->text().isEmpty()) lines << label->text();
    return lines.join('\n');
}

void WindowUser::savePicture(const QString& path) const {
    if (!qt::renderToFile(shell_, path)) fail("the picture " + path + " can't be saved");
}

void WindowUser::saveDialoguePicture(const QString& path) const {
    auto* dialogue = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    for (auto* top : QApplication::topLevelWidgets())
        if (dialogue == nullptr && top->isVisible()) dialogue = qobject_cast<QDialog*>(top);
    if (dialogue == nullptr) fail("no dialogue is open");
    if (!qt::renderToFile(*dialogue, path)) fail("the picture " + path + " can't be saved");
}

} // namespace corvane::gui
