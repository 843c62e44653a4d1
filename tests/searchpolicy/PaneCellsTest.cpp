// One policy's pane on its own: a policy that was read from a service of the test's, and an open lock.
#include <gtest/gtest.h>

#include "fakes/FakeHost.h"
#include "fakes/FakeToolkit.h"
#include "searchpolicy/SearchPolicyPane.h"

using namespace corvane;
using toolkit::TextColor;

namespace {

struct PaneCells : testing::Test,
                   searchpolicy::SearchPolicy::Needs,
                   searchpolicy::SearchPolicyPane::Needs,
                   plugins::PluginItems {
    PaneCells() {
        namespace attribute = halden::attribute;
        host.session = session;
        auto& details = session->search().details;
        details.set(attribute::searchPolicy, util::Array{std::string(attribute::customSearchPath)});
        details.set(attribute::localOnlySearchPath, util::Array{"/Local/Accounts"});
        details.set(attribute::customSearchPath, util::Array{"/Local/Accounts", "/LDAP/one"});
        table.setDataSource(&pane);
        table.setDelegate(&pane);
        policy.buildPaneData();
    }
    void setSearchPolicyModified(bool /*modified*/) override {}
    void hideProgressBar() override {}
    void customListReplaced(searchpolicy::SearchPolicy& /*policy*/) override {}
    void setPluginModified(bool /*modified*/) override {}
    void openNodePane(searchpolicy::SearchPolicy& /*policy*/, int /*index*/) override {}
    void selectRowInAuthenticationTable(int /*row*/) override {}
    const List* items() const override { return nullptr; }
    std::shared_ptr<plugins::PluginItem> pluginWithPrefix(const std::string& /*prefix*/) const override {
        return nullptr;
    }
    [[nodiscard]] TextColor colorAfter(TextColor before, const std::string& column, int row) {
        toolkit::Cell cell;
        cell.textColor = before;
        return table.drawnCell(column, row, cell).textColor;
    }

    fakes::Journal journal;
    fakes::FakePlatform platform{journal};
    fakes::FakeToolkit toolkit{journal};
    fakes::FakeHost host;
    std::shared_ptr<fakes::FakeSession> session = std::make_shared<fakes::FakeSession>(journal);
    fakes::FakePopUpButton mode{journal, "mode", {"Automatic", "Local", "Custom"}};
    fakes::FakeTableView table{journal, "table", {"NodeName", "Other"}};
    fakes::FakeNotice remarks{journal, "remarks"};
    fakes::FakeButton add{journal, "add", nullptr};
    fakes::FakeButton remove{journal, "remove", nullptr};
    fakes::FakeView hint{journal, "hint"};
    searchpolicy::SearchPolicy policy{searchpolicy::authenticationTraits,
                                      host,
                                      platform.environment,
                                      toolkit,
                                      {mode, table, remarks},
                                      *this};
    searchpolicy::SearchPolicyPane pane{
        policy, *this, host, platform.environment, toolkit, {mode, table, add, remove, hint}, *this};
};

} // namespace

TEST_F(PaneCells, colour_isForTheColumnOfNamesAlone) {
    EXPECT_EQ(colorAfter(TextColor::red, "NodeName", 0), TextColor::gray);
    EXPECT_EQ(colorAfter(TextColor::red, "NodeName", 1), TextColor::black);
    EXPECT_EQ(colorAfter(TextColor::red, "Other", 0), TextColor::red);
    EXPECT_EQ(colorAfter(TextColor::red, "Other", 1), TextColor::red);
}

TEST_F(PaneCells, pressOnAProtectedRow_leavesTheOtherRowSelected) {
    ASSERT_TRUE(table.clickRow(1));
    EXPECT_FALSE(table.clickRow(0));
    EXPECT_EQ(table.selectedRows(), std::vector<int>{1});
    EXPECT_TRUE(remove.isEnabled());
}

TEST_F(PaneCells, nodeWhoseNameHasNoConnector_isDrawnAsItWas) {
    session->search().details.set(halden::attribute::customSearchPath,
                                  util::Array{"/Local/Accounts", "no connector"});
    policy.buildPaneData();
    EXPECT_EQ(colorAfter(TextColor::red, "NodeName", 1), TextColor::red);
}
