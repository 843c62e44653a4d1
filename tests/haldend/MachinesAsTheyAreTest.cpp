#include "haldend/LdapServersTest.h"

using namespace corvane;
using namespace corvane::haldend::test;
namespace attribute = halden::attribute;

// Machines that other programs and people have configured: what a change may write there, and what it must
// leave.
namespace {

using Names = std::vector<std::string>;

const std::string automaticPath(attribute::automaticSearchPath);
const std::string localPath(attribute::localOnlySearchPath);
const std::string customPath(attribute::customSearchPath);
const std::string sssNsswitch = "passwd: files sss\ngroup: files sss\n";
const std::string ipaAndStaff =
    "[sssd]\nservices = nss\ndomains = ipa.example, staff\n[domain/staff]\nid_provider = ldap\n"
    "[domain/ipa.example]\nid_provider = ipa\n";
constexpr int switchLdap = 1005;

std::string nsswitch(const TestMachine& machine) { return machine.folder.read("etc/nsswitch.conf"); }
std::string sssd(const TestMachine& machine) { return machine.folder.read("etc/sssd/sssd.conf"); }
std::string domainsLine(const TestMachine& machine) {
    const auto text = sssd(machine);
    const auto start = text.find("domains");
    return start == std::string::npos ? "" : text.substr(start, text.find('\n', start) - start);
}
Names active(const TestMachine& machine) {
    auto names = machine.search()->subnodeNames(nullptr).texts();
    names.erase(names.begin(), names.begin() + 2); // the machine's own files
    return names;
}
void snippet(const TestMachine& machine, const std::string& name, const std::string& text) {
    const auto path = "etc/sssd/conf.d/" + name;
    machine.folder.write(path, text);
    std::filesystem::permissions(machine.folder.path() + "/" + path, std::filesystem::perms::owner_read);
}
std::shared_ptr<halden::Node> connectors(const TestMachine& machine) {
    return machine.node(halden::NodeType::configNode);
}

} // namespace

TEST(MachinesAsTheyAre, contactsAloneChanged_writesNoFileWhateverTheFilesSay) {
    for (const auto& text :
         {ipaAndStaff,
          std::string("[sssd]\ndomains = b,a\n[domain/a]\nid_provider=ldap\n[domain/b]\nid_provider=ad\n"),
          std::string("[sssd]\ndomains = a, a\n[domain/a]\nid_provider = ldap\n"),
          std::string(twoDirectories)})
        for (const auto& names : {sssNsswitch, std::string("group: files sss\n"),
                                  std::string("passwd: sss files\n"), std::string(plainNsswitch)}) {
            TestMachine machine(text, names);
            (void)machine.mode(machine.search());
            EXPECT_EQ(machine.setCustom(machine.contacts(), {"/LDAP/a"}).code, 0);
            EXPECT_EQ(machine.call(machine.contacts(), 333).code, 0);
            EXPECT_EQ(sssd(machine), text) << names;
            EXPECT_EQ(nsswitch(machine), names) << text;
        }
}

TEST(MachinesAsTheyAre, listThatIsNotUsedYet_writesNoFile) {
    TestMachine machine(twoDirectories, "group: files sss\n");
    EXPECT_EQ(machine.setCustom(machine.search(), {staffNode}).code, 0);
    EXPECT_EQ(nsswitch(machine), "group: files sss\n");
}

TEST(MachinesAsTheyAre, policyNeverTouched_agreesWithTheFiles) {
    TestMachine machine(
        "[sssd]\ndomains = b, x\n[domain/a]\nid_provider = ldap\n[domain/b]\nid_provider = ad\n"
        "[domain/c]\nid_provider = ldap\nenabled = true\n",
        sssNsswitch);
    EXPECT_EQ(active(machine), (Names{"/AD/b", "/LDAP/c"}));
    TestMachine stopped("[sssd]\ndomains = a, A\n[domain/a]\nid_provider = ldap\n", sssNsswitch);
    EXPECT_EQ(stopped.mode(stopped.search()), localPath) << "SSSD doesn't start with a name twice";
    EXPECT_EQ(stopped.call(stopped.search(), 111).code, 0);
    EXPECT_EQ(domainsLine(stopped), "domains = a");
}

