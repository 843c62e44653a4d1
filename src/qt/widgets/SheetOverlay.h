#pragma once

#include <QPointer>
#include <QWidget>

namespace corvane::qt {

/// What lies over a window's content while a sheet runs: dims it, takes its clicks, and shows the sheet's
/// panel hanging from the upper edge. Part of the window instead of a window of its own, so that it stands
/// where it belongs under every window system, window manager or none. The keyboard focus stays inside.
class SheetOverlay final : public QWidget {
public:
    /// Covers `content` inside `shell` and borrows `panel`.
    SheetOverlay(QWidget& shell, QWidget& content, QWidget& panel);
    ~SheetOverlay() override;

    [[nodiscard]] QWidget* panel() const { return panel_; }
    void takeFocus();
    /// The sheet has been answered, and is still to be seen.
    bool ended = false;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    void place();

    QWidget& content_;
    QPointer<QWidget> panel_;
};

} // namespace corvane::qt
