#pragma once

#include <array>
#include <string_view>

/// Names of connectors that the program knows by heart.
namespace corvane::plugins::connector {

inline constexpr std::string_view local = "Local";
inline constexpr std::string_view bsd = "BSD";
inline constexpr std::string_view ldap = "LDAP"; ///< its directories are servers
/// The zeroconf service-discovery connector, and what older services call it.
inline constexpr std::string_view zeroconf = "Zeroconf";
inline constexpr std::string_view formerZeroconf = "ZeroconfDiscovery";
/// A connector of older services that has nothing to configure and is never shown.
inline constexpr std::string_view neverShown = "FlatFile";

/// Connectors whose nodes may never stand on a search policy: file sharing, zeroconf and service location of
/// old, and the two search nodes themselves.
inline constexpr std::array<std::string_view, 9> hiddenFromSearchPolicy = {
    "SMB", "NFS", "WebDAV", "WINS", "SLP", zeroconf, formerZeroconf, "Search", "Contacts"};

} // namespace corvane::plugins::connector
