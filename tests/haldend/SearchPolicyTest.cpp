#include <algorithm>

#include "haldend/TestMachine.h"

using namespace corvane;
using namespace corvane::haldend::test;
namespace attribute = halden::attribute;
using Names = std::vector<std::string>;

namespace {

const std::string automaticPath(attribute::automaticSearchPath);
const std::string localPath(attribute::localOnlySearchPath);
const std::string customPath(attribute::customSearchPath);

bool usesSss(const TestMachine& machine) {
    return machine.folder.read("etc/nsswitch.conf").find(" sss") != std::string::npos;
}
std::string domainsLine(const TestMachine& machine) {
    const auto text = machine.folder.read("etc/sssd/sssd.conf");
    const auto start = text.find("domains");
    return text.substr(start, text.find('\n', start) - start);
}
std::string sssNsswitch() { return "passwd: files sss\ngroup: files sss\n"; }

} // namespace

TEST(SearchPolicy, firstReadWithoutSss_isLocal) {
    TestMachine machine;
    EXPECT_EQ(machine.mode(machine.search()), localPath);
}

TEST(SearchPolicy, firstReadWithAllSectionsInFileOrder_isAutomatic) {
    TestMachine machine(
        "[sssd]\ndomains = a, b\n[domain/a]\nid_provider = ldap\n[domain/b]\nid_provider = ad\n",
        sssNsswitch());
    EXPECT_EQ(machine.mode(machine.search()), automaticPath);
}

TEST(SearchPolicy, firstReadWithAnotherList_isCustomWithThatList) {
    TestMachine machine(twoDirectories, sssNsswitch());
    EXPECT_EQ(machine.mode(machine.search()), customPath);
    EXPECT_EQ(machine.path(machine.search(), customPath),
              (Names{"/Local/Accounts", "/BSD/Files", staffNode, guestsNode}));
}

TEST(SearchPolicy, details_showAllFourAttributes) {
    TestMachine machine;
    EXPECT_EQ(machine.path(machine.search(), automaticPath),
              (Names{"/Local/Accounts", "/BSD/Files", staffNode, guestsNode, corpNode}));
    EXPECT_EQ(machine.path(machine.search(), localPath), (Names{"/Local/Accounts", "/BSD/Files"}));
    EXPECT_EQ(machine.path(machine.search(), customPath), machine.path(machine.search(), automaticPath));
    EXPECT_EQ(machine.path(machine.contacts(), customPath), machine.path(machine.search(), automaticPath));
    const auto some = machine.search()->nodeDetails(Names{localPath, "unknown"}, nullptr);
    EXPECT_EQ(some.keys(), Names{localPath});
}

TEST(SearchPolicy, automatic_putsEveryDirectoryOnTheMachine) {
    TestMachine machine;
    EXPECT_EQ(machine.call(machine.search(), 111).code, 0);
    EXPECT_EQ(machine.mode(machine.search()), automaticPath);
    EXPECT_TRUE(usesSss(machine));
    EXPECT_EQ(domainsLine(machine), "domains = staff, guests, corp.example.com");
}

TEST(SearchPolicy, customList_isAppliedInItsOrderOnceTheModeIsCustom) {
    TestMachine machine;
    EXPECT_EQ(machine.setCustom(machine.search(), {corpNode, staffNode}).code, 0);
    EXPECT_FALSE(usesSss(machine));
    EXPECT_EQ(machine.call(machine.search(), 333).code, 0);
    EXPECT_TRUE(usesSss(machine));
    EXPECT_EQ(domainsLine(machine), "domains = corp.example.com, staff");
    EXPECT_EQ(machine.path(machine.search(), customPath),
              (Names{"/Local/Accounts", "/BSD/Files", corpNode, staffNode}));
}

TEST(SearchPolicy, local_takesSssOutAndLeavesTheDomainsLine) {
    TestMachine machine;
    (void)machine.call(machine.search(), 111);
    const auto sssd = machine.folder.read("etc/sssd/sssd.conf");
    EXPECT_EQ(machine.call(machine.search(), 222).code, 0);
    EXPECT_FALSE(usesSss(machine));
    EXPECT_EQ(machine.folder.read("etc/sssd/sssd.conf"), sssd);
    EXPECT_EQ(machine.folder.read("etc/nsswitch.conf"), plainNsswitch);
}

TEST(SearchPolicy, emptyCustomList_takesSssOut) {
    TestMachine machine;
    (void)machine.call(machine.search(), 111);
    (void)machine.setCustom(machine.search(), {});
    EXPECT_EQ(machine.call(machine.search(), 333).code, 0);
    EXPECT_FALSE(usesSss(machine));
    EXPECT_EQ(domainsLine(machine), "domains = staff, guests, corp.example.com");
}

