#include "contract/halden/FrameworkContract.h"

#include <algorithm>
#include <set>

using namespace corvane;
using namespace corvane::contract;
namespace attribute = halden::attribute;
using Names = std::vector<std::string>;

namespace corvane::contract {
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(FrameworkContract);
}

namespace {
const std::string automaticPath(attribute::automaticSearchPath);
const std::string localPath(attribute::localOnlySearchPath);
const std::string customPath(attribute::customSearchPath);
const Names localNodes{"/Local/Accounts", "/BSD/Files"};
} // namespace

TEST_P(FrameworkContract, defaultSession_isTheSameOneEachTime) {
    EXPECT_EQ(service_->framework().defaultSession(), session_);
}

TEST_P(FrameworkContract, nodeOfEachType_canBeOpened) {
    EXPECT_EQ(node(halden::NodeType::localNodes)->name(), "/Local/Accounts");
    EXPECT_EQ(search()->name(), "/Search");
    EXPECT_EQ(contacts()->name(), "/Contacts");
    EXPECT_NE(node(halden::NodeType::configNode), nullptr);
}

TEST_P(FrameworkContract, unknownNode_isNullWithAnError) {
    halden::Error error;
    EXPECT_EQ(session_->nodeWithName("/LDAP/nowhere.invalid", &error), nullptr);
    EXPECT_NE(error.code, 0);
    EXPECT_FALSE(error.description.empty());
    EXPECT_EQ(session_->nodeWithName("/LDAP/nowhere.invalid", nullptr), nullptr)
        << "an error need not be asked for";
}

TEST_P(FrameworkContract, success_leavesTheErrorUntouched) {
    halden::Error error{77, "before", "", ""};
    EXPECT_NE(session_->nodeWithType(halden::NodeType::localNodes, &error), nullptr);
    EXPECT_FALSE(session_->nodeNames(&error).isNull());
    EXPECT_FALSE(search()->nodeDetails(std::nullopt, &error).isNull());
    EXPECT_EQ(error.code, 77);
}

TEST_P(FrameworkContract, nodeNames_holdTheOwnNodesTheDirectoriesAndTheSearchNodes) {
    const auto names = session_->nodeNames(nullptr).texts();
    for (const auto& name : {std::string("/Local/Accounts"), std::string("/BSD/Files"),
                             service_->directoryNode(), std::string("/Search"), std::string("/Contacts")})
        EXPECT_NE(std::ranges::find(names, name), names.end()) << name;
}

TEST_P(FrameworkContract, searchNodeDetails_holdTheFourPathAttributes) {
    for (const auto& searchNode : {search(), contacts()}) {
        EXPECT_EQ(detail(searchNode, attribute::searchPolicy), Names{localPath});
        EXPECT_EQ(detail(searchNode, localPath), localNodes);
        const auto automatic = detail(searchNode, automaticPath);
        EXPECT_NE(std::ranges::find(automatic, service_->directoryNode()), automatic.end());
    }
}

TEST_P(FrameworkContract, detailsForKeys_leaveUnknownOnesOut) {
    const auto details = search()->nodeDetails(Names{localPath, "dsAttrTypeStandard:NoSuchThing"}, nullptr);
    EXPECT_EQ(details.keys(), Names{localPath});
}

TEST_P(FrameworkContract, authenticationCustomPath_beginsWithTheLocalNodes) {
    EXPECT_EQ(setCustom(search(), {service_->directoryNode()}), 0);
    auto expected = localNodes;
    expected.push_back(service_->directoryNode());
    EXPECT_EQ(detail(search(), customPath), expected);
}

TEST_P(FrameworkContract, customPathThatNobodyStored_isWhatAutomaticUses) {
    for (const auto& searchNode : {search(), contacts()})
        EXPECT_EQ(detail(searchNode, customPath), detail(searchNode, automaticPath));
}

TEST_P(FrameworkContract, contactsCustomPath_isWhatWasStored) {
    const auto others = detail(search(), customPath);
    EXPECT_EQ(setCustom(contacts(), {service_->directoryNode(), "/Local/Accounts"}), 0);
    EXPECT_EQ(detail(contacts(), customPath), (Names{service_->directoryNode(), "/Local/Accounts"}));
    EXPECT_EQ(detail(search(), customPath), others) << "the policies are two";
}

TEST_P(FrameworkContract, modeCalls_switchTheirOwnPolicy) {
    EXPECT_EQ(call(search(), 111), 0);
    EXPECT_EQ(detail(search(), attribute::searchPolicy), Names{automaticPath});
    EXPECT_EQ(call(search(), 333), 0);
    EXPECT_EQ(detail(search(), attribute::searchPolicy), Names{customPath});
    EXPECT_EQ(call(search(), 222), 0);
    EXPECT_EQ(detail(search(), attribute::searchPolicy), Names{localPath});
    EXPECT_EQ(call(contacts(), 111), 0);
    EXPECT_EQ(detail(contacts(), attribute::searchPolicy), Names{automaticPath});
    EXPECT_EQ(detail(search(), attribute::searchPolicy), Names{localPath});
}

TEST_P(FrameworkContract, callWithoutRights_failsAndChangesNothing) {
    halden::Error error;
    (void)search()->customCall(111, util::Bytes(util::AuthorizationExternalForm::length), &error);
    EXPECT_NE(error.code, 0);
    EXPECT_EQ(detail(search(), attribute::searchPolicy), Names{localPath});
}

