// The panel of nodes on its own, with a parent that a test plays.
#include <gtest/gtest.h>

#include "fakes/FakeDirectory.h"
#include "fakes/FakePlatform.h"
#include "fakes/FakeToolkit.h"
#include "searchpolicy/NodePaneController.h"

using namespace corvane;
using Names = std::vector<std::string>;

namespace {

struct NodePanel : testing::Test, searchpolicy::NodePaneController::Parent {
    NodePanel() { panel.setParentController(this); }
    std::shared_ptr<halden::Session> haldenSession() override { return session; }
    bool shouldAllowNodeNameOnSearchPolicy(const std::string& /*nodeName*/) override { return true; }
    void refreshTable() override {}
    void setPluginModified(bool /*modified*/) override {}
    void endSheet(toolkit::Window& /*sheet*/) override { ended = true; }

    void open(const Names& names, int index = searchpolicy::NodePaneController::appendAtEnd) {
        list = util::Array::makeMutable();
        for (const auto& name : names)
            list.append(name);
        panel.setCustomNodeArray(list);
        panel.setCustomNodeIndex(index);
        panel.buildNodePaneData();
    }
    void add(const std::vector<int>& rows) {
        nodes.deselectAll();
        for (const int row : rows)
            nodes.selectRow(row, true);
        button.click();
    }

    fakes::Journal journal;
    fakes::FakePlatform platform{journal};
    fakes::FakeToolkit toolkit{journal};
    std::shared_ptr<fakes::FakeSession> session = std::make_shared<fakes::FakeSession>(journal);
    fakes::FakeWindow window{journal, "panel"};
    fakes::FakeTableView nodes{journal, "nodes", {"NodeName"}};
    fakes::FakeTextField filter{journal, "filter"};
    fakes::FakeButton button{journal, "add", &window};
    fakes::FakeButton done{journal, "done", &window};
    util::Array list;
    bool ended = false;
    searchpolicy::NodePaneController panel{
        platform.environment, toolkit, {window, nodes, filter, button, done}};
};

} // namespace

TEST_F(NodePanel, duplicateBeforeANewNode_takesNoPlace) {
    session->names = {"/L/a", "/L/b", "/L/c"};
    open({"/X/1", "/X/2"}, 1);
    list.insert("/L/a", 0); // another program's plug-in was faster
    add({0, 1, 2});
    EXPECT_EQ(list.texts(), (Names{"/L/a", "/L/b", "/L/c", "/X/1", "/X/2"}));
    EXPECT_EQ(toolkit.alerts().size(), 1U);
    EXPECT_TRUE(ended);
}

TEST_F(NodePanel, interfaceWithoutAColumnOfNames_showsNoRows) {
    fakes::FakeTableView other{journal, "other", {"Something"}};
    searchpolicy::NodePaneController without{
        platform.environment, toolkit, {window, other, filter, button, done}};
    without.setParentController(this);
    session->names = {"/L/a"};
    without.setCustomNodeArray(util::Array::makeMutable());
    without.buildNodePaneData();
    EXPECT_EQ(other.numberOfRows(), 0);
    EXPECT_EQ(without.numberOfRowsInTableView(other), 0);
}

TEST_F(NodePanel, withoutASession_keepsItsRows) {
    session->names = {"/L/a", "/L/b"};
    open({});
    ASSERT_EQ(nodes.texts("NodeName"), (Names{"/L/a", "/L/b"}));
    session = nullptr;
    open({"/L/a"});
    EXPECT_EQ(nodes.texts("NodeName"), (Names{"/L/a", "/L/b"}));
    EXPECT_TRUE(toolkit.alerts().empty());
}
