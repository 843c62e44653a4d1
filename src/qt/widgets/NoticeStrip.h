#pragma once

#include <QFrame>

class QLabel;
class QPushButton;
class QVBoxLayout;

namespace corvane::qt {

/// A strip with a message, an explanation below it, and buttons on the right. A message without an
/// explanation and without buttons makes a low strip. Screen readers are informed when it appears and when
/// its texts change.
class NoticeStrip final : public QFrame {
public:
    explicit NoticeStrip(QWidget* parent = nullptr);
    void setMessageText(const QString& text);
    void setInformativeText(const QString& text);
    [[nodiscard]] QString messageText() const;
    [[nodiscard]] QString informativeText() const;
    /// For a strip whose height mustn't depend on its width.
    void keepMessageOnOneLine();
    /// A new button below those that are there; owned by the strip.
    [[nodiscard]] QPushButton& addButton(const QString& title, const char* name);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    /// Gives each text the height that it needs at the present width, and shortens an explanation that would
    /// take the room of what the strip stands above; the tool tip has it whole then.
    void fitTexts();
    void announce();

    QLabel* message_;
    QLabel* information_;
    QString wholeInformation_;
    QVBoxLayout* buttons_;
};

} // namespace corvane::qt
