#pragma once

#include <memory>

#include "qt/HandlerGuard.h"
#include "qt/widgets/FieldFormatting.h"
#include "toolkit/Formatter.h"

namespace corvane::qt {

/// Lets one of the program's formatters judge a field. One that fails refuses: what it didn't look at must
/// not pass. `guard` outlives the rules.
[[nodiscard]] FieldFormatting::Rules rulesOf(std::shared_ptr<toolkit::Formatter> formatter,
                                             HandlerGuard& guard);

} // namespace corvane::qt
