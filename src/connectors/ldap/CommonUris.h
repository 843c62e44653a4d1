#pragma once

#include <optional>
#include <string>
#include <vector>

namespace corvane::connectors::ldap {

/// What several LDAP URIs have in common.
struct CommonUris {
    std::vector<std::string> hosts; ///< IPv6 addresses without brackets
    bool isLdaps = false;
    int port = 0; ///< 0 for the standard one
};

/// None unless every text is "ldap://" or "ldaps://" with a host, and perhaps a port and a path, and all of
/// them have scheme and port in common. The scheme's case doesn't matter.
[[nodiscard]] std::optional<CommonUris> commonUris(const std::vector<std::string>& texts);

} // namespace corvane::connectors::ldap
