// What the window says, asks and offers after the service has refused to save a policy.
#include <gtest/gtest.h>

#include "fakes/FakeProgram.h"

using namespace corvane;
namespace attribute = halden::attribute;
using Names = std::vector<std::string>;

namespace {

const halden::Error changedElsewhere = {halden::ErrorCode::changedElsewhere, "Nothing was written.",
                                        "Another program has changed /etc/sssd/sssd.conf.",
                                        "Look at what is there now."};
const halden::Error diskFull = {halden::ErrorCode::storage, "Nothing was written.",
                                "There is no room for /etc/sssd/sssd.conf.", "Make room."};

/// Unlocked, the authentication policy in Custom mode, the contacts policy in Automatic mode.
struct UnsavedNotices : testing::Test {
    UnsavedNotices() {
        program.setPolicy(search, attribute::customSearchPath,
                          {"/Local/Accounts", "/BSD/Files", "/LDAP/one"});
        program.launchUnlocked();
        controller.loadCurrentTabIfNeeded("2");
        controller.loadCurrentTabIfNeeded("3");
    }
    void addAndApply() {
        controller.addNodeToAuthSearchPolicy("/LDAP/two");
        program.interface.applyButton.click();
    }
    /// As the service does it: nothing is taken until the policy has been read.
    void anotherProgramWrites() {
        const auto refuse = [this](const fakes::ReceivedCall&, halden::Error* error) {
            if (detailsRead() > readBefore_) return std::optional(util::Bytes());
            *error = changedElsewhere;
            return std::optional<util::Bytes>();
        };
        readBefore_ = detailsRead();
        search.onCall = refuse;
    }
    [[nodiscard]] std::ptrdiff_t detailsRead() { return program.journal.count("/Search.details"); }
    [[nodiscard]] Names writtenList(const fakes::ReceivedCall& call) {
        const util::BytesView payload = util::BytesView(call.request).subspan(32);
        return program.platform.propertyLists.parse(payload, nullptr).as<util::Array>().texts();
    }
    [[nodiscard]] bool edited() { return program.interface.window.isDocumentEdited(); }

    fakes::FakeProgram program;
    app::MainController& controller = program.controller();
    fakes::FakeInterface& interface = program.interface;
    fakes::FakeNodeState& search = program.framework.session->search();
    fakes::FakeNodeState& contacts = program.framework.session->contacts();

private:
    std::ptrdiff_t readBefore_ = 0;
};

} // namespace

TEST_F(UnsavedNotices, nothingRefused_noStripAndNoQuestion) {
    addAndApply();
    EXPECT_TRUE(interface.unsaved.isHidden());
    EXPECT_TRUE(interface.unsavedContact.isHidden());
    EXPECT_TRUE(program.delegate.applicationShouldTerminate());
    EXPECT_TRUE(program.toolkit.alerts().empty());
}

TEST_F(UnsavedNotices, refusedList_saysWhatWhyAndWhichFile) {
    search.nextError = diskFull;
    addAndApply();
    EXPECT_EQ(interface.unsaved.shownMessage(), "The list of directory domains was not saved.");
    EXPECT_EQ(interface.unsaved.shownInformation(), "There is no room for /etc/sssd/sssd.conf. Make room.");
    EXPECT_TRUE(interface.unsavedContact.isHidden());
    EXPECT_FALSE(edited()); // the mark is as it always was after such a save
}

TEST_F(UnsavedNotices, refusedModeOfContacts_namesTheChoiceInItsOwnStrip) {
    interface.selectContactPolicy.choose(2);
    contacts.nextError = diskFull;
    interface.applyButton.click();
    EXPECT_EQ(interface.unsavedContact.shownMessage(), "The choice “Custom path” was not saved.");
    EXPECT_TRUE(interface.unsaved.isHidden());
}

