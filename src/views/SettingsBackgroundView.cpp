#include "views/SettingsBackgroundView.h"

namespace corvane::views {

const toolkit::Color& SettingsBackgroundView::myFillColor() {
    if (!myFillColor_) setMyFillColor(toolkit::CalibratedWhite{1.0, 0.45});
    return *myFillColor_;
}

const toolkit::Color& SettingsBackgroundView::myBorderColor() {
    if (!myBorderColor_) setMyBorderColor(toolkit::CalibratedWhite{0.3, 0.6});
    return *myBorderColor_;
}

void SettingsBackgroundView::drawRect(const toolkit::Rect& /*dirtyRect*/, const toolkit::Rect& bounds,
                                      toolkit::Canvas& canvas) {
    canvas.fillRect(bounds, myFillColor(), toolkit::CompositingOperation::sourceOver);
    canvas.strokeRect(bounds, 1.0, myBorderColor(), toolkit::CompositingOperation::sourceOver);
}

} // namespace corvane::views
