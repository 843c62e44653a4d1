#include "haldend/LdapServersTest.h"

#include <gmock/gmock.h>

using namespace corvane;
using namespace corvane::haldend::test;
namespace attribute = halden::attribute;
using Names = std::vector<std::string>;
using testing::HasSubstr;
using testing::Not;

namespace {

const char* const oneServer = "# ours\n[sssd]\nservices = nss, pam\ndomains = staff\n\n"
                              "# people of the office\n[domain/staff]\nid_provider = ldap\n"
                              "ldap_uri = ldap://a.example.com\ncache_credentials = true # offline work\n"
                              "ldap_tls_reqcert = allow\nldap_search_base = dc=example,dc=com\n\n"
                              "# names\n[nss]\nfilter_users = root\n";

/// `oneServer` with one text in place of another.
std::string with(const std::string& from, const std::string& to) {
    std::string text = oneServer;
    const auto at = text.find(from);
    return at == std::string::npos ? "no such text: " + from : text.replace(at, from.size(), to);
}

} // namespace

TEST(LdapServers, newServerOnABareMachine_isASectionOfItsOwnInAFileForRootAlone) {
    const ServerMachine machine("");
    const auto answer =
        machine.write({newServer("office", "ldap.example.com", {{serverKey::baseDN, "dc=example,dc=com"}})});
    ASSERT_EQ(answer.error.code, 0) << answer.error.reason;
    EXPECT_EQ(machine.sssd(), "[domain/office]\nid_provider = ldap\nauth_provider = ldap\n"
                              "ldap_uri = ldap://ldap.example.com\nldap_id_use_start_tls = true\n"
                              "ldap_tls_reqcert = demand\nldap_search_base = dc=example,dc=com\n");
    const auto mode = std::filesystem::status(machine.folder.path() + "/etc/sssd/sssd.conf").permissions();
    EXPECT_EQ(mode, std::filesystem::perms(0600));
    EXPECT_EQ(machine.nsswitch(), plainNsswitch) << "Local was chosen and stays";
}

TEST(LdapServers, newServerWithEverything_writesEachOptionAsSssdReadsIt) {
    const ServerMachine machine("");
    const auto answer = machine.write(
        {server("office", {{serverKey::addresses, util::Array{"a.example.com", "2001:db8::1", "192.0.2.1"}},
                           {serverKey::port, 1636},
                           {serverKey::security, "ldaps"},
                           {serverKey::caFile, "/etc/ssl/our ca.pem"},
                           {serverKey::baseDN, "dc=example,dc=com"},
                           {serverKey::bindDN, "cn=reader,dc=example,dc=com"},
                           {serverKey::password, password("a;b#c=d ü")},
                           {serverKey::schema, "rfc2307bis"},
                           {serverKey::connectTimeout, 3},
                           {serverKey::searchTimeout, 20}})});
    ASSERT_EQ(answer.error.code, 0) << answer.error.reason;
    EXPECT_EQ(machine.sssd(),
              "[domain/office]\nid_provider = ldap\nauth_provider = ldap\n"
              "ldap_uri = ldaps://a.example.com:1636, ldaps://[2001:db8::1]:1636, ldaps://192.0.2.1:1636\n"
              "ldap_tls_reqcert = demand\nldap_tls_cacert = /etc/ssl/our ca.pem\n"
              "ldap_search_base = dc=example,dc=com\nldap_default_bind_dn = cn=reader,dc=example,dc=com\n"
              "ldap_default_authtok_type = password\nldap_default_authtok = a;b#c=d ü\n"
              "ldap_schema = rfc2307bis\nldap_network_timeout = 3\nldap_search_timeout = 20\n"
              "ldap_opt_timeout = 20\n");
    const auto office = machine.described("office");
    EXPECT_EQ(office.valueForKey(serverKey::addresses).as<util::Array>().texts(),
              (Names{"a.example.com", "2001:db8::1", "192.0.2.1"}));
    EXPECT_EQ(office.valueForKey(serverKey::port), util::Value(1636));
    EXPECT_EQ(office.textForKey(serverKey::security), "ldaps");
    EXPECT_EQ(office.valueForKey(serverKey::searchTimeout), util::Value(20));
    EXPECT_EQ(office.textForKey(serverKey::node), "/LDAP/a.example.com:1636");
    EXPECT_EQ(office.valueForKey(serverKey::hasPassword), util::Value(true));
}

