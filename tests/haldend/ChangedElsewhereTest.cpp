#include "haldend/EmbeddedDynamicStore.h"
#include "haldend/TestMachine.h"

using namespace corvane;
using namespace corvane::haldend::test;
namespace attribute = halden::attribute;

namespace {

/// A run loop that runs when told, and the store on it.
struct Listener {
    explicit Listener(const TestMachine& machine)
        : store(machine.engine,
                [this](std::function<void()> action) { posted.push_back(std::move(action)); }) {
        const auto session = store.create("test", [this] { ++calls; });
        EXPECT_TRUE(session->setNotificationKeys({std::string(halden::searchPolicyChangedKey)}));
        session->addToRunLoop();
    }
    int delivered() {
        const auto actions = std::exchange(posted, {});
        for (const auto& action : actions)
            action();
        return std::exchange(calls, 0);
    }
    std::vector<std::function<void()>> posted;
    int calls = 0;
    haldend::EmbeddedDynamicStore store;
};

const char* const listedCorp =
    "[sssd]\ndomains = corp\n# by hand\n[domain/corp]\nid_provider = ad\n[domain/b]\nid_provider = ldap\n";

} // namespace

TEST(ChangedElsewhere, editSinceTheLastRead_failsTheCallAndIsNeverOverwritten) {
    TestMachine machine;
    Listener listener(machine);
    (void)machine.mode(machine.search());
    machine.folder.write("etc/sssd/sssd.conf", listedCorp);
    const auto error = machine.call(machine.search(), 111);
    EXPECT_EQ(error.code, halden::ErrorCode::changedElsewhere);
    EXPECT_FALSE(error.reason.empty());
    EXPECT_NE(error.recovery.find("again"), std::string::npos);
    EXPECT_EQ(machine.folder.read("etc/sssd/sssd.conf"), listedCorp);
    EXPECT_EQ(machine.folder.read("etc/nsswitch.conf"), plainNsswitch);
    EXPECT_EQ(listener.delivered(), 1);
    (void)machine.mode(machine.search());
    EXPECT_EQ(machine.call(machine.search(), 111).code, 0) << "the next call works on the new state";
    EXPECT_NE(machine.folder.read("etc/sssd/sssd.conf").find("domains = corp, b\n# by hand"),
              std::string::npos);
}

TEST(ChangedElsewhere, refusedClient_isRefusedUntilItHasReadThatPolicyAgain) {
    TestMachine machine;
    (void)machine.mode(machine.search());
    machine.folder.write("etc/sssd/sssd.conf", listedCorp);
    const auto connectors = machine.node(halden::NodeType::configNode);
    EXPECT_EQ(machine.setCustom(machine.search(), {staffNode}).code, halden::ErrorCode::changedElsewhere);
    const auto again = machine.call(machine.search(), 333);
    EXPECT_EQ(again.code, halden::ErrorCode::changedElsewhere) << "the list that goes with it was refused";
    EXPECT_NE(again.reason.find("etc/sssd/sssd.conf differs"), std::string::npos) << again.reason;
    EXPECT_EQ(machine.call(connectors, 1005).code, halden::ErrorCode::changedElsewhere);
    (void)machine.mode(machine.contacts());
    EXPECT_EQ(machine.call(machine.search(), 333).code, halden::ErrorCode::changedElsewhere)
        << "the other policy was read";
    EXPECT_EQ(machine.folder.read("etc/nsswitch.conf"), plainNsswitch);
    (void)machine.mode(machine.search());
    EXPECT_EQ(machine.call(machine.search(), 333).code, 0);
}

TEST(ChangedElsewhere, editNoticedByThePoll_isSignalledOnceAndStillFailsTheNextCall) {
    TestMachine machine;
    Listener listener(machine);
    (void)machine.mode(machine.search());
    machine.folder.write("etc/nsswitch.conf", "passwd: files sss\ngroup: files sss\n");
    machine.engine->pollForChanges();
    machine.engine->pollForChanges();
    EXPECT_EQ(listener.delivered(), 1);
    EXPECT_EQ(machine.call(machine.search(), 222).code, halden::ErrorCode::changedElsewhere)
        << "nobody has looked at the policy since the edit";
}

