#include "haldend/nodes/NodeFactory.h"

#include <algorithm>

#include "halden/ConnectorNames.h"
#include "haldend/nodes/ConfigNode.h"
#include "haldend/nodes/LdapNode.h"
#include "haldend/nodes/LocalNode.h"
#include "haldend/nodes/SearchNode.h"
#include "haldend/nodes/SssdOnlyNode.h"
#include "haldend/storage/Failure.h"

namespace corvane::haldend {
namespace {

Failure unknown(const std::string& name, const std::string& reason, const std::string& recovery) {
    return {halden::ErrorCode::nodeUnknown, "The node \"" + name + "\" can't be opened.", reason, recovery};
}

std::shared_ptr<EngineNode> directoryNamed(const std::shared_ptr<Engine>& engine, const std::string& name) {
    const auto& snapshot = engine->machine().snapshot();
    const auto& nodes = snapshot.nodes();
    const auto found = std::ranges::find(nodes, name, &DomainNode::name);
    if (found == nodes.end())
        throw unknown(name, "This machine's configuration has no directory of that name.",
                      "Check whether it was renamed or removed, and take it off the search policy if so.");
    if (snapshot.storedPolicy().disabled.contains(found->connector))
        throw unknown(name, "The connector " + found->connector + " is switched off.",
                      "Switch it on in the Services pane.");
    if (found->connector != halden::connector::ldap) return std::make_shared<SssdOnlyNode>(engine, *found);
    return std::make_shared<LdapNode>(engine, *found);
}

} // namespace

std::shared_ptr<EngineNode> nodeOfType(const std::shared_ptr<Engine>& engine, halden::NodeType type) {
    switch (type) {
    case halden::NodeType::localNodes:
        return std::make_shared<LocalNode>(engine, std::string(localNodeName));
    case halden::NodeType::configNode:
        return std::make_shared<ConfigNode>(engine);
    case halden::NodeType::authenticationSearchNode:
        return std::make_shared<SearchNode>(engine, SearchNode::Purpose::authentication);
    case halden::NodeType::contactsSearchNode:
        return std::make_shared<SearchNode>(engine, SearchNode::Purpose::contacts);
    }
    throw unknown("type " + std::to_string(static_cast<unsigned>(type)),
                  "This service has no node of that type.",
                  "Use a service of the same version as this program.");
}

std::shared_ptr<EngineNode> nodeNamed(const std::shared_ptr<Engine>& engine, const std::string& name) {
    if (name == localNodeName || name == filesNodeName) return std::make_shared<LocalNode>(engine, name);
    if (name == searchNodeName) return nodeOfType(engine, halden::NodeType::authenticationSearchNode);
    if (name == contactsNodeName) return nodeOfType(engine, halden::NodeType::contactsSearchNode);
    if (name == ConfigNode::nodeName) return nodeOfType(engine, halden::NodeType::configNode);
    return directoryNamed(engine, name);
}

std::vector<std::string> nodeNames(Engine& engine) {
    const auto& snapshot = engine.machine().snapshot();
    auto names = localNodeNames();
    for (auto& name : usableNodes(snapshot.nodes(), snapshot.storedPolicy().disabled))
        names.push_back(std::move(name));
    names.emplace_back(searchNodeName);
    names.emplace_back(contactsNodeName);
    return names;
}

} // namespace corvane::haldend
