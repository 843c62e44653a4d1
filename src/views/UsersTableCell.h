#pragma once

#include "views/TextFieldCell.h"

namespace corvane::views {

/// A user in two lines beside a picture. The object value is a dictionary: "image" (`toolkit::Image`),
/// "fullName" and "userType" (strings). Rows are 34 points high or more. Main thread.
class UsersTableCell final : public TextFieldCell {
public:
    UsersTableCell();
    [[nodiscard]] std::unique_ptr<TextFieldCell> copy() const override;
    void drawInteriorWithFrame(const toolkit::Rect& frame, const ControlView& view,
                               toolkit::Canvas& canvas) const override;

    using Attributes = std::shared_ptr<const toolkit::TextAttributes>;
    Attributes nameAttrs;
    Attributes selectedNameAttrs;
    Attributes subtextAttrs;
    Attributes selectedSubtextAttrs;
};

} // namespace corvane::views
