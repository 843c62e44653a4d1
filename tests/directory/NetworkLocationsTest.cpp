#include "directory/NetworkLocations.h"

#include <gtest/gtest.h>

#include "fakes/FakeDirectory.h"
#include "fakes/FakePlatform.h"

using namespace corvane;
using util::Dictionary;

namespace {

Dictionary set(const std::string& name, const std::string& identifier) {
    return Dictionary{{"name", name}, {"id", identifier}, {"path", "/Sets/" + identifier}};
}

struct Locations : testing::Test, directory::NetworkLocations::Needs {
    bool isRemote() override { return remote; }
    std::shared_ptr<directory::HaldenNodeConfig> openedConfigNode() override { return nullptr; }
    std::shared_ptr<directory::HaldenNodeConfig> haldenConfigNode() override {
        if (!reachable) return nullptr;
        return std::make_shared<directory::HaldenNodeConfig>(
            session->nodeWithType(halden::NodeType::configNode, nullptr));
    }
    std::string ipAddress() override { return "192.0.2.7"; }

    /// The server's answers: property lists by path, and the path of the current set.
    void serve() {
        remote = true;
        session->config().onCall = [this](const fakes::ReceivedCall& call, halden::Error*) {
            const auto key = util::textFromBytes(call.request);
            if (call.code == 447) return std::optional(util::bytesFromText(currentPath));
            const auto value = values.valueForKey(key);
            return value ? platform.propertyLists.binary(value) : std::optional(util::Bytes());
        };
    }

    bool remote = false;
    bool reachable = true;
    std::string currentPath;
    Dictionary values = Dictionary::makeMutable();
    fakes::Journal journal;
    fakes::FakePlatform platform{journal};
    std::shared_ptr<fakes::FakeSession> session = std::make_shared<fakes::FakeSession>(journal);
    directory::NetworkLocations locations{platform.environment, *this};
};

} // namespace

TEST_F(Locations, ofThisMachine_areTheStoresInItsOrder) {
    platform.network.sets = {{"Office", "B"}, {"Home", "A"}};
    EXPECT_EQ(locations.networkSets(), (util::Array{set("Office", "B"), set("Home", "A")}));
}

TEST_F(Locations, storeWithoutSets_returnsAnEmptyListAndIsStillAskedForTheCurrentOne) {
    EXPECT_FALSE(locations.networkSets().isNull());
    EXPECT_TRUE(locations.networkSets().isEmpty());
    EXPECT_TRUE(locations.currentNetworkSet().isNull());
    platform.network.current = {{"Home", "A"}};
    EXPECT_EQ(locations.currentNetworkSet(), set("Home", "A"));
}

TEST_F(Locations, store_isOpenedOnceUnderTheProgramsName) {
    (void)locations.networkSets();
    (void)locations.currentNetworkSet();
    EXPECT_EQ(platform.network.clients, std::vector<std::string>{"com.velmora.Corvane"});
}

TEST_F(Locations, setWithoutAName_isAnEmptyDictionary) {
    platform.network.sets = {{std::nullopt, "A"}};
    EXPECT_EQ(locations.networkSets().at(0), util::Value(Dictionary(util::ValueMap{})));
}

TEST_F(Locations, setWithoutAnIdentifier_hasItsNameAlone) {
    platform.network.sets = {{"Home", std::nullopt}};
    EXPECT_EQ(locations.networkSets().at(0), util::Value(Dictionary{{"name", "Home"}}));
}

TEST_F(Locations, hostNameOfThisMachine_isTheSystems) { EXPECT_EQ(locations.hostName(), "this-machine"); }

TEST_F(Locations, ofARemoteServer_comeFromItsStore) {
    serve();
    values.set("/Sets",
               Dictionary{{"A", Dictionary{{"UserDefinedName", "Office"}}}, {"B", Dictionary{{"x", 1}}}});
    const auto sets = locations.networkSets();
    ASSERT_EQ(sets.count(), 2U);
    EXPECT_EQ(sets.at(0), util::Value(set("Office", "A")));
    EXPECT_TRUE(sets.at(1).as<Dictionary>().isEmpty()) << "a set without a name";
    EXPECT_EQ(util::textFromBytes(session->config().calls.front().request), "/Sets");
    EXPECT_TRUE(platform.log.lines.empty());
}

TEST_F(Locations, emptyReplyOfARemoteServer_isLoggedAndReturnsNoSets) {
    serve();
    EXPECT_TRUE(locations.networkSets().isEmpty());
    EXPECT_EQ(
        platform.log.lines,
        std::vector<std::string>{"-[MainController networkSets]: got zero length data from "
                                 "eDSCustomCallConfigureSCGetKeyPathValueData.for path \"/Sets\" error is "
                                 "(null)"});
}

