#pragma once

#include <string>

#include "haldend/storage/ChildProcess.h"
#include "haldend/storage/MachineFolder.h"
#include "util/ProcessLog.h"

namespace corvane::haldend {

/// Asks SSSD's own tool about a configuration before it is written. The candidate is in a folder of its own
/// for that. Where the tool isn't installed or may not be used (it wants root), one line is logged once and
/// every candidate passes.
class SssdValidator {
public:
    SssdValidator(const MachineFolder& folder, util::ProcessLog& log, StillWaiting stillWaiting = {},
                  std::string tool = "/usr/sbin/sssctl");
    /// Throws `Failure` when the tool finds something in `candidate` that it doesn't find in `current`.
    void check(const std::string& candidate, const std::string& current);

private:
    [[nodiscard]] bool isUsable();
    [[nodiscard]] std::string findings(const std::string& text) const;

    const MachineFolder& folder_;
    util::ProcessLog& log_;
    StillWaiting stillWaiting_;
    std::string tool_;
    bool saidSo_ = false;
};

} // namespace corvane::haldend
