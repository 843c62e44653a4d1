#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "halden/Error.h"
#include "halden/Names.h"
#include "halden/Record.h"
#include "util/Bytes.h"
#include "util/Containers.h"

namespace corvane::halden {

/// One directory, or one view of the directories, that a session can reach. Errors as for `Record`.
class Node {
public:
    virtual ~Node() = default;
    /// "/Local/Accounts", "/LDAP/ldap.example.com", "/Search" ...
    [[nodiscard]] virtual std::string name() const = 0;

    /// Attribute name to array of values, for the given keys or for all (no list). Keys that the node doesn't
    /// know are left out. Null on failure; a service in trouble may raise `Exception` instead.
    [[nodiscard]] virtual util::Dictionary nodeDetails(const std::optional<std::vector<std::string>>& keys,
                                                       Error* error) = 0;
    /// Names of the nodes below this one. Null on failure.
    [[nodiscard]] virtual util::Array subnodeNames(Error* error) = 0;

    /// Sends a numbered request. The reply may be empty; none (no value) when the service gave no answer.
    /// Whether the call worked is told by `error` alone.
    [[nodiscard]] virtual std::optional<util::Bytes> customCall(std::int32_t code, util::BytesView request,
                                                                Error* error) = 0;

    /// Authenticates this node handle. `items` as `authenticationType` says. False on failure. What a method
    /// of several rounds needs to go on is stored in `continueItems` and `context`, either of which may be
    /// null.
    [[nodiscard]] virtual bool setCredentials(std::string_view recordType,
                                              std::string_view authenticationType, const util::Array& items,
                                              util::Array* continueItems, std::shared_ptr<void>* context,
                                              Error* error) = 0;

    /// Prepares a query. Null on failure.
    [[nodiscard]] virtual std::unique_ptr<Query> query(const QueryParameters& parameters, Error* error) = 0;
};

} // namespace corvane::halden
