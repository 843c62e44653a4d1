#include "haldend/Machine.h"

#include "haldend/Failure.h"
#include "haldend/MachineTransaction.h"
#include "haldend/PolicyStore.h"

namespace corvane::haldend {

Machine::Machine(MachineFolder folder, const platform::PropertyListCodec& codec, util::ProcessLog& log,
                 std::shared_ptr<Lenses> lenses)
    : folder_(std::move(folder)), codec_(codec), log_(log),
      lenses_(lenses ? std::move(lenses) : std::make_shared<Lenses>()), validator_(folder_, log),
      sssd_(sssdControlFor(folder_, log)) {
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
        log_.log("an interrupted change of " + folder_.root() + " could not be finished: " + failure.error().reason);
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
    picture_ = read();
    if (picture_.fingerprints() != before) signal();
    return picture_;
}

void Machine::change(const std::function<void(MachinePolicy&)>& decide) {
    bool isNeeded = false;
    MachinePicture::Fingerprints before;
    {
        const FolderLock lock(folder_);
        if (MachineTransaction::needsRecovery(folder_)) MachineTransaction::recover(folder_, lock, log_);
        requireUnchangedSinceRead();
        before = picture_.fingerprints();
        auto policy = picture_.policy();
        decide(policy);
        isNeeded = needsSssd(policy, picture_.ground());
        write(lock, policy);
        picture_ = read();
        seen_ = picture_.fingerprints();
    }
    const bool filesChanged = before[0] != seen_[0] || before[1] != seen_[1];
    if (filesChanged) sssd_->filesChanged(isNeeded);
    if (before != seen_) signal();
}

void Machine::requireUnchangedSinceRead() {
    auto fresh = read();
    const auto now = fresh.fingerprints();
    const bool isNews = now != picture_.fingerprints();
    picture_ = std::move(fresh);
    if (now == seen_) return;
    seen_ = now;
    if (isNews) signal();
    throw Failure(halden::ErrorCode::changedElsewhere, "Another program has changed the machine's settings meanwhile.",
                  folder_.pathOf(machineFile::nsswitch) + ", " + folder_.pathOf(machineFile::sssd) +
                      " or the stored policy differs from what was last read. Nothing was written.",
                  "Look at the settings as they are now, make your change again if it is still wanted, and apply it.");
}

void Machine::write(const FolderLock& lock, const MachinePolicy& policy) {
    const auto ground = picture_.ground();
    const bool wanted = needsSssd(policy, ground);
    const auto nsswitch = ground.nsswitch.textUsingSssd(wanted);
    const auto domains = domainsFor(policy, ground);
    const auto sssd = domains ? ground.sssd.textListing(*domains) : ground.sssd.text();
    StoredPolicy stored{policy, picture_.fingerprints()[0], picture_.fingerprints()[1]};
    MachineTransaction transaction(folder_, lock);
    if (sssd != ground.sssd.text()) {
        validator_.check(sssd, ground.sssd.text());
        stored.sssd = Fingerprint::of(sssd);
        transaction.replace(machineFile::sssd, sssd, 0600, true);
    }
    if (nsswitch != ground.nsswitch.text()) {
        stored.nsswitch = Fingerprint::of(nsswitch);
        transaction.replace(machineFile::nsswitch, nsswitch, 0644);
    }
    const auto text = storedText(stored, codec_);
    if (Fingerprint::of(text) == picture_.fingerprints()[2]) return; // nothing is new
    transaction.replace(machineFile::policies, text, 0644);
    transaction.commit();
}

void Machine::signal() const {
    if (listener_) listener_();
}

} // namespace corvane::haldend
