#pragma once

#include <memory>

#include "haldend/MachineFolder.h"
#include "util/ProcessLog.h"

namespace corvane::haldend {

/// Tells the machine's running services that its files have changed. Main thread; may block for seconds.
class SssdControl {
public:
    virtual ~SssdControl() = default;
    /// The files are changed already. `isNeeded`: some directory is on the policy, so SSSD must run and know
    /// it. What can't be done is logged: the decision itself is stored and stays.
    virtual void filesChanged(bool isNeeded) = 0;
};

/// The control that fits a folder: the running SSSD for the machine itself, nothing for a private folder.
[[nodiscard]] std::unique_ptr<SssdControl> sssdControlFor(const MachineFolder& folder, util::ProcessLog& log);

} // namespace corvane::haldend
