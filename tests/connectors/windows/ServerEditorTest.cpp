#include "PlugInHarness.h"

using namespace corvane;

namespace corvane::connectors::ldap {

struct EditedServer : PlugInHarness {
    EditedServer() { service.serve("a.example.com", {{"bindDN", "cn=reader"}, {"hasPassword", true}}); }
    void openNew() {
        configure();
        click("addServer");
    }
    void openSaved() {
        configure();
        click("editServer");
    }
    void accept() {
        click("serverOk");
        click("serversDone");
        ASSERT_TRUE(save());
    }
    [[nodiscard]] util::Dictionary lastPut() {
        if (service.requests.empty()) return util::Dictionary(util::ValueMap{});
        const auto put = service.requests.back().valueForKey("put").as<util::Array>();
        return put.isEmpty() ? util::Dictionary(util::ValueMap{}) : put.at(0).as<util::Dictionary>();
    }
    [[nodiscard]] QLineEdit* field(const char* name) { return find<QLineEdit>(name); }
};

TEST_F(EditedServer, newServer_isWrittenAsItWasTyped) {
    openNew();
    type("addresses", "one.example.com\n two.example.com \n\n");
    choose("security", 1);
    type("port", "1636");
    type("caFile", "/etc/ssl/ca.pem");
    type("baseDN", "dc=example");
    type("bindDN", "cn=me");
    type("password", "geheim");
    choose("schema", 2);
    accept();
    const auto put = lastPut();
    EXPECT_EQ(put.valueForKey("addresses").as<util::Array>().texts(),
              (std::vector<std::string>{"one.example.com", "two.example.com"}));
    EXPECT_EQ(put.textForKey("name"), "one.example.com");
    EXPECT_EQ(put.textForKey("security"), "ldaps");
    EXPECT_EQ(put.valueForKey("port"), util::Value(1636));
    EXPECT_EQ(put.textForKey("caFile"), "/etc/ssl/ca.pem");
    EXPECT_EQ(put.textForKey("baseDN"), "dc=example");
    EXPECT_EQ(put.textForKey("schema"), "ad");
    EXPECT_EQ(util::textFromBytes(put.valueForKey("password").as<util::Data>().bytes()), "geheim");
    EXPECT_EQ(put.valueForKey("connectTimeout"), util::Value(6));
}

TEST_F(EditedServer, cancelledEditor_changesNothing) {
    openNew();
    type("addresses", "one.example.com");
    click("serverCancel");
    EXPECT_EQ(rows(), QStringList{"a.example.com"});
    EXPECT_FALSE(isDirty());
}

TEST_F(EditedServer, withoutAnAddress_saysSoAndPutsTheKeyboardThere) {
    openNew();
    click("serverOk");
    EXPECT_TRUE(isShown("serverEditor"));
    EXPECT_EQ(textOf("problem"), "Name at least one server.");
    type("addresses", "x");
    click("serverOk");
    EXPECT_FALSE(isShown("serverEditor"));
}

TEST_F(EditedServer, addressWithMoreInIt_isAProblemAndSaysWhich) {
    openNew();
    for (const auto* odd : {"ldaps://x.example", "x.example:636", "a b"}) {
        type("addresses", QString("good.example\n") + odd);
        click("serverOk");
        EXPECT_TRUE(textOf("problem").contains(QString("“%1”").arg(odd))) << odd;
        EXPECT_TRUE(find<QPlainTextEdit>("addresses")->hasFocus());
    }
    type("addresses", "2001:db8::1\n192.0.2.1");
    click("serverOk");
    EXPECT_FALSE(isShown("serverEditor"));
}

TEST_F(EditedServer, oddAddressThatStandsInTheConfiguration_mayStay) {
    service.serve("a.example.com", {{"addresses", util::Array{"ldap://a.example.com:1389"}}});
    openSaved();
    type("baseDN", "dc=new");
    accept();
    EXPECT_EQ(lastPut().textForKey("baseDN"), "dc=new");
}

TEST_F(EditedServer, port_takesNothingButAPort) {
    openNew();
    type("port", "9x9");
    EXPECT_EQ(field("port")->text(), "99");
    type("port", "65536");
    EXPECT_EQ(field("port")->text(), "6553") << "the last digit would be too much";
    EXPECT_EQ(field("port")->placeholderText(), "389");
    choose("security", 1);
    EXPECT_EQ(field("port")->placeholderText(), "636");
}

TEST_F(EditedServer, noEncryption_isWarnedOf) {
    openNew();
    EXPECT_EQ(textOf("securityWarning"), "");
    choose("security", 2);
    EXPECT_TRUE(textOf("securityWarning").contains("nobody can log in"));
    EXPECT_FALSE(field("caFile")->isEnabled());
}

TEST_F(EditedServer, savedPassword_isNeverShownAndKept) {
    openSaved();
    EXPECT_EQ(field("password")->text(), "");
    EXPECT_EQ(field("password")->placeholderText(), "saved; never shown");
    EXPECT_EQ(field("password")->echoMode(), QLineEdit::Password);
    type("baseDN", "dc=new");
    accept();
    EXPECT_FALSE(lastPut().containsKey("password"));
}

TEST_F(EditedServer, bindNameTakenAway_takesTheSavedPasswordWithIt) {
    openSaved();
    type("bindDN", "");
    EXPECT_FALSE(field("password")->isEnabled());
    accept();
    EXPECT_TRUE(lastPut().containsKey("password"));
    EXPECT_TRUE(lastPut().valueForKey("password").as<util::Data>().bytes().empty());
}

TEST_F(EditedServer, bindNameTakenAwayAndGivenBack_keepsTheSavedPassword) {
    openSaved();
    type("bindDN", "");
    click("serverOk");
    click("editServer");
    type("bindDN", "cn=reader");
    EXPECT_EQ(field("password")->placeholderText(), "saved; never shown");
    type("baseDN", "dc=new");
    accept();
    EXPECT_FALSE(lastPut().containsKey("password")) << "an empty one would take the saved one away";
}

TEST_F(EditedServer, newPasswordTakenBack_isNotKeptBehindAnEmptyField) {
    openNew();
    type("addresses", "x");
    type("bindDN", "cn=me");
    type("password", "geheim");
    click("serverOk");
    clickRow(1);
    click("editServer");
    type("password", "");
    click("serverOk");
    EXPECT_TRUE(textOf("problem").startsWith("Signing in needs a password."));
}

TEST_F(EditedServer, settingsBeyondTheFormsOwn_areKeptAsTheyAre) {
    service.serve("a.example.com", {{"schema", "IPA"}, {"connectTimeout", 300}, {"searchTimeout", 600}});
    openSaved();
    EXPECT_EQ(find<QComboBox>("schema")->currentText(), "IPA");
    type("baseDN", "dc=new");
    accept();
    EXPECT_EQ(lastPut().textForKey("schema"), "IPA");
    EXPECT_EQ(lastPut().valueForKey("connectTimeout"), util::Value(300));
    EXPECT_EQ(lastPut().valueForKey("searchTimeout"), util::Value(600));
}

TEST_F(EditedServer, bindNameWithoutAPassword_isAProblem) {
    openNew();
    type("addresses", "x");
    type("bindDN", "cn=me");
    click("serverOk");
    EXPECT_TRUE(textOf("problem").startsWith("Signing in needs a password."));
    EXPECT_TRUE(field("password")->hasFocus());
}

TEST_F(EditedServer, moreSettings_foldAway) {
    openNew();
    EXPECT_EQ(field("name"), nullptr);
    click("more");
    ASSERT_NE(field("name"), nullptr);
    click("more");
    EXPECT_EQ(field("name"), nullptr);
}

TEST_F(EditedServer, problemInAFoldedField_unfoldsIt) {
    openNew();
    type("addresses", "x");
    click("more");
    type("name", "A.EXAMPLE.COM");
    click("more");
    click("serverOk");
    EXPECT_EQ(textOf("problem"), "Another server is called “A.EXAMPLE.COM” already.");
    ASSERT_NE(field("name"), nullptr);
    EXPECT_TRUE(field("name")->hasFocus());
}

TEST_F(EditedServer, timeOuts_areSecondsUpToTwoMinutes) {
    openNew();
    type("addresses", "x");
    click("more");
    EXPECT_EQ(field("connectTimeout")->text(), "6");
    type("connectTimeout", "121");
    EXPECT_EQ(field("connectTimeout")->text(), "12");
    type("searchTimeout", "");
    click("serverOk");
    EXPECT_EQ(textOf("problem"), "A time-out is from 1 to 120 seconds.");
}

TEST_F(EditedServer, relativeCaPath_isAProblem) {
    openNew();
    type("addresses", "x");
    type("caFile", "ca.pem");
    click("serverOk");
    EXPECT_TRUE(textOf("problem").startsWith("The CA certificates are a file’s full path"));
}

TEST_F(EditedServer, onlyBaseOfAServer_isTakenOver) {
    service.reports = {
        util::Dictionary{{"finished", false}},
        util::Dictionary{{"finished", true}, {"bases", util::Array{"dc=one"}}, {"defaultBase", "dc=one"}}};
    openNew();
    type("addresses", "x");
    click("askBases");
    EXPECT_FALSE(find<QAbstractButton>("askBases")->isEnabled()) << "while the server is asked";
    EXPECT_TRUE(QTest::qWaitFor([&] { return field("baseDN")->text() == "dc=one"; }, 3000));
    EXPECT_TRUE(textOf("basesNote").contains("dc=one"));
}

TEST_F(EditedServer, serverThatDoesntAnswerForItsBases_isToldInPlainWords) {
    service.reports = {
        util::Dictionary{{"finished", true},
                         {"failure", util::Dictionary{{"cause", "It refuses."}, {"nextStep", "Start it."}}}}};
    openNew();
    type("addresses", "x");
    click("askBases");
    EXPECT_TRUE(QTest::qWaitFor([&] { return textOf("basesNote") == "It refuses. Start it."; }, 3000));
    EXPECT_TRUE(find<QAbstractButton>("askBases")->isEnabled());
}

TEST_F(EditedServer, test_showsEachStepAndWhatFailed) {
    service.reports = {util::Dictionary{
        {"finished", true},
        {"steps",
         util::Array{util::Dictionary{{"step", "connect"}, {"state", "done"}, {"detail", "<b>192.0.2.1</b>"}},
                     util::Dictionary{{"step", "encrypt"}, {"state", "failed"}}}},
        {"failure",
         util::Dictionary{{"cause", "Not <trusted>."}, {"evidence", "Issuer X."}, {"nextStep", "Get X."}}}}};
    openSaved();
    click("test");
    EXPECT_TRUE(QTest::qWaitFor([&] { return textOf("testResult").contains("Get X."); }, 3000));
    EXPECT_TRUE(textOf("testResult").contains("Not &lt;trusted&gt;.")) << "a server's words are no markup";
    for (const auto* label : QApplication::activeModalWidget()->findChildren<QLabel*>())
        if (label->text().contains("192.0.2.1")) {
            EXPECT_EQ(label->textFormat(), Qt::PlainText);
        }
    EXPECT_TRUE(frontText().contains("192.0.2.1") && frontText().contains("Encrypt the connection"));
    EXPECT_EQ(find<QAbstractButton>("testClose")->text(), "Close");
}

TEST_F(EditedServer, runningTest_canBeCancelled) {
    service.reports = {util::Dictionary{{"finished", false}}};
    openSaved();
    click("test");
    EXPECT_EQ(find<QAbstractButton>("testClose")->text(), "Cancel");
    click("testClose");
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(isShown("serverTest"));
    EXPECT_EQ(service.cancelled, std::vector<int>{7});
}

} // namespace corvane::connectors::ldap
