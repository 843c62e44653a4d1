#include "services/ServicesTable.h"

#include <gtest/gtest.h>

#include "fakes/FakeHost.h"
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

/// A table that keeps its on/off and version columns, as an interface of old may.
struct TableOfOld : ServicesTable, services::ServicesTable::Needs, services::ServicesList::Needs {
    TableOfOld() {
        host.session = program.framework.session;
        host.configNode = program.controller().haldenConfigNode();
        host.version = std::nullopt; // shows every connector
        withColumns.setDataSource(&served);
        withColumns.setDelegate(&served);
        list.buildDSConfigPaneData();
    }
    void setPluginModified(bool value) override { modified = value; }
    bool isServicesPaneShown() override { return true; }
    void hideProgressBar() override {}
    void reloadPluginTable() override { withColumns.reloadData(); }

    bool modified = false;
    fakes::FakeHost host;
    fakes::FakeTableView withColumns{program.journal, "old", {"Name", "Version", "On/Off", "Other"}};
    services::ServicesList list{{plugins::PluginController::sharedInstance(program.platform.environment),
                                 program.toolkit, program.platform.environment},
                                {host, host, nullptr},
                                *this};
    services::ServicesTable served{
        list,
        host,
        host,
        program.platform.strings,
        {withColumns, program.interface.configPlugIn, program.interface.serviceState},
        *this};
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
    auto& controller = program.controller();
    (void)controller;
    EXPECT_EQ(program.interface.selectPlugIn.numberOfRows(), 0);
}

TEST_F(ServicesTable, outsideTheList_everyAnswerIsHarmless) {
    program.launch();
    EXPECT_EQ(table().textAt("Name", -1), "DefaultEntry");
    EXPECT_EQ(table().textAt("Name", 99), "DefaultEntry");
    EXPECT_EQ(table().textAt("Unknown column", 0), "DefaultEntry");
}

TEST_F(TableOfOld, cells_showNameVersionAndState) {
    EXPECT_EQ(withColumns.texts("Name"), (std::vector<std::string>{"BSD", "LDAP"}));
    EXPECT_EQ(withColumns.texts("Version"), (std::vector<std::string>{"1.2.3", "1.10"}));
    EXPECT_EQ(withColumns.texts("Other"), (std::vector<std::string>{"DefaultEntry", "DefaultEntry"}));
    EXPECT_EQ(withColumns.textAt("On/Off", 0), "<cell>");
    EXPECT_TRUE(withColumns.tableColumnWithIdentifier("On/Off")->dataCell()->on);
}

TEST_F(TableOfOld, tickingACheckBox_changesTheStateAndMarksTheWindow) {
    withColumns.toggleCheckBox("On/Off", 1, false);
    EXPECT_FALSE(list.isPluginEnabled("LDAP"));
    EXPECT_TRUE(modified);
    EXPECT_TRUE(program.framework.session->config().calls.empty()); // written by save alone
}

TEST_F(TableOfOld, editsElsewhere_areIgnored) {
    withColumns.toggleCheckBox("Name", 1, false);
    withColumns.toggleCheckBox("On/Off", 7, false);
    withColumns.toggleCheckBox("On/Off", -1, false);
    EXPECT_TRUE(list.isPluginEnabled("LDAP"));
    EXPECT_FALSE(modified);
}

TEST_F(TableOfOld, checkBox_isEnabledAsTheConnectorAllowsWhileUnlocked) {
    EXPECT_FALSE(withColumns.drawnCell("On/Off", 0).enabled); // "BSD" is never switched off
    EXPECT_TRUE(withColumns.drawnCell("On/Off", 1).enabled);
    host.rights = false;
    EXPECT_FALSE(withColumns.drawnCell("On/Off", 1).enabled);
}

TEST_F(TableOfOld, colours_touchNameAndVersionOnly) {
    host.rights = false;
    EXPECT_EQ(withColumns.drawnCell("Version", 0).textColor, TextColor::gray);
    toolkit::Cell red;
    red.textColor = TextColor::red;
    EXPECT_EQ(withColumns.drawnCell("Other", 0, red).textColor, TextColor::red);
}

TEST_F(TableOfOld, setUp_takesTheColumnOfOldToo) {
    const auto* column = withColumns.tableColumnWithIdentifier("On/Off");
    ASSERT_NE(column, nullptr);
    served.setUpTable();
    EXPECT_EQ(withColumns.tableColumnWithIdentifier("On/Off"), nullptr);
    const auto cell = withColumns.removedColumn("On/Off")->dataCell();
    EXPECT_EQ(cell->type, toolkit::CellType::checkBox);
    EXPECT_EQ(cell->title + cell->alternateTitle, "");
    EXPECT_EQ(cell->imagePosition, toolkit::ImagePosition::above);
}

TEST_F(TableOfOld, checkBoxOfAPlugin_asksAndTellsThePlugin) {
    program.addPlugin("LDAP", Recording::factory());
    auto& plugins = plugins::PluginController::sharedInstance(program.platform.environment);
    plugins.loadPlugins();
    Recording::script().name = "LDAP";
    list.buildDSConfigPaneData();
    Recording::script().answers["isEnabledForLocation"] = false;
    EXPECT_EQ(withColumns.textAt("On/Off", 1), "<cell>");
    EXPECT_FALSE(withColumns.tableColumnWithIdentifier("On/Off")->dataCell()->on);
    withColumns.toggleCheckBox("On/Off", 1, false);
    EXPECT_EQ(Recording::script().calls.back(), "setEnabledForLocation off null");
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

TEST_F(ServiceState, oneOrNoServer_isSaidSo) {
    program.framework.session->names = {"/LDAP/one"};
    EXPECT_EQ(ofRow(2), "LDAP is on, with one server.");
    program.framework.session->names = {"/Local/Accounts"};
    program.controller().reloadPluginTable();
    EXPECT_EQ(text(), "LDAP is on, without a server.");
}

TEST_F(ServiceState, wishThatIsNotAppliedYet_isSaidToBeOneAndThenTrue) {
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
