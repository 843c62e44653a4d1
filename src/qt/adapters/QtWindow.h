#pragma once

#include <QPointer>
#include <QWidget>
#include <memory>
#include <vector>

#include "qt/HandlerGuard.h"
#include "qt/platform/SettingsFile.h"
#include "toolkit/Window.h"

namespace corvane::qt {

class QtToolbar;
class SheetOverlay;

/// A window, or the contents of a sheet.
///
/// Title bar, menu bar and toolbar have other heights on each desktop, and some never tell. The frame is
/// therefore the content plus a fixed height for them, hung up at the true upper left corner: what keeps the
/// upper edge of a frame in place keeps that of the window in place.
class QtWindow final : public toolkit::Window {
public:
    /// What the frame adds to the content's height in a window with a toolbar, and without.
    static constexpr double heightAboveContentWithToolbar = 78;
    static constexpr double heightAboveContent = 22;

    /// `shell` is the window itself, `content` the part of it that the program sizes. They may be the same in
    /// a window that no sheet will run on: the content rests while one does. Both outlive the window.
    QtWindow(QWidget& shell, QWidget& content, HandlerGuard& guard, SettingsFile& settings);
    ~QtWindow() override;
    QtWindow(const QtWindow&) = delete;
    QtWindow& operator=(const QtWindow&) = delete;

    /// The window that shows `widget`, null when that is no `QtWindow`.
    [[nodiscard]] static QtWindow* of(const QWidget& widget);
    [[nodiscard]] QWidget& shell() const { return shell_; }
    [[nodiscard]] QWidget& content() const { return content_; }

    void setDelegate(toolkit::WindowDelegate* delegate) override { delegate_ = delegate; }
    void setTitle(std::string_view title) override;
    [[nodiscard]] std::string title() const override;
    void setDocumentEdited(bool edited) override;
    [[nodiscard]] bool isDocumentEdited() const override;

    [[nodiscard]] toolkit::Rect frame() const override;
    [[nodiscard]] toolkit::Rect frameRectForContentRect(const toolkit::Rect& content) const override;
    void setFrame(const toolkit::Rect& frame, bool display, bool animate) override;
    /// A point from which no part of the window's upper edge would be on a screen is moved onto one.
    void setFrameTopLeftPoint(const toolkit::Point& point) override;
    void setFrameOrigin(const toolkit::Point& origin) override;
    void setContentMinSize(const toolkit::Size& size) override;
    void setContentMaxSize(const toolkit::Size& size) override;
    /// Both follow from the size limits: a window manager offers what they allow.
    void setShowsResizeIndicator(bool) override {}
    void setZoomButtonEnabled(bool) override {}
    void center() override;
    /// Of a sheet the size alone is kept: it hangs where its window is.
    void setFrameAutosaveName(std::string_view name) override;
    void saveFrameUsingName(std::string_view name) override;

    /// `toolbar` is one of this toolkit's.
    void setToolbar(toolkit::Toolbar& toolbar) override;
    /// The toolbar can't be hidden by the user here.
    void setShowsToolbarButton(bool) override {}

    void orderFront() override;
    void makeKeyAndOrderFront() override;
    void orderOut() override;
    void close() override;
    [[nodiscard]] bool isVisible() const override;
    void makeFirstResponder(toolkit::View* view) override;

    void beginSheet(toolkit::Window& sheet,
                    std::function<void(toolkit::Window& sheet, int returnCode)> ended) override;
    void endSheet(toolkit::Window& sheet, int returnCode) override;
    [[nodiscard]] bool hasAttachedSheet() const override;

    /// Shows a panel as a sheet. The panel belongs to the caller, who calls `detachSheet` before it goes.
    void attachSheet(QWidget& panel);
    void detachSheet(QWidget& panel);
    /// The sheet has its answer: it no longer counts as attached, though it stays on screen until detached.
    void sheetEnded(const QWidget& panel);

    /// Has the delegate put the window's state into the settings; `restoreState` hands it back at the next
    /// start.
    void saveState();
    void restoreState();

private:
    class EventFilter;
    struct RunningSheet {
        QtWindow* sheet;
        std::function<void(toolkit::Window&, int)> ended;
    };
    /// The user wants to close the window; false keeps it.
    [[nodiscard]] bool userMayClose();
    void willClose();
    [[nodiscard]] QSize decoration() const;
    [[nodiscard]] QSize room() const;
    void moveTopLeft(QPoint point);
    void applySizeLimits();
    void resizeContent(QSize size);
    [[nodiscard]] int heightOfBars() const;
    [[nodiscard]] double heightAbove() const;
    void blockWhileSheetsRun();

    QWidget& shell_;
    QWidget& content_;
    HandlerGuard& guard_;
    SettingsFile& settings_;
    toolkit::WindowDelegate* delegate_ = nullptr;
    QPointer<QWidget> toolbar_;
    std::string autosaveName_;
    QSize minimum_{0, 0};
    QSize maximum_{QWIDGETSIZE_MAX, QWIDGETSIZE_MAX};
    bool closing_ = false;
    std::vector<RunningSheet> running_;
    std::vector<std::unique_ptr<SheetOverlay>> sheets_; ///< the last one is on top
    QPointer<QWidget> focusAfterSheet_;
    QtWindow* host_ = nullptr; ///< the window on which this one is a sheet
    std::unique_ptr<EventFilter> filter_;
};

} // namespace corvane::qt
