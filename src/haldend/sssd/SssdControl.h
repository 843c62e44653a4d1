#pragma once

#include <memory>

#include "haldend/storage/ChildProcess.h"
#include "haldend/storage/MachineFolder.h"
#include "util/ProcessLog.h"

namespace corvane::haldend {

/// What the machine wants of SSSD after a change of its files.
enum class SssdUse {
    needed,     ///< a directory is on the policy: SSSD has to run and to know it
    changed,    ///< its configuration is another one, but nothing is looked up in it
    notNeeded,  ///< its configuration is what it was, and nothing is looked up in it
    impossible, ///< its configuration no longer names a domain: it can't run
};

/// Tells the machine's running services that its files have changed. Main thread; may block for seconds.
class SssdControl {
public:
    virtual ~SssdControl() = default;
    /// The files are changed already. SSSD is started or restarted where it is needed, restarted where it
    /// runs with other options than it should, and stopped where it couldn't be started again; its caches are
    /// dropped. What can't be done is logged: the decision itself is stored and stays.
    virtual void filesChanged(SssdUse use) = 0;
};

/// The control that fits a folder: the running SSSD for the machine itself, nothing for a private folder.
[[nodiscard]] std::unique_ptr<SssdControl> sssdControlFor(const MachineFolder& folder, util::ProcessLog& log,
                                                          StillWaiting stillWaiting);

} // namespace corvane::haldend
