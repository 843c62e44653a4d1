#include "haldend/TestMachine.h"
#include "haldend/records/AccountFiles.h"

using namespace corvane;
using namespace corvane::haldend::test;
namespace attribute = halden::attribute;
using Names = std::vector<std::string>;

namespace {

halden::QueryParameters users(halden::MatchType type, const std::string& text) {
    return {{std::string(halden::recordType::users)},
            std::string(attribute::recordName),
            type,
            {text},
            {std::string(attribute::all)},
            0};
}

Names namesOf(const std::shared_ptr<halden::Node>& node, const halden::QueryParameters& parameters) {
    Names names;
    const auto found = node->query(parameters, nullptr)->results(false, nullptr);
    for (const auto& record : found.value())
        names.push_back(record->recordName());
    return names;
}

} // namespace

TEST(LocalNode, user_hasTheAttributesOfItsLine) {
    TestMachine machine;
    const auto node = machine.node(halden::NodeType::localNodes);
    EXPECT_EQ(node->name(), "/Local/Accounts");
    const auto found =
        *node->query(users(halden::MatchType::equalTo, "alice"), nullptr)->results(false, nullptr);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0]->valuesForAttribute(attribute::realName, nullptr).texts(), Names{"Alice Ash"});
    EXPECT_EQ(found[0]->valuesForAttribute(attribute::uniqueID, nullptr).texts(), Names{"1000"});
    EXPECT_EQ(found[0]->valuesForAttribute(attribute::userShell, nullptr).texts(), Names{"/bin/sh"});
}

TEST(LocalNode, matchTypes_selectByNameByteByByte) {
    TestMachine machine;
    const auto node = machine.framework->defaultSession()->nodeWithName("/BSD/Files", nullptr);
    EXPECT_EQ(namesOf(node, users(halden::MatchType::beginsWith, "al")), Names{"alice"});
    EXPECT_EQ(namesOf(node, users(halden::MatchType::contains, "oo")), Names{"root"});
    EXPECT_EQ(namesOf(node, users(halden::MatchType::equalTo, "Alice")), Names{});
    EXPECT_EQ(namesOf(node, users(halden::MatchType::equalTo, "dsRecordsAll")), (Names{"root", "alice"}));
    auto limited = users(halden::MatchType::any, "");
    limited.maximumResults = 1;
    EXPECT_EQ(namesOf(node, limited), Names{"root"});
}

TEST(LocalNode, attributesToReturn_limitWhatComesBesideTheName) {
    TestMachine machine;
    auto parameters = users(halden::MatchType::equalTo, "alice");
    parameters.attributesToReturn = {std::string(attribute::userShell)};
    const auto found =
        *machine.node(halden::NodeType::localNodes)->query(parameters, nullptr)->results(false, nullptr);
    EXPECT_EQ(found[0]->attributes().keys(),
              (Names{std::string(attribute::recordName), std::string(attribute::userShell)}));
}

TEST(LocalNode, group_hasItsMembers) {
    TestMachine machine;
    halden::QueryParameters parameters{{std::string(halden::recordType::groups)},
                                       std::string(attribute::groupMembership),
                                       halden::MatchType::equalTo,
                                       {"alice"},
                                       {std::string(attribute::all)},
                                       0};
    EXPECT_EQ(namesOf(machine.node(halden::NodeType::localNodes), parameters), Names{"staff"});
}

TEST(LocalNode, oddLines_arePassedOver) {
    EXPECT_EQ(haldend::usersIn("+::::::\n# note:x:1:1::/:/\nshort:x:1\n\nok:x:1:1:::\n").size(), 1U);
    EXPECT_TRUE(haldend::groupsIn("").empty());
}

TEST(LocalNode, missingAccountsFile_holdsNone) {
    TestMachine machine;
    std::filesystem::remove(machine.folder.path() + "/etc/passwd");
    EXPECT_EQ(namesOf(machine.node(halden::NodeType::localNodes), users(halden::MatchType::any, "")),
              Names{});
}

TEST(LocalNode, credentials_areTheExternalFormOfAnAuthorizationWithRights) {
    TestMachine machine;
    const auto node = machine.node(halden::NodeType::localNodes);
    const auto set = [&](const util::Bytes& form) {
        halden::Error error;
        const bool done = node->setCredentials(halden::recordType::users,
                                               halden::authenticationType::authorizationExternalForm,
                                               util::Array{util::Data(form)}, nullptr, nullptr, &error);
        EXPECT_EQ(done, !error);
        return error.code;
    };
    const auto form = machine.form();
    EXPECT_EQ(set(form), 0);
    EXPECT_EQ(set(util::Bytes(32)), halden::ErrorCode::credentials);
    machine.authorization->destroyRights();
    EXPECT_EQ(set(form), halden::ErrorCode::credentials);
    EXPECT_FALSE(node->setCredentials(halden::recordType::users, "password", util::Array{"x"}, nullptr,
                                      nullptr, nullptr));
}

TEST(SearchNode, recordOfSeveralNodes_isFoundOnce) {
    TestMachine machine;
    EXPECT_EQ(namesOf(machine.search(), users(halden::MatchType::equalTo, "alice")), Names{"alice"});
}

TEST(OsRelease, value_losesItsQuotes) {
    EXPECT_EQ(haldend::osReleaseValue("VERSION_ID='9.4'\n", "VERSION_ID"), "9.4");
    EXPECT_EQ(haldend::osReleaseValue("VERSION_ID=39", "VERSION_ID"), "39");
    EXPECT_EQ(haldend::osReleaseValue("VERSION_IDX=39", "VERSION_ID"), "");
}
