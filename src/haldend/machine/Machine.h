#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "haldend/machine/MachineSnapshot.h"
#include "haldend/policy/PolicyStore.h"
#include "haldend/sssd/SssdControl.h"
#include "haldend/sssd/SssdValidator.h"
#include "haldend/storage/FolderLock.h"
#include "haldend/storage/MachineFolder.h"
#include "haldend/storage/MachineTransaction.h"
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
    /// damaged or unreadable reports its errors at the operations that need it. `codec` and `log` outlive it.
    Machine(MachineFolder folder, const platform::PropertyListCodec& codec, util::ProcessLog& log);
    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;

    [[nodiscard]] const MachineFolder& folder() const { return folder_; }
    /// The present snapshot; the files are read again if they have changed. Borrowed until the next call.
    [[nodiscard]] const MachineSnapshot& snapshot();
    /// The two policies are read, and looked at, one by one.
    enum class View { authentication, contacts };
    /// From here on changes of that policy are based on what `snapshot()` says now: a
    /// client has read it.
    void noteThatPolicyWasRead(View view) { seen(view) = snapshot().fingerprints(); }

    /// Lets `decide` edit the policy, and the machine's files with it where the login policy or a connector
    /// is changed; all or nothing. Through `View::contacts` also while the files can't be read. Throws
    /// `Failure`; with code `changedElsewhere` when another program has changed a file since the policy was
    /// last read through `view`: nothing is written then, nor by any further call until it has been read
    /// again.
    void change(View view, const std::function<void(MachinePolicy&)>& decide);

    /// Identifies the directories and all their options as `snapshot()` has them: another text once one of
    /// them differs. It reveals nothing about what they are, passwords least of all.
    [[nodiscard]] std::string directoriesRevision();
    /// As `change`, for the directories themselves; `draft` may be edited whole. Throws `Failure` with code
    /// `changedElsewhere`, and nothing is written, when `revision` isn't the present one.
    void changeDirectories(std::string_view revision, const std::function<void(MachineDraft&)>& decide);
    /// The configuration of SSSD as it would be with another text of sssd.conf. Throws `Failure`.
    [[nodiscard]] std::shared_ptr<const SssdFile> sssdFileWith(const std::string& text) const;

    /// Checks whether another program has changed the files, and calls the listener. Cheap: three `stat`s.
    void pollForChanges() { (void)snapshot(); }
    /// Called after each change of the settings, whoever made it.
    void setChangeListener(std::function<void()> listener) { listener_ = std::move(listener); }
    /// Called again and again during a change, between its steps and while other programs are waited for. It
    /// asks nothing of the machine.
    void setWaitListener(StillWaiting listener) { waitListener_ = std::move(listener); }

private:
    using Fingerprints = MachineSnapshot::Fingerprints;

    void repair();
    [[nodiscard]] MachineSnapshot read();
    void adopt(MachineSnapshot fresh);
    void requireUnchangedSinceRead(View view);
    void requireRevision(std::string_view revision);
    /// Holds the lock, lets `require` look at the present state and `decide` edit it, and writes the result.
    void changeLocked(const std::function<void()>& require, const std::function<void(MachineDraft&)>& decide);
    void write(const FolderLock& lock, MachineDraft& draft);
    void stageFiles(MachineTransaction& transaction, MachineDraft& draft, StoredPolicy& stored);
    void noteNewSssdFile(MachineAdditions& added) const;
    /// What the files will say; the same text where one doesn't change.
    struct FileTexts {
        std::string sssd;
        std::string nsswitch;
    };
    /// Throws `Failure` where the files' readers would not read what is meant.
    [[nodiscard]] FileTexts textsFor(MachineDraft& draft) const;
    void stageSssd(MachineTransaction& transaction, const MachineDraft& draft, const std::string& text,
                   StoredPolicy& stored);
    void stageNsswitch(MachineTransaction& transaction, const std::string& text, StoredPolicy& stored);
    /// False where nothing is new.
    [[nodiscard]] bool stageStore(MachineTransaction& transaction, const StoredPolicy& stored);
    [[nodiscard]] std::vector<std::string> wantedDomains(const MachineDraft& draft) const;
    [[nodiscard]] std::string sssdTextFor(MachineDraft& draft, const std::vector<std::string>& names) const;
    [[nodiscard]] std::string nsswitchTextFor(MachineDraft& draft, const PolicyInputs& inputs) const;
    void requireServed(const std::vector<std::string>& wanted, const PolicyInputs& inputs) const;
    [[nodiscard]] Fingerprints& seen(View view) { return seen_[static_cast<std::size_t>(view)]; }
    void tellSssd(const MachineSnapshot::Fingerprints& before);
    void signal() const;
    void stillWaiting() const {
        if (waitListener_) waitListener_();
    }

    MachineFolder folder_;
    const platform::PropertyListCodec& codec_;
    util::ProcessLog& log_;
    SssdValidator validator_;
    std::unique_ptr<SssdControl> sssd_;
    std::function<void()> listener_;
    StillWaiting waitListener_;
    mutable SssdFileReader reader_; ///< what it keeps changes nothing but the time
    MachineSnapshot snapshot_;
    std::array<Fingerprints, 2> seen_{}; ///< of the state that the client has seen, by `View`
    std::string session_;                ///< so that the revisions of two runs are never the same
    std::uint64_t revision_ = 0;
};

} // namespace corvane::haldend
