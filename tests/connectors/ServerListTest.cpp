#include "connectors/ldap/ServerList.h"

#include <gtest/gtest.h>

#include "ServerService.h"
#include "connectors/ldap/ServerTest.h"

using namespace corvane;
using namespace corvane::connectors::ldap;
using Texts = std::vector<std::string>;

namespace {

struct Servers : testing::Test {
    Servers() {
        service.serve("a.example.com", {{"baseDN", "dc=a"}});
        service.serve("b.example.com", {{"hasPassword", true}, {"bindDN", "cn=reader"}});
        list.readIfClean();
    }
    [[nodiscard]] Server changed(std::size_t index, const std::string& baseDN) {
        auto server = list.servers().at(index);
        server.baseDN = baseDN;
        return server;
    }
    [[nodiscard]] util::Array lastPut() {
        return service.requests.back().valueForKey("put").as<util::Array>();
    }

    ServerService service;
    sdk::Host host{service.table()};
    ServerList list{host};
    std::vector<std::string>& done = service.program().done;
};

} // namespace

TEST_F(Servers, freshlyRead_areCleanAndAsTheServiceSays) {
    ASSERT_EQ(list.servers().size(), 2U);
    EXPECT_EQ(list.servers()[0].baseDN, "dc=a");
    EXPECT_EQ(list.servers()[0].security, "startTLS");
    EXPECT_TRUE(list.servers()[1].hasPassword);
    EXPECT_FALSE(list.isDirty());
}

TEST_F(Servers, editedServer_marksTheWindowAndIsWrittenAlone) {
    list.replace(0, changed(0, "dc=new"));
    EXPECT_TRUE(list.isDirty());
    EXPECT_EQ(done, Texts{"modified"});
    EXPECT_TRUE(service.requests.empty()) << "nothing is written before saving";
    list.save();
    EXPECT_EQ(lastPut().count(), 1U);
    EXPECT_EQ(service.servers["a.example.com"].textForKey("baseDN"), "dc=new");
    EXPECT_FALSE(list.isDirty());
}

TEST_F(Servers, editThatChangesNothing_leavesTheWindowClean) {
    list.replace(0, list.servers()[0]);
    EXPECT_TRUE(done.empty());
    list.save();
    EXPECT_TRUE(service.requests.empty());
}

TEST_F(Servers, newServer_isAdded) {
    auto server = Server::fresh();
    server.addresses = {"c.example.com"};
    server.name = list.freeName("c.example.com");
    list.add(server);
    list.save();
    EXPECT_TRUE(service.servers.contains("c.example.com"));
    EXPECT_EQ(list.servers().back().savedName, "c.example.com");
    EXPECT_EQ(list.servers().back().node, "/LDAP/c.example.com");
}

TEST_F(Servers, typedPassword_isSentAsDataAndNeverKept) {
    auto server = changed(0, "dc=a");
    server.bindDN = "cn=me";
    server.password = "geheim";
    list.replace(0, server);
    list.save();
    const auto sent = lastPut().at(0).as<util::Dictionary>().valueForKey("password").as<util::Data>();
    EXPECT_EQ(util::textFromBytes(sent.bytes()), "geheim");
    EXPECT_FALSE(list.servers()[0].password);
    EXPECT_TRUE(list.servers()[0].hasPassword);
}

TEST_F(Servers, untouchedPassword_isNotSent) {
    list.replace(1, changed(1, "dc=b"));
    list.save();
    EXPECT_FALSE(lastPut().at(0).as<util::Dictionary>().containsKey("password"));
}

TEST_F(Servers, copy_hasTheSettingsButNeitherNameNorPassword) {
    auto copy = list.copyOf(1);
    EXPECT_EQ(copy.bindDN, "cn=reader");
    EXPECT_EQ(copy.name, "");
    EXPECT_EQ(copy.node, "");
    EXPECT_FALSE(copy.hasPassword);
    EXPECT_FALSE(list.isDirty());
    copy.name = list.freeName(copy.title());
    EXPECT_EQ(copy.name, "b.example.com-2");
    list.insert(copy, 1);
    EXPECT_EQ(list.servers()[1].name, "b.example.com-2");
    list.save();
    EXPECT_EQ(service.servers.size(), 3U);
}

