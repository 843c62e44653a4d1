#pragma once

#include <string>
#include <vector>

#include "oracle/Invariants.h"
#include "oracle/MachineTexts.h"

namespace corvane::oracle {

/// What an administrator does with a machine, named as on the command line.
struct Scene {
    std::string name;
    std::string about;
};
[[nodiscard]] const std::vector<Scene>& scenes();

/// How a scene went on a machine.
struct Outcome {
    enum class Kind { passed, failed, notApplicable };
    Kind kind = Kind::passed;
    std::string text; ///< of a failure: a line for each thing that is wrong; else what was refused, or ""
};

/// Plays the scene on a new copy of the machine in `folder`, which is made and, unless the scene failed,
/// removed. `acceptRefusals`: a refusal that changes nothing is right in every scene. Throws
/// `std::runtime_error` when the readers gave no verdict.
[[nodiscard]] Outcome play(const std::string& scene, const Machine& machine, const Judge& judge,
                           const std::string& folder, bool acceptRefusals);

} // namespace corvane::oracle
