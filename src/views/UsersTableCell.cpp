#include "views/UsersTableCell.h"

#include "util/Containers.h"
#include "views/CellAttributes.h"

namespace corvane::views {

using toolkit::NamedColor;

UsersTableCell::UsersTableCell()
    : nameAttrs(cellAttributes(NamedColor::black, 13)),
      selectedNameAttrs(cellAttributes(NamedColor::white, 13)),
      subtextAttrs(cellAttributes(NamedColor::black, 11)),
      selectedSubtextAttrs(cellAttributes(NamedColor::white, 11)) {}

std::unique_ptr<TextFieldCell> UsersTableCell::copy() const {
    return std::make_unique<UsersTableCell>(*this);
}

void UsersTableCell::drawInteriorWithFrame(const toolkit::Rect& frame, const ControlView& view,
                                           toolkit::Canvas& canvas) const {
    const auto [x, y] = frame.origin;
    const auto user = objectValue().as<util::Dictionary>();
    if (const auto image = imageFrom(user.valueForKey("image")))
        canvas.drawImage(*image, {x + 4, y + 28}, toolkit::CompositingOperation::sourceOver);
    // The cell's x counts in the width as well as in the place, on purpose: lists are laid out for cells at x
    // = 0, and one that begins further right keeps the same right edge as the row that begins at 0.
    const double width = frame.size.width - (x + 32) - 4;
    const bool selected = showsSelection(view);
    canvas.drawText({user.textForKey("fullName"), selected ? *selectedNameAttrs : *nameAttrs},
                    {{x + 32, y}, {width, 16}});
    canvas.drawText({user.textForKey("userType"), selected ? *selectedSubtextAttrs : *subtextAttrs},
                    {{x + 32, y + 17}, {width, 16}});
}

} // namespace corvane::views
