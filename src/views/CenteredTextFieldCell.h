#pragma once

#include "views/TextFieldCell.h"

namespace corvane::views {

/// A line of text in the middle of its row's height. Main thread.
class CenteredTextFieldCell final : public TextFieldCell {
public:
    [[nodiscard]] std::unique_ptr<TextFieldCell> copy() const override;
    void drawInteriorWithFrame(const toolkit::Rect& frame, const ControlView& view,
                               toolkit::Canvas& canvas) const override;
};

} // namespace corvane::views
