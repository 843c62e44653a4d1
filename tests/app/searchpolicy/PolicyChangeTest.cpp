#include <gtest/gtest.h>

#include "fakes/FakeProgram.h"

using namespace corvane;
namespace attribute = halden::attribute;

namespace {

constexpr const char* changed = "com.velmora.DirectoryService.NotifyTypeStandard:SearchPolicyChanged";

/// Unlocked, with both policies read and the authentication policy on screen.
struct PolicyChange : testing::Test {
    PolicyChange() {
        program.launchUnlocked();
        program.interface.window.toolbar().clickItem("kSearchPaths");
        controller.buildDSContactsPaneData();
        program.journal.clear();
    }
    void signal() { program.platform.dynamicStore.signal(changed); }
    [[nodiscard]] bool readAuthentication() { return program.journal.contains("/Search.details"); }
    [[nodiscard]] bool readContacts() { return program.journal.contains("/Contacts.details"); }
    void showContacts() { program.toolkit.madeTabViews.at(0)->clickTab("3"); }

    fakes::FakeProgram program;
    app::MainController& controller = program.controller();
};

} // namespace

TEST_F(PolicyChange, reload_readsThePolicyOnScreenNowAndTheOtherWhenShown) {
    controller.reloadSearchPolicies();
    EXPECT_TRUE(readAuthentication());
    EXPECT_FALSE(readContacts());
    showContacts();
    EXPECT_TRUE(readContacts());
}

TEST_F(PolicyChange, announcement_readsACleanPolicyAgain) {
    signal();
    EXPECT_TRUE(readAuthentication());
    EXPECT_FALSE(readContacts());
    showContacts();
    EXPECT_TRUE(readContacts());
}

TEST_F(PolicyChange, announcement_leavesAPolicyWithAnEditedListAlone) {
    controller.addNodeToContactsSearchPolicy("/LDAP/two");
    program.journal.clear();
    signal();
    EXPECT_TRUE(readAuthentication());
    showContacts();
    EXPECT_FALSE(readContacts());
    EXPECT_TRUE(controller.isNodeOnContactsSearchPolicy("/LDAP/two"));
}

TEST_F(PolicyChange, announcement_leavesAPolicyWithAnUnsavedModeAlone) {
    program.interface.selectSearchPolicy.choose(1);
    program.journal.clear();
    signal();
    EXPECT_FALSE(readAuthentication());
    EXPECT_EQ(program.interface.selectSearchPolicy.indexOfSelectedItem(), 1);
}

TEST_F(PolicyChange, announcement_remotely_isIgnored) {
    controller.setIPAddress("server.example.com");
    program.journal.clear();
    signal();
    EXPECT_TRUE(program.journal.entries().empty());
}

TEST_F(PolicyChange, announcement_withoutASession_isIgnored) {
    program.framework.available = false;
    controller.setHaldenSession(nullptr);
    program.journal.clear();
    signal();
    EXPECT_FALSE(readAuthentication());
    EXPECT_TRUE(program.toolkit.alerts().empty());
}

TEST_F(PolicyChange, announcementBeforeTheWindowWasShown_readsNothing) {
    fakes::FakeProgram fresh;
    (void)fresh.controller();
    fresh.journal.clear();
    fresh.platform.dynamicStore.signal(changed);
    EXPECT_TRUE(fresh.journal.entries().empty());
}
