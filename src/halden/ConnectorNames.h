#pragma once

#include <string_view>

/// Names of connectors that the program and the service treat in some way of their own. A node's name begins
/// with its connector's, as in "/LDAP/ldap.example.com".
namespace corvane::halden::connector {

inline constexpr std::string_view local = "Local";
inline constexpr std::string_view bsd = "BSD";
inline constexpr std::string_view ldap = "LDAP"; ///< its directories are servers
inline constexpr std::string_view activeDirectory = "AD";
// The two search nodes.
inline constexpr std::string_view search = "Search";
inline constexpr std::string_view contacts = "Contacts";
/// The zeroconf service-discovery connector, and what older services call it.
inline constexpr std::string_view zeroconf = "Zeroconf";
inline constexpr std::string_view formerZeroconf = "ZeroconfDiscovery";
/// A connector of older services that has nothing to configure and is never shown.
inline constexpr std::string_view neverShown = "FlatFile";

} // namespace corvane::halden::connector
