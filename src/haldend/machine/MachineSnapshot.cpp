#include "haldend/machine/MachineSnapshot.h"

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
MachinePolicy firstPolicy(const PolicyInputs& inputs) {
    MachinePolicy policy;
    if (inputs.nsswitch.usesSssd()) policy.authentication.mode = PolicyMode::automatic;
    return derivedPolicy(policy, inputs);
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

MachineSnapshot::Stamps MachineSnapshot::stamps(const MachineFolder& folder) {
    Stamps stamps;
    (void)troubleOf([&] {
        stamps = {folder.stamp(machineFile::nsswitch), folder.stamp(machineFile::sssd),
                  folder.stamp(machineFile::policies), SssdSnippets::stamp(folder)};
    });
    return stamps;
}

MachineSnapshot MachineSnapshot::read(const MachineFolder& folder, const platform::PropertyListCodec& codec,
                                      SssdFileReader& reader) {
    MachineSnapshot snapshot;
    snapshot.stamps_ = stamps(folder);
    snapshot.nsswitchTrouble_ = troubleOf([&] { snapshot.readNsswitch(folder); });
    snapshot.sssdTrouble_ = troubleOf([&] { snapshot.readSssd(folder, reader); });
    if (snapshot.sssdTrouble_)
        snapshot.remarks_.push_back("No directory can be listed: " + snapshot.sssdTrouble_->description +
                                    " " + snapshot.sssdTrouble_->reason);
    snapshot.storeTrouble_ = troubleOf([&] { snapshot.readStore(folder, codec); });
    snapshot.derivePolicy();
    return snapshot;
}

void MachineSnapshot::readNsswitch(const MachineFolder& folder) {
    const auto text = folder.read(machineFile::nsswitch);
    fingerprints_.nsswitch = Fingerprint::of(text);
    nsswitch_.emplace(text.value_or(""), folder.pathOf(machineFile::nsswitch));
}

void MachineSnapshot::readSssd(const MachineFolder& folder, SssdFileReader& reader) {
    auto snippets = SssdSnippets::of(folder);
    auto text = folder.read(machineFile::sssd);
    hasSssdFile_ = text.has_value();
    fingerprints_.sssd = sssdFingerprint(text, snippets.read);
    remarks_ = std::move(snippets.passedOver);
    if (auto remark = ownerRemark(folder); !remark.empty()) remarks_.push_back(std::move(remark));
    sssd_ =
        reader.read(std::move(text).value_or(""), std::move(snippets.read), folder.pathOf(machineFile::sssd));
    nodes_ = domainNodes(*sssd_);
    for (auto& sentence : skippedDomains(*sssd_))
        remarks_.push_back(std::move(sentence));
}

void MachineSnapshot::readStore(const MachineFolder& folder, const platform::PropertyListCodec& codec) {
    const auto text = folder.read(machineFile::policies);
    fingerprints_.policies = Fingerprint::of(text);
    if (!text) return;
    stored_ = haldend::storedPolicy(*text, folder.pathOf(machineFile::policies), codec);
    policy_ = stored_->policy;
    additions_ = stored_->added;
}

/// The stored policy where the files are still those that it was stored with, or can't be read, else what the
/// files say now.
void MachineSnapshot::derivePolicy() {
    if (!nsswitch_ || !sssd_) {
        if (!stored_ && nsswitch_ && nsswitch_->usesSssd())
            policy_.authentication.mode = PolicyMode::automatic; // as where nothing is damaged
        return;
    }
    if (!stored_)
        policy_ = firstPolicy(inputs());
    else if (stored_->nsswitch != fingerprints_.nsswitch || stored_->sssd != fingerprints_.sssd)
        policy_ = derivedPolicy(stored_->policy, inputs());
}

const std::vector<DomainNode>& MachineSnapshot::nodes() const {
    raise(sssdTrouble_);
    return nodes_;
}

const SssdFile& MachineSnapshot::sssd() const {
    raise(sssdTrouble_);
    return *sssd_;
}

const MachinePolicy& MachineSnapshot::policy() const {
    raise(storeTrouble_);
    (void)inputs();
    return policy_;
}

const MachinePolicy& MachineSnapshot::storedPolicy() const {
    raise(storeTrouble_);
    return policy_;
}

/// A policy that isn't derived from what the files say now still belongs to what they said before.
StoredPolicy MachineSnapshot::asStored(const MachinePolicy& policy) const {
    const bool isOld = stored_ && (!nsswitch_ || !sssd_);
    return {policy, isOld ? stored_->nsswitch : fingerprints_.nsswitch,
            isOld ? stored_->sssd : fingerprints_.sssd, additions_};
}

std::vector<std::string> MachineSnapshot::automaticDirectories() const {
    if (!sssd_) return {};
    return automaticNodes(*sssd_, nodes_, additions_.formerList, policy_.disabled);
}

std::vector<std::string> MachineSnapshot::usableDirectories() const {
    return usableNodes(nodes_, policy_.disabled);
}

bool MachineSnapshot::hasSameDirectoriesAs(const MachineSnapshot& other) const {
    if (!sssd_ || !other.sssd_) return sssd_ == other.sssd_;
    return sssd_ == other.sssd_ || sssd_->domains() == other.sssd_->domains();
}

PolicyInputs MachineSnapshot::inputs() const {
    raise(nsswitchTrouble_);
    raise(sssdTrouble_);
    return {*nsswitch_, *sssd_, nodes_, additions_.formerList};
}

} // namespace corvane::haldend