TEST_F(UnsavedNotices, refusedListAndMode_areBothNamed) {
    interface.selectSearchPolicy.choose(0);
    controller.addNodeToAuthSearchPolicy("/LDAP/two"); // switches to Custom again
    interface.selectSearchPolicy.choose(0);
    anotherProgramWrites();
    interface.applyButton.click();
    EXPECT_EQ(interface.unsaved.shownMessage(),
              "The list of directory domains and the choice “Automatic” were not saved.");
    EXPECT_EQ(interface.unsaved.shownInformation(),
              "Another program has changed /etc/sssd/sssd.conf. Trying again replaces what the other program "
              "has chosen with what you see here.");
}

TEST_F(UnsavedNotices, tryAgainAfterAnotherProgramsChange_readsItThenWritesTheEditAndTakesTheStripAway) {
    anotherProgramWrites();
    addAndApply();
    ASSERT_FALSE(interface.unsaved.isHidden());
    interface.tryAgain.click();
    EXPECT_TRUE(interface.unsaved.isHidden());
    EXPECT_EQ(writtenList(search.calls.back()), (Names{"/LDAP/one", "/LDAP/two"}));
    EXPECT_EQ(interface.selectNode.texts("NodeName").back(), "/LDAP/two");
}

TEST_F(UnsavedNotices, applyAfterAnotherProgramsChange_doesNotPassOverIt) {
    anotherProgramWrites();
    addAndApply();
    controller.addNodeToAuthSearchPolicy("/LDAP/three");
    interface.applyButton.click();
    EXPECT_FALSE(interface.unsaved.isHidden());
}

TEST_F(UnsavedNotices, tryAgainThatIsRefusedAgain_keepsTheStripWithTheNewReason) {
    search.nextError = diskFull;
    addAndApply();
    search.nextError = {halden::ErrorCode::notPermitted, "Nothing was written.", "The file is immutable.",
                        ""};
    interface.tryAgain.click();
    EXPECT_EQ(interface.unsaved.shownInformation(), "The file is immutable.");
}

TEST_F(UnsavedNotices, policyReadAgain_takesTheStripAwayWithTheEdit) {
    interface.selectContactPolicy.choose(2);
    search.nextError = diskFull;
    contacts.nextError = diskFull;
    addAndApply();
    ASSERT_FALSE(interface.unsaved.isHidden());
    ASSERT_FALSE(interface.unsavedContact.isHidden());
    controller.buildDSSearchPaneData();
    EXPECT_TRUE(interface.unsaved.isHidden());
    EXPECT_FALSE(interface.unsavedContact.isHidden());
    controller.buildDSContactsPaneData();
    EXPECT_TRUE(interface.unsavedContact.isHidden());
}

TEST_F(UnsavedNotices, anotherSession_takesTheStripAway) {
    interface.selectSearchPolicy.choose(0);
    search.nextError = diskFull;
    interface.applyButton.click();
    ASSERT_FALSE(interface.unsaved.isHidden());
    controller.setHaldenSession(program.framework.session);
    EXPECT_TRUE(interface.unsaved.isHidden());
}

TEST_F(UnsavedNotices, showWhatIsSaved_dropsTheEditAndTheStrip) {
    search.nextError = diskFull;
    addAndApply();
    interface.showSaved.click();
    EXPECT_TRUE(interface.unsaved.isHidden());
    EXPECT_EQ(interface.selectNode.texts("NodeName"), (Names{"/Local/Accounts", "/BSD/Files", "/LDAP/one"}));
    const auto calls = search.calls.size();
    EXPECT_TRUE(controller.saveSearchPolicies());
    EXPECT_EQ(search.calls.size(), calls); // nothing of it is left to be written
}

TEST_F(UnsavedNotices, showWhatIsSaved_takesTheMarkAwayWhereNothingElseIsUnsaved) {
    search.nextError = diskFull;
    addAndApply();
    controller.addNodeToAuthSearchPolicy("/LDAP/three");
    ASSERT_TRUE(edited());
    interface.showSaved.click();
    EXPECT_FALSE(edited());
}

TEST_F(UnsavedNotices, showWhatIsSaved_keepsTheMarkOfTheOtherPolicy) {
    search.nextError = diskFull;
    addAndApply();
    interface.selectContactPolicy.choose(2);
    interface.showSaved.click();
    EXPECT_TRUE(edited());
}