TEST(SearchPolicy, everyLineButTheEditedOnes_keepsItsBytes) {
    TestMachine machine;
    (void)machine.setCustom(machine.search(), {guestsNode});
    (void)machine.call(machine.search(), 333);
    std::string expected = twoDirectories;
    expected.replace(expected.find("staff, guests"), 13, "guests");
    EXPECT_EQ(machine.folder.read("etc/sssd/sssd.conf"), expected);
}

TEST(SearchPolicy, foreignDomains_keepTheirPlaceOnTheLine) {
    TestMachine machine(
        "[sssd]\ndomains = ipa, a\n[domain/a]\nid_provider = ldap\n[domain/ipa]\nid_provider = ipa\n"
        "[domain/b]\nid_provider = ldap\n",
        sssNsswitch());
    EXPECT_EQ(machine.call(machine.search(), 111).code, 0);
    EXPECT_EQ(domainsLine(machine), "domains = ipa, a, b");
}

TEST(SearchPolicy, onlyForeignDomains_automaticKeepsSss) {
    TestMachine machine("[sssd]\ndomains = ipa\n[domain/ipa]\nid_provider = ipa\n", sssNsswitch());
    EXPECT_EQ(machine.mode(machine.search()), automaticPath);
    EXPECT_EQ(machine.call(machine.search(), 111).code, 0);
    EXPECT_TRUE(usesSss(machine));
}

TEST(SearchPolicy, localNodesInTheRequest_areNotStoredTwice) {
    TestMachine machine;
    (void)machine.setCustom(machine.search(), {"/Local/Accounts", staffNode, "/BSD/Files"});
    EXPECT_EQ(machine.path(machine.search(), customPath),
              (Names{"/Local/Accounts", "/BSD/Files", staffNode}));
}

TEST(SearchPolicy, contactsList_isStoredAsItIsAndTouchesNoFile) {
    TestMachine machine;
    const Names list{staffNode, "/Local/Accounts", staffNode};
    EXPECT_EQ(machine.setCustom(machine.contacts(), list).code, 0);
    EXPECT_EQ(machine.call(machine.contacts(), 333).code, 0);
    EXPECT_EQ(machine.path(machine.contacts(), customPath), list);
    EXPECT_EQ(machine.mode(machine.contacts()), customPath);
    EXPECT_EQ(machine.mode(machine.search()), localPath);
    EXPECT_EQ(machine.folder.read("etc/nsswitch.conf"), plainNsswitch);
    EXPECT_EQ(machine.folder.read("etc/sssd/sssd.conf"), twoDirectories);
}

TEST(SearchPolicy, storedPolicy_survivesARestart) {
    TestMachine machine;
    (void)machine.setCustom(machine.search(), {"/LDAP/gone.example.com", staffNode});
    (void)machine.call(machine.search(), 333);
    (void)machine.call(machine.contacts(), 111);
    machine.start();
    EXPECT_EQ(machine.mode(machine.search()), customPath);
    EXPECT_EQ(machine.mode(machine.contacts()), automaticPath);
    EXPECT_EQ(machine.path(machine.search(), customPath),
              (Names{"/Local/Accounts", "/BSD/Files", "/LDAP/gone.example.com", staffNode}));
    EXPECT_EQ(domainsLine(machine), "domains = staff");
}

TEST(SearchPolicy, badRequests_areRefusedAndChangeNothing) {
    TestMachine machine;
    const auto refused = [&](const halden::Error& error, const std::string& part) {
        EXPECT_EQ(error.code, halden::ErrorCode::parameter);
        EXPECT_NE(error.reason.find(part), std::string::npos) << error.reason;
        EXPECT_FALSE(error.recovery.empty());
    };
    refused(machine.call(machine.search(), 111, {1}), "33 bytes");
    refused(machine.call(machine.search(), 444, {1, 2}), "isn't a property list");
    refused(machine.call(machine.search(), 444, *machine.codec.binary("text")), "isn't an array");
    refused(machine.call(machine.search(), 444, *machine.codec.binary(util::Array{1})), "isn't a text");
    refused(machine.setCustom(machine.search(), {"/Search"}), "search policy itself");
    refused(machine.setCustom(machine.contacts(), {"/Contacts/x"}), "search policy itself");
    refused(machine.setCustom(machine.search(), {"plain"}), "isn't a node name");
    refused(machine.setCustom(machine.search(), {"/LDAP"}), "isn't a node name");
    refused(machine.setCustom(machine.search(), {"/LDAP/a\nb"}), "isn't a node name");
    refused(machine.setCustom(machine.search(), Names(1001, staffNode)), "thousand");
    halden::Error error;
    EXPECT_FALSE(machine.search()->customCall(111, util::Bytes(3), &error));
    EXPECT_EQ(error.code, halden::ErrorCode::parameter);
    EXPECT_FALSE(machine.folder.has("var/lib/corvane/policies.plist"));
    EXPECT_EQ(machine.call(machine.search(), 112).code, halden::ErrorCode::callUnknown);
}

