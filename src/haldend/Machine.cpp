#include "haldend/Machine.h"

#include <random>

#include "haldend/DurableFile.h"
#include "haldend/Failure.h"
#include "haldend/MachineTransaction.h"
#include "haldend/PolicyStore.h"

namespace corvane::haldend {
namespace {

bool hasFolder(const MachineFolder& folder, const char* file) {
    struct stat status {};
    return ::stat(parentOf(folder.resolved(file)).c_str(), &status) == 0;
}

Failure changedElsewhere(const std::string& evidence) {
    return {
        halden::ErrorCode::changedElsewhere, "Another program has changed the machine's settings meanwhile.",
        evidence + " Nothing was written.",
        "Look at the settings as they are now, make your change again if it is still wanted, and apply it."};
}

} // namespace

Machine::Machine(MachineFolder folder, const platform::PropertyListCodec& codec, util::ProcessLog& log,
                 std::shared_ptr<Lenses> lenses)
    : folder_(std::move(folder)), codec_(codec), log_(log),
      lenses_(lenses ? std::move(lenses) : std::make_shared<Lenses>()), validator_(folder_, log),
      sssd_(sssdControlFor(folder_, log)), session_(std::to_string(std::random_device()())) {
    repair();
    picture_ = read();
    seen_ = picture_.fingerprints();
}

void Machine::repair() {
    if (!MachineTransaction::needsRecovery(folder_)) return;
    try {
        const FolderLock lock(folder_);
        MachineTransaction::recover(folder_, lock, log_);
    } catch (const Failure& failure) {
        log_.log("an interrupted change of " + folder_.root() +
                 " could not be finished: " + failure.error().reason);
    }
}

MachinePicture Machine::read() {
    auto picture = MachinePicture::read(folder_, lenses_, codec_);
    // Another process may be renaming the files one by one; then they are read once more.
    for (int i = 0; i < 3 && picture.stampsAtReading() != MachinePicture::stamps(folder_); ++i)
        picture = MachinePicture::read(folder_, lenses_, codec_);
    return picture;
}

const MachinePicture& Machine::picture() {
    if (MachinePicture::stamps(folder_) == picture_.stampsAtReading()) return picture_;
    repair();
    const auto before = picture_.fingerprints();
    adopt(read());
    if (picture_.fingerprints() != before) signal();
    return picture_;
}

void Machine::adopt(MachinePicture fresh) {
    if (!fresh.hasSameDirectoriesAs(picture_)) ++revision_;
    picture_ = std::move(fresh);
}

std::string Machine::directoriesRevision() {
    (void)picture();
    return session_ + "-" + std::to_string(revision_);
}

void Machine::change(const std::function<void(MachinePolicy&)>& decide) {
    changeLocked([this] { requireUnchangedSinceRead(); }, [&](MachineDraft& draft) { decide(draft.policy); });
}

void Machine::changeDirectories(std::string_view revision, const std::function<void(MachineDraft&)>& decide) {
    changeLocked([&] { requireRevision(revision); }, decide);
}

void Machine::changeLocked(const std::function<void()>& require,
                           const std::function<void(MachineDraft&)>& decide) {
    MachinePicture::Fingerprints before;
    {
        const FolderLock lock(folder_);
        if (MachineTransaction::needsRecovery(folder_)) MachineTransaction::recover(folder_, lock, log_);
        require();
        before = picture_.fingerprints();
        const auto ground = picture_.ground();
        MachineDraft draft{picture_.policy(), picture_.additions(), ground.sssd.text(), ground.nodes};
        decide(draft);
        write(lock, draft);
        adopt(read());
        // Who hasn't seen what was there before hasn't seen this either.
        if (seen_ == before) seen_ = picture_.fingerprints();
    }
    const auto& now = picture_.fingerprints();
    if (before[0] != now[0] || before[1] != now[1]) tellSssd(before);
    if (before != now) signal();
}

void Machine::tellSssd(const MachinePicture::Fingerprints& before) {
    const auto ground = picture_.ground();
    const bool isChanged = before[1] != picture_.fingerprints()[1];
    if (needsSssd(picture_.policy(), ground))
        sssd_->filesChanged(SssdUse::needed);
    else if (isChanged && ground.sssd.listedDomains().empty())
        sssd_->filesChanged(SssdUse::impossible);
    else
        sssd_->filesChanged(isChanged ? SssdUse::changed : SssdUse::notNeeded);
}

void Machine::requireUnchangedSinceRead() {
    auto fresh = read();
    const auto now = fresh.fingerprints();
    const bool isNews = now != picture_.fingerprints();
    adopt(std::move(fresh));
    if (now == seen_) return;
    seen_ = now;
    if (isNews) signal();
    throw changedElsewhere(folder_.pathOf(machineFile::nsswitch) + ", " + folder_.pathOf(machineFile::sssd) +
                           " or the stored policy differs from what was last read.");
}

void Machine::requireRevision(std::string_view revision) {
    auto fresh = read();
    const bool isNews = fresh.fingerprints() != picture_.fingerprints();
    adopt(std::move(fresh));
    if (isNews) signal();
    if (revision != session_ + "-" + std::to_string(revision_))
        throw changedElsewhere("The directories in " + folder_.pathOf(machineFile::sssd) +
                               " differ from what was last read.");
}

/// The text with the names that the policy wants on the `domains` line. Without any directory on the policy
/// the line stays as it is.
std::string Machine::sssdTextFor(MachineDraft& draft) const {
    const auto path = folder_.pathOf(machineFile::sssd);
    const SssdFile edited(lenses_, draft.sssd, path);
    const auto nodes = domainNodes(edited);
    const auto names = domainsFor(draft.policy, {picture_.ground().nsswitch, edited, nodes});
    return names ? textListing(draft.sssd, *names, draft.added, lenses_, path) : draft.sssd;
}

/// Where the last directory goes and nobody has edited anything but `sss` since the first one came,
/// nsswitch.conf gets the octets that it had then: some distributions ask SSSD before there is a directory.
std::string Machine::nsswitchTextFor(MachineDraft& draft, const PolicyGround& ground) const {
    const bool wanted = needsSssd(draft.policy, ground);
    if (draft.nodes.empty() && !ground.nodes.empty()) draft.added.nsswitch = ground.nsswitch.text();
    auto text = ground.nsswitch.textUsingSssd(wanted);
    if (!ground.nodes.empty() || !draft.added.nsswitch) return text;
    const NsswitchFile former(lenses_, *std::exchange(draft.added.nsswitch, std::nullopt),
                              folder_.pathOf(machineFile::nsswitch));
    const bool isAllowed =
        wanted ? former.usesSssd()
               : !former.usesSssd() || draft.policy.authentication.mode != PolicyMode::localOnly;
    const bool isSame = former.textUsingSssd(false) == ground.nsswitch.textUsingSssd(false);
    return isAllowed && isSame ? former.text() : text;
}

void Machine::write(const FolderLock& lock, MachineDraft& draft) {
    const auto before = picture_.ground();
    const bool wasThere = picture_.fingerprints()[1].present;
    if (!wasThere) {
        const MachineAdditions none;
        draft.added = {!hasFolder(folder_, machineFile::sssd),
                       true,
                       none.section,
                       none.services,
                       none.domains,
                       none.emptyDomains,
                       draft.added.nsswitch};
    }
    const auto sssd = sssdTextFor(draft);
    const bool goes = draft.added.file && SssdLines(sssd).isBlank();
    const SssdFile after(lenses_, sssd, folder_.pathOf(machineFile::sssd));
    const auto nodes = domainNodes(after);
    const auto nsswitch = nsswitchTextFor(draft, {before.nsswitch, after, nodes});
    MachineTransaction transaction(folder_, lock);
    StoredPolicy stored{draft.policy, picture_.fingerprints()[0], picture_.fingerprints()[1], draft.added};
    if (goes) {
        if (wasThere) transaction.remove(machineFile::sssd, draft.added.folder);
        stored.sssd = {};
        stored.added = {false, false, false, false, false, std::nullopt, draft.added.nsswitch};
    } else if (sssd != before.sssd.text()) {
        validator_.check(sssd, before.sssd.text());
        stored.sssd = Fingerprint::of(sssd);
        transaction.replace(machineFile::sssd, sssd, 0600, true);
    }
    if (nsswitch != before.nsswitch.text()) {
        stored.nsswitch = Fingerprint::of(nsswitch);
        transaction.replace(machineFile::nsswitch, nsswitch, 0644);
    }
    const auto text = storedText(stored, codec_);
    if (Fingerprint::of(text) == picture_.fingerprints()[2]) return; // nothing is new
    // For its owner alone: from the fingerprint of sssd.conf a password in it could be guessed.
    transaction.replace(machineFile::policies, text, 0600, true);
    transaction.commit();
}

void Machine::signal() const {
    if (listener_) listener_();
}

} // namespace corvane::haldend
