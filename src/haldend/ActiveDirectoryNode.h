#pragma once

#include "haldend/DomainNodes.h"
#include "haldend/EngineNode.h"

namespace corvane::haldend {

/// A domain that SSSD joined with the machine's own Kerberos account. It stands on policies like any other
/// node; its records can only be read by SSSD, which holds that account.
class ActiveDirectoryNode final : public EngineNode {
public:
    ActiveDirectoryNode(std::shared_ptr<Engine> engine, const DomainNode& node);
    [[nodiscard]] halden::RecordList fetch(const halden::QueryParameters& parameters, bool) override;
};

} // namespace corvane::haldend
