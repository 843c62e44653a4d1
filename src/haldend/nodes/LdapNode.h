#pragma once

#include "haldend/nodes/EngineNode.h"
#include "haldend/policy/DomainNodes.h"

namespace corvane::haldend {

/// One LDAP directory: users and groups as RFC 2307 lays them out, under the attribute names that SSSD is
/// configured with. Each query opens a connection of its own and blocks until the server has answered or the
/// configured time is up.
class LdapNode final : public EngineNode {
public:
    LdapNode(std::shared_ptr<Engine> engine, const DomainNode& node);
    [[nodiscard]] halden::RecordList fetch(const halden::QueryParameters& parameters,
                                           bool allowPartial) override;

private:
    SssdDomain domain_;
};

} // namespace corvane::haldend
