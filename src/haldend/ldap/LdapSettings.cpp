#include "haldend/ldap/LdapSettings.h"

#include <unistd.h>

#include <algorithm>
#include <charconv>

#include "haldend/ldap/LdapSchema.h"
#include "haldend/storage/Failure.h"

namespace corvane::haldend {
namespace {

int seconds(const SssdDomain& domain, std::string_view key, int fallback) {
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

void readCredentials(LdapSettings& settings, const SssdDomain& domain) {
    settings.bindName = domain.option("ldap_default_bind_dn");
    if (settings.bindName.empty()) return;
    if (domain.option("ldap_default_authtok_type", "password") != "password")
        throw Failure(
            halden::ErrorCode::credentials,
            "The directory of section [domain/" + domain.name + "] can't be read.",
            "Its password is stored in a form that only SSSD can read (ldap_default_authtok_type = " +
                domain.option("ldap_default_authtok_type") + ").",
            "Store it as a plain password, or let the server answer anonymous searches.");
    settings.password = domain.option("ldap_default_authtok");
}

} // namespace

std::string certificatePath(const MachineFolder& folder, const std::string& path) {
    if (path.empty()) return path;
    const auto inside = folder.resolved(path);
    return ::access(inside.c_str(), R_OK) == 0 ? inside : path;
}

LdapSettings LdapSettings::from(const SssdDomain& domain, const MachineFolder& folder) {
    LdapSettings settings;
    settings.domain = domain;
    settings.uris = commaSeparated(domain.option("ldap_uri"));
    std::erase(settings.uris, "_srv_");
    if (settings.uris.empty())
        throw Failure(halden::ErrorCode::nodeUnreachable,
                      "The directory of section [domain/" + domain.name + "] can't be reached.",
                      "Its configuration names no server (ldap_uri); SSSD looks one up in the DNS by itself.",
                      "Set ldap_uri in that section of sssd.conf.");
    readCredentials(settings, domain);
    settings.startTls = isTrueOption(domain.option("ldap_id_use_start_tls"));
    settings.caFile = certificatePath(folder, domain.option("ldap_tls_cacert"));
    settings.caFolder = certificatePath(folder, domain.option("ldap_tls_cacertdir"));
    settings.requireCertificate = domain.option("ldap_tls_reqcert");
    settings.networkTimeout = seconds(domain, "ldap_network_timeout", 6);
    settings.operationTimeout =
        seconds(domain, "ldap_search_timeout", seconds(domain, "ldap_opt_timeout", 8));
    settings.pageSize = seconds(domain, "ldap_page_size", 1000);
    const auto base = domain.option("ldap_search_base");
    settings.userBases = basesFrom(domain.option("ldap_user_search_base", base));
    settings.groupBases = basesFrom(domain.option("ldap_group_search_base", base));
    settings.userClass = ldapName(domain, "ldap_user_object_class");
    settings.groupClass = ldapName(domain, "ldap_group_object_class");
    return settings;
}

} // namespace corvane::haldend
