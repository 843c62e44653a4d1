#include "haldend/ldap/LdapSection.h"

#include <algorithm>
#include <charconv>

#include "haldend/ldap/LdapSchema.h"

namespace corvane::haldend {
namespace {

int numberIn(const SssdDomain& domain, std::string_view key, int fallback) {
    const auto text = domain.option(key);
    int number = 0;
    const auto [end, status] = std::from_chars(text.data(), text.data() + text.size(), number);
    return status == std::errc() && end == text.data() + text.size() && number > 0 ? number : fallback;
}

int scopeFrom(std::string_view text) {
    return text == "base" ? 0 : text == "onelevel" || text == "one" ? 1 : 2;
}

/// SSSD's form: BASE or BASE?SCOPE?FILTER, several of the latter joined by further question marks.
std::vector<LdapSearchBase> basesFrom(const std::string& text) {
    std::vector<std::string> parts;
    for (std::size_t start = 0; !text.empty() && start <= text.size();) {
        const auto end = std::min(text.find('?', start), text.size());
        parts.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    std::vector<LdapSearchBase> bases;
    for (std::size_t i = 0; i < parts.size(); i += 3)
        bases.push_back({parts[i], scopeFrom(i + 1 < parts.size() ? parts[i + 1] : ""),
                         i + 2 < parts.size() ? parts[i + 2] : ""});
    return bases;
}

void readSignIn(LdapSection& section, const SssdDomain& domain) {
    section.bindName = domain.option("ldap_default_bind_dn");
    section.passwordType = domain.option("ldap_default_authtok_type", "password");
    section.hasPassword = !domain.option("ldap_default_authtok").empty();
    if (section.isPasswordReadable()) section.password = domain.option("ldap_default_authtok");
}

} // namespace

LdapSection LdapSection::from(const SssdDomain& domain) {
    LdapSection section;
    section.name = domain.name;
    section.options = domain;
    section.uris = commaSeparated(domain.option("ldap_uri"));
    section.startTls = isTrueOption(domain.option("ldap_id_use_start_tls"));
    section.caFile = domain.option("ldap_tls_cacert");
    readSignIn(section, domain);
    section.searchBase = domain.option("ldap_search_base");
    section.userBases = basesFrom(domain.option("ldap_user_search_base", section.searchBase));
    section.groupBases = basesFrom(domain.option("ldap_group_search_base", section.searchBase));
    section.schema = ldapSchema(domain);
    section.computesNumbers = isTrueOption(domain.option("ldap_id_mapping"));
    section.connectTimeout = numberIn(domain, "ldap_network_timeout", usualConnectTimeout);
    section.searchTimeout =
        numberIn(domain, "ldap_search_timeout", numberIn(domain, "ldap_opt_timeout", usualSearchTimeout));
    section.pageSize = numberIn(domain, "ldap_page_size", section.pageSize);
    return section;
}

} // namespace corvane::haldend
