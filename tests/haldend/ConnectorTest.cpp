#include <fstream>
#include <set>

#include "haldend/TestMachine.h"
#include "haldend/policy/Connectors.h"

using namespace corvane;
using namespace corvane::haldend::test;
namespace attribute = halden::attribute;
using Names = std::vector<std::string>;

namespace {

halden::RecordList records(const TestMachine& machine, std::string_view type) {
    const auto query = machine.node(halden::NodeType::configNode)
                           ->query({{std::string(type)},
                                    std::string(attribute::recordName),
                                    halden::MatchType::equalTo,
                                    {std::string(halden::allRecords)},
                                    {std::string(attribute::all)},
                                    0},
                                   nullptr);
    return *query->results(false, nullptr);
}

std::string stateOf(const TestMachine& machine, const std::string& name) {
    for (const auto& record : records(machine, halden::recordType::plugins))
        if (record->recordName() == name)
            return record->valuesForAttribute(attribute::functionalState, nullptr).textAt(0);
    return "(none)";
}

halden::Error flip(const TestMachine& machine, int length) {
    return machine.call(machine.node(halden::NodeType::configNode), 1000 + length);
}
constexpr int ldap = 5; // the length of its version text

} // namespace

TEST(Connectors, versionTexts_differInLength) {
    std::set<std::size_t> lengths;
    for (const auto& connector : haldend::connectors)
        lengths.insert(connector.version.size());
    EXPECT_EQ(lengths.size(), haldend::connectors.size());
}

TEST(Connectors, records_showStateAndVersionAndNoConfigurationProgram) {
    TestMachine machine;
    const auto found = records(machine, halden::recordType::plugins);
    ASSERT_EQ(found.size(), 6U);
    EXPECT_EQ(found[2]->recordName(), "LDAP");
    EXPECT_EQ(found[2]->valuesForAttribute(attribute::version, nullptr).textAt(0).size(),
              static_cast<std::size_t>(ldap));
    halden::Error error;
    EXPECT_TRUE(found[2]->valuesForAttribute(attribute::configAvailable, &error).isNull());
    EXPECT_EQ(error.code, halden::ErrorCode::attributeUnknown);
    EXPECT_EQ(stateOf(machine, "LDAP"), "Active");
}

TEST(Connectors, guest_isListedAndSwitchedLikeAnyOther) {
    TestMachine machine;
    TemporaryFolder plugIns;
    std::ofstream(plugIns.path() + "/Example.cvplug") << "x";
    machine.engine->connectorCatalog().addGuestsFrom(plugIns.path());
    EXPECT_EQ(stateOf(machine, "Example"), "Active");
    EXPECT_FALSE(flip(machine, 9));
    EXPECT_EQ(stateOf(machine, "Example"), "Inactive");
    EXPECT_EQ(stateOf(machine, "LDAP"), "Active");
}

TEST(Connectors, metaRecords_nameTheKnownTypes) {
    TestMachine machine;
    EXPECT_EQ(records(machine, halden::recordType::recordTypes).size(), 5U);
    EXPECT_GE(records(machine, halden::recordType::attributeTypes).size(), 18U);
}

TEST(Connectors, switchedOff_takesItsNodesOffAndKeepsTheirConfiguration) {
    TestMachine machine;
    (void)machine.call(machine.search(), 111);
    EXPECT_EQ(flip(machine, ldap).code, 0);
    EXPECT_EQ(stateOf(machine, "LDAP"), "Inactive");
    EXPECT_EQ(machine.framework->defaultSession()->nodeNames(nullptr).texts(),
              (Names{"/Local/Accounts", "/BSD/Files", corpNode, "/Search", "/Contacts"}));
    const auto sssd = machine.folder.read("etc/sssd/sssd.conf");
    EXPECT_NE(sssd.find("domains = corp.example.com\n"), std::string::npos) << sssd;
    EXPECT_NE(sssd.find("[domain/staff]\n# people\nid_provider = ldap\n"), std::string::npos);
    halden::Error error;
    EXPECT_FALSE(machine.framework->defaultSession()->nodeWithName(staffNode, &error));
    EXPECT_EQ(error.code, halden::ErrorCode::nodeUnknown);
    EXPECT_NE(error.reason.find("switched off"), std::string::npos);
}

TEST(Connectors, switchedOnAgain_bringsTheNodesBack) {
    TestMachine machine;
    (void)machine.setCustom(machine.search(), {staffNode});
    (void)machine.call(machine.search(), 333);
    const auto nsswitch = machine.folder.read("etc/nsswitch.conf");
    (void)flip(machine, ldap);
    EXPECT_EQ(machine.folder.read("etc/nsswitch.conf"), plainNsswitch);
    machine.start();
    EXPECT_EQ(stateOf(machine, "LDAP"), "Inactive");
    EXPECT_EQ(flip(machine, ldap).code, 0);
    EXPECT_EQ(machine.folder.read("etc/nsswitch.conf"), nsswitch);
}

TEST(Connectors, ownFilesAndSearchNodes_refuseToBeSwitchedOff) {
    TestMachine machine;
    for (const auto& connector : haldend::connectors) {
        const auto error = flip(machine, static_cast<int>(connector.version.size()));
        EXPECT_EQ(error.code == 0, connector.canBeSwitchedOff) << connector.name;
        if (error) {
            EXPECT_NE(error.description.find(std::string(connector.name)), std::string::npos);
        }
    }
}

TEST(Connectors, flipWithoutTheRight_isRefused) {
    TestMachine machine;
    machine.authorization->destroyRights();
    EXPECT_EQ(flip(machine, ldap).code, halden::ErrorCode::notPermitted);
    EXPECT_EQ(stateOf(machine, "LDAP"), "Active");
}

TEST(ConfigNode, operatingSystemVersion_comesFromOsRelease) {
    TestMachine machine;
    const auto version = [&] {
        return machine.path(machine.node(halden::NodeType::configNode), attribute::operatingSystemVersion);
    };
    EXPECT_EQ(version(), Names{"12"});
    machine.folder.write("etc/os-release", "NAME=Debian\n# VERSION_ID=9\n");
    EXPECT_TRUE(version().empty());
}

TEST(ConfigNode, subnodes_areTheConnectors) {
    TestMachine machine;
    EXPECT_EQ(machine.node(halden::NodeType::configNode)->subnodeNames(nullptr).texts(),
              (Names{"/Local", "/BSD", "/LDAP", "/AD", "/Search", "/Contacts"}));
}

TEST(Connectors, damagedFiles_leaveTheConnectorsListedWithTheirStoredState) {
    TestMachine machine(twoDirectories);
    EXPECT_EQ(flip(machine, ldap).code, 0);
    machine.folder.write("etc/nsswitch.conf", "passwd files\n");
    EXPECT_EQ(stateOf(machine, "LDAP"), "Inactive");
    EXPECT_EQ(stateOf(machine, "AD"), "Active");
    EXPECT_NE(flip(machine, ldap).code, 0); // nothing can be changed until the file is repaired
}
