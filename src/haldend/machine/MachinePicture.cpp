#include "haldend/machine/MachinePicture.h"

#include <sys/stat.h>

#include "haldend/files/SssdSnippets.h"
#include "haldend/policy/PolicyStore.h"
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

/// On the machine itself SSSD only starts with a file of root's that nobody else may read.
std::string ownerRemark(const MachineFolder& folder) {
    struct stat status {};
    const auto path = folder.resolved(machineFile::sssd);
    if (!folder.isLiveMachine() || ::stat(path.c_str(), &status) != 0) return {};
    if (status.st_uid != 0) return path + " doesn't belong to root, so SSSD refuses to start.";
    if ((status.st_mode & 0077U) != 0)
        return path + " may be read by others than root, so SSSD refuses to start.";
    return {};
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

MachinePicture MachinePicture::read(const MachineFolder& folder, const platform::PropertyListCodec& codec) {
    MachinePicture picture;
    picture.stamps_ = stamps(folder);
    picture.nsswitchTrouble_ = troubleOf([&] { picture.readNsswitch(folder); });
    picture.sssdTrouble_ = troubleOf([&] { picture.readSssd(folder); });
    picture.policyTrouble_ = troubleOf([&] { picture.readPolicy(folder, codec); });
    return picture;
}

void MachinePicture::readNsswitch(const MachineFolder& folder) {
    const auto text = folder.read(machineFile::nsswitch);
    fingerprints_[0] = Fingerprint::of(text);
    nsswitch_.emplace(text.value_or(""), folder.pathOf(machineFile::nsswitch));
}

void MachinePicture::readSssd(const MachineFolder& folder) {
    auto snippets = SssdSnippets::of(folder);
    auto text = folder.read(machineFile::sssd);
    hasSssdFile_ = text.has_value();
    fingerprints_[1] = sssdFingerprint(text, snippets.read);
    remarks_ = std::move(snippets.passedOver);
    if (auto remark = ownerRemark(folder); !remark.empty()) remarks_.push_back(std::move(remark));
    sssd_.emplace(std::move(text).value_or(""), std::move(snippets.read), folder.pathOf(machineFile::sssd));
    nodes_ = domainNodes(*sssd_);
    for (auto& sentence : skippedDomains(*sssd_))
        remarks_.push_back(std::move(sentence));
}

/// The stored policy where the files are still those that it was stored with, else what the files say now.
void MachinePicture::readPolicy(const MachineFolder& folder, const platform::PropertyListCodec& codec) {
    const auto stored = folder.read(machineFile::policies);
    fingerprints_[2] = Fingerprint::of(stored);
    if (!stored) {
        policy_ = firstPolicy(ground());
        return;
    }
    const auto known = storedPolicy(*stored, folder.pathOf(machineFile::policies), codec);
    storedDisabled_ = known.policy.disabled;
    additions_ = known.added;
    const bool isUntouched = known.nsswitch == fingerprints_[0] && known.sssd == fingerprints_[1];
    const auto inputs = ground();
    policy_ = isUntouched ? known.policy : derivedPolicy(known.policy, inputs);
}

const std::vector<DomainNode>& MachinePicture::nodes() const {
    raise(sssdTrouble_);
    return nodes_;
}

const MachinePolicy& MachinePicture::policy() const {
    raise(policyTrouble_);
    return policy_;
}

bool MachinePicture::hasSameDirectoriesAs(const MachinePicture& other) const {
    if (sssd_.has_value() != other.sssd_.has_value()) return false;
    return !sssd_ || sssd_->domains() == other.sssd_->domains();
}

const DisabledConnectors& MachinePicture::disabledConnectors() const {
    return policyTrouble_ ? storedDisabled_ : policy_.disabled;
}

PolicyGround MachinePicture::ground() const {
    raise(nsswitchTrouble_);
    raise(sssdTrouble_);
    return {*nsswitch_, *sssd_, nodes_, additions_.formerList};
}

} // namespace corvane::haldend
