#include "haldend/TestMachine.h"

using namespace corvane;
using namespace corvane::haldend::test;
namespace attribute = halden::attribute;

namespace {

void expectClear(const halden::Error& error, const std::string& evidence) {
    EXPECT_NE(error.code, 0);
    EXPECT_FALSE(error.description.empty());
    EXPECT_NE(error.reason.find(evidence), std::string::npos) << error.reason;
    EXPECT_FALSE(error.recovery.empty());
}

halden::Error detailsError(const TestMachine& machine) {
    halden::Error error;
    EXPECT_TRUE(machine.search()->nodeDetails(std::nullopt, &error).isNull());
    return error;
}

} // namespace

TEST(Damage, unparsableNsswitch_failsThePolicyAndIsNeverWritten) {
    TestMachine machine(twoDirectories, "passwd: files [FOO=return]\n");
    expectClear(detailsError(machine), "line 1, \"passwd: files [FOO=return]\"");
    expectClear(machine.call(machine.search(), 111), "line 1");
    EXPECT_EQ(machine.folder.read("etc/nsswitch.conf"), "passwd: files [FOO=return]\n");
    EXPECT_FALSE(machine.framework->defaultSession()->nodeWithName("/BSD/Files", nullptr) == nullptr);
}

TEST(Damage, unparsableSssd_failsThePolicyAndIsNeverWritten) {
    TestMachine machine("[sssd\ndomains = a\n");
    expectClear(detailsError(machine), "Line 1");
    expectClear(machine.call(machine.search(), 222), "Line 1");
    EXPECT_EQ(machine.folder.read("etc/sssd/sssd.conf"), "[sssd\ndomains = a\n");
    halden::Error error;
    EXPECT_TRUE(machine.framework->defaultSession()->nodeNames(&error).isNull());
    expectClear(error, "Line 1");
}

TEST(Damage, unparsableSssd_leavesTheContactsPolicyInReach) {
    TestMachine machine;
    ASSERT_EQ(machine.setCustom(machine.contacts(), {guestsNode}).code, 0);
    machine.folder.write("etc/sssd/sssd.conf", "[sssd\ndomains = a\n");
    EXPECT_EQ(machine.mode(machine.contacts()), attribute::localOnlySearchPath);
    EXPECT_EQ(machine.path(machine.contacts(), attribute::customSearchPath), std::vector{guestsNode});
    const auto remarks = machine.path(machine.contacts(), attribute::remarks);
    ASSERT_EQ(remarks.size(), 1U);
    EXPECT_NE(remarks.front().find("No directory can be listed: "), std::string::npos) << remarks.front();
    EXPECT_NE(remarks.front().find("Line 1: "), std::string::npos) << remarks.front();
    EXPECT_EQ(machine.setCustom(machine.contacts(), {staffNode}).code, 0);
    EXPECT_EQ(machine.call(machine.contacts(), 333).code, 0);
    EXPECT_EQ(machine.mode(machine.contacts()), attribute::customSearchPath);
    EXPECT_TRUE(machine.contacts()->subnodeNames(nullptr).texts().empty()) << "no directory is known now";
    expectClear(detailsError(machine), "Line 1");
    expectClear(machine.call(machine.search(), 222), "Line 1");
    EXPECT_EQ(machine.folder.read("etc/sssd/sssd.conf"), "[sssd\ndomains = a\n");
}

TEST(Damage, unparsableNsswitch_leavesTheContactsPolicyAndItsDirectoriesInReach) {
    TestMachine machine(twoDirectories, "passwd: files [FOO=return]\n");
    EXPECT_EQ(machine.setCustom(machine.contacts(), {guestsNode}).code, 0);
    EXPECT_EQ(machine.call(machine.contacts(), 333).code, 0);
    EXPECT_EQ(machine.contacts()->subnodeNames(nullptr).texts(), std::vector{guestsNode});
    EXPECT_TRUE(machine.framework->defaultSession()->nodeWithName(guestsNode, nullptr));
}

TEST(Damage, contactsSavedWhileSssdIsUnparsable_leaveTheLoginPolicyAsItWasStored) {
    TestMachine machine;
    ASSERT_EQ(machine.setCustom(machine.search(), {guestsNode, "/LDAP/gone.example.com"}).code, 0);
    ASSERT_EQ(machine.call(machine.search(), 333).code, 0);
    const auto good = machine.folder.read("etc/sssd/sssd.conf");
    const auto path = machine.path(machine.search(), attribute::customSearchPath);
    machine.folder.write("etc/sssd/sssd.conf", "[sssd\n");
    ASSERT_EQ(machine.mode(machine.contacts()), attribute::localOnlySearchPath);
    ASSERT_EQ(machine.call(machine.contacts(), 111).code, 0);
    machine.folder.write("etc/sssd/sssd.conf", good);
    EXPECT_EQ(machine.mode(machine.search()), attribute::customSearchPath);
    EXPECT_EQ(machine.path(machine.search(), attribute::customSearchPath), path);
    EXPECT_EQ(machine.mode(machine.contacts()), attribute::automaticSearchPath);
}

