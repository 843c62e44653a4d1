#include "haldend/policy/MachinePolicy.h"

#include <algorithm>

namespace corvane::haldend {
namespace {

template <typename Range, typename T>
bool contains(const Range& range, const T& value) {
    return std::ranges::find(range, value) != std::ranges::end(range);
}

const DomainNode* nodeOfSection(const std::vector<DomainNode>& nodes, const std::string& section) {
    const auto found =
        std::ranges::find_if(nodes, [&](const auto& node) { return node.domain.name == section; });
    return found == nodes.end() ? nullptr : &*found;
}

} // namespace

std::vector<std::string> usableNodes(const std::vector<DomainNode>& nodes,
                                     const DisabledConnectors& disabled) {
    std::vector<std::string> names;
    for (const auto& node : nodes)
        if (!disabled.contains(node.connector)) names.push_back(node.name);
    return names;
}

std::vector<std::string> fullList(const std::vector<std::string>& now,
                                  const std::vector<std::string>& formerList) {
    auto next = formerList.begin();
    const bool isPart = std::ranges::all_of(now, [&](const auto& name) {
        next = std::find(next, formerList.end(), name);
        return next != formerList.end() && (++next, true);
    });
    if (isPart) return formerList.empty() ? now : formerList;
    auto names = now;
    for (const auto& name : formerList)
        if (!contains(names, name)) names.push_back(name);
    return names;
}

std::vector<std::string> automaticNodes(const SssdFile& sssd, const std::vector<DomainNode>& nodes,
                                        const std::vector<std::string>& formerList,
                                        const DisabledConnectors& disabled) {
    std::vector<std::string> managed;
    for (const auto& node : nodes)
        if (node.isManaged() && !disabled.contains(node.connector)) managed.push_back(node.name);
    auto line = sssd.listedDomains();
    for (const auto& section : sssd.servedDomains())
        if (!contains(line, section)) line.push_back(section);
    line = fullList(line, formerList);
    std::vector<std::string> names;
    auto next = managed.begin();
    for (const auto& section : line) {
        const auto* node = nodeOfSection(nodes, section);
        if (node && !node->isManaged() && !contains(names, node->name))
            names.push_back(node->name);
        else if (node && node->isManaged() && next != managed.end())
            names.push_back(*next++);
    }
    names.insert(names.end(), next, managed.end());
    return names;
}

std::vector<std::string> automaticNodes(const PolicyInputs& inputs, const DisabledConnectors& disabled) {
    return automaticNodes(inputs.sssd, inputs.nodes, inputs.formerList, disabled);
}

std::vector<std::string> consultedNodes(const StoredSearchPolicy& policy, const DisabledConnectors& disabled,
                                        const PolicyInputs& inputs) {
    if (policy.mode == PolicyMode::localOnly) return {};
    if (policy.mode == PolicyMode::automatic || !policy.hasCustom) return automaticNodes(inputs, disabled);
    const auto usable = usableNodes(inputs.nodes, disabled);
    std::vector<std::string> active;
    for (const auto& name : policy.custom)
        if (contains(usable, name) && !contains(active, name)) active.push_back(name);
    return active;
}

std::vector<std::string> activeDirectories(const MachinePolicy& policy, const PolicyInputs& inputs) {
    return consultedNodes(policy.authentication, policy.disabled, inputs);
}

std::vector<std::string> domainsFor(const MachinePolicy& policy, const PolicyInputs& inputs) {
    std::vector<std::string> names;
    for (const auto& name : activeDirectories(policy, inputs))
        names.push_back(std::ranges::find(inputs.nodes, name, &DomainNode::name)->domain.name);
    return names;
}

std::vector<std::string> servedNodes(const PolicyInputs& inputs) {
    std::vector<std::string> names;
    if (!inputs.nsswitch.usesSssd() || !inputs.sssd.trouble().empty()) return names;
    for (const auto& section : inputs.sssd.servedDomains())
        if (const auto* node = nodeOfSection(inputs.nodes, section)) names.push_back(node->name);
    return names;
}

MachinePolicy derivedPolicy(const MachinePolicy& known, const PolicyInputs& inputs) {
    const auto served = servedNodes(inputs);
    if (activeDirectories(known, inputs) == served) return known;
    auto policy = known;
    for (const auto& name : served)
        policy.disabled.erase(connectorOf(name)); // it is on the machine, so it is on
    if (served == automaticNodes(inputs, policy.disabled) && inputs.nsswitch.usesSssd())
        policy.authentication.mode = PolicyMode::automatic;
    else if (served.empty())
        policy.authentication.mode = PolicyMode::localOnly;
    else
        policy.authentication = {PolicyMode::custom, served, true};
    return policy;
}

} // namespace corvane::haldend
