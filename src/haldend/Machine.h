#pragma once

#include <functional>
#include <memory>
#include <string>

#include "haldend/FolderLock.h"
#include "haldend/MachineFolder.h"
#include "haldend/MachinePicture.h"
#include "haldend/SssdControl.h"
#include "haldend/SssdValidator.h"
#include "platform/PropertyListCodec.h"
#include "util/ProcessLog.h"

namespace corvane::haldend {

/// One machine's settings: read when they have changed, and changed in whole transactions. Main thread.
class Machine {
public:
    /// Opens the folder and finishes what a crash has left in it. Never fails: a folder that is missing,
    /// damaged or unreadable gives its errors at the operations that need it. `codec` and `log` outlive it.
    Machine(MachineFolder folder, const platform::PropertyListCodec& codec, util::ProcessLog& log,
            std::shared_ptr<Lenses> lenses = nullptr);
    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;

    [[nodiscard]] const MachineFolder& folder() const { return folder_; }
    /// The present picture; the files are read again if they have changed. Borrowed until the next call.
    [[nodiscard]] const MachinePicture& picture();
    /// From here on changes are based on what `picture()` says now: somebody has looked at it.
    void noteThatPolicyWasRead() { seen_ = picture().fingerprints(); }

    /// Lets `decide` edit the policy and brings the stored policy and the machine's files to it, all or
    /// nothing. Throws `Failure`; with code `changedElsewhere` when another program has changed a file since
    /// the policy was last read: nothing is written then, and the next call works on the new state.
    void change(const std::function<void(MachinePolicy&)>& decide);

    /// Looks whether another program has changed the files, and tells the listener. Cheap: three `stat`s.
    void pollForChanges() { (void)picture(); }
    /// Called after each change of the settings, whoever made it.
    void setChangeListener(std::function<void()> listener) { listener_ = std::move(listener); }

private:
    void repair();
    [[nodiscard]] MachinePicture read();
    void requireUnchangedSinceRead();
    void write(const FolderLock& lock, const MachinePolicy& policy);
    void signal() const;

    MachineFolder folder_;
    const platform::PropertyListCodec& codec_;
    util::ProcessLog& log_;
    std::shared_ptr<Lenses> lenses_;
    SssdValidator validator_;
    std::unique_ptr<SssdControl> sssd_;
    std::function<void()> listener_;
    MachinePicture picture_;
    MachinePicture::Fingerprints seen_{}; ///< of the state that the client has seen
};

} // namespace corvane::haldend
