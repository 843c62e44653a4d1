#include "haldend/files/LdapUri.h"

#include <gtest/gtest.h>

#include "haldend/ldap/LdapSchema.h"
#include "haldend/policy/DomainNodes.h"
#include "haldend/servers/LdapServer.h"
#include "sdk/LdapServerCalls.h"

using namespace corvane;
using namespace corvane::haldend;

namespace {

SssdFile sssd(const std::string& options) {
    return {"[sssd]\ndomains = a\n[domain/a]\nid_provider = ldap\n" + options, {}, "sssd.conf"};
}

} // namespace

TEST(LdapUri, parts_areReadInAnyCase) {
    struct Row {
        const char *text, *scheme, *host;
        int port;
        const char* hostAndPort;
    };
    for (const auto& row : {Row{"ldap://one.example.com", "ldap", "one.example.com", 0, "one.example.com"},
                            {"LDAPS://one:636/", "ldaps", "one", 0, "one"},
                            {"Ldaps://one:389", "ldaps", "one", 389, "one:389"},
                            {"ldap://[::1]:1389/dc=x?uid", "ldap", "::1", 1389, "[::1]:1389"},
                            {"ldap://[::1]", "ldap", "::1", 0, "[::1]"},
                            {"ldap://one:no", "ldap", "one:no", 0, "one:no"},
                            {"ldap://one:70000", "ldap", "one:70000", 0, "one:70000"},
                            {"ldap:///", "ldap", "", 0, ""},
                            {"ldapi://%2frun%2fldapi", "", "ldapi://%2frun%2fldapi", 0, ""},
                            {"one.example.com", "", "one.example.com", 0, ""}}) {
        const auto uri = LdapUri::from(row.text);
        EXPECT_EQ(uri.scheme, row.scheme) << row.text;
        EXPECT_EQ(uri.host, row.host) << row.text;
        EXPECT_EQ(uri.port, row.port) << row.text;
        EXPECT_EQ(uri.scheme.empty() ? "" : uri.hostAndPort(), row.hostAndPort) << row.text;
    }
}

TEST(LdapUri, socketOfThisMachine_isReadFromItsEncodedPath) {
    EXPECT_EQ(localSocketPath("ldapi://%2frun%2Fmy%20slapd%2Fldapi/dc=x?uid"), "/run/my slapd/ldapi");
    EXPECT_EQ(localSocketPath("LDAPI://%2Frun%2F100%"), "/run/100%");
    EXPECT_EQ(localSocketPath("ldapi:///"), "/var/run/slapd/ldapi");
    EXPECT_EQ(localSocketPath("ldap://one"), "");
    EXPECT_EQ(localSocketPath("ldapi:/"), "");
}

TEST(LdapUri, nodeAndServer_readTheSameAddress) {
    const auto file = sssd("ldap_uri = LDAPS://One.example.com:636\n");
    EXPECT_EQ(domainNodes(file).at(0).name, "/LDAP/One.example.com");
    const auto server = LdapServer::from(file.domains().at(0));
    EXPECT_EQ(server.security, sdk::ldap::security::ldaps);
    EXPECT_EQ(server.addresses, std::vector<std::string>{"One.example.com"});
    EXPECT_EQ(server.uris(), std::vector<std::string>{"ldaps://One.example.com"});
}

TEST(LdapSchemaName, isReadInAnyCase_byTheNodeAndByTheServer) {
    const auto file = sssd("ldap_uri = ldap://one\nldap_schema = RFC2307BIS\n");
    EXPECT_EQ(ldapName(file.domains().at(0), "ldap_group_member"), "member");
    EXPECT_EQ(LdapServer::from(file.domains().at(0)).schema, sdk::ldap::schema::rfc2307bis);
}
