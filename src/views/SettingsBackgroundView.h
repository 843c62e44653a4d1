#pragma once

#include <optional>

#include "toolkit/Canvas.h"

namespace corvane::views {

/// A translucent ground with a thin border. Main thread.
class SettingsBackgroundView {
public:
    /// White, not quite half opaque, unless another colour was set.
    [[nodiscard]] const toolkit::Color& myFillColor();
    /// None lets the next question bring the usual colour back.
    void setMyFillColor(std::optional<toolkit::Color> color) { myFillColor_ = color; }
    /// Dark grey, rather more than half opaque, unless another colour was set.
    [[nodiscard]] const toolkit::Color& myBorderColor();
    void setMyBorderColor(std::optional<toolkit::Color> color) { myBorderColor_ = color; }

    /// Always draws all of `bounds`, whatever part of it is dirty.
    void drawRect(const toolkit::Rect& dirtyRect, const toolkit::Rect& bounds, toolkit::Canvas& canvas);

private:
    std::optional<toolkit::Color> myFillColor_;
    std::optional<toolkit::Color> myBorderColor_;
};

} // namespace corvane::views
