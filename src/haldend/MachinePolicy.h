#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "haldend/Connectors.h"
#include "haldend/DomainNodes.h"
#include "haldend/NsswitchFile.h"
#include "haldend/SssdFile.h"

namespace corvane::haldend {

enum class PolicyMode { automatic = 1, localOnly = 2, custom = 3 };

/// One search policy as it is stored.
struct SearchPolicy {
    PolicyMode mode = PolicyMode::localOnly;
    std::vector<std::string> custom; ///< the administrator's list; for authentication without the local nodes
    friend bool operator==(const SearchPolicy&, const SearchPolicy&) = default;
};

/// Everything that the administrator has decided about the machine.
struct MachinePolicy {
    SearchPolicy authentication;
    SearchPolicy contacts;
    DisabledConnectors disabled;
    friend bool operator==(const MachinePolicy&, const MachinePolicy&) = default;
};

/// The machine's directories and files that a policy is about; borrowed for one call.
struct PolicyGround {
    const NsswitchFile& nsswitch;
    const SssdFile& sssd;
    const std::vector<DomainNode>& nodes; ///< of `sssd`, whatever their connectors
};

/// Names of the directories whose connector is on, in the file's order.
[[nodiscard]] std::vector<std::string> availableNodes(const std::vector<DomainNode>& nodes,
                                                      const DisabledConnectors& disabled);
/// The directories that the authentication policy consults, in order, without the local nodes.
[[nodiscard]] std::vector<std::string> activeDirectories(const MachinePolicy& policy,
                                                         const std::vector<DomainNode>& nodes);
/// Whether the machine must look users up in SSSD. Sections that are no nodes of ours count in automatic mode,
/// so that a policy that was never touched doesn't lock their users out.
[[nodiscard]] bool needsSssd(const MachinePolicy& policy, const PolicyGround& ground);
/// The names for the `domains` line, none when the line stays as it is (SSSD doesn't start with an empty one).
[[nodiscard]] std::optional<std::vector<std::string>> domainsFor(const MachinePolicy& policy, const PolicyGround& ground);

/// True when the files say what the policy says.
[[nodiscard]] bool agrees(const MachinePolicy& policy, const PolicyGround& ground);
/// The policy that the files stand for. What the files don't tell is taken over from `known`.
[[nodiscard]] MachinePolicy derivedPolicy(const MachinePolicy& known, const PolicyGround& ground);

} // namespace corvane::haldend
