#include <ldap.h>

#include "haldend/TestSlapd.h"
#include "haldend/ldap/LdapLibrary.h"

using namespace corvane;
using namespace corvane::haldend::test;
namespace attribute = halden::attribute;
using Names = std::vector<std::string>;

namespace {

/// The configuration of a machine with one directory; `options` are further lines of its section.
std::string section(const std::string& uri,
                    const std::string& options = "ldap_search_base = dc=example,dc=com\n") {
    return "[sssd]\ndomains = d\n[domain/d]\nid_provider = ldap\nldap_uri = " + uri + "\n" + options;
}

halden::QueryParameters users(halden::MatchType type, const std::string& text) {
    return {{std::string(halden::recordType::users)},
            std::string(attribute::recordName),
            type,
            {text},
            {std::string(attribute::all)},
            0};
}

/// The one directory of the machine.
std::shared_ptr<halden::Node> directory(const TestMachine& machine) {
    const auto names = machine.framework->defaultSession()->nodeNames(nullptr).texts();
    return machine.framework->defaultSession()->nodeWithName(names.at(2), nullptr);
}

std::optional<halden::RecordList> found(const TestMachine& machine, const halden::QueryParameters& parameters,
                                        halden::Error* error = nullptr, bool allowPartial = false) {
    return directory(machine)->query(parameters, nullptr)->results(allowPartial, error);
}

Names namesOf(const std::optional<halden::RecordList>& records) {
    Names names;
    if (!records) return {"(failed)"};
    for (const auto& record : *records)
        names.push_back(record->recordName());
    return names;
}

void expectClear(const halden::Error& error, const std::string& evidence) {
    EXPECT_NE(error.code, 0);
    EXPECT_NE(error.reason.find(evidence), std::string::npos) << error.reason;
    EXPECT_FALSE(error.recovery.empty());
    EXPECT_EQ((error.reason + error.recovery).find("s3cret"), std::string::npos) << "a password in a message";
}

} // namespace

TEST(LdapNode, nameOfANode_isItsFirstServersHostAndUnusualPort) {
    const auto nameFor = [](const std::string& uris) {
        TestMachine machine(section(uris));
        return machine.framework->defaultSession()->nodeNames(nullptr).textAt(2);
    };
    EXPECT_EQ(nameFor("ldap://a.example.com"), "/LDAP/a.example.com");
    EXPECT_EQ(nameFor("ldap://a.example.com:389/, ldap://b.example.com"), "/LDAP/a.example.com");
    EXPECT_EQ(nameFor("ldaps://a.example.com:636"), "/LDAP/a.example.com");
    EXPECT_EQ(nameFor("ldaps://a.example.com:389"), "/LDAP/a.example.com:389");
    EXPECT_EQ(nameFor("ldap://[::1]:1389"), "/LDAP/[::1]:1389");
    EXPECT_EQ(nameFor("ldapi://%2Frun%2Fslapd"), "/LDAP/d");
    EXPECT_EQ(nameFor("_srv_"), "/LDAP/d");
    EXPECT_EQ(nameFor(""), "/LDAP/d");
}

TEST(LdapNode, secondNodeOfAName_getsItsSectionBehindIt) {
    TestMachine machine("[domain/a]\nid_provider = ldap\nldap_uri = ldap://x\n[domain/b]\nid_provider = "
                        "ldap\nldap_uri = ldap://x\n");
    EXPECT_EQ(machine.framework->defaultSession()->nodeNames(nullptr).texts(),
              (Names{"/Local/Accounts", "/BSD/Files", "/LDAP/x", "/LDAP/x/b", "/Search", "/Contacts"}));
}

TEST(LdapNode, usersAndGroups_haveTheirAttributes) {
    const TestSlapd slapd;
    TestMachine machine(section(slapd.uri()));
    const auto bertha = found(machine, users(halden::MatchType::equalTo, "bertha"));
    ASSERT_EQ(namesOf(bertha), Names{"bertha"});
    EXPECT_EQ(bertha->front()->valuesForAttribute(attribute::realName, nullptr).texts(),
              Names{"Bertha Birch"});
    EXPECT_EQ(bertha->front()->valuesForAttribute(attribute::uniqueID, nullptr).texts(), Names{"5001"});
    EXPECT_EQ(bertha->front()->valuesForAttribute(attribute::mail, nullptr).texts(),
              Names{"bertha@example.com"});
    auto groups = users(halden::MatchType::equalTo, "bertha");
    groups.recordTypes = {std::string(halden::recordType::groups)};
    groups.attribute = attribute::groupMembership;
    EXPECT_EQ(namesOf(found(machine, groups)), Names{"makers"});
}

