#pragma once

#include <memory>

#include "toolkit/Canvas.h"
#include "util/Value.h"

namespace corvane::views {

/// How the lists' cells draw one of their lines: the system font, cut off at the end where it is too long.
[[nodiscard]] inline std::shared_ptr<const toolkit::TextAttributes> cellAttributes(toolkit::NamedColor color,
                                                                                   double size) {
    return std::make_shared<const toolkit::TextAttributes>(toolkit::TextAttributes{
        color, size, {toolkit::TextAlignment::natural, toolkit::LineBreakMode::truncatingTail}});
}

/// Null when the value holds no image.
[[nodiscard]] inline std::shared_ptr<toolkit::Image> imageFrom(const util::Value& value) {
    return std::dynamic_pointer_cast<toolkit::Image>(value.object());
}

} // namespace corvane::views