TEST(MachinesAsTheyAre, directoryOfAnotherProvider_isShownAndKeepsItsPlace) {
    TestMachine machine(ipaAndStaff, sssNsswitch);
    EXPECT_EQ(machine.mode(machine.search()), automaticPath);
    EXPECT_EQ(active(machine), (Names{"/IPA/ipa.example", "/LDAP/staff"}));
    EXPECT_EQ(machine.call(machine.search(), 222).code, 0);
    EXPECT_EQ(nsswitch(machine).find("sss"), std::string::npos);
    EXPECT_EQ(machine.call(machine.search(), 111).code, 0);
    EXPECT_EQ(nsswitch(machine), sssNsswitch);
    EXPECT_EQ(sssd(machine), ipaAndStaff);
}

TEST(MachinesAsTheyAre, connectorSwitchedOff_isNotServedBesideAnotherProvider) {
    TestMachine machine(ipaAndStaff, sssNsswitch);
    (void)machine.mode(machine.search());
    EXPECT_EQ(machine.call(connectors(machine), switchLdap).code, 0);
    EXPECT_EQ(domainsLine(machine), "domains = ipa.example");
    EXPECT_EQ(nsswitch(machine), sssNsswitch);
    EXPECT_EQ(active(machine), Names{"/IPA/ipa.example"});
    EXPECT_EQ(machine.call(connectors(machine), switchLdap).code, 0);
    EXPECT_EQ(domainsLine(machine), "domains = ipa.example, staff");
}

TEST(MachinesAsTheyAre, directoryOfAnotherProviderTakenOff_comesBackWithAutomatic) {
    TestMachine machine(ipaAndStaff, sssNsswitch);
    (void)machine.mode(machine.search());
    EXPECT_EQ(machine.setCustom(machine.search(), {"/LDAP/staff"}).code, 0);
    EXPECT_EQ(machine.call(machine.search(), 333).code, 0);
    EXPECT_EQ(domainsLine(machine), "domains = staff");
    machine.start();
    EXPECT_EQ(machine.call(machine.search(), 111).code, 0);
    EXPECT_EQ(active(machine), (Names{"/IPA/ipa.example", "/LDAP/staff"}));
    EXPECT_EQ(domainsLine(machine), "domains = ipa.example, staff");
}

TEST(MachinesAsTheyAre, snippetThatOverridesTheList_isNamedAndNothingIsWritten) {
    TestMachine machine(twoDirectories, plainNsswitch);
    snippet(machine, "50-list.conf", "[sssd]\ndomains = guests\n");
    EXPECT_EQ(machine.mode(machine.search()), localPath);
    const auto error = machine.call(machine.search(), 111);
    EXPECT_NE(error.code, 0);
    EXPECT_NE(error.reason.find("etc/sssd/conf.d/50-list.conf"), std::string::npos) << error.reason;
    EXPECT_EQ(sssd(machine), twoDirectories);
    EXPECT_EQ(nsswitch(machine), plainNsswitch);
    EXPECT_EQ(machine.setCustom(machine.search(), {guestsNode}).code, 0);
    EXPECT_EQ(machine.call(machine.search(), 333).code, 0) << "what the snippet says is what is wanted";
    EXPECT_EQ(sssd(machine), twoDirectories);
}

TEST(MachinesAsTheyAre, snippet_isReadAndItsChangeIsNoticed) {
    TestMachine machine(twoDirectories, sssNsswitch);
    EXPECT_EQ(active(machine), (Names{staffNode, guestsNode}));
    snippet(machine, "x.conf", "[domain/extra]\nid_provider = ldap\nenabled = true\n");
    machine.folder.write("etc/sssd/conf.d/open.conf", "[sssd]\ndomains = guests\n");
    EXPECT_EQ(active(machine), (Names{staffNode, guestsNode, "/LDAP/extra"}));
    EXPECT_EQ(machine.call(machine.search(), 222).code, halden::ErrorCode::changedElsewhere);
    const auto remarks = machine.path(machine.search(), attribute::remarks);
    ASSERT_EQ(remarks.size(), 1U);
    EXPECT_NE(remarks[0].find("open.conf: others than its owner"), std::string::npos) << remarks[0];
}

