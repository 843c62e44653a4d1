// What people who use the keyboard, a small screen or a screen reader count on in the connector's windows.
#include <QKeySequence>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <functional>
#include <map>

#include "PlugInHarness.h"
#include "qt/widgets/Announcement.h"

using namespace corvane;

namespace corvane::connectors::ldap {

struct DialogueLayout : PlugInHarness {
    using Look = std::function<void(const std::string& state, QDialog& window)>;
    DialogueLayout() {
        service.serve("a.example.com");
        service.serve("twin", {{"addresses", util::Array{"a.example.com"}}});
        service.serve("domain", {{"schema", "ad"},
                                 {"computedNumbers", true},
                                 {"security", "none"},
                                 {"bindDN", "cn=reader,dc=example,dc=com"},
                                 {"hasPassword", true}});
        service.reports = {util::Dictionary{{"finished", true}, {"steps", longSteps()}}};
        qt::setAnnouncementListener([this](const QString& text) { heard << text; });
    }
    ~DialogueLayout() override { qt::setAnnouncementListener({}); }

    static util::Array longSteps() {
        auto steps = util::Array::makeMutable();
        for (const auto* step : {"connect", "encrypt", "bind", "base", "user", "group"})
            steps.append(util::Dictionary{
                {"step", step}, {"state", "done"}, {"detail", "cn=" + std::string(200, 'x')}});
        return steps;
    }
    static QDialog& front() {
        auto* window = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        QTest::qWait(20);
        return *window;
    }
    /// The windows of the connector in their largest states.
    void showEveryState(const Look& look) {
        configure();
        look("servers", front());
        clickRow(1); // the domain
        click("editServer");
        look("editor", front());
        click("more");
        type("addresses", "");
        click("serverOk");
        look("editor, everything shown, with a message", front());
        click("serverCancel");
        click("testServer");
        look("question about the password", front());
        click("sendPassword");
        ASSERT_TRUE(QTest::qWaitFor([] { return !textOf("testResult").isEmpty(); }, 3000));
        look("test", front());
        click("testClose");
        service.program().authentication = {"/LDAP/domain"};
        click("deleteServer");
        look("question about the policy", front());
    }
    /// The scrolled part that shows the widget, null for none.
    static QScrollArea* areaOf(const QWidget& widget) {
        for (auto* at = widget.parentWidget(); at != nullptr; at = at->parentWidget())
            if (auto* area = qobject_cast<QScrollArea*>(at)) return area;
        return nullptr;
    }

    QStringList heard;
};

TEST_F(DialogueLayout, everyButton_isOnTheScreen) {
    const auto screen = QGuiApplication::primaryScreen()->availableGeometry();
    showEveryState([&](const std::string& state, QDialog& window) {
        EXPECT_LE(window.frameGeometry().height(), screen.height()) << state;
        EXPECT_LE(window.frameGeometry().width(), screen.width()) << state;
        if (state == "test") {
            auto* result = find<QLabel>("testResult");
            EXPECT_EQ(result->visibleRegion().boundingRect(), result->rect());
        }
        for (auto* each : window.findChildren<QAbstractButton*>()) {
            if (!each->isVisible()) continue;
            if (auto* area = areaOf(*each)) area->ensureWidgetVisible(each, 0, 0);
            QApplication::processEvents();
            EXPECT_EQ(each->visibleRegion().boundingRect(), each->rect())
                << state << ": " << each->text().toStdString();
        }
    });
}

TEST_F(DialogueLayout, eachMnemonic_isUsedOnceInAWindowAndReachesItsControl) {
    showEveryState([&](const std::string& state, QDialog& window) {
        std::map<QString, QStringList> found;
        const auto note = [&found](const QString& text) {
            if (const auto keys = QKeySequence::mnemonic(text); !keys.isEmpty())
                found[keys.toString()] << text;
        };
        for (auto* each : window.findChildren<QAbstractButton*>())
            if (each->isVisible() && each->isEnabled()) note(each->text());
        for (auto* each : window.findChildren<QLabel*>()) {
            if (!each->isVisible() || QKeySequence::mnemonic(each->text()).isEmpty()) continue;
            EXPECT_NE(each->buddy(), nullptr) << state << ": " << each->text().toStdString();
            note(each->text());
        }
        for (const auto& [letter, texts] : found)
            EXPECT_EQ(texts.size(), 1) << state << ": " << texts.join(" | ").toStdString();
    });
}

TEST_F(DialogueLayout, theTabKey_goesDownThePageAndAlongItsLines) {
    showEveryState([&](const std::string& state, QDialog& window) {
        QList<QWidget*> chain;
        for (auto* at = window.nextInFocusChain(); at != &window; at = at->nextInFocusChain())
            if (at->isVisible() && at->isEnabled() && (at->focusPolicy() & Qt::TabFocus) &&
                at->focusProxy() == nullptr)
                chain << at;
        ASSERT_FALSE(chain.isEmpty()) << state;
        const auto place = [&](QWidget* each) { return QRect(each->mapTo(&window, QPoint()), each->size()); };
        for (qsizetype at = 1; at < chain.size(); ++at) {
            const bool changesPart = areaOf(*chain[at]) != areaOf(*chain[at - 1]);
            const auto before = place(chain[at - 1]);
            const auto now = place(chain[at]);
            const bool sameLine = now.top() <= before.bottom() && now.bottom() >= before.top();
            EXPECT_TRUE(changesPart || (sameLine ? now.x() > before.x() : now.y() > before.y()))
                << state << ": " << chain[at - 1]->objectName().toStdString() << " before "
                << chain[at]->objectName().toStdString();
        }
    });
}

TEST_F(DialogueLayout, warningThatComes_leavesEveryFieldItsHeight) {
    configure();
    click("addServer");
    choose("security", 2);
    QTest::qWait(50);
    for (const auto* name :
         {"addresses", "security", "port", "caFile", "baseDN", "bindDN", "password", "schema"}) {
        auto* field = find<QWidget>(name);
        ASSERT_NE(field, nullptr) << name;
        EXPECT_GT(field->height(), 20) << name;
    }
}

TEST_F(DialogueLayout, fieldThatIsWrong_isScrolledIntoView) {
    configure();
    clickRow(1); // the domain
    click("editServer");
    click("more");
    type("connectTimeout", "");
    auto* area = find<QScrollArea>("formFields");
    ASSERT_NE(area, nullptr);
    area->verticalScrollBar()->setValue(0);
    click("serverOk");
    QTest::qWait(20);
    auto* field = find<QLineEdit>("connectTimeout");
    EXPECT_TRUE(field->hasFocus());
    EXPECT_EQ(field->visibleRegion().boundingRect(), field->rect());
}

TEST_F(DialogueLayout, resultOfATestAndMessageOfAField_areReadOut) {
    configure();
    click("testServer");
    ASSERT_TRUE(QTest::qWaitFor([] { return !textOf("testResult").isEmpty(); }, 3000));
    EXPECT_TRUE(heard.contains("The server works.\nUsers and groups can be looked up with these settings."))
        << heard.join(" | ").toStdString();
    click("testClose");
    click("addServer");
    click("serverOk");
    click("serverOk");
    EXPECT_EQ(find<QLabel>("problem")->accessibleName(), "Name at least one server.");
}

} // namespace corvane::connectors::ldap