TEST_F(Servers, duplicateOfAVeryPatientServer_waitsNoLongerThanANewOneMay) {
    service.serve("c.example.com", {{"connectTimeout", 300}, {"searchTimeout", 90}});
    list.revert();
    list.readIfClean();
    ASSERT_EQ(list.servers().back().connectTimeout, 300);
    const auto copy = list.copyOf(list.servers().size() - 1);
    EXPECT_EQ(copy.connectTimeout, 120);
    EXPECT_EQ(copy.searchTimeout, 90);
}

TEST_F(Servers, removedServer_leavesBothPolicies) {
    service.program().authentication = {"/LDAP/a.example.com", "/LDAP/b.example.com"};
    service.program().contacts = {"/LDAP/a.example.com"};
    list.removeAt({0});
    EXPECT_TRUE(service.program().authentication.contains("/LDAP/a.example.com")) << "not before it is saved";
    list.save();
    EXPECT_EQ(service.servers.size(), 1U);
    EXPECT_EQ(service.program().authentication, std::set<std::string>{"/LDAP/b.example.com"});
    EXPECT_TRUE(service.program().contacts.empty());
    EXPECT_EQ(done, (Texts{"modified", "save policies"}));
}

TEST_F(Servers, nodesToRemove_areThoseOfDeletedServersUntilTheyAreSaved) {
    EXPECT_TRUE(list.nodesToRemove().empty());
    list.add(list.copyOf(0)); // a new one has no node
    list.removeAt({1, 2});
    EXPECT_EQ(list.nodesToRemove(), Texts{"/LDAP/b.example.com"});
    list.save();
    EXPECT_TRUE(list.nodesToRemove().empty());
}

TEST_F(Servers, serverOnNoPolicy_isRemovedWithoutTouchingThem) {
    service.program().authentication = {};
    service.program().contacts = {};
    list.removeAt({0, 1});
    list.save();
    EXPECT_TRUE(service.servers.empty());
    EXPECT_EQ(done, Texts{"modified"});
}

TEST_F(Servers, serverWithAnotherFirstAddress_isRenamedOnThePolicies) {
    service.program().authentication = {"/LDAP/a.example.com"};
    auto server = list.servers()[0];
    server.addresses = {"z.example.com", "a.example.com"};
    list.replace(0, server);
    list.save();
    EXPECT_EQ(done, (Texts{"modified", "rename /LDAP/a.example.com /LDAP/z.example.com", "save policies"}));
}

TEST_F(Servers, renamedServer_takesThePlaceOfItself) {
    auto server = list.servers()[0];
    server.name = "office";
    list.replace(0, server);
    list.save();
    EXPECT_EQ(lastPut().at(0).as<util::Dictionary>().textForKey("replaces"), "a.example.com");
    EXPECT_TRUE(service.servers.contains("office"));
    EXPECT_EQ(service.servers.size(), 2U);
}

TEST_F(Servers, refusedWrite_keepsTheChanges) {
    list.replace(0, changed(0, "dc=new"));
    service.refusal = {4200, "No.", "Because.", "Try otherwise."};
    EXPECT_THROW(list.save(), sdk::CallError);
    EXPECT_TRUE(list.isDirty());
    EXPECT_EQ(list.servers()[0].baseDN, "dc=new");
}

TEST_F(Servers, anotherProgramsEditOfAnotherServer_isNoHindrance) {
    list.replace(0, changed(0, "dc=new"));
    service.serve("c.example.com");
    list.save();
    EXPECT_EQ(service.servers["a.example.com"].textForKey("baseDN"), "dc=new");
    EXPECT_EQ(list.servers().size(), 3U) << "the other program's server is there now";
}

TEST_F(Servers, anotherProgramsEditOfTheSameServer_isReportedNotOverwritten) {
    list.replace(0, changed(0, "dc=new"));
    service.serve("a.example.com", {{"baseDN", "dc=theirs"}});
    try {
        list.save();
        FAIL() << "the other program's edit was overwritten";
    } catch (const sdk::CallError& error) {
        EXPECT_EQ(error.code(), 4300);
    }
    EXPECT_EQ(service.servers["a.example.com"].textForKey("baseDN"), "dc=theirs");
    EXPECT_TRUE(list.isDirty());
}

TEST_F(Servers, revert_forgetsTheChanges) {
    list.removeAt({0});
    list.revert();
    EXPECT_FALSE(list.isDirty());
    EXPECT_EQ(list.servers().size(), 2U);
}

TEST_F(Servers, unsavedChanges_surviveReadingAgain) {
    list.removeAt({0});
    service.serve("c.example.com");
    list.readIfClean();
    EXPECT_EQ(list.servers().size(), 1U);
}