TEST_F(UnsavedNotices, showWhatIsSaved_showsTheControlsOfTheSavedMode) {
    interface.selectSearchPolicy.choose(0);
    interface.selectContactPolicy.choose(2);
    search.nextError = diskFull;
    contacts.nextError = diskFull;
    interface.applyButton.click();
    interface.showSaved.click();
    EXPECT_FALSE(interface.addNode.isHidden());
    EXPECT_FALSE(interface.addNodeContact.isHidden()) << "its own choice is unsaved still";
    interface.showSavedContact.click();
    EXPECT_TRUE(interface.addNodeContact.isHidden());
}

TEST_F(UnsavedNotices, showWhatIsSaved_leavesTheOtherPolicysEditAlone) {
    interface.selectContactPolicy.choose(2);
    search.nextError = diskFull;
    contacts.nextError = diskFull;
    addAndApply();
    interface.showSaved.click();
    EXPECT_FALSE(interface.unsavedContact.isHidden());
    EXPECT_EQ(interface.selectContactPolicy.indexOfSelectedItem(), 2);
}

TEST_F(UnsavedNotices, choosingTheSavedModeAgain_leavesNothingToSay) {
    interface.selectSearchPolicy.choose(0);
    search.nextError = diskFull;
    interface.applyButton.click();
    ASSERT_FALSE(interface.unsaved.isHidden());
    interface.selectSearchPolicy.choose(2);
    EXPECT_TRUE(interface.unsaved.isHidden());
}

TEST_F(UnsavedNotices, quittingWhileItIsThere_asksAndCancelKeepsTheProgram) {
    search.nextError = diskFull;
    addAndApply();
    program.toolkit.willAnswer(1);
    EXPECT_FALSE(program.delegate.applicationShouldTerminate());
    const auto& asked = program.toolkit.alerts().back();
    EXPECT_EQ(asked.message, "Quit although not everything is saved?");
    EXPECT_EQ(asked.information,
              "Authentication: The list of directory domains was not saved.\n\nIt is lost when "
              "Corvane quits.");
    EXPECT_EQ(asked.buttons, (Names{"Cancel", "Quit Anyway"}));
    program.toolkit.willAnswer(2);
    EXPECT_TRUE(program.delegate.applicationShouldTerminate());
}

TEST_F(UnsavedNotices, closingTheWindow_asksOnce) {
    search.nextError = diskFull;
    addAndApply();
    const auto before = program.toolkit.alerts().size();
    program.toolkit.willAnswer(2);
    EXPECT_TRUE(interface.window.clickClose());
    EXPECT_EQ(program.toolkit.alerts().size(), before + 1);
    EXPECT_TRUE(program.journal.contains("application.terminate"));
}

TEST_F(UnsavedNotices, lockingWhileItIsThere_asksAndTheStripStaysWithoutTryAgain) {
    search.nextError = diskFull;
    addAndApply();
    program.toolkit.willAnswer(1);
    interface.authorizationView.click();
    EXPECT_TRUE(controller.unlocked());
    program.toolkit.willAnswer(2);
    interface.authorizationView.click();
    EXPECT_FALSE(controller.unlocked());
    EXPECT_EQ(program.toolkit.alerts().back().message, "Lock although not everything is saved?");
    EXPECT_FALSE(interface.unsaved.isHidden());
    EXPECT_FALSE(interface.tryAgain.isEnabled());
    interface.authorizationView.click();
    EXPECT_TRUE(interface.tryAgain.isEnabled());
}

TEST_F(UnsavedNotices, savePromptWhoseSaveIsRefused_asksBeforeTheEditIsLost) {
    controller.addNodeToAuthSearchPolicy("/LDAP/two");
    search.nextError = diskFull;
    program.toolkit.willAnswer(1); // Save
    program.toolkit.willAnswer(1); // the refusal's OK
    program.toolkit.willAnswer(1); // Cancel
    EXPECT_FALSE(program.delegate.applicationShouldTerminate());
    EXPECT_EQ(program.toolkit.alerts().back().message, "Quit although not everything is saved?");
}
