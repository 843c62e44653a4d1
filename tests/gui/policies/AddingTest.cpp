// Nodes added from the panel, in the real window.
#include "gui/policies/PolicyWindow.h"

namespace corvane::gui {
namespace {

class Adding : public PolicyWindow {
protected:
    void openPanel(const QString& button = "addNode") {
        user().click(button);
        ASSERT_TRUE(panelIsOpen());
    }
    void selectInPanel(std::initializer_list<int> rows) {
        auto modifiers = Qt::KeyboardModifiers();
        for (const int row : rows) {
            user().clickRow(panelTable, row, modifiers);
            modifiers = Qt::ControlModifier;
        }
    }
    /// What a plug-in does through the host's interface, while the panel is open or not.
    void pluginAdds(const std::string& server) {
        controller().addNodeToAuthSearchPolicy("/LDAP/" + server + ".example");
    }
};

TEST_F(Adding, panel_offersTheServersThatAreNotOnTheList_firstOneSelected) {
    open();
    openPanel();
    EXPECT_EQ(nodes(panelTable), Names({"alpha", "bravo", "foxtrot"}));
    EXPECT_EQ(selection(panelTable), std::vector{0});
}

/// There the window lists every connector, and the connectors of the two policies themselves are among them.
TEST_F(Adding, onAMachineWithoutAVersion_thePoliciesThemselvesAreNotOffered) {
    machine_.folder.write("etc/os-release", "NAME=\"Homemade\"\n");
    open();
    openPanel();
    EXPECT_EQ(nodes(panelTable), Names({"alpha", "bravo", "foxtrot"}));
    user().answer("Cancel");
    user().click("kServices");
    EXPECT_TRUE(user().rowsOf("selectPlugIn").contains("Search"));
}

TEST_F(Adding, threeNodesBehindASelectedRow_keepTheOrderOfTheirRows) {
    open();
    user().clickRow(authenticationTable, 3);
    openPanel();
    selectInPanel({2, 0, 1});
    user().answer("Add");
    EXPECT_EQ(nodes(), Names({head1, head2, "charlie", "delta", "alpha", "bravo", "foxtrot", "echo", ad}));
    EXPECT_FALSE(panelIsOpen());
    EXPECT_TRUE(edited());
    EXPECT_TRUE(user().isEnabled("applyButton"));
}

TEST_F(Adding, threeNodesWithoutASelection_areAppended) {
    open();
    openPanel();
    selectInPanel({1, 2, 0});
    user().answer("Add");
    EXPECT_EQ(nodes(), Names({head1, head2, "charlie", "delta", "echo", ad, "alpha", "bravo", "foxtrot"}));
}

TEST_F(Adding, threeNodesWithARowOfTheContactsHeadSelected_standAt2To4) {
    open();
    showContacts();
    user().clickRow(contactsTable, 1); // "delta", where authentication has its second local node
    openPanel("addNodeContact");
    selectInPanel({0, 1, 2});
    user().answer("Add");
    EXPECT_EQ(nodes(contactsTable), Names({head1, "delta", "alpha", "bravo", "charlie", head2, "echo", ad}));
}

TEST_F(Adding, whatWasAdded_isInTheFilesAfterApply) {
    open();
    user().clickRow(authenticationTable, 2);
    openPanel();
    selectInPanel({0, 2});
    user().answer("Add");
    apply();
    EXPECT_FALSE(edited());
    EXPECT_NE(machine_.folder.read("etc/sssd/sssd.conf")
                  .find("domains = charlie, alpha, foxtrot, delta, echo, corp.example"),
              std::string::npos)
        << machine_.folder.read("etc/sssd/sssd.conf");
}

TEST_F(Adding, oneNodeThatAPluginHasAddedMeanwhile_isTold_andTheOthersAreAdded) {
    open();
    openPanel();
    pluginAdds("bravo");
    selectInPanel({0, 1});
    const auto told = answered([&] { user().answer("Add"); }, "OK");
    EXPECT_TRUE(told.contains("Edit of Custom path")) << told.toStdString();
    EXPECT_TRUE(told.contains("This directory domain is already within your custom path."))
        << told.toStdString();
    EXPECT_EQ(nodes(), Names({head1, head2, "charlie", "delta", "echo", ad, "bravo", "alpha"}));
    EXPECT_FALSE(panelIsOpen());
}

TEST_F(Adding, severalNodesThatAPluginHasAddedMeanwhile_areToldInOneQuestion) {
    open();
    openPanel();
    pluginAdds("bravo");
    pluginAdds("foxtrot");
    selectInPanel({0, 1, 2});
    const auto told = answered([&] { user().answer("Add"); }, "OK");
    EXPECT_TRUE(told.contains("Edit of Custom path")) << told.toStdString();
    EXPECT_TRUE(told.contains("Some of the selected directory domains are already within your custom path."))
        << told.toStdString();
    EXPECT_EQ(nodes(), Names({head1, head2, "charlie", "delta", "echo", ad, "bravo", "foxtrot", "alpha"}));
}

TEST_F(Adding, doubleClick_addsThatRowAndClosesThePanel) {
    open();
    openPanel();
    user().doubleClickRow(panelTable, 1);
    EXPECT_EQ(nodes().back(), "bravo");
    EXPECT_EQ(nodes().size(), 7U);
    EXPECT_FALSE(panelIsOpen());
}

TEST_F(Adding, filter_showsWhatMatchesAndReturnAddsTheFirst) {
    open();
    openPanel();
    user().type("panelFilter", "XTR");
    EXPECT_EQ(nodes(panelTable), Names({"foxtrot"}));
    user().press(Qt::Key_Return);
    EXPECT_EQ(nodes().back(), "foxtrot");
    openPanel();
    EXPECT_EQ(nodes(panelTable), Names({"alpha", "bravo"})); // the filter is empty again
}

TEST_F(Adding, filterThatMatchesNothing_saysSoAndAddEndsThePanel) {
    open();
    openPanel();
    user().type("panelFilter", "zulu");
    EXPECT_TRUE(nodes(panelTable).empty());
    EXPECT_EQ(emptyMessage(panelTable), "No directory domain matches the filter");
    user().answer("Add");
    EXPECT_FALSE(panelIsOpen());
    EXPECT_EQ(nodes().size(), 6U);
}

TEST_F(Adding, everyNodeOnTheList_leavesAnEmptyPanelThatSaysSo) {
    open();
    openPanel();
    selectInPanel({0, 1, 2});
    user().answer("Add");
    openPanel();
    EXPECT_TRUE(nodes(panelTable).empty());
    EXPECT_EQ(emptyMessage(panelTable), "No directory domains to add");
}

TEST_F(Adding, escape_closesThePanelAndAddsNothing) {
    open();
    openPanel();
    user().press(Qt::Key_Escape);
    EXPECT_FALSE(panelIsOpen());
    EXPECT_EQ(nodes().size(), 6U);
    EXPECT_FALSE(edited());
}

/// Somebody else's edit of the list is shown at once where nothing is edited here; a list that is marked for
/// writing stays.
TEST_F(Adding, cancelledPanel_leavesTheListMarkedForWritingAndTheWindowUnedited) {
    const auto anotherProgramChangesTheList = [&] {
        auto text = machine_.folder.read("etc/sssd/sssd.conf");
        const std::string order = "domains = charlie, delta, echo, corp.example";
        const auto found = text.find(order);
        ASSERT_NE(found, std::string::npos) << text;
        machine_.folder.write("etc/sssd/sssd.conf", text.replace(found, order.size(), "domains = foxtrot"));
        program().engine().pollForChanges();
        settle(100);
    };
    open();
    openPanel();
    user().answer("Cancel");
    EXPECT_FALSE(panelIsOpen());
    EXPECT_FALSE(edited());
    anotherProgramChangesTheList();
    EXPECT_EQ(nodes(), Names({head1, head2, "charlie", "delta", "echo", ad}));
}

TEST_F(Adding, withoutAPanelHavingBeenOpen_anotherProgramsChangeIsShown) {
    open();
    auto text = machine_.folder.read("etc/sssd/sssd.conf");
    const std::string order = "domains = charlie, delta, echo, corp.example";
    machine_.folder.write("etc/sssd/sssd.conf",
                          text.replace(text.find(order), order.size(), "domains = foxtrot"));
    program().engine().pollForChanges();
    settle(100);
    EXPECT_TRUE(std::ranges::count(nodes(), "foxtrot") > 0);
    EXPECT_FALSE(std::ranges::count(nodes(), "charlie") > 0);
}

} // namespace
} // namespace corvane::gui
