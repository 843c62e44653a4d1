#pragma once

#include <optional>

#include "haldend/nodes/EngineNode.h"
#include "haldend/policy/Connectors.h"

namespace corvane::haldend {

/// The service's own configuration: the connectors as records, the names of the record and attribute types
/// that it knows, the calls that switch a connector (1000 and the length of its version text), and those
/// about LDAP servers (sdk/LdapServerCalls.h).
class ConfigNode final : public EngineNode {
public:
    static constexpr const char* nodeName = "/Configure";
    explicit ConfigNode(std::shared_ptr<Engine> engine) : EngineNode(std::move(engine), nodeName) {}
    [[nodiscard]] halden::RecordList fetch(const halden::QueryParameters& parameters,
                                           bool allowPartial) override;

protected:
    /// The version of the machine's operating system; absent when the machine doesn't say.
    [[nodiscard]] AttributeMap details() override;
    [[nodiscard]] std::vector<std::string> subnodes() override;
    /// Flips a connector, where the request is the 32-byte external form alone and the reply is empty; or
    /// one of the calls about LDAP servers.
    util::Bytes call(std::int32_t code, util::BytesView request) override;

private:
    std::optional<util::Bytes> ldapCall(std::int32_t code, util::BytesView request);
};

/// The external form at the front of a request; throws `Failure` when the request is shorter.
[[nodiscard]] util::BytesView authorizationIn(util::BytesView request);
/// The same for a request that holds nothing else; throws `Failure` when it is longer.
[[nodiscard]] util::BytesView soleAuthorizationIn(util::BytesView request);

} // namespace corvane::haldend