TEST(LdapNode, attributesToReturn_areTheOnlyOnesBesideTheName) {
    const TestSlapd slapd;
    TestMachine machine(section(slapd.uri()));
    auto query = users(halden::MatchType::equalTo, "bertha@example.com");
    query.attribute = attribute::mail;
    query.attributesToReturn = {std::string(attribute::userShell), std::string(attribute::phone)};
    const auto bertha = found(machine, query);
    ASSERT_EQ(namesOf(bertha), Names{"bertha"}) << "what is matched needn't be returned";
    EXPECT_EQ(bertha->front()->attributes().keys(),
              (Names{std::string(attribute::recordName), std::string(attribute::userShell)}));
    query.attributesToReturn.clear();
    EXPECT_EQ(found(machine, query)->front()->attributes().keys(), Names{std::string(attribute::recordName)});
}

TEST(LdapNode, attributeOfTheDirectory_canStandForSeveralOfOurs) {
    const TestSlapd slapd;
    TestMachine machine(section(slapd.uri(), "ldap_user_fullname = UID\n"));
    const auto bertha = found(machine, users(halden::MatchType::equalTo, "bertha"));
    ASSERT_EQ(namesOf(bertha), Names{"bertha"});
    EXPECT_EQ(bertha->front()->valuesForAttribute(attribute::realName, nullptr).texts(), Names{"bertha"});
}

TEST(LdapNode, entriesWithoutANameOfTheConfiguredKind_areLeftOut) {
    const TestSlapd slapd;
    TestMachine machine(section(slapd.uri(), "ldap_user_name = description\n"));
    EXPECT_EQ(namesOf(found(machine, users(halden::MatchType::any, ""))), Names{});
}

TEST(LdapNode, schemaOfTheSection_saysWhatIsLookedFor) {
    const TestSlapd slapd;
    const auto any = users(halden::MatchType::any, "");
    TestMachine other(section(slapd.uri(), "ldap_schema = ad\n"));
    EXPECT_EQ(namesOf(found(other, any)), Names{}) << "its entries are of another class";
    TestMachine same(section(slapd.uri(), "ldap_schema = rfc2307bis\n"));
    EXPECT_FALSE(namesOf(found(same, any)).empty());
}

TEST(LdapNode, charactersWithAMeaningInFilters_areTakenLiterally) {
    const TestSlapd slapd;
    TestMachine machine(section(slapd.uri()));
    EXPECT_EQ(namesOf(found(machine, users(halden::MatchType::equalTo, "odd*(name)"))), Names{"odd*(name)"});
    EXPECT_EQ(namesOf(found(machine, users(halden::MatchType::equalTo, "b*"))), Names{});
    EXPECT_EQ(namesOf(found(machine, users(halden::MatchType::equalTo, ")(uid=*"))), Names{});
    EXPECT_EQ(namesOf(found(machine, users(halden::MatchType::beginsWith, "ber"))), Names{"bertha"});
    EXPECT_EQ(namesOf(found(machine, users(halden::MatchType::contains, "d*("))), Names{"odd*(name)"});
}

TEST(LdapNode, manyEntries_comeInPages) {
    const TestSlapd slapd(1200);
    TestMachine machine(section(slapd.uri(), "ldap_page_size = 100\n"));
    EXPECT_EQ(found(machine, users(halden::MatchType::any, ""))->size(), 1202U)
        << "without a base the server is asked for it";
    auto limited = users(halden::MatchType::any, "");
    limited.maximumResults = 150;
    EXPECT_EQ(found(machine, limited)->size(), 150U);
}

