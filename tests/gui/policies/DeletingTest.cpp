// Rows deleted after one question, in the real window.
#include <QApplication>
#include <QDialog>

#include "gui/policies/PolicyWindow.h"

namespace corvane::gui {
namespace {

using Deleting = PolicyWindow;

/// What a screen reader says of the question that is open, besides its message.
std::string spokenQuestion() {
    for (const auto* widget : QApplication::allWidgets()) {
        const auto* dialog = qobject_cast<const QDialog*>(widget);
        if (dialog && dialog->isVisible() && dialog->accessibleName() == "Delete directory domain?")
            return dialog->accessibleDescription().toStdString();
    }
    return {};
}

TEST_F(Deleting, severalRows_goAfterOneQuestion) {
    open();
    user().clickRow(authenticationTable, 2);
    user().clickRow(authenticationTable, 3, Qt::ControlModifier);
    user().clickRow(authenticationTable, 5, Qt::ControlModifier);
    user().click("deleteNode");
    EXPECT_TRUE(user().visibleText().contains("Delete directory domain?"));
    EXPECT_TRUE(user().visibleText().contains("Please confirm deletion."));
    EXPECT_EQ(nodes().size(), 6U); // not before the answer
    user().answer("OK");
    EXPECT_FALSE(user().visibleText().contains("Delete directory domain?"));
    EXPECT_EQ(nodes(), Names({head1, head2, "echo"}));
    EXPECT_EQ(selection(), std::vector<int>());
    EXPECT_TRUE(edited());
}

TEST_F(Deleting, question_isReadOutWithTheRowsThatWouldGo) {
    open();
    user().clickRow(authenticationTable, 2);
    user().clickRow(authenticationTable, 5, Qt::ControlModifier);
    user().click("deleteNode");
    const auto row = [this](int at) {
        return view(authenticationTable).model()->index(at, 0).data().toString().toStdString();
    };
    EXPECT_EQ(spokenQuestion(), "Please confirm deletion: " + row(2) + ", " + row(5));
    user().answer("Cancel");
}

TEST_F(Deleting, answeredWithCancel_deletesNothing) {
    open();
    user().clickRow(authenticationTable, 2);
    user().clickRow(authenticationTable, 3, Qt::ControlModifier);
    user().click("deleteNode");
    user().answer("Cancel");
    EXPECT_EQ(nodes(), Names({head1, head2, "charlie", "delta", "echo", ad}));
    EXPECT_EQ(selection(), (std::vector{2, 3}));
    EXPECT_FALSE(edited());
}

TEST_F(Deleting, contacts_takeRowsOfTheirOwnListAlone) {
    open();
    showContacts();
    user().clickRow(contactsTable, 1);
    user().clickRow(contactsTable, 3, Qt::ControlModifier);
    user().click("deleteNodeContact");
    user().answer("OK");
    EXPECT_EQ(nodes(contactsTable), Names({head1, head2, ad}));
    user().clickTab("Authentication");
    EXPECT_EQ(nodes(), Names({head1, head2, "charlie", "delta", "echo", ad}));
}

TEST_F(Deleting, button_isEnabledWhileARowIsSelected) {
    open();
    EXPECT_FALSE(user().isEnabled("deleteNode"));
    user().clickRow(authenticationTable, 2);
    EXPECT_TRUE(user().isEnabled("deleteNode"));
    user().clickRow(authenticationTable, 2, Qt::ControlModifier); // takes the selection back
    EXPECT_FALSE(user().isEnabled("deleteNode"));
    showContacts();
    EXPECT_FALSE(user().isEnabled("deleteNodeContact"));
    user().clickRow(contactsTable, 1);
    EXPECT_TRUE(user().isEnabled("deleteNodeContact"));
}

TEST_F(Deleting, button_staysDisabledByAClickOnARowOfTheHead) {
    open();
    user().clickRow(authenticationTable, 1);
    EXPECT_FALSE(user().isEnabled("deleteNode"));
    showContacts();
    user().clickRow(contactsTable, 0);
    EXPECT_FALSE(user().isEnabled("deleteNodeContact"));
}

TEST_F(Deleting, button_isDisabledAgainBehindADeletionAndByTheLock) {
    open();
    user().clickRow(authenticationTable, 2);
    user().click("deleteNode");
    user().answer("OK");
    EXPECT_FALSE(user().isEnabled("deleteNode"));
    apply();
    user().clickRow(authenticationTable, 2);
    EXPECT_TRUE(user().isEnabled("deleteNode"));
    user().click("authorizationView");
    EXPECT_FALSE(user().isEnabled("deleteNode"));
}

} // namespace
} // namespace corvane::gui
