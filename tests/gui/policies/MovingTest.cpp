// Rows moved with the keyboard, and drags and drops that are refused, in the real window. The pointer's own
// drags are in the folder "drags", because they need an X display.
#include "gui/policies/PolicyWindow.h"
#include "qt/DeliveredDrag.h"

namespace corvane::gui {
namespace {

using qt::DropTarget;

class Moving : public PolicyWindow {
protected:
    bool drag(const QString& from, int row, const QString& to, int place,
              DropTarget target = DropTarget::aboveRow) {
        return qt::deliverDrag(view(from), {row}, view(to), place, target);
    }
    const Names asOpened_ = {head1, head2, "charlie", "delta", "echo", ad};
    const Names contactsAsOpened_ = {head1, "delta", head2, "echo", ad};
};

TEST_F(Moving, altAndAnArrow_moveTheSelectedRowByOne) {
    open();
    user().clickRow(authenticationTable, 3);
    user().press(Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(nodes(), Names({head1, head2, "charlie", "echo", "delta", ad}));
    EXPECT_EQ(selection(), std::vector{4});
    user().press(Qt::Key_Up, Qt::AltModifier);
    user().press(Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(nodes(), Names({head1, head2, "delta", "charlie", "echo", ad}));
    EXPECT_EQ(selection(), std::vector{2});
    EXPECT_TRUE(edited());
}

TEST_F(Moving, altAndAnArrow_stopAtTheHeadAndAtTheEnd) {
    open();
    user().clickRow(authenticationTable, 2);
    user().press(Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(nodes(), asOpened_);
    EXPECT_FALSE(edited());
    user().clickRow(authenticationTable, 5);
    user().press(Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(nodes(), asOpened_);
    EXPECT_FALSE(edited());
}

TEST_F(Moving, altAndAnArrow_moveNothingWhileTwoRowsAreSelected) {
    open();
    user().clickRow(authenticationTable, 2);
    user().clickRow(authenticationTable, 3, Qt::ControlModifier);
    user().press(Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(nodes(), asOpened_);
}

TEST_F(Moving, contactsRowMovedByTheKeyboard_movesTheOtherTablesSelection) {
    open();
    showContacts();
    user().clickRow(contactsTable, 3);
    user().press(Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(nodes(contactsTable), Names({head1, "delta", head2, ad, "echo"}));
    EXPECT_EQ(selection(authenticationTable), std::vector{4});
    user().clickTab("Authentication");
    EXPECT_EQ(nodes(), asOpened_);
}

TEST_F(Moving, drops_moveBothWays) {
    open();
    scrollToLastRow();
    EXPECT_TRUE(drag(authenticationTable, 2, authenticationTable, 5));
    EXPECT_EQ(nodes(), Names({head1, head2, "delta", "echo", "charlie", ad}));
    EXPECT_EQ(selection(), std::vector{4});
    EXPECT_TRUE(drag(authenticationTable, 5, authenticationTable, 2));
    EXPECT_EQ(nodes(), Names({head1, head2, ad, "delta", "echo", "charlie"}));
    EXPECT_EQ(selection(), std::vector{2});
}

TEST_F(Moving, dropInTheEmptySpaceBehindTheRows_movesToTheEnd) {
    open();
    for (const int row : {3, 4})
        user().clickRow(authenticationTable, row, row == 3 ? Qt::NoModifier : Qt::ControlModifier);
    user().click("deleteNode");
    user().answer("OK");
    EXPECT_TRUE(drag(authenticationTable, 2, authenticationTable, 0, DropTarget::emptySpace));
    EXPECT_EQ(nodes(), Names({head1, head2, ad, "charlie"}));
}

TEST_F(Moving, theHead_isNeitherDraggedNorDroppedInto) {
    open();
    for (const int row : {0, 1}) {
        EXPECT_FALSE(drag(authenticationTable, row, authenticationTable, 4)) << row;
        EXPECT_FALSE(drag(authenticationTable, 4, authenticationTable, row)) << row;
    }
    EXPECT_EQ(nodes(), asOpened_);
    EXPECT_FALSE(edited());
}

TEST_F(Moving, contactsHaveNoHeadForDragging) {
    open();
    showContacts();
    EXPECT_TRUE(drag(contactsTable, 3, contactsTable, 0));
    EXPECT_EQ(nodes(contactsTable), Names({"echo", head1, "delta", head2, ad}));
}

TEST_F(Moving, dropOnContacts_selectsInTheAuthenticationTable) {
    open();
    user().clickRow(authenticationTable, 5);
    showContacts();
    EXPECT_TRUE(drag(contactsTable, 1, contactsTable, 4));
    EXPECT_EQ(nodes(contactsTable), Names({head1, head2, "echo", "delta", ad}));
    EXPECT_EQ(selection(authenticationTable), std::vector{3});
    EXPECT_EQ(selection(contactsTable), std::vector<int>());
    EXPECT_TRUE(edited());
}

TEST_F(Moving, dragsBetweenTheTwoTables_areRefused) {
    open();
    showContacts();
    user().clickTab("Authentication");
    EXPECT_FALSE(drag(contactsTable, 1, authenticationTable, 3));
    EXPECT_EQ(nodes(), asOpened_);
    showContacts();
    EXPECT_FALSE(drag(authenticationTable, 2, contactsTable, 3));
    EXPECT_EQ(nodes(contactsTable), contactsAsOpened_);
    EXPECT_FALSE(edited());
}

TEST_F(Moving, aTextFromAnotherProgram_isRefused) {
    open();
    auto& table = view(authenticationTable);
    const auto where = table.visualRect(table.model()->index(3, 0)).center();
    QMimeData text;
    text.setText("/LDAP/alpha.example");
    text.setData("DirNodeNamePasteboardType", "/LDAP/alpha.example");
    QDragEnterEvent enter(where, Qt::MoveAction, &text, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(table.viewport(), &enter);
    QDragMoveEvent move(where, Qt::MoveAction, &text, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(table.viewport(), &move);
    EXPECT_FALSE(move.isAccepted());
    QDropEvent drop(where, Qt::MoveAction, &text, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(table.viewport(), &drop);
    EXPECT_EQ(nodes(), asOpened_);
}

TEST_F(Moving, lockedOrAutomatic_nothingIsDragged) {
    open();
    user().choose("selectSearchPolicy", "Automatic");
    EXPECT_FALSE(drag(authenticationTable, 2, authenticationTable, 3));
    user().choose("selectSearchPolicy", "Custom");
    EXPECT_TRUE(drag(authenticationTable, 2, authenticationTable, 4));
    apply();
    user().click("authorizationView");
    const auto before = nodes();
    EXPECT_FALSE(drag(authenticationTable, 2, authenticationTable, 4));
    EXPECT_EQ(nodes(), before);
    showContacts();
    EXPECT_FALSE(drag(contactsTable, 1, contactsTable, 4));
    EXPECT_EQ(nodes(contactsTable), contactsAsOpened_);
}

} // namespace
} // namespace corvane::gui
