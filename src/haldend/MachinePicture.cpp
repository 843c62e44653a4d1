#include "haldend/MachinePicture.h"

#include "haldend/Failure.h"
#include "haldend/PolicyStore.h"

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

/// The stored policy where the files are still those that it was stored with, else what the files say now.
MachinePolicy policyFor(const std::optional<std::string>& stored, const std::string& path,
                        const PolicyGround& ground, const MachinePicture::Fingerprints& now,
                        const platform::PropertyListCodec& codec) {
    if (!stored) return derivedPolicy({}, ground);
    const auto known = storedPolicy(*stored, path, codec);
    const bool isUntouched = known.nsswitch == now[0] && known.sssd == now[1];
    return isUntouched ? known.policy : derivedPolicy(known.policy, ground);
}

} // namespace

MachinePicture::Stamps MachinePicture::stamps(const MachineFolder& folder) {
    Stamps stamps;
    (void)troubleOf([&] {
        stamps = {folder.stamp(machineFile::nsswitch), folder.stamp(machineFile::sssd),
                  folder.stamp(machineFile::policies)};
    });
    return stamps;
}

MachinePicture MachinePicture::read(const MachineFolder& folder, const std::shared_ptr<Lenses>& lenses,
                                    const platform::PropertyListCodec& codec) {
    MachinePicture picture;
    picture.stamps_ = stamps(folder);
    picture.nsswitchTrouble_ = troubleOf([&] {
        const auto text = folder.read(machineFile::nsswitch);
        picture.fingerprints_[0] = Fingerprint::of(text);
        picture.nsswitch_.emplace(lenses, text.value_or(""), folder.pathOf(machineFile::nsswitch));
    });
    picture.sssdTrouble_ = troubleOf([&] {
        const auto text = folder.read(machineFile::sssd);
        picture.fingerprints_[1] = Fingerprint::of(text);
        picture.sssd_.emplace(lenses, text.value_or(""), folder.pathOf(machineFile::sssd));
        picture.nodes_ = domainNodes(*picture.sssd_);
    });
    picture.policyTrouble_ = troubleOf([&] {
        const auto stored = folder.read(machineFile::policies);
        picture.fingerprints_[2] = Fingerprint::of(stored);
        const auto path = folder.pathOf(machineFile::policies);
        if (stored) {
            const auto known = storedPolicy(*stored, path, codec);
            picture.storedDisabled_ = known.policy.disabled;
            picture.additions_ = known.added;
        }
        picture.policy_ = policyFor(stored, path, picture.ground(), picture.fingerprints_, codec);
    });
    return picture;
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
    return {*nsswitch_, *sssd_, nodes_};
}

} // namespace corvane::haldend
