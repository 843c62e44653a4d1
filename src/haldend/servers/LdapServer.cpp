#include "haldend/servers/LdapServer.h"

#include <algorithm>

#include "haldend/files/LdapUri.h"
#include "haldend/ldap/LdapSection.h"
#include "sdk/LdapServerCalls.h"

namespace corvane::haldend {
namespace {

namespace security = sdk::ldap::security;
namespace schema = sdk::ldap::schema;

/// Addresses that share scheme and port are shown without them; others, and what is no host, as they are.
void readAddresses(LdapServer& server, const std::vector<std::string>& texts) {
    std::vector<LdapUri> uris;
    for (const auto& text : texts)
        uris.push_back(LdapUri::from(text));
    if (uris.empty()) return;
    const auto& first = uris.front();
    server.port = first.scheme.empty() ? 0 : first.port;
    if (first.isLdaps()) server.security = security::ldaps;
    for (std::size_t i = 0; i < uris.size(); ++i) {
        const bool isPlain = uris[i].scheme == first.scheme && uris[i].port == first.port;
        server.addresses.push_back(isPlain ? uris[i].host : texts[i]);
    }
}

/// Writes the lines of one section, each only where it has to be.
class SectionWriter {
public:
    SectionWriter(SssdLines& lines, std::string section) : lines_(lines), section_(std::move(section)) {}

    /// `fallback` is what SSSD does without the line: then it isn't added.
    void put(const char* key, const std::string& value, const std::string& fallback) {
        if (value == fallback && !lines_.has(section_, key)) return;
        lines_.set(section_, key, value);
    }
    /// An empty value takes the line away.
    void putOrRemove(const char* key, const std::string& value) {
        if (value.empty())
            lines_.remove(section_, key);
        else
            lines_.set(section_, key, value);
    }
    void seconds(const char* key, int value, int fallback) {
        put(key, std::to_string(value), std::to_string(fallback));
    }

private:
    SssdLines& lines_;
    std::string section_;
};

void writePassword(SectionWriter& writer, const std::optional<std::string>& password) {
    if (!password) return;
    writer.putOrRemove("ldap_default_authtok_type", password->empty() ? "" : "password");
    writer.putOrRemove("ldap_default_authtok", *password);
}

} // namespace

bool isLdapServer(const SssdDomain& domain) { return domain.option("id_provider") == "ldap"; }

LdapServer LdapServer::from(const SssdDomain& domain) {
    const auto section = LdapSection::from(domain);
    LdapServer server;
    server.name = section.name;
    server.security = section.startTls ? security::startTLS : security::none;
    readAddresses(server, section.uris);
    server.caFile = section.caFile;
    server.baseDN = section.searchBase;
    server.bindDN = section.bindName;
    server.hasPassword = section.hasPassword;
    server.password = section.password;
    server.schema = section.schema;
    server.computesNumbers = section.computesNumbers;
    server.connectTimeout = section.connectTimeout;
    server.searchTimeout = section.searchTimeout;
    return server;
}

std::vector<std::string> LdapServer::uris() const {
    const std::string scheme = security == sdk::ldap::security::ldaps ? "ldaps" : "ldap";
    std::vector<std::string> uris;
    for (const auto& address : addresses) {
        const bool isOdd = address.find("://") != std::string::npos || address == "_srv_";
        uris.push_back(isOdd ? address : LdapUri{scheme, address, port}.text());
    }
    return uris;
}

void writeSection(SssdLines& lines, const LdapServer& server, const std::optional<LdapServer>& before,
                  const std::optional<std::string>& password) {
    const auto section = "domain/" + server.name;
    SectionWriter writer(lines, section);
    if (!before) {
        lines.appendSection(section);
        for (const auto* key : {"id_provider", "auth_provider"})
            lines.set(section, key, "ldap");
    }
    const auto differs = [&](auto LdapServer::*field) {
        return !before || server.*field != (*before).*field;
    };
    const bool isOtherSecurity = differs(&LdapServer::security);
    if (isOtherSecurity || differs(&LdapServer::addresses) || differs(&LdapServer::port))
        writer.putOrRemove("ldap_uri", commaJoined(server.uris()));
    if (isOtherSecurity)
        writer.put("ldap_id_use_start_tls", server.security == security::startTLS ? "true" : "false",
                   "false");
    if (!before) lines.set(section, "ldap_tls_reqcert", "demand");
    if (differs(&LdapServer::caFile)) writer.putOrRemove("ldap_tls_cacert", server.caFile);
    if (differs(&LdapServer::baseDN)) writer.putOrRemove("ldap_search_base", server.baseDN);
    if (differs(&LdapServer::bindDN)) writer.putOrRemove("ldap_default_bind_dn", server.bindDN);
    // A password without a name to go with it is of no use and would be left lying around.
    const bool losesName = server.bindDN.empty() && (differs(&LdapServer::bindDN) || password);
    writePassword(writer, losesName ? std::make_optional<std::string>() : password);
    if (differs(&LdapServer::schema)) writer.put("ldap_schema", server.schema, schema::rfc2307);
    if (differs(&LdapServer::computesNumbers))
        writer.put("ldap_id_mapping", server.computesNumbers ? "true" : "false", "false");
    if (differs(&LdapServer::connectTimeout))
        writer.seconds("ldap_network_timeout", server.connectTimeout, LdapSection::usualConnectTimeout);
    if (differs(&LdapServer::searchTimeout)) { // whichever of the two ends first counts
        writer.seconds("ldap_search_timeout", server.searchTimeout, LdapSection::usualSearchTimeout);
        writer.seconds("ldap_opt_timeout", server.searchTimeout, LdapSection::usualSearchTimeout);
    }
}

} // namespace corvane::haldend
