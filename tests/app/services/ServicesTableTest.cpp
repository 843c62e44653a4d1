#include <gtest/gtest.h>

#include "fakes/FakeProgram.h"
#include "fakes/RecordingPlugin.h"

using namespace corvane;
using Recording = fakes::RecordingPlugin<0>;
using toolkit::TextColor;

namespace {

struct ServicesTable : testing::Test {
    ServicesTable() { Recording::script() = {}; }
    [[nodiscard]] fakes::FakeTableView& table() { return program.interface.selectPlugIn; }
    [[nodiscard]] fakes::FakeButton& configure() { return program.interface.configPlugIn; }
    fakes::FakeProgram program;
};

} // namespace

TEST_F(ServicesTable, setUp_leavesTheNameColumnAlone) {
    program.launch();
    EXPECT_EQ(table().tableColumnWithIdentifier("On-Off"), nullptr);
    EXPECT_EQ(table().tableColumnWithIdentifier("Version"), nullptr);
    EXPECT_NE(table().tableColumnWithIdentifier("Name"), nullptr);
    EXPECT_EQ(program.journal.only({"selectPlugIn.removeColumn On-Off", "selectPlugIn.removeColumn Version",
                                    "selectPlugIn.sizeToFit"}),
              (std::vector<std::string>{"selectPlugIn.removeColumn On-Off",
                                        "selectPlugIn.removeColumn Version", "selectPlugIn.sizeToFit"}));
}

TEST_F(ServicesTable, locked_noRowCanBeSelectedTextIsGrayAndConfigureDisabled) {
    program.launch();
    EXPECT_FALSE(table().clickRow(0));
    EXPECT_EQ(table().drawnCell("Name", 0).textColor, TextColor::gray);
    EXPECT_FALSE(configure().isEnabled());
}

TEST_F(ServicesTable, unlocked_rowsCanBeSelectedAndTextIsBlack) {
    program.launchUnlocked();
    EXPECT_TRUE(table().clickRow(1));
    EXPECT_EQ(table().drawnCell("Name", 1).textColor, TextColor::black);
}

TEST_F(ServicesTable, configureButton_followsTheSelectedConnector) {
    program.addPlugin("LDAP", Recording::factory());
    Recording::script().name = "LDAP";
    program.launchUnlocked();
    EXPECT_FALSE(configure().isEnabled()); // row 0, "BSD", has nothing to configure
    EXPECT_TRUE(table().clickRow(1));
    EXPECT_TRUE(configure().isEnabled());
}

TEST_F(ServicesTable, buttonAndDoubleClick_openTheConfigurationOfTheSelectedConnector) {
    program.addPlugin("LDAP", Recording::factory());
    Recording::script().name = "LDAP";
    program.launchUnlocked();
    table().doubleClickRow(1);
    configure().click();
    EXPECT_EQ(std::ranges::count(Recording::script().calls, "configureButtonClicked sender"), 2);
}

TEST_F(ServicesTable, configureWithoutASelection_doesNothing) {
    program.launch();
    program.controller().configPlugInAction(nullptr);
    EXPECT_TRUE(program.toolkit.alerts().empty());
}

TEST(ServicesTableAtFirst, withoutAList_hasNoRows) {
    fakes::FakeProgram program;
    ASSERT_EQ(program.controller().pluginWithPrefix("LDAP"), nullptr);
    auto& table = program.interface.selectPlugIn;
    table.reloadData();
    EXPECT_EQ(table.numberOfRows(), 0);
    EXPECT_EQ(table.textAt("Name", 0), "DefaultEntry");
}

TEST_F(ServicesTable, outsideTheList_everyAnswerIsHarmless) {
    program.launch();
    EXPECT_EQ(table().textAt("Name", -1), "DefaultEntry");
    EXPECT_EQ(table().textAt("Name", 99), "DefaultEntry");
    EXPECT_EQ(table().textAt("Unknown column", 0), "DefaultEntry");
}

struct ServiceState : ServicesTable {
    ServiceState() {
        program.addConnector("AD", "Inactive", "1.2.3.4");
        program.framework.session->names = {"/Local/Accounts", "/BSD/Files",   "/LDAP/one",
                                            "/LDAP/two",       "/LDAPS/three", "/Search"};
        program.launchUnlocked(); // AD, BSD, LDAP
    }
    [[nodiscard]] std::string ofRow(int row) {
        table().selectRow(row, false);
        return program.interface.serviceState.text();
    }
    [[nodiscard]] const std::string& text() const { return program.interface.serviceState.text(); }
};

TEST_F(ServiceState, followsTheSelectionAndCountsTheConnectorsServers) {
    EXPECT_EQ(ofRow(0), "AD is off: none of its directories is used.");
    EXPECT_EQ(ofRow(1), "BSD is on.");
    EXPECT_EQ(ofRow(2), "LDAP is on, with 2 servers.");
    table().deselectAll();
    EXPECT_EQ(text(), "");
}

TEST_F(ServiceState, oneOrNoServer_hasItsOwnWords) {
    program.framework.session->names = {"/LDAP/one"};
    EXPECT_EQ(ofRow(2), "LDAP is on, with one server.");
    program.framework.session->names = {"/Local/Accounts"};
    program.controller().reloadPluginTable();
    EXPECT_EQ(text(), "LDAP is on, without a server.");
}

TEST_F(ServiceState, wishThatIsNotAppliedYet_isShownAsOneAndThenAsDone) {
    EXPECT_EQ(ofRow(0), "AD is off: none of its directories is used.");
    program.controller().pluginWithPrefix("AD")->setEnabled(true);
    program.controller().setPluginModified(true);
    EXPECT_EQ(text(), "AD is on once you apply the change.");
    program.interface.applyButton.click();
    EXPECT_EQ(text(), "AD is on, without a directory.");
}

TEST_F(ServiceState, changeOfTheMachine_isFollowed) {
    EXPECT_EQ(ofRow(2), "LDAP is on, with 2 servers.");
    program.framework.session->names = {"/LDAP/one", "/LDAP/two", "/LDAP/three"};
    program.platform.environment.notifications.post("DSSearchPathNodeChange");
    EXPECT_EQ(text(), "LDAP is on, with 3 servers.");
}

TEST_F(ServiceState, locked_saysNothing) {
    EXPECT_NE(ofRow(2), "");
    program.interface.authorizationView.click();
    EXPECT_EQ(text(), "");
}