TEST(SearchPolicy, callWithoutTheRight_isRefused) {
    TestMachine machine;
    const auto old = machine.form();
    machine.authorization->destroyRights();
    halden::Error error;
    EXPECT_FALSE(machine.search()->customCall(111, old, &error));
    EXPECT_EQ(error.code, halden::ErrorCode::notPermitted);
    EXPECT_EQ(machine.call(machine.search(), 111).code, halden::ErrorCode::notPermitted);
    const auto list = *machine.codec.binary(util::Array{staffNode});
    EXPECT_EQ(machine.call(machine.search(), 444, {list.begin(), list.end()}).code,
              halden::ErrorCode::notPermitted);
    halden::Error zero;
    EXPECT_FALSE(machine.search()->customCall(222, util::Bytes(32), &zero));
    EXPECT_EQ(zero.code, halden::ErrorCode::notPermitted);
    EXPECT_FALSE(machine.folder.has("var/lib/corvane/policies.plist"));
}

TEST(SearchPolicy, sameCallAgain_writesNothing) {
    TestMachine machine;
    (void)machine.call(machine.search(), 111);
    const auto before = haldend::MachineFolder(machine.folder.path()).stamp("var/lib/corvane/policies.plist");
    EXPECT_EQ(machine.call(machine.search(), 111).code, 0);
    EXPECT_EQ(haldend::MachineFolder(machine.folder.path()).stamp("var/lib/corvane/policies.plist"), before);
}

TEST(SearchPolicy, tenGenerations_areKept) {
    TestMachine machine;
    for (int i = 0; i < 15; ++i)
        (void)machine.call(machine.search(), i % 2 == 0 ? 111 : 222);
    std::size_t count = 0;
    for (const auto& entry :
         std::filesystem::directory_iterator(machine.folder.path() + "/var/lib/corvane/generations"))
        count += entry.is_directory() ? 1 : 0;
    EXPECT_EQ(count, 10U);
    EXPECT_EQ(machine.folder.read("var/lib/corvane/generations/0000000015/nsswitch.conf").find(" sss"),
              std::string::npos);
    EXPECT_NE(machine.folder.read("var/lib/corvane/generations/0000000014/nsswitch.conf").find(" sss"),
              std::string::npos);
}

TEST(SearchPolicy, newSssdFile_isForItsOwnerAlone) {
    TestMachine machine;
    (void)machine.setCustom(machine.search(), {guestsNode});
    (void)machine.call(machine.search(), 333);
    struct stat status {};
    ASSERT_EQ(::stat((machine.folder.path() + "/etc/sssd/sssd.conf").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0600U);
}

TEST(SearchPolicy, symbolicLink_staysAndItsTargetIsChanged) {
    TestMachine machine;
    namespace fs = std::filesystem;
    machine.folder.write("etc/select/nsswitch.conf", plainNsswitch);
    fs::remove(machine.folder.path() + "/etc/nsswitch.conf");
    fs::create_symlink("/etc/select/nsswitch.conf", machine.folder.path() + "/etc/nsswitch.conf");
    machine.start();
    EXPECT_EQ(machine.call(machine.search(), 111).code, 0);
    EXPECT_TRUE(fs::is_symlink(machine.folder.path() + "/etc/nsswitch.conf"));
    EXPECT_NE(machine.folder.read("etc/select/nsswitch.conf").find(" sss"), std::string::npos);
}

TEST(SearchPolicy, listThatNobodyChose_sentBackAsItWasReported_stillFollowsAutomatic) {
    TestMachine machine; // in Local mode
    const auto search = machine.search();
    EXPECT_FALSE(machine.setCustom(search, machine.path(search, customPath)));
    machine.folder.write("etc/sssd/sssd.conf",
                         machine.folder.read("etc/sssd/sssd.conf") +
                             "\n[domain/late]\nid_provider = ldap\nldap_uri = ldap://late.example.com\n");
    const auto now = machine.path(search, customPath);
    EXPECT_NE(std::ranges::find(now, "/LDAP/late.example.com"), now.end()) << "Custom would begin without it";
}

TEST(SearchPolicy, customModeAlone_keepsTheListThatItBeganWith) {
    TestMachine machine;
    EXPECT_FALSE(machine.call(machine.contacts(), 333));
    const auto before = machine.path(machine.contacts(), customPath);
    EXPECT_EQ(before, machine.path(machine.contacts(), automaticPath));
    machine.folder.write("etc/sssd/sssd.conf",
                         machine.folder.read("etc/sssd/sssd.conf") +
                             "\n[domain/late]\nid_provider = ldap\nldap_uri = ldap://late.example.com\n");
    EXPECT_NE(machine.path(machine.contacts(), automaticPath), before);
    EXPECT_EQ(machine.path(machine.contacts(), customPath), before);
}

TEST(SearchPolicy, anotherListThanReported_isStored) {
    TestMachine machine;
    const auto search = machine.search();
    EXPECT_FALSE(machine.setCustom(search, {guestsNode}));
    EXPECT_EQ(machine.path(search, customPath).back(), guestsNode);
}
