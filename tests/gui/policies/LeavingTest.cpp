// Directories that leave the login policy, in the real window.
#include "gui/policies/PolicyWindow.h"

namespace corvane::gui {
namespace {

class Leaving : public PolicyWindow {
protected:
    [[nodiscard]] std::string sssd() const { return machine_.folder.read("etc/sssd/sssd.conf"); }
};

TEST_F(Leaving, localMode_isAskedAboutAndReturnMeansCancel) {
    open();
    user().choose("selectSearchPolicy", "Local");
    const auto before = sssd();
    const auto asked = answered([&] { user().click("applyButton"); }, "Cancel");
    EXPECT_TRUE(asked.contains("/LDAP/charlie.example")) << asked.toStdString();
    EXPECT_TRUE(asked.contains("/AD/corp.example")) << asked.toStdString();
    EXPECT_EQ(sssd(), before);
    EXPECT_TRUE(edited());
    (void)answered([&] { user().click("applyButton"); }, "Save Anyway");
    EXPECT_EQ(machine_.mode(machine_.search()), halden::attribute::localOnlySearchPath);
    EXPECT_FALSE(edited());
}

TEST_F(Leaving, aConnectorSwitchedOffInItsWindow_isAskedAboutAtApply) {
    open();
    user().click("kServices");
    user().clickRow("selectPlugIn", 0); // AD
    user().click("configPlugIn");
    settle(200);
    user().answer("Use this connector");
    user().answer("OK");
    settle(200);
    const auto asked = answered([&] { user().click("applyButton"); }, "Cancel");
    EXPECT_TRUE(asked.contains("Take this directory off the login policy?")) << asked.toStdString();
    EXPECT_TRUE(asked.contains("/AD/corp.example")) << asked.toStdString();
    EXPECT_TRUE(edited());
}

TEST_F(Leaving, aServerDeletedInAutomaticMode_isAskedAboutAtApply) {
    open();
    user().choose("selectSearchPolicy", "Automatic");
    user().click("applyButton"); // more directories than before: none leaves
    user().click("kServices");
    user().clickRow("selectPlugIn", 2); // LDAP
    user().click("configPlugIn");
    settle(200);
    user().clickRow("servers", 1);
    user().click("deleteServer");
    settle(200);
    user().click("reallyDelete"); // the connector's own question, as Automatic uses the server
    settle(200);
    user().click("serversDone");
    settle(200);
    const auto before = sssd();
    const auto asked = answered([&] { user().click("applyButton"); }, "Cancel");
    EXPECT_TRUE(asked.contains("Take this directory off the login policy?")) << asked.toStdString();
    EXPECT_TRUE(asked.contains("/LDAP/bravo.example")) << asked.toStdString();
    EXPECT_EQ(sssd(), before);
}

} // namespace
} // namespace corvane::gui