TEST(LdapServers, oneValueChanged_everythingElseKeepsEveryByte) {
    const ServerMachine machine(oneServer);
    ASSERT_EQ(machine.write({newServer("staff", "b.example.com")}).error.code, 0);
    EXPECT_EQ(machine.sssd(), with("ldap://a.example.com", "ldap://b.example.com"));
}

TEST(LdapServers, valueAdded_standsBehindTheLastOptionOfItsSection) {
    const ServerMachine machine(oneServer);
    ASSERT_EQ(machine.write({server("staff", {{serverKey::security, "startTLS"}})}).error.code, 0);
    EXPECT_EQ(machine.sssd(),
              with("base = dc=example,dc=com\n", "base = dc=example,dc=com\nldap_id_use_start_tls = true\n"));
}

TEST(LdapServers, addressInBrackets_isToldWithoutThem) {
    const ServerMachine machine("");
    ASSERT_EQ(machine.write({newServer("office", "[2001:db8::1]")}).error.code, 0);
    EXPECT_THAT(machine.sssd(), HasSubstr("ldap_uri = ldap://[2001:db8::1]\n"));
    EXPECT_EQ(machine.described("office").valueForKey(serverKey::addresses).as<util::Array>().texts(),
              Names{"2001:db8::1"});
}

TEST(LdapServers, securityChanged_leavesNothingOfTheOldMode) {
    const ServerMachine machine("");
    ASSERT_EQ(machine.write({newServer("office", "a")}).error.code, 0);
    ASSERT_EQ(machine.write({server("office", {{serverKey::security, "ldaps"}})}).error.code, 0);
    EXPECT_THAT(machine.sssd(), HasSubstr("ldap_uri = ldaps://a\nldap_id_use_start_tls = false\n"));
    ASSERT_EQ(machine.write({server("office", {{serverKey::security, "none"}})}).error.code, 0);
    EXPECT_THAT(machine.sssd(), HasSubstr("ldap_uri = ldap://a\nldap_id_use_start_tls = false\n"));
    EXPECT_EQ(machine.described("office").textForKey(serverKey::security), "none");
}

TEST(LdapServers, passwordInPlaceOfAnObfuscatedOne_isAPlainOne) {
    const ServerMachine machine("[domain/x]\nid_provider = ldap\nldap_uri = ldap://a\n"
                                "ldap_default_bind_dn = cn=r\n"
                                "ldap_default_authtok_type = obfuscated_password\n"
                                "ldap_default_authtok = AAAA\n");
    EXPECT_EQ(machine.described("x").valueForKey(serverKey::hasPassword), util::Value(true));
    ASSERT_EQ(machine.write({server("x", {{serverKey::password, password("plain")}})}).error.code, 0);
    EXPECT_THAT(machine.sssd(),
                HasSubstr("ldap_default_authtok_type = password\nldap_default_authtok = plain\n"));
}

TEST(LdapServers, sameValuesSentBack_changeNothing) {
    const std::string odd = "[domain/x]\nid_provider=ldap\nldap_uri =LDAP://a:389/ , ldaps://b:1389\n"
                            "ldap_schema = RFC2307BIS\nldap_search_base = dc=a?subtree?\n";
    const ServerMachine machine(odd);
    const auto answer = machine.write({machine.described("x")});
    EXPECT_EQ(answer.error.code, 0) << answer.error.reason;
    EXPECT_EQ(machine.sssd(), odd);
}

