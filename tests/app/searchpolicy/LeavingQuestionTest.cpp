// The one question before a save takes directories off the login policy.
#include <gtest/gtest.h>

#include "fakes/FakeProgram.h"
#include "fakes/RecordingPlugin.h"

using namespace corvane;
namespace attribute = halden::attribute;
using Names = std::vector<std::string>;
using Ldap = fakes::RecordingPlugin<7>;

namespace {

constexpr int cancel = 1;
constexpr int saveAnyway = 2;

/// Unlocked; three directories in use by a custom list, one of them in Automatic mode as well.
struct LeavingQuestion : testing::Test {
    LeavingQuestion() {
        Ldap::script() = {};
        Ldap::script().answers["isDirty"] = false;
        program.addPlugin("LDAP", Ldap::factory());
        program.addConnector("AD", "Active", "1.2.3.4");
        program.setPolicy(search, attribute::customSearchPath,
                          {"/Local/Accounts", "/BSD/Files", "/LDAP/one", "/LDAP/two", "/AD/corp"});
    }
    void openPolicies() {
        program.launchUnlocked();
        controller.loadCurrentTabIfNeeded("2");
        program.journal.clear();
    }
    [[nodiscard]] const fakes::ShownAlert& asked() { return program.toolkit.alerts().at(0); }
    [[nodiscard]] std::size_t questions() { return program.toolkit.alerts().size(); }
    [[nodiscard]] bool edited() { return program.interface.window.isDocumentEdited(); }
    void apply(int answer) {
        program.toolkit.willAnswer(answer);
        program.interface.applyButton.click();
    }

    fakes::FakeProgram program;
    app::MainController& controller = program.controller();
    fakes::FakeNodeState& search = program.framework.session->search();
    fakes::FakeNodeState& config = program.framework.session->config();
};

} // namespace

TEST_F(LeavingQuestion, anotherMode_namesWhatLeavesAndCancelIsTheDefault) {
    openPolicies();
    program.interface.selectSearchPolicy.choose(0); // Automatic: /LDAP/one stays
    apply(cancel);
    EXPECT_EQ(asked().message, "Take these directories off the login policy?");
    EXPECT_EQ(asked().information, "/LDAP/two\n/AD/corp\n\nAccounts that come from there can no longer log "
                                   "in to this machine. The machine’s "
                                   "own accounts (/Local/Accounts) stay.");
    EXPECT_EQ(asked().buttons, (Names{"Cancel", "Save Anyway"}));
}

TEST_F(LeavingQuestion, cancelled_everythingIsUnsavedAsItWas) {
    openPolicies();
    program.interface.selectSearchPolicy.choose(1);
    apply(cancel);
    EXPECT_TRUE(search.calls.empty());
    EXPECT_TRUE(edited());
    EXPECT_TRUE(program.interface.applyButton.isEnabled());
    EXPECT_EQ(program.interface.selectSearchPolicy.indexOfSelectedItem(), 1);
    EXPECT_EQ(std::ranges::count(Ldap::script().calls, "saveChanges"), 0);
    program.toolkit.willAnswer(cancel);
    EXPECT_FALSE(controller.save());
}

TEST_F(LeavingQuestion, agreed_savesAndAsksOnce) {
    openPolicies();
    program.interface.selectSearchPolicy.choose(1);
    apply(saveAnyway);
    EXPECT_EQ(questions(), 1U);
    ASSERT_EQ(search.calls.size(), 1U);
    EXPECT_EQ(search.calls[0].code, 222);
    EXPECT_FALSE(edited());
}

TEST_F(LeavingQuestion, aShorterList_asksAboutWhatWasTakenOff) {
    openPolicies();
    controller.deleteNodeFromAuthSearchPolicy("/LDAP/two");
    apply(saveAnyway);
    EXPECT_EQ(asked().message, "Take this directory off the login policy?");
    EXPECT_TRUE(asked().information.starts_with("/LDAP/two\n\n"));
    program.interface.selectNode.reloadData();
    controller.addNodeToAuthSearchPolicy("/LDAP/two"); // back again: nothing leaves
    program.interface.applyButton.click();
    EXPECT_EQ(questions(), 1U);
}

TEST_F(LeavingQuestion, secondShorterList_asksOnlyAboutWhatLeavesSinceTheSaveBefore) {
    openPolicies();
    controller.deleteNodeFromAuthSearchPolicy("/LDAP/two");
    apply(saveAnyway);
    controller.deleteNodeFromAuthSearchPolicy("/AD/corp");
    apply(saveAnyway);
    ASSERT_EQ(questions(), 2U);
    EXPECT_TRUE(program.toolkit.alerts()[1].information.starts_with("/AD/corp\n\n"))
        << program.toolkit.alerts()[1].information;
}

