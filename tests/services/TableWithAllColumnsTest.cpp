// A table that keeps its on/off and version columns, as an older interface may.
#include <gtest/gtest.h>

#include "fakes/FakeHost.h"
#include "fakes/FakeToolkit.h"
#include "fakes/RecordingPlugin.h"
#include "services/ServicesTable.h"

using namespace corvane;
using Recording = fakes::RecordingPlugin<0>;
using toolkit::TextColor;

namespace {

/// The connectors "LDAP" and "BSD", and an open lock.
struct TableWithAllColumns : testing::Test, services::ServicesTable::Needs, services::ServicesList::Needs {
    TableWithAllColumns() {
        Recording::script() = {};
        addConnector("LDAP", "1.10");
        addConnector("BSD", "1.2.3");
        host.session = session;
        host.configNode = std::make_shared<directory::HaldenNodeConfig>(
            session->nodeWithType(halden::NodeType::configNode, nullptr));
        host.version = std::nullopt; // shows every connector
        withColumns.setDataSource(&served);
        withColumns.setDelegate(&served);
        list.buildDSConfigPaneData();
    }
    void addConnector(const std::string& name, const std::string& version) {
        auto record = std::make_shared<fakes::FakeRecord>(std::string(halden::recordType::plugins), name);
        record->with(halden::attribute::functionalState, {"Active"})
            .with(halden::attribute::version, {version});
        session->config().records.push_back(record);
    }
    void setPluginModified(bool value) override { modified = value; }
    bool isServicesPaneShown() override { return shown; }
    void hideProgressBar() override {}
    void reloadPluginTable() override { withColumns.reloadData(); }

    bool modified = false;
    bool shown = true;
    fakes::Journal journal;
    fakes::FakePlatform platform{journal};
    fakes::FakeToolkit toolkit{journal};
    fakes::FakeHost host;
    std::shared_ptr<fakes::FakeSession> session = std::make_shared<fakes::FakeSession>(journal);
    plugins::PluginController plugIns{platform.environment};
    fakes::FakeTableView withColumns{journal, "table", {"Name", "Version", "On/Off", "Other"}};
    fakes::FakeButton configure{journal, "configure", nullptr};
    fakes::FakeLabel state{journal, "state"};
    services::ServicesList list{
        {plugIns, toolkit, platform.environment}, {host, host, host.makeImplementor()}, *this};
    services::ServicesTable served{list, host, host, platform.strings, {withColumns, configure, state},
                                   *this};
};

/// Its identifier can't be had.
struct RaisingColumn final : toolkit::TableColumn {
    [[nodiscard]] std::string identifier() const override { throw std::runtime_error("out of order"); }
    void setDataCell(std::shared_ptr<toolkit::Cell> /*cell*/) override {}
    [[nodiscard]] std::shared_ptr<toolkit::Cell> dataCell() const override { return nullptr; }
};

} // namespace

TEST_F(TableWithAllColumns, cells_showNameVersionAndState) {
    EXPECT_EQ(withColumns.texts("Name"), (std::vector<std::string>{"BSD", "LDAP"}));
    EXPECT_EQ(withColumns.texts("Version"), (std::vector<std::string>{"1.2.3", "1.10"}));
    EXPECT_EQ(withColumns.texts("Other"), (std::vector<std::string>{"DefaultEntry", "DefaultEntry"}));
    EXPECT_EQ(withColumns.textAt("On/Off", 0), "<cell>");
    EXPECT_TRUE(withColumns.tableColumnWithIdentifier("On/Off")->dataCell()->on);
}

TEST_F(TableWithAllColumns, tickingACheckBox_changesTheStateAndMarksTheWindow) {
    withColumns.toggleCheckBox("On/Off", 1, false);
    EXPECT_FALSE(list.isPluginEnabled("LDAP"));
    EXPECT_TRUE(modified);
    EXPECT_TRUE(session->config().calls.empty()); // written by save alone
}

TEST_F(TableWithAllColumns, editsElsewhere_areIgnored) {
    withColumns.toggleCheckBox("Name", 1, false);
    withColumns.toggleCheckBox("On/Off", 7, false);
    withColumns.toggleCheckBox("On/Off", -1, false);
    EXPECT_TRUE(list.isPluginEnabled("LDAP"));
    EXPECT_FALSE(modified);
}

TEST_F(TableWithAllColumns, checkBox_isEnabledAsTheConnectorAllowsWhileUnlocked) {
    EXPECT_FALSE(withColumns.drawnCell("On/Off", 0).enabled); // "BSD" is never switched off
    EXPECT_TRUE(withColumns.drawnCell("On/Off", 1).enabled);
    host.rights = false;
    EXPECT_FALSE(withColumns.drawnCell("On/Off", 1).enabled);
}

TEST_F(TableWithAllColumns, colours_touchNameAndVersionOnly) {
    host.rights = false;
    EXPECT_EQ(withColumns.drawnCell("Version", 0).textColor, TextColor::gray);
    toolkit::Cell red;
    red.textColor = TextColor::red;
    EXPECT_EQ(withColumns.drawnCell("Other", 0, red).textColor, TextColor::red);
}

TEST_F(TableWithAllColumns, setUp_takesTheFormerColumnToo) {
    const auto* column = withColumns.tableColumnWithIdentifier("On/Off");
    ASSERT_NE(column, nullptr);
    served.setUpTable();
    EXPECT_EQ(withColumns.tableColumnWithIdentifier("On/Off"), nullptr);
    const auto cell = withColumns.removedColumn("On/Off")->dataCell();
    EXPECT_EQ(cell->type, toolkit::CellType::checkBox);
    EXPECT_EQ(cell->title + cell->alternateTitle, "");
    EXPECT_EQ(cell->imagePosition, toolkit::ImagePosition::above);
}

TEST_F(TableWithAllColumns, checkBoxOfAPlugin_readsAndSetsThePluginsState) {
    platform.bundles.add("/built-in/PlugIns/", "LDAP.cvplug", Recording::factory());
    plugIns.loadPlugins();
    Recording::script().name = "LDAP";
    list.buildDSConfigPaneData();
    Recording::script().answers["isEnabledForLocation"] = false;
    EXPECT_EQ(withColumns.textAt("On/Off", 1), "<cell>");
    EXPECT_FALSE(withColumns.tableColumnWithIdentifier("On/Off")->dataCell()->on);
    withColumns.toggleCheckBox("On/Off", 1, false);
    EXPECT_EQ(Recording::script().calls.back(), "setEnabledForLocation off null");
}

TEST_F(TableWithAllColumns, cellThatCantBeDecided_isDrawnAsItWas) {
    toolkit::Cell cell;
    cell.textColor = TextColor::red;
    cell.enabled = false;
    served.willDisplayCell(withColumns, cell, RaisingColumn(), 0);
    EXPECT_EQ(cell.textColor, TextColor::red);
    EXPECT_FALSE(cell.enabled);
}

TEST_F(TableWithAllColumns, modification_isShownWhereTheTableIsOnScreen) {
    withColumns.selectRow(1, false);
    list.pluginWithPrefix("LDAP")->setEnabled(false);
    shown = false;
    served.modificationMarked();
    EXPECT_EQ(state.text(), "LDAP is on, without a server.");
    shown = true;
    served.modificationMarked();
    EXPECT_EQ(state.text(), "LDAP is off once you apply the change.");
}
