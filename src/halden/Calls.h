#pragma once

#include <cstdint>
#include <string_view>

namespace corvane::halden {

/// Numbered requests that a directory service answers. The program and the service share these numbers; those
/// about LDAP servers are plug-ins' as well, and are in sdk/LdapServerCalls.h.
namespace callCode {
// To a search node: the mode of its policy, with the authorization alone as the request.
inline constexpr std::int32_t automaticPolicy = 111;
inline constexpr std::int32_t localPolicy = 222;
inline constexpr std::int32_t customPolicy = 333;
/// To a search node: the authorization, and the custom list as a property list.
inline constexpr std::int32_t replaceCustomList = 444;
/// To a configuration node: the value at a key path of the network configuration, as a property list.
inline constexpr std::int32_t keyPathValue = 445;
/// To a configuration node: the value of a top-level key of the network configuration, as text.
inline constexpr std::int32_t keyValue = 447;
/// To a configuration node: this number plus the length of a connector's version text, in characters, flips
/// that connector.
inline constexpr std::int32_t flipConnectorBase = 1000;
} // namespace callCode

/// What the dynamic store signals when a search policy has changed.
inline constexpr std::string_view searchPolicyChangedKey =
    "com.velmora.DirectoryService.NotifyTypeStandard:SearchPolicyChanged";

} // namespace corvane::halden
