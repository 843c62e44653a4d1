#pragma once

#include <string>

#include "oracle/MachineTexts.h"

namespace corvane::oracle {

/// A machine of odd but mostly legal pieces, the same one for the same seed.
[[nodiscard]] Machine randomMachine(unsigned long seed);

/// The machine as it could stand in a file of machines.
[[nodiscard]] std::string machineText(const Machine& machine);

} // namespace corvane::oracle