TEST_F(Servers, names_areMadeOfAddressesAndDifferWhateverTheirCapitals) {
    EXPECT_EQ(list.freeName("2001:db8::1"), "2001-db8--1");
    EXPECT_EQ(list.freeName("[::1]"), "1-");
    EXPECT_EQ(list.freeName("A.Example.Com"), "A.Example.Com-2");
    EXPECT_EQ(list.freeName("::"), "server");
    EXPECT_TRUE(list.isNameTaken("B.EXAMPLE.COM", ServerList::none));
    EXPECT_FALSE(list.isNameTaken("b.example.com", 1));
}

TEST_F(Servers, serviceThatCantBeReached_isSaidInPlainWords) {
    service.program().configNode = nullptr;
    list.replace(0, changed(0, "dc=new"));
    for (const auto& call : std::vector<std::function<void()>>{
             [&] { list.save(); },
             [&] { const ServerTest test(host, ServerTest::Kind::test, list.servers()[0], "", ""); }})
        try {
            call();
            FAIL() << "there is nobody to answer";
        } catch (const sdk::CallError& error) {
            EXPECT_STREQ(error.what(), "The directory service can’t be reached.");
            EXPECT_FALSE(error.recovery().empty());
        }
}

TEST(Server, summary_saysHowItIsReached) {
    auto server = Server::fresh();
    EXPECT_EQ(server.title(), "New server");
    server.addresses = {"a", "b"};
    server.security = "ldaps";
    server.baseDN = "dc=a";
    EXPECT_EQ(server.title(), "a");
    EXPECT_EQ(server.summary(), "port 636, LDAPS, dc=a, 1 more to fall back on");
    server.security = "none";
    server.port = 1389;
    EXPECT_EQ(server.summary(), "port 1389, not encrypted, dc=a, 1 more to fall back on");
}

namespace {

util::Dictionary stepDictionary(const std::string& name, const std::string& state,
                                const std::string& detail = "") {
    return util::Dictionary{{"step", name}, {"state", state}, {"detail", detail}};
}

} // namespace

TEST_F(Servers, test_isAskedUntilItIsFinished) {
    service.reports = {
        util::Dictionary{{"finished", false}, {"steps", util::Array{stepDictionary("connect", "running")}}},
        util::Dictionary{{"finished", true},
                         {"steps", util::Array{stepDictionary("connect", "done", "192.0.2.1")}}}};
    ServerTest test(host, ServerTest::Kind::test, list.servers()[0], "alice", "staff");
    EXPECT_EQ(service.requests.back().textForKey("user"), "alice");
    EXPECT_EQ(service.requests.back().textForKey("kind"), "test");
    const auto first = test.poll();
    EXPECT_FALSE(first.finished);
    EXPECT_EQ(first.steps[0].title, "Connect");
    EXPECT_EQ(first.steps[0].state, "running");
    EXPECT_TRUE(test.poll().finished);
    EXPECT_EQ(test.poll().steps[0].detail, "192.0.2.1");
    const auto asked = service.requests.size();
    EXPECT_TRUE(test.poll().finished);
    EXPECT_EQ(service.requests.size(), asked) << "a finished job is forgotten by the service";
}

TEST_F(Servers, testThatIsDropped_isCancelledUnlessItIsFinished) {
    service.reports = {util::Dictionary{{"finished", false}}};
    { const ServerTest test(host, ServerTest::Kind::bases, list.servers()[0], "", ""); }
    EXPECT_EQ(service.cancelled, std::vector<int>{7});
    service.reports = {util::Dictionary{{"finished", true}}};
    {
        ServerTest test(host, ServerTest::Kind::bases, list.servers()[0], "", "");
        (void)test.poll();
    }
    EXPECT_EQ(service.cancelled.size(), 1U);
}

TEST_F(Servers, failedTest_saysWhatWhyAndWhatNext) {
    service.reports = {util::Dictionary{{"finished", true},
                                        {"failure", util::Dictionary{{"kind", "refused"},
                                                                     {"cause", "It refuses."},
                                                                     {"evidence", "Seen so."},
                                                                     {"nextStep", "Start it."}}}}};
    ServerTest test(host, ServerTest::Kind::test, list.servers()[0], "", "");
    const auto& report = test.poll();
    EXPECT_TRUE(report.failed);
    EXPECT_EQ(report.failure.kind, "refused");
    EXPECT_EQ(report.failure.nextStep, "Start it.");
}
