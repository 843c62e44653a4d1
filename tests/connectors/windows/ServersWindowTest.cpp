#include "PlugInHarness.h"

using namespace corvane;
using Texts = std::vector<std::string>;

namespace corvane::connectors::ldap {

struct ListOfServers : PlugInHarness {
    ListOfServers() {
        service.serve("a.example.com");
        service.serve("b.example.com", {{"hasPassword", true}, {"bindDN", "cn=reader"}});
        service.serve("c.example.com");
        service.program().authentication.clear();
        service.program().contacts.clear();
    }
    [[nodiscard]] bool can(const char* button) { return find<QAbstractButton>(button)->isEnabled(); }
};

TEST_F(ListOfServers, list_showsEveryServerAndSelectsTheFirst) {
    configure();
    EXPECT_EQ(rows(), (QStringList{"a.example.com", "b.example.com", "c.example.com"}));
    EXPECT_EQ(find<QListWidget>("servers")->currentRow(), 0);
    EXPECT_FALSE(isDirty());
}

TEST_F(ListOfServers, buttons_followTheSelection) {
    configure();
    EXPECT_TRUE(can("editServer") && can("duplicateServer") && can("deleteServer") && can("testServer"));
    clickRow(2, Qt::ControlModifier);
    EXPECT_FALSE(can("editServer") || can("duplicateServer") || can("testServer"));
    EXPECT_TRUE(can("deleteServer"));
    service.servers.clear();
}

TEST_F(ListOfServers, withoutServers_onlyAddCanBePressed) {
    service.servers.clear();
    configure();
    EXPECT_TRUE(rows().isEmpty());
    EXPECT_TRUE(can("addServer"));
    EXPECT_FALSE(can("editServer") || can("duplicateServer") || can("deleteServer") || can("testServer"));
}

TEST_F(ListOfServers, withoutServers_theListSaysSoAndReadsItOut) {
    service.servers.clear();
    configure();
    auto* list = find<QListWidget>("servers");
    EXPECT_EQ(list->accessibleDescription(), "No servers");
    // The message stands in the second row's band, in the middle of the width.
    const auto picture = list->viewport()->grab(QRect(list->viewport()->width() / 4, 44, 1, 1)).toImage();
    const auto band = list->viewport()->grab(QRect(0, 44, list->viewport()->width(), 44)).toImage();
    int ink = 0;
    for (int y = 0; y < band.height(); ++y)
        for (int x = 0; x < band.width(); ++x)
            ink += band.pixelColor(x, y) != picture.pixelColor(0, 0);
    EXPECT_GT(ink, 50);
}

TEST_F(ListOfServers, lastServerDeleted_theListSaysSo) {
    configure();
    auto* list = find<QListWidget>("servers");
    EXPECT_EQ(list->accessibleDescription(), "");
    list->selectAll();
    click("deleteServer");
    EXPECT_EQ(list->accessibleDescription(), "No servers");
}

TEST_F(ListOfServers, severalServers_areDeletedAtOnceAndSavedWithApply) {
    configure();
    clickRow(2, Qt::ControlModifier);
    click("deleteServer");
    EXPECT_EQ(rows(), QStringList{"b.example.com"});
    EXPECT_TRUE(isDirty());
    EXPECT_EQ(service.servers.size(), 3U) << "nothing is written before Apply";
    EXPECT_TRUE(save());
    EXPECT_EQ(service.servers.size(), 1U);
    EXPECT_FALSE(isDirty());
}

TEST_F(ListOfServers, deleteKey_deletesTheSelection) {
    configure();
    clickRow(1);
    QTest::keyClick(find<QListWidget>("servers"), Qt::Key_Delete);
    EXPECT_EQ(rows(), (QStringList{"a.example.com", "c.example.com"}));
}

TEST_F(ListOfServers, serverOnAPolicy_isDeletedAfterAQuestionOnly) {
    service.program().contacts = {"/LDAP/b.example.com"};
    configure();
    clickRow(1);
    click("deleteServer");
    EXPECT_EQ(rows().size(), 3) << "not before the answer";
    EXPECT_TRUE(frontText().contains("b.example.com is on a search policy."));
    click("reallyDelete");
    EXPECT_EQ(rows(), (QStringList{"a.example.com", "c.example.com"}));
}

TEST_F(ListOfServers, serverThatAPolicyUsesWithoutACustomList_isDeletedAfterAQuestion) {
    service.serve("b.example.com", {{"onPolicy", true}}); // Automatic, say
    configure();
    clickRow(0);
    click("deleteServer");
    EXPECT_EQ(rows().size(), 2) << "the one that no policy uses is deleted at once";
    click("deleteServer");
    EXPECT_EQ(rows().size(), 2);
    EXPECT_TRUE(frontText().contains("b.example.com is on a search policy."));
}

TEST_F(ListOfServers, severalServersOnPolicies_areSpokenOfTogether) {
    service.program().contacts = {"/LDAP/a.example.com", "/LDAP/b.example.com"};
    configure();
    clickRow(0);
    clickRow(1, Qt::ControlModifier);
    click("deleteServer");
    EXPECT_TRUE(frontText().contains("a.example.com, b.example.com are on a search policy."));
    EXPECT_TRUE(frontText().contains("removes them from the policy"));
    click("reallyDelete");
    EXPECT_EQ(rows(), QStringList{"c.example.com"});
}

TEST_F(ListOfServers, questionThatIsCancelled_deletesNothing) {
    service.program().authentication = {"/LDAP/b.example.com"};
    configure();
    clickRow(1);
    click("deleteServer");
    QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape);
    QApplication::processEvents();
    EXPECT_EQ(rows().size(), 3);
    EXPECT_FALSE(isDirty());
}

