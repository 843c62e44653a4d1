#pragma once

#include "views/TextFieldCell.h"

namespace corvane::views {

/// A server in two lines beside the application's picture of a server. The object value is a dictionary:
/// "hostName" and "ipAddress" (strings). Rows are 40 points high or more. Main thread.
class ServersTableCell final : public TextFieldCell {
public:
    /// `images` outlives the cell and its copies.
    explicit ServersTableCell(toolkit::ImageSource& images);
    [[nodiscard]] std::unique_ptr<TextFieldCell> copy() const override;
    void drawInteriorWithFrame(const toolkit::Rect& frame, const ControlView& view,
                               toolkit::Canvas& canvas) const override;

    using Attributes = std::shared_ptr<const toolkit::TextAttributes>;
    /// Never set by the cell itself, and not what it draws; whoever wants to keep a picture with the cell
    /// may.
    std::shared_ptr<const toolkit::Image> defaultIcon;
    Attributes nameAttrs;
    Attributes selectedNameAttrs;
    Attributes countAttrs;
    Attributes selectedCountAttrs;

private:
    toolkit::ImageSource* images_;
};

} // namespace corvane::views
