#pragma once

#include "haldend/nodes/EngineNode.h"
#include "haldend/records/AccountFiles.h"

namespace corvane::haldend {

/// The users and groups of the machine's own files.
class LocalNode final : public EngineNode {
public:
    using EngineNode::EngineNode;
    [[nodiscard]] halden::RecordList fetch(const halden::QueryParameters& parameters, bool) override {
        return accountRecords(engine().machine().folder(), parameters);
    }
};

} // namespace corvane::haldend
