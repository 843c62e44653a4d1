// What a test of a server takes for an account: only what the machine would find with SSSD.
#include "haldend/LdapTestJobsTest.h"
#include "haldend/ldap/SidNumbers.h"

using namespace corvane;
using namespace corvane::haldend::test;
using testing::HasSubstr;
using testing::Not;

namespace {

/// What of a domain controller's schema matters here, in a form that slapd reads.
constexpr auto domainSchema =
    "attributetype ( 1.3.6.1.4.1.55555.2 NAME 'sAMAccountName' EQUALITY caseIgnoreMatch SYNTAX "
    "1.3.6.1.4.1.1466.115.121.1.15 )\n"
    "attributetype ( 1.3.6.1.4.1.55555.3 NAME 'objectSID' EQUALITY octetStringMatch SYNTAX "
    "1.3.6.1.4.1.1466.115.121.1.40 )\n"
    "attributetype ( 1.3.6.1.4.1.55555.4 NAME 'primaryGroupID' EQUALITY integerMatch SYNTAX "
    "1.3.6.1.4.1.1466.115.121.1.27 )\n"
    "attributetype ( 1.3.6.1.4.1.55555.5 NAME 'groupType' EQUALITY integerMatch SYNTAX "
    "1.3.6.1.4.1.1466.115.121.1.27 )\n"
    "objectclass ( 1.3.6.1.4.1.55555.6 NAME 'user' SUP top STRUCTURAL MUST cn MAY ( sAMAccountName $ "
    "objectSID "
    "$ primaryGroupID $ uidNumber $ gidNumber ) )\n"
    "objectclass ( 1.3.6.1.4.1.55555.7 NAME 'group' SUP top STRUCTURAL MUST cn MAY ( sAMAccountName $ "
    "objectSID $ groupType $ gidNumber ) )\n"
    "sizelimit unlimited";

std::string entry(const std::string& kind, const std::string& name, const std::string& more) {
    return "dn: cn=" + name + ",dc=example,dc=com\nobjectClass: " + kind + "\ncn: " + name +
           "\nsAMAccountName: " + name + "\n" + more + "\n";
}

/// Security identifiers of the domain S-1-5-21-1-2-3.
constexpr auto sid1104 = "objectSID:: AQUAAAAAAAUVAAAAAQAAAAIAAAADAAAAUAQAAA==\nprimaryGroupID: 513\n";
constexpr auto sid513 = "objectSID:: AQUAAAAAAAUVAAAAAQAAAAIAAAADAAAAAQIAAA==\n";
constexpr auto sid1200 = "objectSID:: AQUAAAAAAAUVAAAAAQAAAAIAAAADAAAAsAQAAA==\n";
/// S-1-5-32-544, which is the same in every domain and belongs to none.
constexpr auto builtinSid = "objectSID:: AQIAAAAAAAUgAAAAIAIAAA==\n";
/// Where the domain's numbers begin, computed apart from SSSD's library (MurmurHash3 of the domain's text).
constexpr int domainStart = 686200000;

std::string domainWithoutNumbers() {
    return entry("user", "Guest", sid1104) +
           entry("group", "Administrators", std::string(builtinSid) + "groupType: -2147483643\n") +
           entry("group", "Mailers", std::string(sid1200) + "groupType: 2\n") +
           entry("group", "Domain Users", std::string(sid513) + "groupType: -2147483646\n");
}

util::ValueMap domain(int port, bool computes) {
    return plain(port, {{serverKey::schema, "ad"}, {serverKey::computedNumbers, computes}});
}

} // namespace

TEST(LdapAccounts, withoutNumbers_areNoAccountsForTheMachine) {
    const TestSlapd slapd(0, domainSchema, false, "", domainWithoutNumbers());
    const Bench machine;
    const auto any = machine.tried(domain(slapd.port(), false));
    expectClear(any, kind::noNumbers);
    EXPECT_EQ(any.states(), "done skipped done done failed skipped");
    EXPECT_THAT(any.evidence(), HasSubstr("cn=Guest"));
    EXPECT_THAT(any.failure("nextStep"), HasSubstr("Choose computed numbers"));
    const auto named = machine.tried(domain(slapd.port(), false), {{"kind", "test"}, {"user", "Guest"}});
    expectClear(named, kind::noNumbers);
    EXPECT_THAT(named.failure("cause"), HasSubstr("\"Guest\""));
}

TEST(LdapAccounts, withNumbers_areFoundAmongThoseThatHaveNone) {
    const TestSlapd slapd(0, domainSchema, false, "",
                          domainWithoutNumbers() + entry("user", "nobody", "uidNumber: 0\ngidNumber: 0\n") +
                              entry("user", "halfway", "uidNumber: 7\n") +
                              entry("user", "alice", "uidNumber: 70001\ngidNumber: 70000\n") +
                              entry("group", "potters", "gidNumber: 70000\n"));
    const auto result = Bench().tried(domain(slapd.port(), false));
    EXPECT_EQ(result.kind(), "") << result.evidence();
    EXPECT_THAT(result.step("user", "detail"), HasSubstr("alice, number 70001, group 70000"));
    EXPECT_THAT(result.step("group", "detail"), HasSubstr("potters, number 70000"));
    const auto halfway = Bench().tried(domain(slapd.port(), false), {{"kind", "test"}, {"user", "halfway"}});
    expectClear(halfway, kind::noNumbers);
}

