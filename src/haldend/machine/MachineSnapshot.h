#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "halden/Error.h"
#include "haldend/files/SssdFileReader.h"
#include "haldend/policy/MachinePolicy.h"
#include "haldend/policy/PolicyStore.h"
#include "haldend/storage/MachineFolder.h"
#include "platform/PropertyListCodec.h"

namespace corvane::haldend {

/// The fingerprint of sssd.conf together with its snippets; of the file alone where there are none.
[[nodiscard]] Fingerprint sssdFingerprint(const std::optional<std::string>& text,
                                          const std::vector<SssdSnippet>& snippets);

/// What a machine folder said at one moment: its configuration files, its directories and its policy. Damage
/// is part of it, so that what isn't affected still works. Immutable once read.
class MachineSnapshot {
public:
    struct Fingerprints {
        Fingerprint nsswitch;
        Fingerprint sssd; ///< of sssd.conf with its snippets
        Fingerprint policies;
        friend bool operator==(const Fingerprints&, const Fingerprints&) = default;
    };
    struct Stamps {
        FileStamp nsswitch;
        FileStamp sssd;
        FileStamp policies;
        FileStamp snippets; ///< one for all snippets of sssd.conf
        friend bool operator==(const Stamps&, const Stamps&) = default;
    };

    /// Reads the folder, sssd.conf through `reader`. Never throws for what the folder holds.
    [[nodiscard]] static MachineSnapshot
    read(const MachineFolder& folder, const platform::PropertyListCodec& codec, SssdFileReader& reader);
    [[nodiscard]] static Stamps stamps(const MachineFolder& folder);

    [[nodiscard]] const Fingerprints& fingerprints() const { return fingerprints_; }
    [[nodiscard]] const Stamps& stampsAtReading() const { return stamps_; }
    /// These throw `Failure` when what they need couldn't be read.
    [[nodiscard]] const std::vector<DomainNode>& nodes() const;
    [[nodiscard]] const SssdFile& sssd() const;
    [[nodiscard]] const MachinePolicy& policy() const;
    [[nodiscard]] PolicyInputs inputs() const;
    /// The policy where the files can be read, else as it was stored last: enough for all but the login
    /// policy and the connectors, which the files express. Throws `Failure` when the store can't be read.
    [[nodiscard]] const MachinePolicy& storedPolicy() const;
    /// For a change that leaves the files alone: the contents that the policy agrees with.
    [[nodiscard]] StoredPolicy asStored(const MachinePolicy& policy) const;
    [[nodiscard]] bool knowsDirectories() const { return sssd_ != nullptr; }
    /// These are empty where sssd.conf can't be read.
    [[nodiscard]] std::string sssdText() const { return sssd_ ? sssd_->text() : std::string(); }
    [[nodiscard]] const std::vector<DomainNode>& knownNodes() const { return nodes_; }
    [[nodiscard]] std::vector<std::string> automaticDirectories() const;
    [[nodiscard]] std::vector<std::string> usableDirectories() const;
    /// What of the configuration isn't used, and why: sentences for people.
    [[nodiscard]] const std::vector<std::string>& remarks() const { return remarks_; }
    [[nodiscard]] bool hasSssdFile() const { return hasSssdFile_; }
    /// True when both hold the same directories with the same options.
    [[nodiscard]] bool hasSameDirectoriesAs(const MachineSnapshot& other) const;
    /// What this service has added to the machine; nothing where that can't be read.
    [[nodiscard]] const MachineAdditions& additions() const { return additions_; }
    /// Connectors that are switched off. Where the policy can't be read this is what was stored last, or
    /// none: the connectors are there in any case.
    [[nodiscard]] const DisabledConnectors& disabledConnectors() const { return policy_.disabled; }

private:
    void readNsswitch(const MachineFolder& folder);
    void readSssd(const MachineFolder& folder, SssdFileReader& reader);
    void readStore(const MachineFolder& folder, const platform::PropertyListCodec& codec);
    void derivePolicy();

    std::optional<NsswitchFile> nsswitch_;
    std::shared_ptr<const SssdFile> sssd_; ///< null when it can't be read
    std::vector<DomainNode> nodes_;
    MachinePolicy policy_;
    std::optional<StoredPolicy> stored_; ///< none when nothing was ever stored, or it can't be read
    MachineAdditions additions_;
    std::vector<std::string> remarks_;
    bool hasSssdFile_ = false;
    std::optional<halden::Error> nsswitchTrouble_, sssdTrouble_, storeTrouble_;
    Fingerprints fingerprints_;
    Stamps stamps_;
};

} // namespace corvane::haldend
