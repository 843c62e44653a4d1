#pragma once

#include <string>
#include <vector>

#include "oracle/Judge.h"
#include "oracle/MachineTexts.h"

namespace corvane::oracle {

struct SelfCheck {
    int passed = 0, failed = 0;
    std::string text; ///< a line for each expectation that wasn't met
};

/// Whether the readers say of files whose meaning is known what they have to, and whether the invariants are
/// broken by changes that are known to break them, and by no others.
[[nodiscard]] SelfCheck selfCheck(const std::vector<Machine>& machines, const Judge& judge);

} // namespace corvane::oracle
