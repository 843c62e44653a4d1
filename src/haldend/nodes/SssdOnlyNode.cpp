#include "haldend/nodes/SssdOnlyNode.h"

#include "haldend/storage/Failure.h"

namespace corvane::haldend {

SssdOnlyNode::SssdOnlyNode(std::shared_ptr<Engine> engine, const DomainNode& node)
    : EngineNode(std::move(engine), node.name) {}

halden::RecordList SssdOnlyNode::fetch(const halden::QueryParameters& parameters, bool) {
    if (!wantsType(parameters, halden::recordType::users) &&
        !wantsType(parameters, halden::recordType::groups))
        return {};
    throw Failure(
        halden::ErrorCode::notPermitted, "The records of " + name() + " can't be read from here.",
        "The domain answers only to the machine's own Kerberos account, which SSSD alone uses.",
        "Look its users up with \"getent passwd NAME\" while the node is on the authentication policy.");
}

} // namespace corvane::haldend