TEST_P(FrameworkContract, unknownCall_fails) { EXPECT_NE(call(search(), 999), 0); }

TEST_P(FrameworkContract, customListThatIsNone_failsAndChangesNothing) {
    const auto before = detail(search(), customPath);
    EXPECT_NE(call(search(), 444, {1, 2, 3}), 0);
    EXPECT_EQ(detail(search(), customPath), before);
}

TEST_P(FrameworkContract, connectorRecords_haveStatesAndVersionsOfDifferentLengths) {
    const auto found = records(node(halden::NodeType::configNode), halden::recordType::plugins,
                               halden::MatchType::equalTo, std::string(halden::allRecords));
    std::set<std::string> names;
    std::set<std::size_t> lengths;
    for (const auto& record : found) {
        names.insert(record->recordName());
        lengths.insert(record->valuesForAttribute(attribute::version, nullptr).textAt(0).size());
        EXPECT_EQ(record->valuesForAttribute(attribute::functionalState, nullptr).texts(), Names{"Active"});
    }
    EXPECT_EQ(names, (std::set<std::string>{"AD", "BSD", "Contacts", "LDAP", "Local", "Search"}));
    EXPECT_EQ(lengths.size(), found.size());
}

TEST_P(FrameworkContract, enableCall_flipsItsConnector) {
    const auto config = node(halden::NodeType::configNode);
    const auto ldap = [&] {
        return records(config, halden::recordType::plugins, halden::MatchType::equalTo, "LDAP").at(0);
    };
    const auto state = [&] {
        return ldap()->valuesForAttribute(attribute::functionalState, nullptr).textAt(0);
    };
    const int code =
        1000 + static_cast<int>(ldap()->valuesForAttribute(attribute::version, nullptr).textAt(0).size());
    EXPECT_EQ(call(config, code), 0);
    EXPECT_NE(state(), "Active");
    EXPECT_EQ(call(config, code), 0);
    EXPECT_EQ(state(), "Active");
}

TEST_P(FrameworkContract, absentAttribute_isNullWithItsCode) {
    const auto alice = records(node(halden::NodeType::localNodes), halden::recordType::users,
                               halden::MatchType::equalTo, "alice");
    ASSERT_EQ(alice.size(), 1U);
    EXPECT_EQ(alice[0]->recordName(), "alice");
    EXPECT_EQ(alice[0]->recordType(), halden::recordType::users);
    halden::Error error;
    EXPECT_TRUE(alice[0]->valuesForAttribute("dsAttrTypeStandard:NoSuchThing", &error).isNull());
    EXPECT_EQ(error.code, halden::ErrorCode::attributeUnknown);
}

TEST_P(FrameworkContract, recordFetched_hasOnlyTheAttributesAskedFor) {
    const auto query = node(halden::NodeType::localNodes)
                           ->query({{std::string(halden::recordType::users)},
                                    std::string(attribute::recordName),
                                    halden::MatchType::equalTo,
                                    {"alice"},
                                    {std::string(attribute::recordName)},
                                    0},
                                   nullptr);
    ASSERT_NE(query, nullptr);
    const auto found = query->results(false, nullptr).value();
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0]->recordName(), "alice");
    EXPECT_EQ(found[0]->attributes().keys(), Names{std::string(attribute::recordName)});
    EXPECT_TRUE(found[0]->valuesForAttribute(attribute::realName, nullptr).isNull());
}

TEST_P(FrameworkContract, maximumOfResults_isKept) {
    const auto query =
        node(halden::NodeType::configNode)
            ->query({{std::string(halden::recordType::plugins)}, "", halden::MatchType::any, {}, {}, 2},
                    nullptr);
    ASSERT_NE(query, nullptr);
    EXPECT_EQ(query->results(false, nullptr).value().size(), 2U);
}

TEST_P(FrameworkContract, query_keepsItsNodeAlive) {
    auto opened = node(halden::NodeType::configNode);
    const auto query = opened->query(
        {{std::string(halden::recordType::plugins)}, "", halden::MatchType::any, {}, {}, 0}, nullptr);
    opened.reset();
    ASSERT_NE(query, nullptr);
    EXPECT_FALSE(query->results(false, nullptr).value().empty());
}

TEST_P(FrameworkContract, queryWithoutMatch_findsNothingAndIsNoError) {
    const auto query = node(halden::NodeType::localNodes)
                           ->query({{std::string(halden::recordType::users)},
                                    std::string(attribute::recordName),
                                    halden::MatchType::equalTo,
                                    {"nobody-of-that-name"},
                                    {},
                                    0},
                                   nullptr);
    ASSERT_NE(query, nullptr);
    const auto found = query->results(false, nullptr);
    ASSERT_TRUE(found.has_value());
    EXPECT_TRUE(found->empty());
}

TEST_P(FrameworkContract, credentials_areTakenWithRightsAndRefusedWithout) {
    const auto set = [&](const util::Bytes& form) {
        return node(halden::NodeType::localNodes)
            ->setCredentials(halden::recordType::users, halden::authenticationType::authorizationExternalForm,
                             util::Array{util::Data(form)}, nullptr, nullptr, nullptr);
    };
    EXPECT_TRUE(set(service_->grantedForm()));
    EXPECT_FALSE(set(util::Bytes(util::AuthorizationExternalForm::length)));
}
