// Values, sessions and nodes as a plug-in holds them.
#include <gtest/gtest.h>

#include <limits>

#include "fakes/FakeHost.h"
#include "plugins/HostObject.h"
#include "plugins/PluginHostTable.h"
#include "sdk/Host.h"

using namespace corvane;
using Texts = std::vector<std::string>;

namespace {

struct HostObjects : testing::Test {
    HostObjects() { program.session = session; }
    [[nodiscard]] sdk::Object configNode() {
        program.configNode = std::make_shared<directory::HaldenNodeConfig>(
            session->nodeWithType(halden::NodeType::configNode, nullptr));
        return host.haldenConfigNode();
    }

    fakes::Journal journal;
    fakes::FakeHost program;
    std::shared_ptr<fakes::FakeSession> session = std::make_shared<fakes::FakeSession>(journal);
    plugins::PluginHostTable hostTable{program.makeImplementor(), "Mine"};
    const CorvaneObjects& objects = *hostTable.table().objects;
    sdk::Host host{hostTable.table()};
};

} // namespace

TEST_F(HostObjects, values_returnWhatTheyWereMadeOf) {
    EXPECT_EQ(host.string(std::string_view("a\0b", 3)).text(), std::string("a\0b", 3));
    EXPECT_EQ(host.integer(-5).integer(), -5);
    EXPECT_EQ(host.real(2.5).real(), 2.5);
    EXPECT_TRUE(host.boolean(true).boolean());
    EXPECT_EQ(host.date(86400).date(), 86400);
    const std::uint8_t bytes[] = {1, 0, 2};
    const auto data = host.data(bytes);
    EXPECT_EQ(data.bytes().size(), 3U);
    EXPECT_EQ(data.bytes()[2], 2);
    const auto none = host.data({});
    EXPECT_EQ(none.bytes().size(), 0U);
    EXPECT_EQ(sdk::Object(objects, objects.makeUnsigned(std::numeric_limits<std::uint64_t>::max())).integer(),
              std::numeric_limits<std::int64_t>::max());
}

TEST_F(HostObjects, kinds_differ) {
    EXPECT_EQ(sdk::Object().kind(), CORVANE_NULL);
    EXPECT_EQ(host.string("").kind(), CORVANE_STRING);
    EXPECT_EQ(host.integer(1).kind(), CORVANE_INTEGER);
    EXPECT_EQ(host.real(1).kind(), CORVANE_REAL);
    EXPECT_EQ(host.boolean(true).kind(), CORVANE_BOOLEAN);
    EXPECT_EQ(host.date(0).kind(), CORVANE_DATE);
    EXPECT_EQ(host.data({}).kind(), CORVANE_DATA);
    EXPECT_EQ(host.array().kind(), CORVANE_ARRAY);
    EXPECT_EQ(host.dictionary().kind(), CORVANE_DICTIONARY);
    EXPECT_EQ(host.haldenSession().kind(), CORVANE_SESSION);
    EXPECT_EQ(configNode().kind(), CORVANE_NODE);
}

TEST_F(HostObjects, objectOfAnotherKind_readsAsNothing) {
    const auto number = host.integer(7);
    EXPECT_EQ(number.text(), "");
    EXPECT_TRUE(number.bytes().empty());
    EXPECT_EQ(number.count(), 0U);
    EXPECT_FALSE(number.at(0));
    EXPECT_FALSE(number["key"]);
    EXPECT_FALSE(number.append(host.integer(1)));
    EXPECT_FALSE(number.set("key", host.integer(1)));
    EXPECT_EQ(host.string("7").integer(), 0);
    EXPECT_FALSE(host.string("true").boolean());
    EXPECT_FALSE(host.array().at(0)) << "past the end";
}