TEST(LdapServers, password_isKeptChangedAndTakenAway) {
    const ServerMachine machine(oneServer);
    const auto put = [&](util::ValueMap values) {
        const auto answer = machine.write({server("staff", std::move(values))});
        EXPECT_EQ(answer.error.code, 0) << answer.error.reason;
    };
    put({{serverKey::bindDN, "cn=reader"}, {serverKey::password, password("one")}});
    EXPECT_THAT(machine.sssd(), HasSubstr("ldap_default_authtok = one\n"));
    put({{serverKey::schema, "ad"}});
    EXPECT_THAT(machine.sssd(), HasSubstr("ldap_default_authtok = one\n"));
    put({{serverKey::password, password("two")}});
    EXPECT_THAT(machine.sssd(), HasSubstr("ldap_default_authtok = two\n"));
    put({{serverKey::password, password("")}});
    EXPECT_THAT(machine.sssd(), Not(HasSubstr("authtok")));
    put({{serverKey::password, password("three")}});
    put({{serverKey::bindDN, ""}});
    EXPECT_THAT(machine.sssd(), Not(HasSubstr("authtok"))) << "nobody is left whose password it would be";
}

TEST(LdapServers, passwordWithoutABindDN_isNotStored) {
    const ServerMachine machine(oneServer);
    ASSERT_EQ(machine.write({server("staff", {{serverKey::password, password("one")}})}).error.code, 0);
    EXPECT_EQ(machine.sssd(), oneServer);
}

TEST(LdapServers, password_isInNoReplyNoLogAndNoMessage) {
    const ServerMachine machine("");
    const auto added =
        machine.write({newServer("office", "a.example.com",
                                 {{serverKey::bindDN, "cn=r"}, {serverKey::password, password("hunter2")}})});
    EXPECT_THAT(machine.sssd(), HasSubstr("hunter2"));
    const auto refused = machine.write({server("office", {{serverKey::password, password("hunter3\nx")}})});
    EXPECT_NE(refused.error.code, 0);
    const auto quoted = machine.write({server("office", {{serverKey::password, password("\"hunter4")}})});
    std::string said = added.text + machine.list().text + refused.error.description +
                       refused.error.details() + quoted.error.description + quoted.error.details();
    for (const auto& line : machine.log.lines)
        said += line;
    EXPECT_THAT(said, Not(HasSubstr("hunter")));
    EXPECT_THAT(said, Not(HasSubstr("aHVudGVy"))) << "nor as data";
}

TEST(LdapServers, oldPasswordInTheGenerations_isForRootAlone) {
    const ServerMachine machine("");
    (void)machine.write(
        {newServer("office", "a.example.com",
                   {{serverKey::bindDN, "cn=r"}, {serverKey::password, password("hunter2")}})});
    ASSERT_EQ(machine.write({}, {"office"}).error.code, 0);
    bool wasFound = false;
    const auto generations = machine.folder.path() + "/var/lib/corvane/generations";
    EXPECT_EQ(std::filesystem::status(generations).permissions(), std::filesystem::perms(0700));
    for (const auto& entry : std::filesystem::recursive_directory_iterator(generations))
        if (entry.is_regular_file()) {
            EXPECT_EQ(entry.status().permissions(), std::filesystem::perms(0600)) << entry.path();
            wasFound = wasFound || entry.path().filename() == "sssd.conf";
        }
    EXPECT_TRUE(wasFound);
    const auto policies = machine.folder.path() + "/var/lib/corvane/policies.plist";
    EXPECT_EQ(std::filesystem::status(policies).permissions(), std::filesystem::perms(0600));
}

TEST(LdapServers, removed_takesItsSectionAndItsNameOnly) {
    const ServerMachine machine(twoDirectories);
    ASSERT_EQ(machine.call(machine.search(), 111).code, 0);
    ASSERT_EQ(machine.write({}, {"staff"}).error.code, 0);
    EXPECT_EQ(machine.sssd(),
              "# our directories\n[sssd]\nservices = nss, pam\ndomains = guests, corp.example.com\n\n"
              "[domain/guests]\nid_provider = ldap\n"
              "ldap_uri = ldap://guests.example.com:1389\n\n[domain/corp.example.com]\n"
              "id_provider = ad\n");
}

