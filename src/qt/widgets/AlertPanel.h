#pragma once

#include <QDialog>
#include <vector>

class QHBoxLayout;
class QVBoxLayout;
class QLabel;
class QPushButton;

namespace corvane::qt {

/// The face of an alert: sign, message, explanation and buttons. Works as a window of its own and inside a
/// sheet. Its result is the number of the button, 0 when it was closed without one.
class AlertPanel final : public QDialog {
public:
    explicit AlertPanel(QWidget* parent = nullptr);
    void setMessageText(const QString& text);
    void setInformativeText(const QString& text);
    void addButton(const QString& title);
    [[nodiscard]] const std::vector<QPushButton*>& buttons() const { return buttons_; }
    [[nodiscard]] QString messageText() const;
    [[nodiscard]] QString informativeText() const;

    /// To be called once, when all buttons are there: puts them into their places.
    void arrange();

private:
    void fitScreen();

    QLabel* message_;
    QLabel* information_;
    QVBoxLayout* texts_;
    QHBoxLayout* row_;
    std::vector<QPushButton*> buttons_;
    QString mnemonics_ = "cfewh"; ///< taken by the menus, beside which a sheet stands, and by the buttons
};

} // namespace corvane::qt
