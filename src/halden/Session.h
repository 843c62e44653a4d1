#pragma once

#include <memory>
#include <string>
#include <vector>

#include "halden/Node.h"

namespace corvane::halden {

/// A connection to one machine's directory service. Shared: whoever holds a reference keeps it open.
/// Errors as for `Record`.
class Session {
public:
    virtual ~Session() = default;
    /// Null on failure.
    [[nodiscard]] virtual std::shared_ptr<Node> nodeWithType(NodeType type, Error* error) = 0;
    /// Null on failure.
    [[nodiscard]] virtual std::shared_ptr<Node> nodeWithName(const std::string& name, Error* error) = 0;
    /// Every node's name in the service's order. Null on failure; may raise `Exception`.
    [[nodiscard]] virtual util::Array nodeNames(Error* error) = 0;
};

/// Where sessions come from. Lives as long as the program.
class Framework {
public:
    virtual ~Framework() = default;
    /// The session with this machine's service, the same one at every call while it is in order; null when
    /// the service isn't available.
    [[nodiscard]] virtual std::shared_ptr<Session> defaultSession() = 0;
};

} // namespace corvane::halden
