// What the tables of the two policies show, in which colour, and which rows may be selected: the real window.
#include <QSysInfo>

#include "gui/policies/PolicyWindow.h"
#include "qt/look/Appearance.h"

namespace corvane::gui {
namespace {

using toolkit::TextColor;

class Showing : public PolicyWindow {
protected:
    /// The rows that a click selects.
    std::vector<int> selectable(const QString& table) {
        std::vector<int> rows;
        for (int row = 0; row < int(nodes(table).size()); ++row) {
            user().clickRow(table, row);
            if (selection(table) == std::vector{row}) rows.push_back(row);
        }
        return rows;
    }
    void expectColor(const QString& table, int row, TextColor color) {
        const auto brush = view(table).model()->index(row, 0).data(Qt::ForegroundRole).value<QBrush>();
        EXPECT_EQ(brush.color(), qt::textColor(color, view(table).palette())) << "row " << row;
        EXPECT_EQ(reddishPixels(picture(table, row)) > 0, color == TextColor::red) << "row " << row;
    }
    /// Letters are drawn with soft edges: every pixel with much more red than the rest counts.
    static int reddishPixels(const QImage& image) {
        int count = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x) {
                const QColor pixel = image.pixelColor(x, y);
                if (pixel.red() > pixel.green() + 60 && pixel.red() > pixel.blue() + 60) ++count;
            }
        return count;
    }
    /// How many colours are to be seen in the upper part of a table.
    std::size_t coloursOf(const QString& table) {
        const auto image = view(table).viewport()->grab().toImage();
        std::set<QRgb> all;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                all.insert(image.pixel(x, y));
        return all.size();
    }
};

TEST_F(Showing, authentication_selectsRowsBehindTheHeadInCustomModeOnly) {
    open();
    EXPECT_EQ(selectable(authenticationTable), (std::vector{2, 3, 4, 5}));
    for (const auto* mode : {"Automatic", "Local"}) {
        user().choose("selectSearchPolicy", mode);
        EXPECT_GE(nodes().size(), 2U) << mode;
        EXPECT_EQ(selectable(authenticationTable), std::vector<int>()) << mode;
    }
}

TEST_F(Showing, contacts_protectALocalNodeInItsOwnPlaceOnly) {
    open();
    showContacts();
    ASSERT_EQ(nodes(contactsTable), Names({head1, "delta", head2, "echo", ad}));
    EXPECT_EQ(selectable(contactsTable), (std::vector{1, 2, 3, 4}));
    for (const auto* mode : {"Automatic", "Local"}) {
        user().choose("selectContactPolicy", mode);
        EXPECT_GE(nodes(contactsTable).size(), 1U) << mode;
        EXPECT_EQ(selectable(contactsTable), std::vector<int>()) << mode;
    }
}

TEST_F(Showing, locked_nothingIsSelectableInAnyTable) {
    open(false);
    EXPECT_EQ(selectable(authenticationTable), std::vector<int>());
    showContacts();
    EXPECT_EQ(selectable(contactsTable), std::vector<int>());
}

TEST_F(Showing, nodesOfASwitchedOffConnector_areRed) {
    open();
    controller().setPluginEnabled("AD", false);
    for (const int row : {0, 1})
        expectColor(authenticationTable, row, TextColor::gray);
    for (const int row : {2, 3, 4})
        expectColor(authenticationTable, row, TextColor::black);
    expectColor(authenticationTable, 5, TextColor::red);
    const auto spoken = [&](int row) {
        return view(authenticationTable).model()->index(row, 0).data(Qt::AccessibleTextRole).toString();
    };
    EXPECT_EQ(spoken(5), "/AD/corp.example, switched off");
    EXPECT_EQ(spoken(2), "/LDAP/charlie.example");
    showContacts();
    for (const int row : {0, 1, 2, 3}) // no gray head here
        expectColor(contactsTable, row, TextColor::black);
    expectColor(contactsTable, 4, TextColor::red);
}

TEST_F(Showing, connectorsThatAreOn_leaveNoNodeRed) {
    open();
    expectColor(authenticationTable, 5, TextColor::black);
    showContacts();
    expectColor(contactsTable, 4, TextColor::black);
}

TEST_F(Showing, otherModesAndTheLock_areGray) {
    open();
    controller().setPluginEnabled("AD", false);
    user().choose("selectSearchPolicy", "Local");
    for (int row = 0; row < int(nodes().size()); ++row)
        expectColor(authenticationTable, row, TextColor::gray);
    user().choose("selectSearchPolicy", "Custom");
    apply();
    user().click("authorizationView");
    for (const int row : {0, 2, 5})
        expectColor(authenticationTable, row, TextColor::gray);
    showContacts();
    expectColor(contactsTable, 4, TextColor::gray);
}

TEST_F(Showing, theModeThatIsChosenAlready_changesNothing) {
    open();
    user().clickRow(authenticationTable, 3);
    user().choose("selectSearchPolicy", "Custom");
    EXPECT_FALSE(edited());
    EXPECT_FALSE(user().isEnabled("applyButton"));
    EXPECT_EQ(selection(), std::vector{3});
    showContacts();
    user().choose("selectContactPolicy", "Custom");
    EXPECT_FALSE(edited());
}

TEST_F(Showing, anotherMode_marksDeselectsAndHidesTheEditingControls) {
    open();
    user().clickRow(authenticationTable, 3);
    user().choose("selectSearchPolicy", "Local");
    EXPECT_TRUE(edited());
    EXPECT_TRUE(user().isEnabled("applyButton"));
    EXPECT_EQ(nodes(), Names({head1, head2}));
    EXPECT_EQ(selection(), std::vector<int>());
    for (const auto* control : {"addNode", "deleteNode", "dragMessage"})
        EXPECT_FALSE(user().isVisible(control)) << control;
    user().choose("selectSearchPolicy", "Custom");
    for (const auto* control : {"addNode", "deleteNode", "dragMessage"})
        EXPECT_TRUE(user().isVisible(control)) << control;
    EXPECT_EQ(selection(), std::vector<int>());
}

TEST_F(Showing, theWindow_saysWhichMachineItWorksOnInEveryPane) {
    open();
    const auto& shell = *view(authenticationTable).window();
    EXPECT_TRUE(shell.windowTitle().contains(QSysInfo::machineHostName()))
        << shell.windowTitle().toStdString();
    for (const auto* pane : {"kServices", "kSearchPaths", "kDebug"}) {
        user().click(pane);
        EXPECT_TRUE(user().visibleText().contains("Trial folder: nothing on this machine changes")) << pane;
    }
    user().click("kServices");
    const auto& content = *shell.findChild<QWidget*>("contentView");
    EXPECT_EQ(content.size(), QSize(590, 365)); // the strip takes nothing from the panes
}

TEST_F(Showing, menus_dontOfferWhatThisVersionCantDo) {
    open();
    for (const auto& [menu, item] : {std::pair("File", "Connect"), std::pair("Edit", "Change Root")}) {
        try {
            user().chooseFromMenu(menu, item);
            ADD_FAILURE() << item << " can be chosen";
        } catch (const std::runtime_error& refusal) {
            EXPECT_NE(std::string(refusal.what()).find("can't be chosen"), std::string::npos)
                << refusal.what();
        }
        user().press(Qt::Key_Escape);
    }
}

TEST_F(Showing, aListWithoutNodes_saysSo) {
    EXPECT_FALSE(machine_.setCustom(machine_.contacts(), {}));
    open();
    EXPECT_EQ(emptyMessage(authenticationTable), "");
    showContacts();
    EXPECT_TRUE(nodes(contactsTable).empty());
    EXPECT_EQ(emptyMessage(contactsTable), "No directory domains");
    EXPECT_GT(coloursOf(contactsTable), 10U); // letters, not just paper
}

} // namespace
} // namespace corvane::gui