TEST(LdapNode, serversSizeLimit_isAnErrorUnlessPartialResultsWillDo) {
    const TestSlapd slapd(50, "sizelimit 20");
    TestMachine machine(section(slapd.uri()));
    halden::Error error;
    EXPECT_FALSE(found(machine, users(halden::MatchType::any, ""), &error));
    expectClear(error, "Size limit exceeded");
    EXPECT_EQ(found(machine, users(halden::MatchType::any, ""), nullptr, true)->size(), 20U);
}

TEST(LdapNode, bindNameAndPassword_areTakenFromTheSectionWhole) {
    const TestSlapd slapd(0, "require bind\ndisallow bind_anon");
    const std::string name =
        "ldap_search_base = dc=example,dc=com\nldap_default_bind_dn = cn=admin,dc=example,dc=com\n";
    TestMachine right(section(slapd.uri(), name + "ldap_default_authtok = s3cret#;x\n"));
    EXPECT_EQ(namesOf(found(right, users(halden::MatchType::equalTo, "bertha"))), Names{"bertha"});
    TestMachine wrong(section(slapd.uri(), name + "ldap_default_authtok = s3cret\n"));
    halden::Error error;
    EXPECT_FALSE(found(wrong, users(halden::MatchType::equalTo, "bertha"), &error));
    EXPECT_EQ(error.code, halden::ErrorCode::credentials);
    expectClear(error, "Invalid credentials");
    TestMachine hidden(section(slapd.uri(), name + "ldap_default_authtok_type = obfuscated_password\n"));
    EXPECT_FALSE(found(hidden, users(halden::MatchType::equalTo, "bertha"), &error));
    expectClear(error, "obfuscated_password");
}

TEST(LdapNode, encryption_isUsedAndTheCertificateChecked) {
    const TestSlapd slapd(0, "sizelimit unlimited", true);
    const auto base = std::string("ldap_search_base = dc=example,dc=com\n");
    const auto trust = "ldap_tls_cacert = " + slapd.certificate() + "\n";
    const auto bertha = users(halden::MatchType::equalTo, "bertha");
    EXPECT_EQ(namesOf(found(TestMachine(section(slapd.tlsUri(), base + trust)), bertha)), Names{"bertha"});
    EXPECT_EQ(
        namesOf(found(TestMachine(section(slapd.uri(), base + trust + "ldap_id_use_start_tls = true\n")),
                      bertha)),
        Names{"bertha"});
    halden::Error error;
    EXPECT_FALSE(found(TestMachine(section(slapd.tlsUri(), base)), bertha, &error))
        << "nobody vouches for the certificate";
    expectClear(error, slapd.tlsUri());
    EXPECT_FALSE(
        found(TestMachine(section(slapd.uri(), base + "ldap_id_use_start_tls = true\n")), bertha, &error));
    expectClear(error, "encrypt the connection");
    EXPECT_EQ(
        namesOf(found(TestMachine(section(slapd.tlsUri(), base + "ldap_tls_reqcert = never\n")), bertha)),
        Names{"bertha"});
}

TEST(LdapNode, authoritiesOfLdapConf_areTrustedWhereTheSectionNamesNone) {
    const TestSlapd slapd(0, "sizelimit unlimited", true);
    haldend::prepareLdapLibrary();
    char* before = nullptr;
    ASSERT_EQ(ldap_get_option(nullptr, LDAP_OPT_X_TLS_CACERTFILE, &before), LDAP_OPT_SUCCESS);
    ldap_set_option(nullptr, LDAP_OPT_X_TLS_CACERTFILE, slapd.certificate().c_str()); // as ldap.conf does
    const auto bertha = users(halden::MatchType::equalTo, "bertha");
    EXPECT_EQ(namesOf(found(TestMachine(section(slapd.tlsUri())), bertha)), Names{"bertha"});
    ldap_set_option(nullptr, LDAP_OPT_X_TLS_CACERTFILE, before);
    ldap_memfree(before);
}

TEST(LdapNode, serverThatIsDown_isReportedAndTheNextOneAsked) {
    const TestSlapd slapd;
    const auto down = "ldap://127.0.0.1:" + std::to_string(unusedPort());
    halden::Error error;
    EXPECT_FALSE(found(TestMachine(section(down)), users(halden::MatchType::any, ""), &error));
    EXPECT_EQ(error.code, halden::ErrorCode::nodeUnreachable);
    expectClear(error, down);
    EXPECT_EQ(namesOf(found(TestMachine(section(down + ", " + slapd.uri())),
                            users(halden::MatchType::equalTo, "bertha"))),
              Names{"bertha"});
}