TEST(LdapServers, removed_leavesBothPolicies) {
    const ServerMachine machine(twoDirectories);
    (void)machine.setCustom(machine.search(), {guestsNode, staffNode});
    (void)machine.call(machine.search(), 333);
    (void)machine.setCustom(machine.contacts(), {staffNode, corpNode});
    ASSERT_EQ(machine.write({}, {"staff"}).error.code, 0);
    EXPECT_EQ(machine.path(machine.search(), attribute::customSearchPath),
              (Names{"/Local/Accounts", "/BSD/Files", guestsNode}));
    EXPECT_EQ(machine.path(machine.contacts(), attribute::customSearchPath), Names{corpNode});
    EXPECT_THAT(machine.sssd(), HasSubstr("domains = guests\n"));
}

TEST(LdapServers, renamedAndMoved_keepsItsPlacesUnderTheNewName) {
    const ServerMachine machine(twoDirectories);
    (void)machine.setCustom(machine.search(), {staffNode, guestsNode});
    (void)machine.call(machine.search(), 333);
    (void)machine.setCustom(machine.contacts(), {corpNode, staffNode});
    const auto answer =
        machine.write({newServer("people", "new.example.com", {{serverKey::replaces, "staff"}})});
    ASSERT_EQ(answer.error.code, 0) << answer.error.reason;
    EXPECT_EQ(machine.path(machine.search(), attribute::customSearchPath),
              (Names{"/Local/Accounts", "/BSD/Files", "/LDAP/new.example.com", guestsNode}));
    EXPECT_EQ(machine.path(machine.contacts(), attribute::customSearchPath),
              (Names{corpNode, "/LDAP/new.example.com"}));
    EXPECT_THAT(machine.sssd(), HasSubstr("domains = people, guests\n\n[domain/people]\n# people\n"));
}

TEST(LdapServers, twoSwapTheirNames_andEachKeepsItsOptions) {
    const ServerMachine machine(twoDirectories);
    ASSERT_EQ(machine
                  .write({server("guests", {{serverKey::replaces, "staff"}}),
                          server("staff", {{serverKey::replaces, "guests"}})})
                  .error.code,
              0);
    EXPECT_EQ(machine.described("guests").textForKey(serverKey::node), staffNode);
    EXPECT_EQ(machine.described("staff").textForKey(serverKey::node), guestsNode);
}

TEST(LdapServers, automaticMode_takesANewServerOnThePolicyAtOnce) {
    const ServerMachine machine(oneServer);
    (void)machine.call(machine.search(), 111);
    ASSERT_EQ(machine.write({newServer("guests", "g.example.com")}).error.code, 0);
    EXPECT_THAT(machine.sssd(), HasSubstr("domains = staff, guests\n"));
    EXPECT_EQ(machine.path(machine.search(), attribute::automaticSearchPath).back(), "/LDAP/g.example.com");
}

TEST(LdapServers, editedElsewhereSinceTheyWereListed_writesNothing) {
    const ServerMachine machine(oneServer);
    const auto revision = machine.revision();
    machine.folder.write("etc/sssd/sssd.conf", with("allow", "never"));
    const auto answer = machine.ask(
        serverCall::writeServers, util::Dictionary{{"revision", revision}, {"remove", util::Array{"staff"}}});
    EXPECT_EQ(answer.error.code, halden::ErrorCode::changedElsewhere);
    EXPECT_EQ(machine.sssd(), with("allow", "never"));
    EXPECT_EQ(machine.write({}, {"staff"}).error.code, 0) << "on the new revision it works";
}

TEST(LdapServers, policyAppliedSinceTheyWereListed_isNoReasonToRefuse) {
    const ServerMachine machine(twoDirectories);
    const auto revision = machine.revision();
    (void)machine.setCustom(machine.search(), {guestsNode});
    (void)machine.call(machine.search(), 333);
    EXPECT_EQ(machine
                  .ask(serverCall::writeServers,
                       util::Dictionary{{"revision", revision},
                                        {"put", util::Array{newServer("n", "n.example.com")}}})
                  .error.code,
              0);
}