TEST(ChangedElsewhere, policyReadAfterTheEdit_letsTheCallThrough) {
    TestMachine machine;
    machine.folder.write("etc/nsswitch.conf", "passwd: files sss\ngroup: files sss\n");
    EXPECT_EQ(machine.mode(machine.search()), attribute::customSearchPath);
    EXPECT_EQ(machine.call(machine.search(), 222).code, 0);
    EXPECT_EQ(machine.folder.read("etc/nsswitch.conf"), "passwd: files\ngroup: files\n");
}

TEST(ChangedElsewhere, editWhileTheServiceWasDown_isDerivedFromTheFiles) {
    TestMachine machine;
    (void)machine.call(machine.search(), 111);
    (void)machine.call(machine.contacts(), 333);
    machine.folder.write("etc/nsswitch.conf", plainNsswitch);
    machine.start();
    EXPECT_EQ(machine.mode(machine.search()), attribute::localOnlySearchPath);
    EXPECT_EQ(machine.mode(machine.contacts()), attribute::customSearchPath)
        << "the files say nothing about contacts";
    EXPECT_EQ(machine.call(machine.search(), 111).code, 0);
}

TEST(ChangedElsewhere, editOfACommentAlone_keepsTheStoredPolicy) {
    TestMachine machine;
    (void)machine.setCustom(machine.search(), {staffNode, "/LDAP/planned.example.com"});
    (void)machine.call(machine.search(), 333);
    machine.folder.write("etc/nsswitch.conf", "# looked after\n" + machine.folder.read("etc/nsswitch.conf"));
    machine.start();
    EXPECT_EQ(machine.mode(machine.search()), attribute::customSearchPath);
    EXPECT_EQ(machine.path(machine.search(), attribute::customSearchPath).back(),
              "/LDAP/planned.example.com");
}

TEST(ChangedElsewhere, listedNodeOfASwitchedOffConnector_switchesItOn) {
    TestMachine machine;
    (void)machine.call(machine.search(), 111);
    (void)machine.call(machine.node(halden::NodeType::configNode), 1005);
    auto sssd = machine.folder.read("etc/sssd/sssd.conf");
    sssd.replace(sssd.find("domains = corp.example.com"), 26, "domains = staff");
    machine.folder.write("etc/sssd/sssd.conf", sssd);
    machine.start();
    EXPECT_EQ(machine.mode(machine.search()), attribute::customSearchPath);
    EXPECT_NE(machine.framework->defaultSession()->nodeWithName(staffNode, nullptr), nullptr);
}

TEST(ChangedElsewhere, twoServicesOnOneFolder_noticeEachOther) {
    TestMachine machine;
    auto other = std::make_shared<haldend::Engine>(machine.folder.path(), machine.codec, machine.log);
    Listener listener(machine);
    (void)machine.mode(machine.search());
    other->machine().change(haldend::Machine::View::contacts, [](haldend::MachinePolicy& policy) {
        policy.contacts.mode = haldend::PolicyMode::custom;
    });
    machine.engine->pollForChanges();
    EXPECT_EQ(listener.delivered(), 1);
    EXPECT_EQ(machine.mode(machine.contacts()), attribute::customSearchPath);
}

TEST(ChangeSignal, ownChange_isSignalledThroughTheRunLoop) {
    TestMachine machine;
    Listener listener(machine);
    (void)machine.call(machine.search(), 111);
    EXPECT_EQ(listener.calls, 0) << "only the run loop delivers";
    EXPECT_EQ(listener.delivered(), 1);
    machine.engine->pollForChanges();
    EXPECT_EQ(listener.delivered(), 0) << "one's own change is no other program's edit";
    (void)machine.call(machine.search(), 111);
    EXPECT_EQ(listener.delivered(), 0) << "nothing has changed";
}
