#include "haldend/machine/MachinePicture.h"

#include <sys/stat.h>

#include "haldend/files/SssdSnippets.h"
#include "haldend/policy/PolicyStore.h"
#include "haldend/sssd/SssdOwner.h"
#include "haldend/storage/DurableFile.h"
#include "haldend/storage/Failure.h"

namespace corvane::haldend {
namespace {

template <typename Action>
std::optional<halden::Error> troubleOf(const Action& action) {
    try {
        action();
        return std::nullopt;
    } catch (const Failure& failure) {
        return failure.error();
    }
}

void raise(const std::optional<halden::Error>& trouble) {
    if (trouble) throw Failure(*trouble);
}

/// What the files say where nothing was ever stored.
MachinePolicy firstPolicy(const PolicyGround& ground) {
    MachinePolicy policy;
    if (ground.nsswitch.usesSssd()) policy.authentication.mode = PolicyMode::automatic;
    return derivedPolicy(policy, ground);
}

std::string ownerRemark(const MachineFolder& folder) {
    struct stat file {
    }, around{};
    const auto path = folder.resolved(machineFile::sssd);
    if (!folder.isLiveMachine() || ::stat(path.c_str(), &file) != 0 ||
        ::stat(parentOf(path).c_str(), &around) != 0)
        return {};
    return sssdOwnerRemark(path, FileOwner::of(file), FileOwner::of(around));
}

} // namespace

Fingerprint sssdFingerprint(const std::optional<std::string>& text,
                            const std::vector<SssdSnippet>& snippets) {
    if (snippets.empty()) return Fingerprint::of(text);
    auto all = text.value_or("");
    for (const auto& snippet : snippets)
        all += '\0' + snippet.path + '\0' + snippet.text;
    const auto fingerprint = Fingerprint::of(all);
    util::wipe(all);
    return fingerprint;
}

MachinePicture::Stamps MachinePicture::stamps(const MachineFolder& folder) {
    Stamps stamps;
    (void)troubleOf([&] {
        stamps = {folder.stamp(machineFile::nsswitch), folder.stamp(machineFile::sssd),
                  folder.stamp(machineFile::policies), SssdSnippets::stamp(folder)};
    });
    return stamps;
}

MachinePicture MachinePicture::read(const MachineFolder& folder, const platform::PropertyListCodec& codec,
                                    SssdFileReader& reader) {
    MachinePicture picture;
    picture.stamps_ = stamps(folder);
    picture.nsswitchTrouble_ = troubleOf([&] { picture.readNsswitch(folder); });
    picture.sssdTrouble_ = troubleOf([&] { picture.readSssd(folder, reader); });
    if (picture.sssdTrouble_)
        picture.remarks_.push_back("No directory can be listed: " + picture.sssdTrouble_->description + " " +
                                   picture.sssdTrouble_->reason);
    picture.storeTrouble_ = troubleOf([&] { picture.readStore(folder, codec); });
    picture.derivePolicy();
    return picture;
}

void MachinePicture::readNsswitch(const MachineFolder& folder) {
    const auto text = folder.read(machineFile::nsswitch);
    fingerprints_[0] = Fingerprint::of(text);
    nsswitch_.emplace(text.value_or(""), folder.pathOf(machineFile::nsswitch));
}

void MachinePicture::readSssd(const MachineFolder& folder, SssdFileReader& reader) {
    auto snippets = SssdSnippets::of(folder);
    auto text = folder.read(machineFile::sssd);
    hasSssdFile_ = text.has_value();
    fingerprints_[1] = sssdFingerprint(text, snippets.read);
    remarks_ = std::move(snippets.passedOver);
    if (auto remark = ownerRemark(folder); !remark.empty()) remarks_.push_back(std::move(remark));
    sssd_ =
        reader.read(std::move(text).value_or(""), std::move(snippets.read), folder.pathOf(machineFile::sssd));
    nodes_ = domainNodes(*sssd_);
    for (auto& sentence : skippedDomains(*sssd_))
        remarks_.push_back(std::move(sentence));
}

void MachinePicture::readStore(const MachineFolder& folder, const platform::PropertyListCodec& codec) {
    const auto text = folder.read(machineFile::policies);
    fingerprints_[2] = Fingerprint::of(text);
    if (!text) return;
    stored_ = haldend::storedPolicy(*text, folder.pathOf(machineFile::policies), codec);
    policy_ = stored_->policy;
    additions_ = stored_->added;
}

/// The stored policy where the files are still those that it was stored with, or can't be read, else what the
/// files say now.
void MachinePicture::derivePolicy() {
    if (!nsswitch_ || !sssd_) {
        if (!stored_ && nsswitch_ && nsswitch_->usesSssd())
            policy_.authentication.mode = PolicyMode::automatic; // as where nothing is damaged
        return;
    }
    if (!stored_)
        policy_ = firstPolicy(ground());
    else if (stored_->nsswitch != fingerprints_[0] || stored_->sssd != fingerprints_[1])
        policy_ = derivedPolicy(stored_->policy, ground());
}

const std::vector<DomainNode>& MachinePicture::nodes() const {
    raise(sssdTrouble_);
    return nodes_;
}

const SssdFile& MachinePicture::sssd() const {
    raise(sssdTrouble_);
    return *sssd_;
}

const MachinePolicy& MachinePicture::policy() const {
    raise(storeTrouble_);
    (void)ground();
    return policy_;
}

const MachinePolicy& MachinePicture::storedPolicy() const {
    raise(storeTrouble_);
    return policy_;
}

/// A policy that isn't derived from what the files say now still belongs to what they said before.
StoredPolicy MachinePicture::asStored(const MachinePolicy& policy) const {
    const bool isOld = stored_ && (!nsswitch_ || !sssd_);
    return {policy, isOld ? stored_->nsswitch : fingerprints_[0], isOld ? stored_->sssd : fingerprints_[1],
            additions_};
}

std::vector<std::string> MachinePicture::automaticDirectories() const {
    if (!sssd_) return {};
    return automaticNodes(*sssd_, nodes_, additions_.formerList, policy_.disabled);
}

std::vector<std::string> MachinePicture::usableDirectories() const {
    return usableNodes(nodes_, policy_.disabled);
}

bool MachinePicture::hasSameDirectoriesAs(const MachinePicture& other) const {
    if (!sssd_ || !other.sssd_) return sssd_ == other.sssd_;
    return sssd_ == other.sssd_ || sssd_->domains() == other.sssd_->domains();
}

PolicyGround MachinePicture::ground() const {
    raise(nsswitchTrouble_);
    raise(sssdTrouble_);
    return {*nsswitch_, *sssd_, nodes_, additions_.formerList};
}

} // namespace corvane::haldend
