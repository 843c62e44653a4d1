#pragma once

#include <string>

#include "haldend/files/DomainsLine.h"
#include "haldend/policy/MachinePolicy.h"
#include "haldend/storage/MachineFolder.h"
#include "platform/PropertyListCodec.h"

namespace corvane::haldend {

/// The stored policy and the contents of the files that belong to it.
struct StoredPolicy {
    MachinePolicy policy;
    Fingerprint nsswitch;
    Fingerprint sssd;
    MachineAdditions added;
};

/// The service's own file as an XML property list, so that people can read it.
[[nodiscard]] std::string storedText(const StoredPolicy& stored, const platform::PropertyListCodec& codec);
/// Throws `Failure` when the text isn't one of ours; `path` names the file in it.
[[nodiscard]] StoredPolicy storedPolicy(const std::string& text, const std::string& path,
                                        const platform::PropertyListCodec& codec);

} // namespace corvane::haldend
