// What the fields of a server do by themselves while they are filled in.
#include <QClipboard>

#include "PlugInHarness.h"

using namespace corvane;

namespace corvane::connectors::ldap {

struct ServerFields : PlugInHarness {
    void openNew() {
        configure();
        click("addServer");
    }
    static void paste(const QString& text) {
        QApplication::clipboard()->setText(text);
        auto* field = find<QPlainTextEdit>("addresses");
        field->setFocus();
        QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(field, Qt::Key_V, Qt::ControlModifier);
        QApplication::processEvents();
    }
    [[nodiscard]] static QString addresses() { return find<QPlainTextEdit>("addresses")->toPlainText(); }
    [[nodiscard]] static QString port() { return find<QLineEdit>("port")->text(); }
    [[nodiscard]] static QString security() { return find<QComboBox>("security")->currentData().toString(); }
    [[nodiscard]] util::Dictionary written() {
        click("serverOk");
        click("serversDone");
        EXPECT_TRUE(save());
        return service.requests.back().valueForKey("put").as<util::Array>().at(0).as<util::Dictionary>();
    }
};

TEST_F(ServerFields, pastedUri_fillsTheFieldsOfItsParts) {
    openNew();
    paste("ldaps://dc.example.com:636/");
    EXPECT_EQ(addresses(), "dc.example.com");
    EXPECT_EQ(security(), "ldaps");
    EXPECT_EQ(port(), "") << "the standard one";
    paste("ldap://[2001:db8::1]:1389\nldap://b.example.com:1389");
    EXPECT_EQ(addresses(), "2001:db8::1\nb.example.com");
    EXPECT_EQ(security(), "startTLS");
    EXPECT_EQ(port(), "1389");
}

TEST_F(ServerFields, typedUri_isTakenApartWhenTheFieldIsLeft) {
    openNew();
    type("addresses", "ldaps://dc.example.com:1636");
    EXPECT_EQ(addresses(), "ldaps://dc.example.com:1636") << "not while it is being typed";
    click("serverOk");
    EXPECT_FALSE(isShown("serverEditor"));
    EXPECT_EQ(service.requests.size(), 0U);
    click("editServer");
    EXPECT_EQ(addresses(), "dc.example.com");
    EXPECT_EQ(port(), "1636");
}

TEST_F(ServerFields, windowsThatGoWithTheProgram_takeNothingApart) {
    openNew();
    type("addresses", "ldaps://dc.example.com");
    delete find<QDialog>("ldapServers");
    EXPECT_FALSE(isShown("serverEditor"));
}

TEST_F(ServerFields, urisThatDisagree_stayAsTheyAre) {
    openNew();
    paste("ldaps://a.example.com\nldap://b.example.com");
    EXPECT_EQ(addresses(), "ldaps://a.example.com\nldap://b.example.com");
    click("serverOk");
    EXPECT_TRUE(textOf("problem").contains("“ldaps://a.example.com”"));
}

TEST_F(ServerFields, correctedField_losesItsMessage) {
    openNew();
    click("serverOk");
    EXPECT_EQ(textOf("problem"), "Name at least one server.");
    type("baseDN", "dc=example");
    EXPECT_EQ(textOf("problem"), "Name at least one server.") << "another field";
    type("addresses", "a.example.com");
    EXPECT_EQ(textOf("problem"), "");
}

TEST_F(ServerFields, computedNumbers_areOfferedForADomainAloneAndSayWhatTheyMean) {
    openNew();
    type("addresses", "dc.example.com");
    EXPECT_EQ(find<QComboBox>("numbers"), nullptr);
    choose("schema", 2);
    ASSERT_NE(find<QComboBox>("numbers"), nullptr);
    EXPECT_TRUE(textOf("numbersNote").contains("uidNumber"));
    choose("numbers", 1);
    EXPECT_TRUE(textOf("numbersNote").contains("security identifier"));
    EXPECT_TRUE(textOf("numbersNote").contains("no longer belong to them"));
    const auto put = written();
    EXPECT_EQ(put.valueForKey("computedNumbers"), util::Value(true));
    EXPECT_EQ(put.textForKey("schema"), "ad");
}

TEST_F(ServerFields, computedNumbers_areDroppedWithTheDomainsSchema) {
    service.serve("dc", {{"schema", "ad"}, {"computedNumbers", true}});
    configure();
    click("editServer");
    EXPECT_EQ(find<QComboBox>("numbers")->currentIndex(), 1);
    choose("schema", 0);
    EXPECT_EQ(find<QComboBox>("numbers"), nullptr);
    EXPECT_EQ(written().valueForKey("computedNumbers"), util::Value(false));
}

TEST_F(ServerFields, password_isSaidToBeInSssdConfReadableByRootAlone) {
    openNew();
    EXPECT_EQ(textOf("passwordNote"), "") << "without a sign-in there is none";
    type("bindDN", "cn=reader");
    EXPECT_TRUE(textOf("passwordNote").contains("sssd.conf"));
    EXPECT_TRUE(textOf("passwordNote").contains("only root can read"));
}

} // namespace corvane::connectors::ldap
