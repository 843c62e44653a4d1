#include "views/TextFieldCell.h"

#include <algorithm>

namespace corvane::views {

std::unique_ptr<TextFieldCell> TextFieldCell::copy() const {
    return std::unique_ptr<TextFieldCell>(new TextFieldCell(*this));
}

toolkit::AttributedString TextFieldCell::text() const {
    return {objectValue_ ? objectValue_.description() : "", attributes_};
}

toolkit::Size TextFieldCell::cellSizeForBounds(const toolkit::Rect& bounds,
                                               const toolkit::Canvas& canvas) const {
    const auto size = canvas.sizeOfText(text());
    return {std::min(size.width, bounds.size.width), std::min(size.height, bounds.size.height)};
}

void TextFieldCell::drawInteriorWithFrame(const toolkit::Rect& frame, const ControlView& /*view*/,
                                          toolkit::Canvas& canvas) const {
    canvas.drawText(text(), frame);
}

} // namespace corvane::views
