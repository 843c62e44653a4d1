#pragma once

#include <memory>
#include <string>
#include <vector>

#include "haldend/nodes/EngineNode.h"

namespace corvane::haldend {

/// The node of a type or name. Throw `Failure` (`nodeUnknown`) when the machine has none, or when its
/// connector is switched off.
[[nodiscard]] std::shared_ptr<EngineNode> nodeOfType(const std::shared_ptr<Engine>& engine,
                                                     halden::NodeType type);
[[nodiscard]] std::shared_ptr<EngineNode> nodeNamed(const std::shared_ptr<Engine>& engine,
                                                    const std::string& name);
/// Names of all nodes that are on: the machine's own, the directories, the search nodes.
[[nodiscard]] std::vector<std::string> nodeNames(Engine& engine);

} // namespace corvane::haldend
