#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "toolkit/Toolbar.h"
#include "toolkit/View.h"

namespace corvane::toolkit {

/// A window's state that is kept between runs: texts by key.
class StateCoder {
public:
    virtual ~StateCoder() = default;
    virtual void encodeString(std::string_view key, std::string_view value) = 0;
    [[nodiscard]] virtual std::optional<std::string> decodeString(std::string_view key) const = 0;
};

class WindowDelegate {
public:
    virtual ~WindowDelegate() = default;
    /// False keeps the window open.
    [[nodiscard]] virtual bool windowShouldClose(Window& window) = 0;
    virtual void windowWillClose(Window& window) = 0;
    virtual void willEncodeRestorableState(Window& window, StateCoder& coder) = 0;
    virtual void didDecodeRestorableState(Window& window, const StateCoder& coder) = 0;
};

/// Where rectangles and points are given, see `Geometry.h`. The frame includes title bar and toolbar, as far
/// as the window system tells their size. What would lie outside of the screen is moved onto it, and a
/// content that is too large for it is made smaller, as far as the toolkit knows the screen.
class Window {
public:
    virtual ~Window() = default;
    virtual void setDelegate(WindowDelegate* delegate) = 0;
    virtual void setTitle(std::string_view title) = 0;
    [[nodiscard]] virtual std::string title() const = 0;
    /// The mark of unsaved changes.
    virtual void setDocumentEdited(bool edited) = 0;
    [[nodiscard]] virtual bool isDocumentEdited() const = 0;

    [[nodiscard]] virtual Rect frame() const = 0;
    [[nodiscard]] virtual Rect frameRectForContentRect(const Rect& content) const = 0;
    virtual void setFrame(const Rect& frame, bool display, bool animate) = 0;
    virtual void setFrameTopLeftPoint(const Point& point) = 0;
    virtual void setFrameOrigin(const Point& origin) = 0;
    virtual void setContentMinSize(const Size& size) = 0;
    virtual void setContentMaxSize(const Size& size) = 0;
    virtual void setShowsResizeIndicator(bool shows) = 0;
    virtual void setZoomButtonEnabled(bool enabled) = 0;
    virtual void center() = 0;
    /// Keeps the frame in the user's settings under a name, from here on, and takes the one kept before.
    virtual void setFrameAutosaveName(std::string_view name) = 0;
    /// Keeps the frame in the user's settings under a name, once.
    virtual void saveFrameUsingName(std::string_view name) = 0;

    virtual void setToolbar(Toolbar& toolbar) = 0;
    virtual void setShowsToolbarButton(bool shows) = 0;

    virtual void orderFront() = 0;
    virtual void makeKeyAndOrderFront() = 0;
    virtual void orderOut() = 0;
    /// Closes without asking the delegate whether it should.
    virtual void close() = 0;
    [[nodiscard]] virtual bool isVisible() const = 0;
    /// Null makes the window itself the first responder: no control has the keyboard.
    virtual void makeFirstResponder(View* view) = 0;

    /// Runs `sheet` as a sheet on this window and returns at once; `ended` gets the return code, once. The
    /// sheet stays on screen until somebody orders it out.
    virtual void beginSheet(Window& sheet, std::function<void(Window& sheet, int returnCode)> ended) = 0;
    /// Ends a sheet that runs on this window; nothing happens when it doesn't.
    virtual void endSheet(Window& sheet, int returnCode) = 0;
    /// A sheet or an alert's sheet is on this window.
    [[nodiscard]] virtual bool hasAttachedSheet() const = 0;
};

} // namespace corvane::toolkit
