#include "haldend/MachinePolicy.h"

#include <algorithm>

namespace corvane::haldend {
namespace {

template <typename Range, typename T>
bool contains(const Range& range, const T& value) {
    return std::ranges::find(range, value) != std::ranges::end(range);
}

const DomainNode* nodeOfSection(const std::vector<DomainNode>& nodes, const std::string& section) {
    const auto found = std::ranges::find_if(nodes, [&](const auto& node) { return node.domain.name == section; });
    return found == nodes.end() ? nullptr : &*found;
}

/// Our nodes on the `domains` line, in its order, when the machine uses SSSD at all.
std::vector<std::string> directoriesInFiles(const PolicyGround& ground) {
    std::vector<std::string> names;
    if (!ground.nsswitch.usesSssd()) return names;
    for (const auto& section : ground.sssd.listedDomains())
        if (const auto* node = nodeOfSection(ground.nodes, section); node && !contains(names, node->name))
            names.push_back(node->name);
    return names;
}

bool listsForeignDomain(const PolicyGround& ground) {
    return std::ranges::any_of(ground.sssd.listedDomains(),
                               [&](const auto& section) { return !nodeOfSection(ground.nodes, section); });
}

} // namespace

std::vector<std::string> availableNodes(const std::vector<DomainNode>& nodes, const DisabledConnectors& disabled) {
    std::vector<std::string> names;
    for (const auto& node : nodes)
        if (!disabled.contains(node.connector)) names.push_back(node.name);
    return names;
}

std::vector<std::string> activeDirectories(const MachinePolicy& policy, const std::vector<DomainNode>& nodes) {
    const auto available = availableNodes(nodes, policy.disabled);
    if (policy.authentication.mode == PolicyMode::localOnly) return {};
    if (policy.authentication.mode == PolicyMode::automatic) return available;
    std::vector<std::string> active;
    for (const auto& name : policy.authentication.custom)
        if (contains(available, name) && !contains(active, name)) active.push_back(name);
    return active;
}

bool needsSssd(const MachinePolicy& policy, const PolicyGround& ground) {
    if (!activeDirectories(policy, ground.nodes).empty()) return true;
    return policy.authentication.mode == PolicyMode::automatic && listsForeignDomain(ground);
}

std::optional<std::vector<std::string>> domainsFor(const MachinePolicy& policy, const PolicyGround& ground) {
    std::vector<std::string> wanted;
    for (const auto& name : activeDirectories(policy, ground.nodes))
        wanted.push_back(std::ranges::find(ground.nodes, name, &DomainNode::name)->domain.name);
    if (wanted.empty()) return std::nullopt;
    std::vector<std::string> names;
    auto next = wanted.begin();
    for (const auto& section : ground.sssd.listedDomains()) { // foreign sections keep their places
        if (!nodeOfSection(ground.nodes, section)) names.push_back(section);
        else if (next != wanted.end()) names.push_back(*next++);
    }
    names.insert(names.end(), next, wanted.end());
    return names;
}

bool agrees(const MachinePolicy& policy, const PolicyGround& ground) {
    const auto active = activeDirectories(policy, ground.nodes);
    return needsSssd(policy, ground) == ground.nsswitch.usesSssd() && active == directoriesInFiles(ground);
}

MachinePolicy derivedPolicy(const MachinePolicy& known, const PolicyGround& ground) {
    if (agrees(known, ground)) return known;
    auto policy = known;
    const auto inFiles = directoriesInFiles(ground);
    for (const auto& name : inFiles) policy.disabled.erase(connectorOf(name)); // it is on the machine, so it is on
    if (!ground.nsswitch.usesSssd()) {
        policy.authentication.mode = PolicyMode::localOnly;
    } else if (inFiles == availableNodes(ground.nodes, policy.disabled)) {
        policy.authentication.mode = PolicyMode::automatic;
    } else {
        policy.authentication = {PolicyMode::custom, inFiles};
    }
    return policy;
}

} // namespace corvane::haldend
