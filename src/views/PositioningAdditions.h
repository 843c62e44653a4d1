#pragma once

#include "toolkit/Window.h"

namespace corvane::views {

/// Where the origin of something of `size` belongs so that it lies in the middle of `parent`.
[[nodiscard]] toolkit::Point originCenteredOver(const toolkit::Rect& parent, const toolkit::Size& size);

/// Puts `window` over the middle of `parent`, at once and wherever that is, off the screen as well. Without a
/// parent the middle is the screen's origin. Main thread.
void centerOverParentWindow(toolkit::Window& window, const toolkit::Window* parent);

} // namespace corvane::views