TEST(LdapServers, editOfAPolicyByAnotherProgram_isStillNoticedByThePolicyPane) {
    const ServerMachine machine(twoDirectories);
    (void)machine.mode(machine.search());
    machine.folder.write("etc/nsswitch.conf", "passwd: files\ngroup: files\n");
    ASSERT_EQ(machine.write({newServer("n", "n.example.com")}).error.code, 0);
    EXPECT_EQ(machine.call(machine.search(), 111).code, halden::ErrorCode::changedElsewhere);
}

TEST(LdapServers, withoutTheRight_listIsAnsweredAndNothingElse) {
    const ServerMachine machine(oneServer);
    EXPECT_EQ(machine.list().error.code, 0);
    const util::Dictionary payload{{"revision", machine.revision()}, {"remove", util::Array{"staff"}}};
    const auto bytes = *machine.codec.xml(payload);
    for (const int code :
         {serverCall::writeServers, serverCall::startTest, serverCall::testReport, serverCall::cancelTest}) {
        util::Bytes request(32, 0);
        request.insert(request.end(), bytes.begin(), bytes.end());
        halden::Error error;
        EXPECT_FALSE(machine.node(halden::NodeType::configNode)->customCall(code, request, &error));
        EXPECT_EQ(error.code, halden::ErrorCode::notPermitted) << code;
    }
    EXPECT_EQ(machine.sssd(), oneServer);
}

namespace {

struct Refusal {
    const char* circumstance;
    util::Array put;
    std::vector<std::string> remove;
    const char* cause;
};

std::vector<Refusal> refusals() {
    const auto changed = [](util::ValueMap values) {
        return util::Array{server("staff", std::move(values))};
    };
    return {
        {"name with a blank", {newServer("my office", "a")}, {}, "can't be the name"},
        {"name with a bracket", {newServer("a]", "a")}, {}, "can't be the name"},
        {"empty name", {newServer("", "a")}, {}, "can't be the name"},
        {"name of an AD section", {newServer("corp", "a")}, {}, "isn't an LDAP server"},
        {"name of an AD section in capitals", {newServer("CORP", "a")}, {}, "[domain/corp] already"},
        {"two of one name", {newServer("x", "a"), newServer("x", "b")}, {}, "Two servers are named"},
        {"renamed onto another", {server("guests", {{serverKey::replaces, "staff"}})}, {}, "already"},
        {"changed and removed", changed({}), {"staff"}, "appears twice"},
        {"removed though unknown", {}, {"nobody"}, "There is no LDAP server"},
        {"replaces an unknown one",
         {newServer("x", "a", {{serverKey::replaces, "y"}})},
         {},
         "There is no LDAP"},
        {"no address", {server("x")}, {}, "no address"},
        {"address with a scheme", {newServer("x", "ldap://a")}, {}, "isn't a host name"},
        {"address with a comma", {newServer("x", "a,b")}, {}, "isn't a host name"},
        {"address of numbers", {newServer("x", "300.1.1.1")}, {}, "isn't a host name"},
        {"address with a line end", {newServer("x", "a\nldap_uri = ldap://evil")}, {}, "isn't a host name"},
        {"port", changed({{serverKey::port, 65536}}), {}, "The port is 65536"},
        {"port of a wrong kind", changed({{serverKey::port, "389"}}), {}, "no whole number"},
        {"security", changed({{serverKey::security, "ssl"}}), {}, "security mode"},
        {"schema", changed({{serverKey::schema, "x\n"}}), {}, "schema"},
        {"time-out", changed({{serverKey::connectTimeout, 0}}), {}, "is 0"},
        {"long time-out", changed({{serverKey::searchTimeout, 121}}), {}, "is 121"},
        {"base DN", changed({{serverKey::baseDN, "example.com"}}), {}, "isn't a distinguished name"},
        {"base DN with a line end", changed({{serverKey::baseDN, "dc=a\n[domain/evil]"}}), {}, "line end"},
        {"bind DN with a blank behind",
         changed({{serverKey::bindDN, "cn=a "}}),
         {},
         "begins or ends with a blank"},
        {"relative CA file", changed({{serverKey::caFile, "ca.pem"}}), {}, "isn't an absolute path"},
        {"CA file with a return", changed({{serverKey::caFile, "/a\rb"}}), {}, "control character"},
        {"long CA file", changed({{serverKey::caFile, "/" + std::string(2000, 'a')}}), {}, "longer than"},
        {"password with a line end", changed({{serverKey::password, password("a\nb = c")}}), {}, "line end"},
        {"password with a NUL",
         changed({{serverKey::password, password(std::string("a\0b", 3))}}),
         {},
         "control"},
        {"password with a blank before", changed({{serverKey::password, password(" a")}}), {}, "blank"},
        {"password that is no UTF-8", changed({{serverKey::password, password("\xFF")}}), {}, "UTF-8"},
        {"password as text", changed({{serverKey::password, "abc"}}), {}, "isn't data"},
        {"entry that is no server", {"staff"}, {}, "isn't a dictionary"},
    };
}

} // namespace