TEST(MachinesAsTheyAre, sectionEnabledByItself_isNotSaidToBeOff) {
    TestMachine machine(
        "[sssd]\ndomains = a, c\n[domain/a]\nid_provider = ldap\n[domain/c]\nid_provider = ldap\n"
        "enabled = true\n",
        sssNsswitch);
    (void)machine.mode(machine.search());
    (void)machine.setCustom(machine.search(), {"/LDAP/a"});
    const auto error = machine.call(machine.search(), 333);
    EXPECT_NE(error.reason.find("[domain/c] says \"enabled = true\""), std::string::npos) << error.reason;
    EXPECT_EQ(domainsLine(machine), "domains = a, c");
}

TEST(MachinesAsTheyAre, nsswitchOfAuthselect_isNeverEdited) {
    const std::string generated =
        "# Generated by authselect\n# Do not modify this file manually, use authselect instead.\n";
    TestMachine machine(twoDirectories, generated + "passwd: files systemd\ngroup: files systemd\n");
    const auto before = nsswitch(machine);
    const auto error = machine.call(machine.search(), 111);
    EXPECT_NE(error.recovery.find("authselect select sssd"), std::string::npos) << error.recovery;
    EXPECT_EQ(nsswitch(machine), before);
    EXPECT_EQ(sssd(machine), twoDirectories);
    TestMachine using_(twoDirectories, generated + "passwd: files sss systemd\ngroup: files sss systemd\n");
    (void)using_.mode(using_.search());
    EXPECT_EQ(using_.call(using_.search(), 111).code, 0) << "only sssd.conf is changed";
    EXPECT_EQ(domainsLine(using_), "domains = staff, guests, corp.example.com");
}

TEST(MachinesAsTheyAre, customListThatNobodyStored_isWhatAutomaticUses) {
    TestMachine machine(twoDirectories, plainNsswitch);
    for (const auto& node : {machine.search(), machine.contacts()})
        EXPECT_EQ(machine.path(node, customPath), machine.path(node, automaticPath));
    EXPECT_EQ(machine.call(machine.search(), 333).code, 0);
    EXPECT_EQ(active(machine), (Names{staffNode, guestsNode, corpNode}));
    EXPECT_EQ(machine.setCustom(machine.search(), {}).code, 0);
    EXPECT_TRUE(active(machine).empty()) << "an empty list that was stored is empty";
    machine.start();
    EXPECT_EQ(machine.path(machine.search(), customPath).size(), 2U);
}

TEST(MachinesAsTheyAre, lastListedServerDeleted_leavesNoLineOnWhichSssdStops) {
    const ServerMachine machine(
        "[sssd]\nservices = nss\ndomains = a\n[domain/a]\nid_provider = ldap\nldap_uri = ldap://a\n",
        sssNsswitch);
    (void)machine.mode(machine.search());
    EXPECT_EQ(machine.write({}, {"a"}).error.code, 0);
    EXPECT_EQ(sssd(machine), "[sssd]\nservices = nss\n");
    EXPECT_EQ(nsswitch(machine), "passwd: files\ngroup: files\n");
}

TEST(MachinesAsTheyAre, oddSectionsElsewhere_dontPutAPolicyOutOfReach) {
    TestMachine machine("# Größe\ndebug = 1\n[ sssd ]\ndomains = a\n[domain/a]\nid_provider = "
                        "ldap\n[domain/b, c]\nid_provider = ldap\n"
                        "odd key [x] = \"y\"\n",
                        "# Gr\xF6\xDF"
                        "e\n passwd : files\r\ngroup:files\r\n");
    EXPECT_EQ(machine.call(machine.search(), 111).code, 0);
    EXPECT_EQ(active(machine), Names{"/LDAP/a"});
    EXPECT_EQ(nsswitch(machine), "# Gr\xF6\xDF"
                                 "e\n passwd : files sss\r\ngroup:files sss\r\n");
    machine.start();
    EXPECT_EQ(machine.call(machine.search(), 222).code, 0);
    EXPECT_EQ(nsswitch(machine), "# Gr\xF6\xDF"
                                 "e\n passwd : files\r\ngroup:files\r\n");
}
