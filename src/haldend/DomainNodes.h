#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "haldend/Connectors.h"
#include "haldend/SssdFile.h"

namespace corvane::haldend {

inline constexpr std::string_view localNodeName = "/Local/Accounts";
inline constexpr std::string_view filesNodeName = "/BSD/Files";
inline constexpr std::string_view searchNodeName = "/Search";
inline constexpr std::string_view contactsNodeName = "/Contacts";
/// The machine's own files, in the order in which they are searched.
[[nodiscard]] const std::vector<std::string>& localNodeNames();

/// A directory that the machine knows: one domain section under the name that people see.
struct DomainNode {
    std::string name;      ///< "/LDAP/ldap.example.com", "/AD/example.com"
    std::string connector; ///< "LDAP" or "AD"
    SssdDomain domain;
};

/// The directories of a configuration in the file's order. Sections of other providers are none.
/// An LDAP node is named after the host of its first URI, with the port when that isn't the usual one, or
/// after the section when there is no host; a name that is taken gets the section behind it.
[[nodiscard]] std::vector<DomainNode> domainNodes(const SssdFile& sssd);

/// "LDAP" of "/LDAP/ldap.example.com".
[[nodiscard]] std::string connectorOf(std::string_view nodeName);

} // namespace corvane::haldend
