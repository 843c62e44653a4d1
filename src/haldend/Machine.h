#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "haldend/FolderLock.h"
#include "haldend/MachineFolder.h"
#include "haldend/MachinePicture.h"
#include "haldend/SssdControl.h"
#include "haldend/SssdValidator.h"
#include "platform/PropertyListCodec.h"
#include "util/ProcessLog.h"

namespace corvane::haldend {

/// What a change of the directories is decided on and by: edited in place. The text may hold passwords and is
/// wiped in the end.
struct MachineDraft {
    ~MachineDraft() { util::wipe(sssd); }

    MachinePolicy policy;
    MachineAdditions added;
    std::string sssd;                     ///< the text of sssd.conf, "" when it isn't there
    const std::vector<DomainNode>& nodes; ///< as they are before the change
};

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

    /// Stands for the directories and all their options as `picture()` has them: another text once one of
    /// them differs. It tells nothing about what they are, passwords least of all.
    [[nodiscard]] std::string directoriesRevision();
    /// As `change`, for the directories themselves; `draft` may be edited whole. Throws `Failure` with code
    /// `changedElsewhere`, and nothing is written, when `revision` isn't the present one.
    void changeDirectories(std::string_view revision, const std::function<void(MachineDraft&)>& decide);
    /// For whoever edits a draft.
    [[nodiscard]] const std::shared_ptr<Lenses>& lenses() const { return lenses_; }

    /// Looks whether another program has changed the files, and tells the listener. Cheap: three `stat`s.
    void pollForChanges() { (void)picture(); }
    /// Called after each change of the settings, whoever made it.
    void setChangeListener(std::function<void()> listener) { listener_ = std::move(listener); }

private:
    void repair();
    [[nodiscard]] MachinePicture read();
    void adopt(MachinePicture fresh);
    void requireUnchangedSinceRead();
    void requireRevision(std::string_view revision);
    /// Holds the lock, lets `require` look at the present state and `decide` edit it, and writes the result.
    void changeLocked(const std::function<void()>& require, const std::function<void(MachineDraft&)>& decide);
    void write(const FolderLock& lock, MachineDraft& draft);
    [[nodiscard]] std::string sssdTextFor(MachineDraft& draft) const;
    [[nodiscard]] std::string nsswitchTextFor(MachineDraft& draft, const PolicyGround& ground) const;
    void tellSssd(const MachinePicture::Fingerprints& before);
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
    std::string session_;                 ///< so that the revisions of two runs are never the same
    std::uint64_t revision_ = 0;
};

} // namespace corvane::haldend