TEST_F(HostObjects, nullReference_isHarmlessEverywhere) {
    objects.release(nullptr);
    EXPECT_EQ(objects.retain(nullptr), nullptr);
    EXPECT_EQ(objects.kind(nullptr), CORVANE_NULL);
    EXPECT_STREQ(objects.text(nullptr, nullptr), "");
    EXPECT_EQ(objects.bytes(nullptr, nullptr), nullptr);
    EXPECT_EQ(objects.integer(nullptr), 0);
    EXPECT_EQ(objects.count(nullptr), 0U);
    EXPECT_EQ(objects.at(nullptr, 0), nullptr);
    EXPECT_EQ(objects.keys(nullptr), nullptr);
    EXPECT_EQ(objects.valueForKey(nullptr, "key"), nullptr);
    EXPECT_FALSE(objects.append(nullptr, nullptr));
    EXPECT_FALSE(objects.setValueForKey(nullptr, "key", nullptr));
    EXPECT_EQ(sdk::Object(objects, objects.description(nullptr)).text(), "(null)");
}

TEST_F(HostObjects, containers_areSharedNotCopied) {
    const auto list = host.array({"a"});
    const auto entries = host.dictionary();
    EXPECT_TRUE(entries.set("list", list));
    EXPECT_TRUE(list.append(host.string("b")));
    EXPECT_EQ(entries["list"].texts(), (Texts{"a", "b"}));
    EXPECT_EQ(entries.keys(), Texts{"list"});
    EXPECT_TRUE(entries.set("list", {}));
    EXPECT_FALSE(entries.has("list"));
}

TEST_F(HostObjects, containers_neverHoldThemselves) {
    const auto list = host.array();
    const auto entries = host.dictionary();
    EXPECT_FALSE(list.append(list));
    EXPECT_TRUE(list.append(entries));
    EXPECT_FALSE(entries.set("list", list));
    EXPECT_FALSE(entries.set("self", entries));
    EXPECT_TRUE(entries.set("list", host.array())) << "an equal one is another object";
}

TEST_F(HostObjects, objects_liveAsLongAsSomebodyHoldsThem) {
    auto* first = objects.makeString("here", 4);
    auto* second = objects.retain(first);
    EXPECT_EQ(first, second);
    objects.release(first);
    EXPECT_STREQ(objects.text(second, nullptr), "here");
    objects.release(second);
}

TEST_F(HostObjects, valueOfTheHost_thatCantBeChangedSaysSo) {
    const auto set = host.networkSets();
    EXPECT_FALSE(set.append(host.integer(1)));
    EXPECT_FALSE(set.at(0).set("name", host.string("Other")));
    EXPECT_EQ(set.at(0)["name"].text(), "Office");
}

TEST_F(HostObjects, session_listsAndOpensItsNodes) {
    const auto opened = host.haldenSession();
    EXPECT_EQ(host.nodeNames(opened).front(), "/Local/Accounts");
    const auto node = host.nodeWithName(opened, "/Search");
    EXPECT_EQ(sdk::Object(objects, hostTable.table().directory->nodeName(node.get())).text(), "/Search");
}

TEST_F(HostObjects, failure_isReportedWithCodeAndText) {
    try {
        (void)host.nodeWithName(host.haldenSession(), "/LDAP/nowhere");
        FAIL() << "a node that isn't there was opened";
    } catch (const sdk::CallError& error) {
        EXPECT_EQ(error.code(), halden::ErrorCode::nodeUnknown);
        EXPECT_STREQ(error.what(), "There is no node /LDAP/nowhere.");
    }
}

TEST_F(HostObjects, wrongObject_isAFailureNotACrash) {
    EXPECT_THROW((void)host.nodeNames(host.integer(1)), sdk::CallError);
    EXPECT_THROW((void)host.nodeDetails({}), sdk::CallError);
    EXPECT_THROW((void)host.customCall(host.haldenSession(), 1, {}), sdk::CallError);
}

TEST_F(HostObjects, nodeDetails_areAskedByKeyOrWhole) {
    const auto node = configNode();
    session->config().details.set("one", util::Array{"1"});
    session->config().details.set("two", util::Array{"2"});
    EXPECT_EQ(host.nodeDetails(node, "one").count(), 1U);
    EXPECT_EQ(host.nodeDetails(node).count(), 2U);
    session->config().subnodes = {"/LDAP"};
    EXPECT_EQ(host.subnodeNames(node), Texts{"/LDAP"});
}

