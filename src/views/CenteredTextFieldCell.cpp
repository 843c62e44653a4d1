#include "views/CenteredTextFieldCell.h"

namespace corvane::views {

std::unique_ptr<TextFieldCell> CenteredTextFieldCell::copy() const {
    return std::make_unique<CenteredTextFieldCell>(*this);
}

void CenteredTextFieldCell::drawInteriorWithFrame(const toolkit::Rect& frame, const ControlView& view,
                                                  toolkit::Canvas& canvas) const {
    const auto& [origin, size] = frame;
    const double height = cellSizeForBounds(frame, canvas).height;
    TextFieldCell::drawInteriorWithFrame(
        {{origin.x, origin.y + (size.height - height) * 0.5}, {size.width, height}}, view, canvas);
}

} // namespace corvane::views
