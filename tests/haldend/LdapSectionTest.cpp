#include "haldend/ldap/LdapSection.h"

#include <gtest/gtest.h>

#include "haldend/TestMachine.h"
#include "haldend/ldap/LdapTrust.h"

using namespace corvane::haldend;
using namespace corvane::haldend::test;

namespace {

using Options = std::map<std::string, std::string, std::less<>>;

LdapSection sectionWith(const Options& options) { return LdapSection::from({"d", options}); }

} // namespace

TEST(LdapSection, withoutOptions_hasSssdsDefaults) {
    const auto section = sectionWith({});
    EXPECT_EQ(section.name, "d");
    EXPECT_TRUE(section.uris.empty());
    EXPECT_FALSE(section.startTls);
    EXPECT_FALSE(section.hasPassword);
    EXPECT_EQ(section.connectTimeout, 6);
    EXPECT_EQ(section.searchTimeout, 8);
    EXPECT_EQ(section.pageSize, 1000);
    EXPECT_TRUE(section.userBases.empty());
}

TEST(LdapSection, searchBases_areTheirOwnOrTheCommonOne) {
    const auto section = sectionWith(
        {{"ldap_search_base", "dc=x"}, {"ldap_group_search_base", "ou=a,dc=x?one?(cn=a*)?ou=b,dc=x?base?"}});
    ASSERT_EQ(section.userBases.size(), 1U);
    EXPECT_EQ(section.userBases[0].base, "dc=x");
    EXPECT_EQ(section.userBases[0].scope, 2);
    ASSERT_EQ(section.groupBases.size(), 2U);
    EXPECT_EQ(section.groupBases[0].scope, 1);
    EXPECT_EQ(section.groupBases[0].filter, "(cn=a*)");
    EXPECT_EQ(section.groupBases[1].base, "ou=b,dc=x");
    EXPECT_EQ(section.groupBases[1].scope, 0);
}

TEST(LdapSection, numberThatIsNone_countsAsNotSet) {
    for (const std::string odd : {"", "0", "-3", "5s", "soon"})
        EXPECT_EQ(sectionWith({{"ldap_network_timeout", odd}}).connectTimeout, 6) << odd;
    EXPECT_EQ(sectionWith({{"ldap_opt_timeout", "3"}}).searchTimeout, 3);
    EXPECT_EQ(sectionWith({{"ldap_opt_timeout", "3"}, {"ldap_search_timeout", "4"}}).searchTimeout, 4);
}

TEST(LdapSection, passwordInAnotherForm_isKnownToBeThereAndNotRead) {
    const auto hidden =
        sectionWith({{"ldap_default_authtok", "AAAQ"}, {"ldap_default_authtok_type", "obfuscated_password"}});
    EXPECT_TRUE(hidden.hasPassword);
    EXPECT_FALSE(hidden.isPasswordReadable());
    EXPECT_EQ(hidden.password, "");
    EXPECT_EQ(sectionWith({{"ldap_default_authtok", "s3cret"}}).password, "s3cret");
}

TEST(LdapTrust, certificates_areThoseOfTheMachineFolderWhereItHasThem) {
    const TemporaryFolder root;
    root.write("etc/ssl/ours.pem", "");
    const MachineFolder folder(root.path());
    const auto trust = [&](const Options& options) { return LdapTrust::from({"d", options}, folder); };
    EXPECT_EQ(trust({{"ldap_tls_cacert", "/etc/ssl/ours.pem"}}).caFile, root.path() + "/etc/ssl/ours.pem");
    EXPECT_EQ(trust({{"ldap_tls_cacert", "/etc/ssl/shared.pem"}}).caFile, "/etc/ssl/shared.pem");
    EXPECT_EQ(trust({}).caFile + trust({}).caFolder, "");
}

TEST(LdapTrust, certificate_isDemandedUnlessTheSectionSaysOtherwise) {
    const TemporaryFolder root;
    const MachineFolder folder(root.path());
    for (const std::string demand : {"", "hard", "demand", "try", "nonsense"})
        EXPECT_TRUE(LdapTrust::from({"d", {{"ldap_tls_reqcert", demand}}}, folder).isDemanded) << demand;
    for (const std::string demand : {"never", "allow"})
        EXPECT_FALSE(LdapTrust::from({"d", {{"ldap_tls_reqcert", demand}}}, folder).isDemanded) << demand;
}
