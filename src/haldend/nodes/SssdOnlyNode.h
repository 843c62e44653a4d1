#pragma once

#include "haldend/nodes/EngineNode.h"
#include "haldend/policy/DomainNodes.h"

namespace corvane::haldend {

/// A directory whose records only SSSD can read: a domain that was joined with the machine's own account, or
/// one of a provider that isn't managed here. It can be put on policies like any other node.
class SssdOnlyNode final : public EngineNode {
public:
    SssdOnlyNode(std::shared_ptr<Engine> engine, const DomainNode& node);
    [[nodiscard]] halden::RecordList fetch(const halden::QueryParameters& parameters, bool) override;
};

} // namespace corvane::haldend
