#include "views/PositioningAdditions.h"

namespace corvane::views {

toolkit::Point originCenteredOver(const toolkit::Rect& parent, const toolkit::Size& size) {
    return {parent.origin.x + parent.size.width * 0.5 - size.width * 0.5,
            parent.origin.y + parent.size.height * 0.5 - size.height * 0.5};
}

void centerOverParentWindow(toolkit::Window& window, const toolkit::Window* parent) {
    window.setFrameOrigin(
        originCenteredOver(parent ? parent->frame() : toolkit::Rect{}, window.frame().size));
}

} // namespace corvane::views
