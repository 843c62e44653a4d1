#pragma once

#include <string>
#include <string_view>

#include "toolkit/LayoutConstraint.h"

namespace corvane::views {

/// What a visual format says of one view: for toolkits that turn it into constraints.
struct VisualFormat {
    toolkit::LayoutAttribute attribute = toolkit::LayoutAttribute::height;
    std::string viewName;
    double constant = 0; ///< points

    /// Reads "V:[name(==12)]" (height) and "H:[name(==12)]" (width). Throws `std::invalid_argument` on
    /// anything else.
    [[nodiscard]] static VisualFormat fromText(std::string_view format);
};

} // namespace corvane::views
