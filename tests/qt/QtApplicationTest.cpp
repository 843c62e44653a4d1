#include <gmock/gmock.h>

#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QTimer>

#include "qt/QtHarness.h"
#include "qt/adapters/QtWindow.h"
#include "qt/windows/AboutPanel.h"

namespace corvane::qt {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class QtApplicationTest : public testing::Test {
protected:
    void showField() {
        field_.show();
        field_.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&field_));
        field_.setFocus();
    }

    QtHarness qt_;
    QLineEdit field_;
};

TEST_F(QtApplicationTest, EachKeyStrokeIsOfferedOnceBeforeItIsDispatched) {
    showField();
    std::vector<std::string> seen;
    qt_.application.sendEvent = [&](const toolkit::Event& event) {
        EXPECT_EQ(field_.text(), "");
        if (event.type == toolkit::EventType::keyDown) seen.push_back(event.charactersIgnoringModifiers);
        return false;
    };
    QTest::keyPress(field_.windowHandle(), Qt::Key_D, Qt::NoModifier);
    EXPECT_THAT(seen, ElementsAre("d"));
    EXPECT_EQ(field_.text(), "d");
}

TEST_F(QtApplicationTest, ARepeatedStrokeIsOfferedAgain) {
    showField();
    int downs = 0;
    qt_.application.sendEvent = [&](const toolkit::Event& event) {
        downs += event.type == toolkit::EventType::keyDown;
        return false;
    };
    for (int stroke = 0; stroke < 3; ++stroke)
        QTest::keyClick(field_.windowHandle(), Qt::Key_A);
    EXPECT_EQ(downs, 3);
    EXPECT_EQ(field_.text(), "aaa");
}

TEST_F(QtApplicationTest, ATakenKeyIsNotDispatched) {
    showField();
    qt_.application.sendEvent = [](const toolkit::Event&) { return true; };
    QTest::keyClick(field_.windowHandle(), Qt::Key_D);
    EXPECT_EQ(field_.text(), "");
}

TEST_F(QtApplicationTest, ControlIsTheCommandKeySuperTheControlKeyAndAltTheOptionKey) {
    showField();
    std::vector<toolkit::Event> downs;
    qt_.application.sendEvent = [&](const toolkit::Event& event) {
        const bool isCharacter = !event.charactersIgnoringModifiers.empty(); // not Ctrl itself
        if (isCharacter && event.type == toolkit::EventType::keyDown) downs.push_back(event);
        return true;
    };
    QTest::keyClick(field_.windowHandle(), Qt::Key_D,
                    Qt::ControlModifier | Qt::MetaModifier | Qt::AltModifier);
    QTest::keyClick(field_.windowHandle(), Qt::Key_D, Qt::ShiftModifier);
    ASSERT_EQ(downs.size(), 2U);
    EXPECT_TRUE(downs[0].modifiers.command && downs[0].modifiers.control && downs[0].modifiers.option);
    EXPECT_FALSE(downs[0].modifiers.shift);
    EXPECT_EQ(downs[0].charactersIgnoringModifiers, "d");
    EXPECT_TRUE(downs[1].modifiers.shift);
    EXPECT_EQ(downs[1].charactersIgnoringModifiers, "D");
}

TEST_F(QtApplicationTest, AFailingKeyHandlerLeavesTheKeyToTheFieldAndIsLogged) {
    showField();
    qt_.application.sendEvent = [](const toolkit::Event& event) -> bool {
        if (event.type == toolkit::EventType::keyDown) throw std::runtime_error("broken");
        return false;
    };
    QTest::keyClick(field_.windowHandle(), Qt::Key_X);
    EXPECT_EQ(field_.text(), "x");
    EXPECT_THAT(qt_.log.lines, ElementsAre("Exception while handling a key: broken"));
}

TEST_F(QtApplicationTest, TerminatingAsksAndEndsTheEventLoop) {
    std::vector<std::string> calls;
    bool may = false;
    qt_.application.shouldTerminate = [&] {
        calls.emplace_back("should");
        return may;
    };
    qt_.application.willTerminate = [&] { calls.emplace_back("will"); };
    QTimer::singleShot(0, [&] {
        qt_.application.terminate();
        EXPECT_THAT(calls, ElementsAre("should"));
        may = true;
        qt_.application.terminate();
        qt_.application.terminate();
    });
    QTimer::singleShot(5000, [] { QCoreApplication::exit(9); });
    EXPECT_EQ(QCoreApplication::exec(), 0);
    EXPECT_THAT(calls, ElementsAre("should", "should", "will"));
}

TEST_F(QtApplicationTest, AModalRunAnswersTheCodeThatStoppedIt) {
    QWidget shell;
    QtWindow window(shell, shell, qt_.guard, qt_.settings);
    QTimer::singleShot(0, [&] {
        EXPECT_TRUE(window.isVisible());
        EXPECT_EQ(QApplication::activeModalWidget(), &shell);
        qt_.application.stopModal(5);
    });
    EXPECT_EQ(qt_.application.runModalForWindow(window), 5);
}

TEST_F(QtApplicationTest, AModalWindowThatIsClosedAnswersZero) {
    QWidget shell;
    QtWindow window(shell, shell, qt_.guard, qt_.settings);
    QTimer::singleShot(0, [&] { shell.close(); });
    EXPECT_EQ(qt_.application.runModalForWindow(window), 0);
    EXPECT_FALSE(window.isVisible());
}

TEST_F(QtApplicationTest, StoppingWithoutAModalRunDoesNothing) {
    qt_.application.stopModal(1);
    EXPECT_THAT(qt_.log.lines, IsEmpty());
}

TEST_F(QtApplicationTest, TheAboutPanelNamesYearsVersionLicenceAndComponents) {
    const About about{"Corvane", "1.2", "Summary", "Apache License 2.0", {"Qt", "Expat"}};
    AboutPanel panel(about, {{"NoticeStartYear", "2025"}, {"NoticeEndYear", "2026"}}, qt_.guard);
    QString all;
    for (const auto* label : panel.findChildren<QLabel*>())
        all += label->text() + '\n';
    for (const char* part :
         {"Corvane", "Version 1.2", "Summary", "2025–2026", "Apache License 2.0", "Qt", "Expat"})
        EXPECT_THAT(all.toStdString(), HasSubstr(part));
}

TEST_F(QtApplicationTest, HelpOpensItsBookAndSaysWhenThereIsNone) {
    HelpWindow help;
    help.open("Corvane Help", "main-window");
    EXPECT_THAT(help.page().toPlainText().toStdString(), HasSubstr("Opening the lock"));
    help.open("Other Book", "x");
    EXPECT_THAT(help.page().toPlainText().toStdString(), HasSubstr("Other Book"));
}

} // namespace
} // namespace corvane::qt
