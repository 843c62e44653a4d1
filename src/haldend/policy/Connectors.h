#pragma once

#include <array>
#include <set>
#include <string>
#include <string_view>

#include "halden/Calls.h"
#include "halden/ConnectorNames.h"

namespace corvane::haldend {

/// A kind of directory that the service can connect to.
struct Connector {
    std::string_view name;
    /// The lengths of these texts differ from each other: a connector's enable call is made from the length.
    std::string_view version;
    bool canBeSwitchedOff;

    [[nodiscard]] constexpr int callCode() const {
        return halden::callCode::flipConnectorBase + static_cast<int>(version.size());
    }
};

inline constexpr std::array<Connector, 6> connectors{{
    {halden::connector::local, "1.0", false},
    {halden::connector::bsd, "10.0", false},
    {halden::connector::ldap, "1.0.0", true},
    {halden::connector::activeDirectory, "1.0.10", true},
    {halden::connector::search, "1.0.0.0", false},
    {halden::connector::contacts, "1.0.0.10", false},
}};

/// Names of connectors that the administrator has switched off.
using DisabledConnectors = std::set<std::string, std::less<>>;

} // namespace corvane::haldend
