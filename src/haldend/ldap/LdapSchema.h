#pragma once

#include <string>
#include <string_view>

#include "haldend/files/SssdFile.h"

namespace corvane::haldend {

/// The class or attribute name that an SSSD option about an LDAP directory stands for: its own value in the
/// section, else what SSSD takes for the section's `ldap_schema`. "" for an option that isn't known and not
/// set.
[[nodiscard]] std::string ldapName(const SssdDomain& domain, std::string_view option);

/// The section's `ldap_schema` in small letters, in which case SSSD doesn't look at it; "rfc2307" without
/// one.
[[nodiscard]] std::string ldapSchema(const SssdDomain& domain);

/// Whether an option's value is one of those that SSSD takes for yes.
[[nodiscard]] bool isTrueOption(std::string_view value);

} // namespace corvane::haldend
