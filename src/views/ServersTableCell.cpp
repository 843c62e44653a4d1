#include "views/ServersTableCell.h"

#include "util/Containers.h"
#include "views/CellAttributes.h"

namespace corvane::views {

using toolkit::NamedColor;

ServersTableCell::ServersTableCell(toolkit::ImageSource& images)
    : nameAttrs(cellAttributes(NamedColor::black, 11)),
      selectedNameAttrs(cellAttributes(NamedColor::white, 11)),
      countAttrs(cellAttributes(NamedColor::gray, 10)),
      selectedCountAttrs(cellAttributes(NamedColor::white, 10)), images_(&images) {}

std::unique_ptr<TextFieldCell> ServersTableCell::copy() const {
    return std::make_unique<ServersTableCell>(*this);
}

void ServersTableCell::drawInteriorWithFrame(const toolkit::Rect& frame, const ControlView& view,
                                             toolkit::Canvas& canvas) const {
    const auto [x, y] = frame.origin;
    const auto server = objectValue().as<util::Dictionary>();
    if (const auto image = images_->imageNamed("Server"))
        canvas.drawImage(*image, {x + 4, y + 36}, toolkit::CompositingOperation::sourceOver);
    // The cell's x counts twice, on purpose, as in the list of users.
    const double width = frame.size.width - (x + 40) - 4;
    const bool selected = showsSelection(view);
    canvas.drawText({server.textForKey("hostName"), selected ? *selectedNameAttrs : *nameAttrs},
                    {{x + 40, y + 7}, {width, 16}});
    canvas.drawText({server.textForKey("ipAddress"), selected ? *selectedCountAttrs : *countAttrs},
                    {{x + 40, y + 23}, {width, 16}});
}

} // namespace corvane::views