TEST_F(ListOfServers, duplicate_isEditedAndStandsBehindTheOriginal) {
    configure();
    click("duplicateServer");
    EXPECT_EQ(find<QPlainTextEdit>("addresses")->toPlainText(), "a.example.com");
    EXPECT_EQ(rows().size(), 3) << "not before it was edited";
    click("serverOk");
    EXPECT_EQ(rows(), (QStringList{"a.example.com", "a.example.com", "b.example.com", "c.example.com"}));
    EXPECT_EQ(find<QListWidget>("servers")->currentRow(), 1);
    EXPECT_TRUE(save());
    EXPECT_TRUE(service.servers.contains("a.example.com-2"));
}

TEST_F(ListOfServers, duplicateOfAServerWithAPassword_needsOneOfItsOwn) {
    configure();
    clickRow(1);
    click("duplicateServer");
    click("serverOk");
    EXPECT_TRUE(textOf("problem").startsWith("Signing in needs a password."));
    click("serverCancel");
    EXPECT_EQ(rows().size(), 3);
    EXPECT_FALSE(isDirty());
}

TEST_F(ListOfServers, connectorsCheckBox_isAWishUntilApply) {
    configure();
    EXPECT_TRUE(isEnabled());
    click("useConnector");
    click("serversDone");
    EXPECT_FALSE(isEnabled());
    EXPECT_TRUE(isDirty());
    EXPECT_EQ(service.program().done, Texts{"modified"});
    EXPECT_TRUE(save());
    EXPECT_EQ(service.program().done.back(), "set LDAP off");
}

TEST_F(ListOfServers, revert_bringsEverythingBack) {
    configure();
    click("deleteServer");
    click("useConnector");
    click("serversDone");
    EXPECT_TRUE(revert());
    EXPECT_FALSE(isDirty());
    EXPECT_TRUE(isEnabled());
    configure();
    EXPECT_EQ(rows().size(), 3);
}

TEST_F(ListOfServers, openedAgain_showsWhatWasNotSavedYet) {
    configure();
    click("deleteServer");
    click("serversDone");
    service.serve("d.example.com");
    configure();
    EXPECT_EQ(rows(), (QStringList{"b.example.com", "c.example.com"}));
}

TEST_F(ListOfServers, serviceThatRefuses_isToldWithCauseAndNextStepAndTheChangesAreKept) {
    configure();
    click("deleteServer");
    click("serversDone");
    service.refusal = {4400, "The servers can’t be saved.", "The disk is full.", "Make room on it."};
    EXPECT_FALSE(save());
    QApplication::processEvents();
    EXPECT_TRUE(frontText().contains("The servers can’t be saved."));
    EXPECT_TRUE(frontText().contains("The disk is full.") && frontText().contains("Make room on it."));
    EXPECT_TRUE(isDirty());
}

TEST_F(ListOfServers, selfTest_triesEveryServerAndLogsWhatFails) {
    const util::Dictionary good{{"finished", true}};
    const util::Dictionary bad{
        {"finished", true}, {"failure", util::Dictionary{{"cause", "It refuses."}, {"evidence", "Seen."}}}};
    service.reports = {good, bad, good};
    EXPECT_FALSE(selfTest());
    EXPECT_EQ(service.requests.size(), 6U) << "all three were tried";
    EXPECT_EQ(service.program().done, Texts{"log LDAP: b.example.com: It refuses. Seen."});
    service.reports = {good};
    EXPECT_TRUE(selfTest());
}

TEST_F(ListOfServers, enterInTheList_editsTheServerAndKeepsTheWindow) {
    configure();
    clickRow(1);
    QTest::keyClick(find<QListWidget>("servers"), Qt::Key_Return);
    QApplication::processEvents();
    EXPECT_TRUE(isShown("serverEditor"));
    EXPECT_EQ(find<QPlainTextEdit>("addresses")->toPlainText(), "b.example.com");
    EXPECT_TRUE(isShown("ldapServers"));
}

TEST_F(ListOfServers, lineBelowTheList_saysWhetherTheConnectorIsOnAndWithHowMany) {
    configure();
    EXPECT_EQ(textOf("connectorState"), "The connector is on, with 3 servers.");
    click("deleteServer");
    click("deleteServer");
    EXPECT_EQ(textOf("connectorState"), "The connector is on, with one server.");
    click("useConnector");
    EXPECT_EQ(textOf("connectorState"), "The connector is off. Its one server isn’t used.");
    click("deleteServer");
    EXPECT_EQ(textOf("connectorState"), "The connector is off.");
    click("useConnector");
    EXPECT_EQ(textOf("connectorState"), "The connector is on, without a server.");
}

TEST_F(ListOfServers, serversThatLookAlike_areToldApartAndASecondOneIsPointedOut) {
    service.serve("twin", {{"addresses", util::Array{"a.example.com"}}});
    configure();
    auto* list = find<QListWidget>("servers");
    QStringList read;
    for (int i = 0; i < list->count(); ++i)
        read << list->item(i)->data(Qt::AccessibleTextRole).toString();
    EXPECT_EQ(read.removeDuplicates(), 0);
    EXPECT_TRUE(read.last().contains("named “twin”")) << read.last().toStdString();
    EXPECT_TRUE(textOf("sameDirectories").contains("“a.example.com” and “twin” are the same directory"));
    clickRow(3);
    click("deleteServer");
    EXPECT_EQ(textOf("sameDirectories"), "");
}

} // namespace corvane::connectors::ldap