TEST(LdapAccounts, computedNumbers_areShownAsSssdComputesThem) {
    const TestSlapd slapd(0, domainSchema, false, "", domainWithoutNumbers());
    const auto result = Bench().tried(domain(slapd.port(), true));
    EXPECT_EQ(result.kind(), "") << result.evidence();
    EXPECT_THAT(result.step("user", "detail"),
                HasSubstr("computed number " + std::to_string(domainStart + 1104) + ", group " +
                          std::to_string(domainStart + 513)));
    EXPECT_THAT(result.step("group", "detail"),
                HasSubstr("Domain Users, computed number " + std::to_string(domainStart + 513)));
}

TEST(LdapAccounts, groupsThatSssdPassesOver_haveNoNumber) {
    const TestSlapd slapd(0, domainSchema, false, "", domainWithoutNumbers());
    const Bench machine;
    for (const auto* group : {"Administrators", "Mailers"})
        expectClear(machine.tried(domain(slapd.port(), true), {{"kind", "test"}, {"group", group}}),
                    kind::noNumbers);
}

TEST(LdapAccounts, outsideTheSectionsLimits_areNoAccountsForTheMachine) {
    const TestSlapd slapd;
    const Bench machine("[domain/office]\nid_provider = ldap\nldap_uri = ldap://localhost:" +
                        std::to_string(slapd.port()) + "\nmin_id = 5002\n");
    const auto any = machine.tried({{serverKey::name, "office"}});
    EXPECT_THAT(any.evidence(), HasSubstr("gidNumber"));
    expectClear(any, kind::noNumbers);
}

TEST(LdapAccounts, computedNumbersWithAnotherSchema_areRefused) {
    const Bench machine;
    const auto answer = machine.ask(
        serverCall::startTest,
        util::Dictionary{
            {"kind", "test"},
            {"server", util::Dictionary(plain(389, {{serverKey::addresses, util::Array{"a.example"}},
                                                    {serverKey::computedNumbers, true}}))}});
    EXPECT_THAT(answer.error.reason, HasSubstr("can't be computed with the schema rfc2307"));
}

TEST(LdapAccounts, passwordOverAnUnencryptedConnection_isSentOnlyWhereTheRequestSaysSo) {
    const TestSlapd slapd;
    const Bench machine;
    const auto server =
        plain(slapd.port(), {{serverKey::bindDN, bound}, {serverKey::password, password("s3cret#;x")}});
    for (const auto& result : {machine.tried(server, {{"kind", "test"}, {"clearPassword", false}})}) {
        expectClear(result, kind::clearPassword);
        EXPECT_EQ(result.states(), "done skipped failed skipped skipped skipped");
        EXPECT_THAT(result.failure("cause"), HasSubstr("not sent"));
    }
    EXPECT_EQ(machine.tried(server, {{"kind", "test"}, {"clearPassword", true}}).kind(), "");
    EXPECT_EQ(machine.tried(server, {{"kind", "bases"}, {"clearPassword", false}}).kind(), "")
        << "asked without a sign-in";
}

TEST(LdapAccounts, serverThatWantsEncryption_saysSoInItsOwnSentence) {
    const TestCertificates certificates;
    for (const auto* setting : {"security simple_bind=128", "security ssf=128"}) {
        const TestSlapd slapd(0, setting, true, certificates.folder());
        const Bench machine;
        const util::ValueMap account{{serverKey::bindDN, bound},
                                     {serverKey::password, password("s3cret#;x")}};
        const auto result = machine.tried(plain(slapd.port(), account));
        expectClear(result, kind::encryptionRequired);
        EXPECT_THAT(result.failure("cause"), HasSubstr("over an encrypted connection only")) << setting;
        EXPECT_THAT(result.failure("nextStep"), HasSubstr("StartTLS or LDAPS")) << setting;
        auto values = encrypted(slapd.port(), "startTLS", certificates.authority());
        values.insert(account.begin(), account.end());
        EXPECT_EQ(machine.tried(values).kind(), "") << setting;
    }
}

TEST(LdapAccounts, basesOfAServerThatRefusesTheSignIn_areFoundAllTheSame) {
    const TestSlapd slapd;
    const auto result = Bench().tried(
        plain(slapd.port(), {{serverKey::bindDN, bound}, {serverKey::password, password("nonsense")}}),
        {{"kind", "bases"}});
    EXPECT_EQ(result.kind(), "") << result.evidence();
    EXPECT_EQ(result.states(), "done skipped skipped done");
    EXPECT_EQ(result.report.textForKey(reportKey::defaultBase), "dc=example,dc=com");
}