TEST(LdapNode, serverOnASocketOfThisMachine_isRead) {
    const TestSlapd slapd;
    EXPECT_EQ(
        namesOf(found(TestMachine(section(slapd.localUri())), users(halden::MatchType::equalTo, "bertha"))),
        Names{"bertha"});
    halden::Error error;
    EXPECT_FALSE(
        found(TestMachine(section("ldapi://%2Fnowhere")), users(halden::MatchType::any, ""), &error));
    expectClear(error, "/nowhere");
}

TEST(LdapNode, addressThatIsNoUri_isReported) {
    halden::Error error;
    EXPECT_FALSE(found(TestMachine(section("gopher://old")), users(halden::MatchType::any, ""), &error));
    expectClear(error, "gopher://old: trying to understand the address failed");
}

TEST(LdapNode, serverThatAnswersByTheByte_isGivenUpAfterTheConfiguredTime) {
    const SlowServer server;
    const auto uri = "ldap://127.0.0.1:" + std::to_string(server.port());
    const auto begin = std::chrono::steady_clock::now();
    halden::Error error;
    EXPECT_FALSE(found(TestMachine(section(uri, "ldap_search_timeout = 1\n")),
                       users(halden::MatchType::any, ""), &error));
    expectClear(error, "within 1 second");
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
}

TEST(LdapNode, serverThatSaysNothing_isGivenUpAfterTheConfiguredTime) {
    const SilentServer server;
    const auto patience = std::string("ldap_network_timeout = 1\nldap_opt_timeout = 1\n");
    for (const std::string scheme : {"ldap", "ldaps"}) {
        const auto uri = scheme + "://127.0.0.1:" + std::to_string(server.port());
        const auto begin = std::chrono::steady_clock::now();
        halden::Error error;
        EXPECT_FALSE(found(TestMachine(section(uri, patience)), users(halden::MatchType::any, ""), &error));
        expectClear(error, uri);
        EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10))
            << scheme << ": it hangs";
    }
}

TEST(LdapNode, wrongBase_isReported) {
    const TestSlapd slapd;
    halden::Error error;
    EXPECT_FALSE(found(TestMachine(section(slapd.uri(), "ldap_search_base = dc=nowhere\n")),
                       users(halden::MatchType::any, ""), &error));
    expectClear(error, "dc=nowhere");
    EXPECT_NE(error.recovery.find("ldap_search_base"), std::string::npos);
}

TEST(SearchNode, directoryOnThePath_isSearchedAfterTheOwnFiles) {
    const TestSlapd slapd;
    TestMachine machine(section(slapd.uri()));
    (void)machine.call(machine.search(), 111);
    EXPECT_EQ(namesOf(machine.search()
                          ->query(users(halden::MatchType::contains, "e"), nullptr)
                          ->results(false, nullptr)),
              (Names{"alice", "bertha", "odd*(name)"}));
}

TEST(SearchNode, directoryThatIsDown_failsTheSearchUnlessPartialResultsWillDo) {
    TestMachine machine(section("ldap://127.0.0.1:" + std::to_string(unusedPort())));
    (void)machine.call(machine.search(), 111);
    const auto query = machine.search()->query(users(halden::MatchType::equalTo, "alice"), nullptr);
    halden::Error error;
    EXPECT_FALSE(query->results(false, &error));
    EXPECT_EQ(error.code, halden::ErrorCode::nodeUnreachable);
    EXPECT_EQ(namesOf(query->results(true, nullptr)), Names{"alice"});
    EXPECT_FALSE(machine.log.lines.empty());
}

TEST(ActiveDirectoryNode, records_areRefusedWithAReason) {
    TestMachine machine;
    halden::Error error;
    const auto node = machine.framework->defaultSession()->nodeWithName(corpNode, nullptr);
    EXPECT_FALSE(node->query(users(halden::MatchType::any, ""), nullptr)->results(false, &error));
    expectClear(error, "Kerberos");
}