TEST_F(HostObjects, records_comeAsTheirAttributes) {
    auto record = std::make_shared<fakes::FakeRecord>("dsRecTypeStandard:Users", "alice");
    record->with(halden::attribute::realName, {"Alice"});
    session->config().records = {record};
    const auto found = host.records(configNode(), "dsRecTypeStandard:Users", "", {}, 0);
    ASSERT_EQ(found.count(), 1U);
    EXPECT_EQ(found.at(0)[std::string(halden::attribute::realName)].texts(), Texts{"Alice"});
}

TEST_F(HostObjects, customCall_carriesTheRequestAndBringsTheReply) {
    const auto node = configNode();
    session->config().onCall = [](const fakes::ReceivedCall& call, halden::Error*) {
        return util::Bytes(call.request.rbegin(), call.request.rend());
    };
    const std::uint8_t request[] = {1, 2};
    const auto reply = host.customCall(node, 999, request);
    EXPECT_EQ(reply.bytes()[0], 2);
    EXPECT_EQ(session->config().calls.back().code, 999);
}

TEST_F(HostObjects, propertyListCall_isTheFormAndTheDocument) {
    const auto node = configNode();
    sdk::AuthorizationForm form;
    ASSERT_EQ(host.makeAuthExternalForm(form), 0);
    const auto list = host.dictionary();
    list.set("name", host.string("x"));
    session->config().onCall = [](const fakes::ReceivedCall& call, halden::Error*) {
        return util::Bytes(call.request.begin() + 32, call.request.end());
    };
    const auto reply = host.customCallSendPropertyList(node, 1202, list, form);
    EXPECT_EQ(session->config().calls.back().request[31], 0x42);
    EXPECT_EQ(host.propertyListFromData(reply)["name"].text(), "x");
}

TEST_F(HostObjects, valueWithoutAPropertyListForm_isAnErrorAndNothingIsSent) {
    const auto node = configNode();
    sdk::AuthorizationForm form;
    EXPECT_THROW((void)host.customCallSendPropertyList(node, 1202, host.haldenSession(), form),
                 sdk::CallError);
    EXPECT_TRUE(session->config().calls.empty());
}

TEST_F(HostObjects, bytesThatAreNoPropertyList_areRefusedWithTheReason) {
    const std::uint8_t nonsense[] = {1, 2, 3};
    try {
        (void)host.propertyListFromData(host.data(nonsense));
        FAIL() << "nonsense was read";
    } catch (const sdk::CallError& error) {
        EXPECT_EQ(error.reason(), "not one of the property lists written here");
    }
}

TEST_F(HostObjects, itemsCall_hasNoFormInFront) {
    const auto node = configNode();
    CorvaneObject* error = nullptr;
    const auto items = host.array({"ab"});
    objects.release(hostTable.table().directory->customCallSendItems(node.get(), 7, items.get(), &error));
    EXPECT_EQ(error, nullptr);
    EXPECT_EQ(session->config().calls.back().request, (util::Bytes{2, 0, 0, 0, 'a', 'b'}));
}

TEST_F(HostObjects, authorizedCall_hasTheFormInFront) {
    const auto node = configNode();
    const std::uint8_t form[32] = {9};
    CorvaneObject* error = nullptr;
    objects.release(
        hostTable.table().directory->customCallWithAuthorization(node.get(), 7, "x", 1, form, &error));
    EXPECT_EQ(error, nullptr);
    ASSERT_EQ(session->config().calls.back().request.size(), 33U);
    EXPECT_EQ(session->config().calls.back().request[0], 9);
    EXPECT_EQ(session->config().calls.back().request[32], 'x');
}

TEST_F(HostObjects, textsAndKeysThatArentUTF8_areRepairedAndLoggedOnce) {
    EXPECT_EQ(host.string("caf\xE9").text(), "caf\xEF\xBF\xBD");
    EXPECT_EQ(host.string("café").text(), "café");
    const auto dictionary = host.dictionary();
    dictionary.set("\xFF", host.integer(1));
    EXPECT_EQ(dictionary.keys(), Texts{"\xEF\xBF\xBD"});
    ASSERT_EQ(program.done.size(), 1U);
    EXPECT_EQ(program.done[0].find("log a plug-in passed a text that isn't UTF-8"), 0U);
}