TEST(Damage, filesEditedWhileSssdIsUnparsable_areStillReadAnewOnceItIsRepaired) {
    TestMachine machine;
    ASSERT_EQ(machine.call(machine.search(), 111).code, 0);
    const auto good = machine.folder.read("etc/sssd/sssd.conf");
    machine.folder.write("etc/sssd/sssd.conf", "[sssd\n");
    machine.folder.write("etc/nsswitch.conf", plainNsswitch);
    ASSERT_EQ(machine.mode(machine.contacts()), attribute::localOnlySearchPath);
    ASSERT_EQ(machine.call(machine.contacts(), 111).code, 0);
    machine.folder.write("etc/sssd/sssd.conf", good);
    EXPECT_EQ(machine.mode(machine.search()), attribute::localOnlySearchPath) << "nothing asks SSSD";
}

TEST(Damage, contactsMadeCustomWhileSssdIsUnparsable_beginWithWhatAutomaticUsesOnceItIsRepaired) {
    TestMachine machine("[sssd\n");
    ASSERT_EQ(machine.mode(machine.contacts()), attribute::localOnlySearchPath);
    ASSERT_EQ(machine.call(machine.contacts(), 333).code, 0);
    machine.folder.write("etc/sssd/sssd.conf", twoDirectories);
    EXPECT_EQ(machine.path(machine.contacts(), attribute::customSearchPath),
              machine.path(machine.contacts(), attribute::automaticSearchPath));
    EXPECT_EQ(machine.path(machine.contacts(), attribute::customSearchPath).size(), 5U);
}

TEST(Damage, repairedFile_worksWithoutARestart) {
    TestMachine machine(twoDirectories, "passwd: files [FOO=return]\n");
    (void)detailsError(machine);
    machine.folder.write("etc/nsswitch.conf", plainNsswitch);
    EXPECT_EQ(machine.mode(machine.search()), attribute::localOnlySearchPath);
}

TEST(Damage, damagedStoredPolicy_isReportedAndKept) {
    TestMachine machine;
    for (const auto* text : {"", "garbage", "<plist><dict/></plist>",
                             "<plist><dict><key>Version</key><integer>9</integer></dict></plist>"}) {
        machine.folder.write("var/lib/corvane/policies.plist", text);
        machine.start();
        expectClear(detailsError(machine), "policies.plist");
        expectClear(machine.call(machine.search(), 111), "policies.plist");
        EXPECT_EQ(machine.folder.read("var/lib/corvane/policies.plist"), text);
    }
}

TEST(Damage, missingFolder_opensAndExplains) {
    plist::PropertyListCodec codec;
    RecordedLog log;
    const auto engine = std::make_shared<haldend::Engine>("/nonexistent/machine", codec, log);
    haldend::EmbeddedFramework framework(engine);
    halden::Error error;
    const auto search =
        framework.defaultSession()->nodeWithType(halden::NodeType::authenticationSearchNode, &error);
    ASSERT_NE(search, nullptr);
    EXPECT_TRUE(search->nodeDetails(std::nullopt, &error).isNull());
    expectClear(error, "/nonexistent/machine");
    haldend::EmbeddedAuthorizationService service(engine);
    const auto authorization = service.createAuthorization();
    EXPECT_FALSE(authorization->obtainRights({{std::string(haldend::configureRight), "", 0}}, 19));
    EXPECT_FALSE(authorization->refusalReason().empty());
}

TEST(Damage, missingConfiguration_readsAsLocal) {
    TestMachine machine("");
    std::filesystem::remove(machine.folder.path() + "/etc/nsswitch.conf");
    EXPECT_EQ(machine.mode(machine.search()), attribute::localOnlySearchPath);
    EXPECT_EQ(machine.call(machine.search(), 111).code, 0) << "there is no directory that would need SSSD";
}

TEST(Damage, folderInsteadOfAFile_isReported) {
    TestMachine machine;
    std::filesystem::remove(machine.folder.path() + "/etc/nsswitch.conf");
    std::filesystem::create_directory(machine.folder.path() + "/etc/nsswitch.conf");
    expectClear(detailsError(machine), "Is a directory");
}

TEST(Damage, loopOfLinks_isReported) {
    TestMachine machine;
    std::filesystem::remove(machine.folder.path() + "/etc/nsswitch.conf");
    std::filesystem::create_symlink("nsswitch.conf", machine.folder.path() + "/etc/nsswitch.conf");
    machine.start();
    expectClear(detailsError(machine), "symbolic links");
}

TEST(Damage, unknownNode_isReported) {
    TestMachine machine;
    halden::Error error;
    EXPECT_FALSE(machine.framework->defaultSession()->nodeWithName("/LDAP/nowhere", &error));
    EXPECT_EQ(error.code, halden::ErrorCode::nodeUnknown);
    EXPECT_FALSE(
        machine.framework->defaultSession()->nodeWithType(static_cast<halden::NodeType>(7), nullptr));
}