TEST(LdapServers, valueThatCouldNotBeReadBack_isRefusedWithItsCauseAndNothingIsWritten) {
    const std::string sssd = std::string(twoDirectories) + "[domain/corp]\nid_provider = ad\n";
    const ServerMachine machine(sssd);
    for (const auto& refusal : refusals()) {
        const auto answer = machine.write(refusal.put, refusal.remove);
        EXPECT_EQ(answer.error.code, halden::ErrorCode::parameter) << refusal.circumstance;
        EXPECT_THAT(answer.error.reason, HasSubstr(refusal.cause)) << refusal.circumstance;
        EXPECT_FALSE(answer.error.recovery.empty()) << refusal.circumstance;
        EXPECT_EQ(machine.sssd(), sssd) << refusal.circumstance;
    }
}

TEST(LdapServers, requestThatIsNone_isRefused) {
    const ServerMachine machine(oneServer);
    for (const std::string text : {"", "nonsense", "<plist><array/></plist>"}) {
        const auto error = machine.call(machine.node(halden::NodeType::configNode), serverCall::writeServers,
                                        util::bytesFromText(text));
        EXPECT_EQ(error.code, halden::ErrorCode::parameter) << text;
    }
    EXPECT_EQ(machine.sssd(), oneServer);
}

TEST(LdapServers, damagedFile_isLeftAsItIsAndNamed) {
    const ServerMachine machine("[sssd]\nthis is no option\n");
    EXPECT_THAT(machine.list().error.reason, HasSubstr("Line 2"));
    const auto answer = machine.write({newServer("x", "a.example.com")});
    EXPECT_NE(answer.error.code, 0);
    EXPECT_EQ(machine.sssd(), "[sssd]\nthis is no option\n");
}

TEST(LdapServers, reply_saysWhichServersAPolicyAsksInWhicheverMode) {
    ServerMachine machine;
    const auto isAsked = [&](const std::string& name) {
        return machine.described(name).valueForKey(serverKey::onPolicy) == util::Value(true);
    };
    ASSERT_FALSE(machine.call(machine.contacts(), 222));
    EXPECT_FALSE(isAsked("staff") || isAsked("guests")) << "both policies are Local";
    ASSERT_FALSE(machine.call(machine.search(), 111));
    EXPECT_TRUE(isAsked("staff") && isAsked("guests"));
    ASSERT_FALSE(machine.setCustom(machine.search(), {guestsNode}));
    ASSERT_FALSE(machine.call(machine.search(), 333));
    EXPECT_FALSE(isAsked("staff"));
    EXPECT_TRUE(isAsked("guests"));
    ASSERT_FALSE(machine.setCustom(machine.contacts(), {staffNode}));
    ASSERT_FALSE(machine.call(machine.contacts(), 333));
    EXPECT_TRUE(isAsked("staff"));
}