TEST_F(LeavingQuestion, aMovedOrAddedDirectory_asksNothing) {
    openPolicies();
    controller.addNodeToAuthSearchPolicy("/LDAP/three");
    program.interface.applyButton.click();
    EXPECT_EQ(questions(), 0U);
    EXPECT_EQ(search.calls.size(), 1U);
}

TEST_F(LeavingQuestion, aConnectorThatIsSwitchedOff_takesItsDirectoriesAlong_shownOrNot) {
    search.details.set(attribute::remarks, util::Array{"A section isn’t used."});
    program.launchUnlocked(); // the policy was never shown
    controller.pluginWithPrefix("AD")->setEnabled(false);
    controller.setPluginModified(true);
    apply(cancel);
    EXPECT_TRUE(asked().information.starts_with("/AD/corp\n\n")) << asked().information;
    EXPECT_TRUE(config.calls.empty());
    // What was read for the question is what the pane shows from here on.
    EXPECT_EQ(program.interface.selectSearchPolicy.indexOfSelectedItem(), 2);
    EXPECT_EQ(program.interface.selectNode.numberOfRows(), 5);
    EXPECT_EQ(program.interface.remarks.shownMessage(), "A section isn’t used.");
}

TEST_F(LeavingQuestion, aConnectorThatIsOffAlready_hasNothingToLose) {
    program.addConnector("NIS", "Inactive", "1.2.3.4.5");
    program.setPolicy(search, attribute::customSearchPath, {"/Local/Accounts", "/BSD/Files", "/NIS/old"});
    openPolicies();
    program.interface.selectSearchPolicy.choose(1);
    program.interface.applyButton.click();
    EXPECT_EQ(questions(), 0U);
}

TEST_F(LeavingQuestion, aServerDeletedInAutomaticMode_isAskedAbout) {
    program.setPolicy(search, attribute::automaticSearchPath, {});
    program.launchUnlocked();
    Ldap::script().nodesToRemove = {"/LDAP/one", "/LDAP/elsewhere"};
    controller.setPluginModified(true);
    apply(cancel);
    EXPECT_TRUE(asked().information.starts_with("/LDAP/one\n\n")) << asked().information;
    EXPECT_EQ(std::ranges::count(Ldap::script().calls, "saveChanges"), 0);
}

TEST_F(LeavingQuestion, policyThatIsEditedHere_isNotReadBeforeItsSave) {
    openPolicies();
    program.interface.selectSearchPolicy.choose(1);
    apply(cancel);
    // Reading would let the service think that another program's change has been seen.
    EXPECT_EQ(program.journal.count("/Search.details"), 0);
}

TEST_F(LeavingQuestion, groupMembersWithoutAnAccount_areNamed) {
    auto& records = program.framework.session->local().records;
    const auto add = [&](std::string_view type, const std::string& name) -> fakes::FakeRecord& {
        const auto record = std::make_shared<fakes::FakeRecord>(std::string(type), name);
        records.push_back(record);
        return *record;
    };
    add(halden::recordType::users, "root");
    add(halden::recordType::groups, "sudo").with(attribute::groupMembership, {"root", "alice"});
    add(halden::recordType::groups, "staff").with(attribute::groupMembership, {"bob", "alice"});
    openPolicies();
    program.interface.selectSearchPolicy.choose(1);
    apply(cancel);
    EXPECT_TRUE(asked().information.ends_with(
        "Members of this machine’s groups who have no account of its own: alice (sudo, staff), bob (staff)."))
        << asked().information;
}

TEST_F(LeavingQuestion, manyDirectories_areNamedUpToTwelve) {
    Names custom = {"/Local/Accounts", "/BSD/Files"};
    for (int number = 1; number <= 20; ++number)
        custom.push_back("/LDAP/number" + std::to_string(number));
    program.setPolicy(search, attribute::customSearchPath, custom);
    openPolicies();
    program.interface.selectSearchPolicy.choose(1);
    apply(cancel);
    EXPECT_NE(asked().information.find("/LDAP/number12\nand 8 more\n\n"), std::string::npos)
        << asked().information;
}

TEST_F(LeavingQuestion, quittingWithSave_cancelledHere_keepsTheProgramAndTheEdits) {
    openPolicies();
    program.interface.selectSearchPolicy.choose(1);
    program.toolkit.willAnswer(1); // Save
    program.toolkit.willAnswer(cancel);
    EXPECT_FALSE(program.delegate.applicationShouldTerminate());
    EXPECT_TRUE(search.calls.empty());
    EXPECT_TRUE(edited());
    program.toolkit.willAnswer(1); // Save
    program.toolkit.willAnswer(saveAnyway);
    EXPECT_TRUE(program.delegate.applicationShouldTerminate());
    EXPECT_EQ(search.calls.size(), 1U);
}
