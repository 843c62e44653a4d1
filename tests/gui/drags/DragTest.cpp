// Rows dragged with the X server's own pointer, in the real window on a display of its own.
#include "gui/policies/PolicyWindow.h"

namespace corvane::gui {
namespace {

class Dragging : public PolicyWindow {
protected:
    const Names asOpened_ = {head1, head2, "charlie", "delta", "echo", ad};
};

TEST_F(Dragging, down_leavesTheRowOneAboveTheDrop) {
    open();
    scrollToLastRow();
    user().dragRow(authenticationTable, 2, 5);
    EXPECT_EQ(nodes(), Names({head1, head2, "delta", "echo", "charlie", ad}));
    EXPECT_EQ(selection(), std::vector{4});
    EXPECT_TRUE(edited());
}

TEST_F(Dragging, up_leavesTheRowAtTheDrop) {
    open();
    scrollToLastRow();
    user().dragRow(authenticationTable, 5, 2);
    EXPECT_EQ(nodes(), Names({head1, head2, ad, "charlie", "delta", "echo"}));
    EXPECT_EQ(selection(), std::vector{2});
}

TEST_F(Dragging, behindTheLastRow_movesItThere) {
    open();
    scrollToLastRow();
    user().dragRow(authenticationTable, 3, 6);
    EXPECT_EQ(nodes(), Names({head1, head2, "charlie", "echo", ad, "delta"}));
}

TEST_F(Dragging, ofTheHeadOrIntoIt_changesNothing) {
    open();
    user().dragRow(authenticationTable, 1, 4);
    user().dragRow(authenticationTable, 4, 0);
    EXPECT_EQ(nodes(), asOpened_);
    EXPECT_FALSE(edited());
}

TEST_F(Dragging, whileLocked_changesNothing) {
    open(false);
    user().dragRow(authenticationTable, 2, 4);
    EXPECT_EQ(nodes(), asOpened_);
    EXPECT_FALSE(edited());
}

TEST_F(Dragging, inContacts_selectsInTheAuthenticationTable) {
    open();
    showContacts();
    user().dragRow(contactsTable, 1, 4);
    EXPECT_EQ(nodes(contactsTable), Names({head1, head2, "echo", "delta", ad}));
    EXPECT_EQ(selection(authenticationTable), std::vector{3});
}

TEST_F(Dragging, ofAProtectedRowWhileAnotherIsSelected_leavesTheSelectedOneWhereItIs) {
    open();
    user().clickRow(authenticationTable, 3);
    user().dragRow(authenticationTable, 1, 5);
    EXPECT_EQ(nodes(), asOpened_);
    EXPECT_FALSE(edited());
}

TEST_F(Dragging, ofAContactsRowThatCantBeSelected_movesThatRow) {
    open();
    showContacts();
    user().clickRow(contactsTable, 3);
    user().dragRow(contactsTable, 0, 2);
    EXPECT_EQ(nodes(contactsTable), Names({"delta", head1, head2, "echo", ad}));
}

TEST_F(Dragging, ofSeveralSelectedRows_changesNothing) {
    open();
    user().clickRow(authenticationTable, 2);
    user().clickRow(authenticationTable, 3, Qt::ControlModifier);
    user().dragRow(authenticationTable, 2, 4);
    EXPECT_EQ(nodes(), asOpened_);
    EXPECT_FALSE(edited());
}

} // namespace
} // namespace corvane::gui
