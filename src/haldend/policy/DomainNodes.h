#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "haldend/files/SssdFile.h"
#include "haldend/policy/Connectors.h"

namespace corvane::haldend {

inline constexpr std::string_view localNodeName = "/Local/Accounts";
inline constexpr std::string_view filesNodeName = "/BSD/Files";
inline constexpr std::string_view searchNodeName = "/Search";
inline constexpr std::string_view contactsNodeName = "/Contacts";
/// The machine's own files, in the order in which they are searched.
[[nodiscard]] const std::vector<std::string>& localNodeNames();

/// A directory that the machine knows: one domain section under the name that people see.
struct DomainNode {
    std::string name;      ///< "/LDAP/ldap.example.com", "/AD/example.com", "/IPA/corp.example.com"
    std::string connector; ///< "LDAP", "AD", or, without a connector of that name, the provider
    SssdDomain domain;

    /// False for one that another program configures, which is shown and can be put on a policy or taken off.
    [[nodiscard]] bool isManaged() const {
        return connector == halden::connector::ldap || connector == halden::connector::activeDirectory;
    }
};

/// The directories of a configuration in the file's order; what SSSD can't serve is none.
/// An LDAP node is named after the host of its first URI, with the port when that isn't the usual one, or
/// after the section when there is no host; a name that is taken gets the section after it.
[[nodiscard]] std::vector<DomainNode> domainNodes(const SssdFile& sssd);
/// A sentence for each section that isn't a directory, and for each listed name without one, with the reason.
[[nodiscard]] std::vector<std::string> skippedDomains(const SssdFile& sssd);

/// "LDAP" of "/LDAP/ldap.example.com".
[[nodiscard]] std::string connectorOf(std::string_view nodeName);

} // namespace corvane::haldend