TEST(LdapAccounts, homeAndShell_areShownAsSssdGivesThem) {
    const TestSlapd slapd(0, domainSchema, false, "", domainWithoutNumbers());
    const auto found = [&](const std::string& lines, bool wasComputed) {
        const Bench machine("[nss]\noverride_shell = /bin/rbash\n[domain/corp]\nid_provider = ldap\n"
                            "ldap_uri = ldap://localhost:" +
                            std::to_string(slapd.port()) + "\nldap_schema = ad\nldap_id_mapping = " +
                            (wasComputed ? "true\n" : "false\n") + lines);
        auto values = domain(slapd.port(), true);
        values.emplace(serverKey::name, "corp");
        return machine.tried(values).step("user", "detail");
    };
    EXPECT_THAT(found("", false), HasSubstr("home /home/Guest, shell /bin/rbash"));
    EXPECT_THAT(found("", true), HasSubstr("no home folder, shell /bin/rbash"));
    EXPECT_THAT(found("fallback_homedir = /srv/%d/%u\n", true), HasSubstr("home /srv/corp/Guest, "));
    EXPECT_THAT(Bench().tried(domain(slapd.port(), true)).step("user", "detail"),
                HasSubstr("home /home/Guest, shell /bin/bash"));
}

namespace {

util::ValueMap corp(bool computes) {
    return {{serverKey::name, "corp"},
            {serverKey::addresses, util::Array{"dc.example.com"}},
            {serverKey::schema, "ad"},
            {serverKey::computedNumbers, computes}};
}

} // namespace

TEST(LdapAccounts, computedNumbers_bringAHomeFolderAndAShellAndTakeThemBack) {
    ServerMachine machine("");
    ASSERT_EQ(machine.write({util::Dictionary(corp(true))}).error.code, 0);
    EXPECT_THAT(machine.sssd(), HasSubstr("\nfallback_homedir = /home/%u\ndefault_shell = /bin/bash\n"));
    machine.start();
    auto renamed = corp(false);
    renamed[serverKey::name] = "head";
    renamed.emplace("replaces", "corp");
    ASSERT_EQ(machine.write({util::Dictionary(renamed)}).error.code, 0);
    EXPECT_THAT(machine.sssd(), Not(HasSubstr("homedir")));
    EXPECT_THAT(machine.sssd(), Not(HasSubstr("shell")));
}

TEST(LdapAccounts, homeFolderAndShellOfTheAdministrators_stayAsTheyAre) {
    const std::string section = "[domain/corp]\nid_provider = ldap\nldap_uri = ldap://dc.example.com\n"
                                "ldap_schema = ad\nfallback_homedir = /home/%u\n";
    const ServerMachine machine("[nss]\ndefault_shell = /bin/sh\n\n" + section);
    for (const bool computes : {true, false}) {
        ASSERT_EQ(machine.write({util::Dictionary(corp(computes))}).error.code, 0);
        EXPECT_THAT(machine.sssd(), HasSubstr(section)) << computes;
        EXPECT_THAT(machine.sssd(), Not(HasSubstr("/bin/bash"))) << computes;
    }
}

TEST(LdapAccounts, shellEditedByHand_staysWhenNumbersAreNoLongerComputed) {
    const ServerMachine machine("");
    ASSERT_EQ(machine.write({util::Dictionary(corp(true))}).error.code, 0);
    auto text = machine.sssd();
    text.replace(text.find("/bin/bash"), 9, "/bin/zsh");
    machine.folder.write("etc/sssd/sssd.conf", text);
    ASSERT_EQ(machine.write({util::Dictionary(corp(false))}).error.code, 0);
    EXPECT_THAT(machine.sssd(), HasSubstr("default_shell = /bin/zsh"));
    EXPECT_THAT(machine.sssd(), Not(HasSubstr("homedir")));
}

TEST(LdapAccounts, computedNumbers_areWrittenIntoTheSectionAndReadAgain) {
    const ServerMachine machine("");
    auto values = corp(true);
    ASSERT_EQ(machine.write({util::Dictionary(values)}).error.code, 0);
    EXPECT_THAT(machine.sssd(), HasSubstr("\nldap_id_mapping = true\n"));
    EXPECT_EQ(machine.described("corp").valueForKey(serverKey::computedNumbers), util::Value(true));
    values[serverKey::computedNumbers] = false;
    ASSERT_EQ(machine.write({util::Dictionary(values)}).error.code, 0);
    EXPECT_THAT(machine.sssd(), HasSubstr("\nldap_id_mapping = false\n"));
}

TEST(SidNumbers, sectionsRanges_areSssdsOwnOptions) {
    using haldend::SidNumbers;
    const std::string sid("\1\5\0\0\0\0\0\5\x15\0\0\0\1\0\0\0\2\0\0\0\3\0\0\0\x50\4\0\0", 28);
    EXPECT_EQ(SidNumbers({"a", {}}).numberOf(sid), domainStart + 1104U);
    EXPECT_EQ(SidNumbers({"a", {{"ldap_idmap_default_domain_sid", "S-1-5-21-1-2-3"}}}).numberOf(sid),
              201104U);
    EXPECT_EQ(SidNumbers({"a", {{"ldap_idmap_autorid_compat", "true"}}}).numberOf(sid), std::nullopt);
    EXPECT_EQ(SidNumbers({"a", {}}).numberOf("nonsense"), std::nullopt);
}
