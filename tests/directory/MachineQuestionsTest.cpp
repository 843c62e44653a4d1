#include <gtest/gtest.h>

#include "directory/HaldenNodeConfig.h"
#include "directory/NetworkLocations.h"
#include "directory/RootUser.h"
#include "fakes/FakeDirectory.h"
#include "fakes/FakePlatform.h"

using namespace corvane;
namespace attribute = halden::attribute;

namespace {

struct MachineQuestions : testing::Test, directory::NetworkLocations::Needs, directory::RootUser::Needs {
    std::shared_ptr<directory::HaldenNodeConfig> openedConfigNode() override { return opened; }
    bool isRemote() override { return remote; }
    std::shared_ptr<directory::HaldenNodeConfig> haldenConfigNode() override {
        if (!opened && reachable) openConfigNode();
        return opened;
    }
    std::string ipAddress() override { return "192.0.2.7"; }
    std::shared_ptr<halden::Node> localHaldenNode() override {
        return session->nodeWithType(halden::NodeType::localNodes, nullptr);
    }
    void openConfigNode() {
        opened = std::make_shared<directory::HaldenNodeConfig>(
            session->nodeWithType(halden::NodeType::configNode, nullptr));
    }
    void setVersions(const std::vector<std::string>& versions) {
        session->config().details.set(attribute::operatingSystemVersion, util::Array::ofTexts(versions));
    }
    void setRoot(const std::vector<std::string>& authority, const std::vector<std::string>& password) {
        auto record = std::make_shared<fakes::FakeRecord>(std::string(halden::recordType::users), "root");
        if (!authority.empty()) record->with(attribute::authenticationAuthority, authority);
        if (!password.empty()) record->with(attribute::password, password);
        session->local().records = {record};
    }

    fakes::Journal journal;
    std::shared_ptr<fakes::FakeSession> session = std::make_shared<fakes::FakeSession>(journal);
    std::shared_ptr<directory::HaldenNodeConfig> opened;
    fakes::FakePlatform platform{journal};
    directory::NetworkLocations locations{platform.environment, *this};
    directory::RootUser root{*this};
    bool noPassword = true;
    bool remote = false;
    bool reachable = true;
};

void addRecord(fakes::FakeNodeState& node, std::string_view type, const std::string& name) {
    node.records.push_back(std::make_shared<fakes::FakeRecord>(std::string(type), name));
}

} // namespace

TEST_F(MachineQuestions, standardTypes_areTheNamesOfTheMetaRecordsInTheirOrder) {
    addRecord(session->config(), halden::recordType::recordTypes, "Users");
    addRecord(session->config(), halden::recordType::attributeTypes, "Shell");
    addRecord(session->config(), halden::recordType::recordTypes, "Groups");
    openConfigNode();
    EXPECT_EQ(opened->standardRecordTypes().texts(), (std::vector<std::string>{"Users", "Groups"}));
    EXPECT_EQ(opened->standardAttributeTypes().texts(), std::vector<std::string>{"Shell"});
    EXPECT_TRUE(opened->standardRecordTypes().isMutable());
}

TEST_F(MachineQuestions, standardTypes_areAskedForByTheirNamesAlone) {
    openConfigNode();
    (void)opened->standardRecordTypes();
    (void)opened->standardAttributeTypes();
    auto& queries = session->config().queries;
    ASSERT_EQ(queries.size(), 2U);
    for (const auto& query : queries)
        EXPECT_EQ(query.attributesToReturn, std::vector<std::string>{std::string(attribute::recordName)});
    EXPECT_EQ(queries[0].recordTypes, std::vector<std::string>{std::string(halden::recordType::recordTypes)});
    EXPECT_EQ(queries[1].recordTypes,
              std::vector<std::string>{std::string(halden::recordType::attributeTypes)});
}

TEST_F(MachineQuestions, recordWithoutAName_isListedWithAnEmptyOne) {
    addRecord(session->config(), halden::recordType::recordTypes, "");
    addRecord(session->config(), halden::recordType::recordTypes, "Users");
    openConfigNode();
    EXPECT_EQ(opened->standardRecordTypes().texts(), (std::vector<std::string>{"", "Users"}));
}

TEST_F(MachineQuestions, standardTypesOfAFailingQuery_areEmptyNeverNull) {
    openConfigNode();
    session->config().nextError = {1, "down", "", ""};
    const auto types = opened->standardRecordTypes();
    EXPECT_FALSE(types.isNull());
    EXPECT_TRUE(types.isEmpty());
}

TEST_F(MachineQuestions, osVersion_isTheLastValueReported) {
    setVersions({"9.0", "10.8"});
    openConfigNode();
    EXPECT_EQ(locations.osVersion(), "10.8");
}

TEST_F(MachineQuestions, osVersionBeforeTheConfigNodeExists_isUnknownAndLegacy) {
    setVersions({"10.8"});
    EXPECT_EQ(locations.osVersion(), std::nullopt);
    EXPECT_TRUE(locations.legacyDS());
}

TEST_F(MachineQuestions, legacy_isOlderThan10_7NumberByNumber) {
    openConfigNode();
    const std::pair<const char*, bool> table[] = {{"10.6.8", true}, {"10.7", false}, {"10.10", false},
                                                  {"11.0", false},  {"9", true},     {"12", false}};
    for (const auto& [version, legacy] : table) {
        setVersions({version});
        EXPECT_EQ(locations.legacyDS(), legacy) << version;
    }
}

TEST_F(MachineQuestions, versionThatCantBeRead_countsAsLegacy) {
    openConfigNode();
    session->config().nextError = {1, "down", "", ""};
    EXPECT_TRUE(locations.legacyDS());
}

TEST_F(MachineQuestions, root_withoutAuthorityAndStarPassword_isNotEnabledAndHasNoPassword) {
    setRoot({}, {"*"});
    EXPECT_FALSE(root.rootUserIsEnabled(&noPassword));
    EXPECT_TRUE(noPassword);
}

TEST_F(MachineQuestions, root_withoutAuthorityAndOrdinaryPassword_isEnabled) {
    setRoot({}, {"********"});
    EXPECT_FALSE(root.rootUserIsEnabled(nullptr)); // begins with the mark of no usable password
    setRoot({}, {"x"});
    EXPECT_TRUE(root.rootUserIsEnabled(&noPassword));
    EXPECT_FALSE(noPassword);
}

TEST_F(MachineQuestions, root_withDisabledAuthority_isNotEnabled) {
    setRoot({";DisabledUser;;basic;"}, {"x"});
    EXPECT_FALSE(root.rootUserIsEnabled(&noPassword));
    EXPECT_FALSE(noPassword);
}

TEST_F(MachineQuestions, root_authorityThatEndsInBasicWithStarPassword_isNotEnabled) {
    setRoot({"x;basic;"}, {"*"});
    EXPECT_FALSE(root.rootUserIsEnabled(&noPassword));
    EXPECT_TRUE(noPassword);
}

TEST_F(MachineQuestions, root_otherAuthority_isEnabledWhateverThePassword) {
    setRoot({";ShadowHash;"}, {"*"});
    EXPECT_TRUE(root.rootUserIsEnabled(&noPassword));
    EXPECT_FALSE(noPassword);
}

TEST_F(MachineQuestions, root_missingRecord_readsAsNoValues) {
    session->local().records.clear();
    EXPECT_TRUE(root.rootUserIsEnabled(nullptr));
}
