// The window that tests a server: what it asks first, what it says at the end, and what can be taken out of
// it.
#include <QClipboard>
#include <QMainWindow>
#include <gmock/gmock.h>

#include "PlugInHarness.h"

using namespace corvane;
using testing::HasSubstr;
using testing::Not;

namespace corvane::connectors::ldap {

struct TestOfAServer : PlugInHarness {
    TestOfAServer() {
        service.reports = {util::Dictionary{
            {"finished", true},
            {"steps",
             util::Array{util::Dictionary{{"step", "encrypt"}, {"state", "done"}, {"detail", longName}}}}}};
    }
    void openTest(const util::ValueMap& server = {}) {
        service.serve("a.example.com", server);
        configure();
        click("testServer");
    }
    [[nodiscard]] static bool settled() {
        return QTest::qWaitFor([] { return !textOf("testResult").isEmpty(); }, 3000);
    }
    [[nodiscard]] std::size_t started() const {
        std::size_t count = 0;
        for (const auto& request : service.requests)
            count += request.containsKey("kind");
        return count;
    }
    const std::string longName = "CN=" + std::string(300, 'x') + ",O=Certificates without a blank";
};

TEST_F(TestOfAServer, unencryptedServerWithASignIn_asksBeforeThePasswordIsSent) {
    openTest({{"security", "none"}, {"bindDN", "cn=reader"}, {"hasPassword", true}});
    EXPECT_EQ(started(), 0U) << "nothing before the answer";
    EXPECT_FALSE(isShown("serverTest"));
    EXPECT_TRUE(frontText().contains("isn’t encrypted. Send the password all the same?"));
    QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Return);
    QApplication::processEvents();
    EXPECT_EQ(started(), 0U) << "the default is not to send it";
    click("testServer");
    click("sendPassword");
    ASSERT_TRUE(settled());
    ASSERT_EQ(started(), 1U);
    EXPECT_EQ(service.requests.front().valueForKey("clearPassword"), util::Value(true));
}

TEST_F(TestOfAServer, withoutASignInOrWithEncryption_nothingIsAsked) {
    openTest({{"security", "none"}});
    EXPECT_TRUE(isShown("serverTest"));
    closeAll();
    service.requests.clear();
    openTest({{"bindDN", "cn=reader"}, {"hasPassword", true}});
    EXPECT_TRUE(isShown("serverTest"));
    // A question about the first test may still have been on its way.
    const auto begun = std::ranges::find_if(
        service.requests, [](const auto& request) { return request.containsKey("clearPassword"); });
    ASSERT_NE(begun, service.requests.end());
    EXPECT_EQ(begun->valueForKey("clearPassword"), util::Value(false));
}

TEST_F(TestOfAServer, serverWithoutEncryption_isNotSaidToWork) {
    openTest({{"security", "none"}});
    ASSERT_TRUE(settled());
    EXPECT_FALSE(textOf("testResult").contains("The server works."));
    EXPECT_TRUE(textOf("testResult").contains("nobody can log in"));
}

TEST_F(TestOfAServer, encryptedServer_isSaidToWork) {
    openTest();
    ASSERT_TRUE(settled());
    EXPECT_TRUE(textOf("testResult").contains("The server works."));
}

TEST_F(TestOfAServer, enterInAField_testsAgainAndKeepsTheWindow) {
    openTest();
    ASSERT_TRUE(settled());
    type("testUser", "alice");
    QTest::keyClick(find<QLineEdit>("testUser"), Qt::Key_Return);
    QApplication::processEvents();
    EXPECT_TRUE(isShown("serverTest"));
    ASSERT_EQ(started(), 2U);
    EXPECT_EQ(service.requests[2].textForKey("user"), "alice");
}

TEST_F(TestOfAServer, longCertificateName_isNotCutOff) {
    openTest();
    ASSERT_TRUE(settled());
    EXPECT_LE(find<QDialog>("serverTest")->width(), 640) << "the window grows in height instead";
    for (auto* label : find<QDialog>("serverTest")->findChildren<QLabel*>()) {
        const QRect needed = label->fontMetrics().boundingRect(QRect(0, 0, label->width(), 10000),
                                                               Qt::TextWordWrap, label->text());
        EXPECT_LE(needed.width(), label->width()) << label->text().left(40).toStdString();
        if (label->wordWrap() && label->textFormat() == Qt::PlainText) {
            EXPECT_LE(needed.height(), label->height() + 1) << label->text().left(40).toStdString();
        }
    }
}

TEST_F(TestOfAServer, report_isCopiedAsAWholeAndAsItIs) {
    openTest();
    ASSERT_TRUE(settled());
    click("copyReport");
    const auto copied = QApplication::clipboard()->text().toStdString();
    EXPECT_THAT(copied, HasSubstr("Test of a.example.com"));
    EXPECT_THAT(copied, HasSubstr("Encrypt the connection: succeeded. " + longName));
    EXPECT_THAT(copied, HasSubstr("The server works."));
}

TEST_F(TestOfAServer, dialogues_belongToAWindowAlsoWhenNoneIsActive) {
    QMainWindow program;
    program.show();
    QApplication::setActiveWindow(nullptr);
    service.serve("a.example.com");
    configure();
    ASSERT_NE(find<QDialog>("ldapServers"), nullptr);
    EXPECT_EQ(find<QDialog>("ldapServers")->parentWidget(), &program);
    closeAll();
}

} // namespace corvane::connectors::ldap
