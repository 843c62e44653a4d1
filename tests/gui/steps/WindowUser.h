#pragma once

#include <QRect>
#include <QString>
#include <QWidget>
#include <string>

namespace corvane::gui {

/// Somebody who sits in front of the window: finds things by their names, and works with the mouse and the
/// keyboard alone. Events enter where the window system delivers them. What can't be done throws
/// `std::runtime_error` with what was seen.
class WindowUser {
public:
    explicit WindowUser(QWidget& shell) : shell_(shell) {}

    /// Clicks the middle of the visible widget of that name.
    void click(const QString& name);
    /// Clicks a sub-tab by its title.
    void clickTab(const QString& title);
    void clickRow(const QString& table, int row, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void doubleClickRow(const QString& table, int row);
    /// Drags a row with the mouse to the place above another one (or behind the last).
    void dragRow(const QString& table, int row, int place);
    void type(const QString& field, const QString& text);
    /// Opens a pop-up button and picks an item by the beginning of its text.
    void choose(const QString& popUp, const QString& item);
    /// Opens a menu of the window and picks an item, both by the beginning of their texts.
    void chooseFromMenu(const QString& menu, const QString& item);
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    /// Clicks a button of whatever dialogue or sheet is open, by its text without the mnemonic.
    void answer(const QString& button);

    [[nodiscard]] bool isEnabled(const QString& name) const;
    [[nodiscard]] bool isVisible(const QString& name) const;
    [[nodiscard]] QStringList rowsOf(const QString& table) const;
    /// Every text that is to be read on labels at present, in one line each.
    [[nodiscard]] QString visibleText() const;
    /// Saves a picture of the window with its sheets, or of a dialogue that has a window of its own.
    void savePicture(const QString& path) const;
    void saveDialoguePicture(const QString& path) const;

private:
    [[nodiscard]] QWidget& widget(const QString& name) const;
    void clickAt(QWidget& target, QPoint where, bool twice = false,
                 Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    [[nodiscard]] QPoint placeOfRow(const QString& table, int row) const;

    QWidget& shell_;
};

/// Lets the event loop work until nothing is left to do, and at least this long.
void settle(int milliseconds = 30);

} // namespace corvane::gui