TEST_F(Locations, remoteServerWithoutAConfigNode_isLoggedTwice) {
    remote = true;
    reachable = false;
    EXPECT_TRUE(locations.networkSets().isEmpty());
    ASSERT_EQ(platform.log.lines.size(), 2U);
    EXPECT_EQ(platform.log.lines[0],
              "-[MainController networkSets]: got error trying to access config node: (null)");
}

TEST_F(Locations, currentSetOfARemoteServer_isTheOneOfThatPath) {
    serve();
    values.set("/Sets", Dictionary{{"A", Dictionary{{"UserDefinedName", "Office"}}},
                                   {"B", Dictionary{{"UserDefinedName", "Home"}}}});
    currentPath = "/Sets/B";
    EXPECT_EQ(locations.currentNetworkSet(), set("Home", "B"));
    EXPECT_TRUE(platform.log.lines.empty());
}

TEST_F(Locations, currentSetOfARemoteServer_takesTwoRequestsEachWithItsKey) {
    serve();
    values.set("/Sets", Dictionary{{"A", Dictionary{{"UserDefinedName", "Office"}}}});
    currentPath = "/Sets/A";
    (void)locations.currentNetworkSet();
    const auto& calls = session->config().calls;
    ASSERT_EQ(calls.size(), 2U);
    EXPECT_EQ(calls[0].code, 447);
    EXPECT_EQ(util::textFromBytes(calls[0].request), "CurrentSet");
    EXPECT_EQ(calls[1].code, 445);
    EXPECT_EQ(util::textFromBytes(calls[1].request), "/Sets");
}

TEST_F(Locations, hostNameOfARemoteServer_isOneRequest) {
    serve();
    (void)locations.hostName();
    const auto& calls = session->config().calls;
    ASSERT_EQ(calls.size(), 1U);
    EXPECT_EQ(calls[0].code, 445);
    EXPECT_EQ(util::textFromBytes(calls[0].request), "/System/Network/HostNames");
}

TEST_F(Locations, requestThatFails_isLoggedWithItsError) {
    remote = true;
    session->config().nextError = {5203, "The server doesn't answer.", "", ""};
    EXPECT_TRUE(locations.networkSets().isEmpty());
    ASSERT_EQ(platform.log.lines.size(), 1U);
    EXPECT_TRUE(platform.log.lines[0].ends_with("error is The server doesn't answer. (5203)"))
        << platform.log.lines[0];
}

TEST_F(Locations, replyThatCantBeParsed_returnsNoSetsAndIsNotLogged) {
    remote = true;
    session->config().onCall = [](const auto&, auto*) { return util::bytesFromText("no property list"); };
    EXPECT_FALSE(locations.networkSets().isNull());
    EXPECT_TRUE(locations.networkSets().isEmpty());
    EXPECT_TRUE(platform.log.lines.empty());
    EXPECT_EQ(locations.hostName(), "192.0.2.7");
}

TEST_F(Locations, currentPathThatFitsNoSet_isLoggedAndReturnsTheFirst) {
    serve();
    values.set("/Sets", Dictionary{{"A", Dictionary{{"UserDefinedName", "Office"}}}});
    currentPath = "/Sets/Z";
    EXPECT_EQ(locations.currentNetworkSet(), set("Office", "A"));
    EXPECT_EQ(platform.log.lines,
              std::vector<std::string>{
                  "-[MainController currentNetworkSet]: no matching current set. path is \"/Sets/Z\""});
}

TEST_F(Locations, currentSetOfAServerWithoutSets_isNullWithoutThatMessage) {
    serve();
    currentPath = "/Sets/Z";
    EXPECT_TRUE(locations.currentNetworkSet().isNull());
    EXPECT_EQ(platform.log.lines.size(), 1U) << "only the empty list of sets is logged";
}

TEST_F(Locations, emptyCurrentPath_isLoggedWithItsKey) {
    serve();
    values.set("/Sets", Dictionary{{"A", Dictionary{{"UserDefinedName", "Office"}}}});
    EXPECT_EQ(locations.currentNetworkSet(), set("Office", "A"));
    EXPECT_EQ(platform.log.lines.front(),
              "-[MainController currentNetworkSet]: got zero length data from "
              "eDSCustomCallConfigureSCGetKeyValueData.for key \"CurrentSet\" error is (null)");
}

TEST_F(Locations, hostNameOfARemoteServer_isItsOwnElseTheAddressThatWasTyped) {
    serve();
    values.set("/System/Network/HostNames", Dictionary{{"LocalHostName", "big-server"}});
    EXPECT_EQ(locations.hostName(), "big-server");
    values.set("/System/Network/HostNames", Dictionary{{"LocalHostName", ""}});
    EXPECT_EQ(locations.hostName(), "192.0.2.7");
    values.set("/System/Network/HostNames", {});
    EXPECT_EQ(locations.hostName(), "192.0.2.7");
    EXPECT_TRUE(platform.log.lines.empty());
}
