#pragma once

#include <string>

#include "haldend/Dice.h"

namespace corvane::haldend::test {

/// The text of an nsswitch.conf as no editor would leave it, about the sources a, b, c and sss.
[[nodiscard]] std::string madeUpNsswitch(Dice& dice);

} // namespace corvane::haldend::test
