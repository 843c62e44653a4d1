#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "haldend/files/NsswitchFile.h"
#include "haldend/files/SssdFile.h"
#include "haldend/policy/Connectors.h"
#include "haldend/policy/DomainNodes.h"

namespace corvane::haldend {

enum class PolicyMode { automatic = 1, localOnly = 2, custom = 3 };

/// One search policy as it is stored.
struct StoredSearchPolicy {
    PolicyMode mode = PolicyMode::localOnly;
    std::vector<std::string> custom; ///< the administrator's list; for authentication without the local nodes
    bool hasCustom = false; ///< false: no list was ever stored, and what Automatic uses is reported instead
    friend bool operator==(const StoredSearchPolicy&, const StoredSearchPolicy&) = default;
};

/// Everything that the administrator has decided about the machine.
struct MachinePolicy {
    StoredSearchPolicy authentication;
    StoredSearchPolicy contacts;
    DisabledConnectors disabled;
    friend bool operator==(const MachinePolicy&, const MachinePolicy&) = default;
};

/// The machine's directories and files that a policy is about; borrowed for one call.
struct PolicyInputs {
    const NsswitchFile& nsswitch;
    const SssdFile& sssd;
    const std::vector<DomainNode>& nodes;       ///< of `sssd`, whatever their connectors
    const std::vector<std::string>& formerList; ///< names on the line before this service took some off
};

/// Names of the directories that can be put on a policy: those whose connector is on, in the file's order.
[[nodiscard]] std::vector<std::string> usableNodes(const std::vector<DomainNode>& nodes,
                                                   const DisabledConnectors& disabled);
/// Names of the directories that Automatic uses: the managed ones whose connector is on, in the file's order,
/// and those of other programs that are served, in their places on the `domains` line.
[[nodiscard]] std::vector<std::string> automaticNodes(const PolicyInputs& inputs,
                                                      const DisabledConnectors& disabled);
[[nodiscard]] std::vector<std::string> automaticNodes(const SssdFile& sssd,
                                                      const std::vector<DomainNode>& nodes,
                                                      const std::vector<std::string>& formerList,
                                                      const DisabledConnectors& disabled);
/// The directories that one policy of the machine consults, in order, without the local nodes.
[[nodiscard]] std::vector<std::string> consultedNodes(const StoredSearchPolicy& policy,
                                                      const DisabledConnectors& disabled,
                                                      const PolicyInputs& inputs);
/// The directories that the authentication policy consults, in order, without the local nodes.
[[nodiscard]] std::vector<std::string> activeDirectories(const MachinePolicy& policy,
                                                         const PolicyInputs& inputs);
/// The names for the `domains` line, none when the line stays as it is: no directory is consulted then.
[[nodiscard]] std::vector<std::string> domainsFor(const MachinePolicy& policy, const PolicyInputs& inputs);
/// The names of the line in their full order: those on it now, with those of `formerList` in their places
/// where the order hasn't been changed since, else after them.
[[nodiscard]] std::vector<std::string> fullList(const std::vector<std::string>& now,
                                                const std::vector<std::string>& formerList);
/// The directories that the machine consults now, by its files.
[[nodiscard]] std::vector<std::string> servedNodes(const PolicyInputs& inputs);

/// The policy that the files are an expression of: `known` where they agree with it, else one derived from
/// them. What the files don't say is taken over from `known`.
[[nodiscard]] MachinePolicy derivedPolicy(const MachinePolicy& known, const PolicyInputs& inputs);

} // namespace corvane::haldend
