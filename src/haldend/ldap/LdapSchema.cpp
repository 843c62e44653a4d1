#include "haldend/ldap/LdapSchema.h"

#include <algorithm>
#include <cctype>
#include <iterator>

namespace corvane::haldend {
namespace {

/// One option and its defaults.
struct Default {
    std::string_view option;
    std::string_view rfc2307, rfc2307bis, activeDirectory;
};

constexpr Default defaults[] = {
    {"ldap_user_object_class", "posixAccount", "posixAccount", "user"},
    {"ldap_user_name", "uid", "uid", "sAMAccountName"},
    {"ldap_user_fullname", "cn", "cn", "name"},
    {"ldap_user_uid_number", "uidNumber", "uidNumber", "uidNumber"},
    {"ldap_user_gid_number", "gidNumber", "gidNumber", "gidNumber"},
    {"ldap_user_home_directory", "homeDirectory", "homeDirectory", "unixHomeDirectory"},
    {"ldap_user_shell", "loginShell", "loginShell", "loginShell"},
    {"ldap_user_email", "mail", "mail", "mail"},
    {"ldap_group_object_class", "posixGroup", "posixGroup", "group"},
    {"ldap_group_name", "cn", "cn", "sAMAccountName"},
    {"ldap_group_gid_number", "gidNumber", "gidNumber", "gidNumber"},
    {"ldap_group_member", "memberUid", "member", "member"},
    {"ldap_user_objectsid", "", "", "objectSID"},
    {"ldap_user_primary_group", "", "", "primaryGroupID"},
    {"ldap_group_objectsid", "", "", "objectSID"},
};

} // namespace

std::string ldapName(const SssdDomain& domain, std::string_view option) {
    const auto found = std::ranges::find(defaults, option, &Default::option);
    if (found == std::end(defaults)) return domain.option(option);
    const auto schema = ldapSchema(domain);
    if (schema == "ad") return domain.option(option, found->activeDirectory);
    return domain.option(option, schema == "rfc2307bis" ? found->rfc2307bis : found->rfc2307);
}

std::string ldapSchema(const SssdDomain& domain) {
    return foldedCase(domain.option("ldap_schema", "rfc2307"));
}

bool isTrueOption(std::string_view value) {
    std::string lower(value);
    std::ranges::transform(lower, lower.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return lower == "true" || lower == "yes" || lower == "1" || lower == "on";
}

} // namespace corvane::haldend
