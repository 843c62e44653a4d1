// Alerts, About and Help on the screen that there is, which may be a small one.
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QToolButton>

#include "qt/QtHarness.h"
#include "qt/widgets/AlertPanel.h"
#include "qt/widgets/HelpWindow.h"
#include "qt/windows/AboutPanel.h"

namespace corvane::qt {
namespace {

class SmallScreen : public testing::Test {
protected:
    static void expectOnScreen(QWidget& window) {
        const auto screen = window.screen()->availableGeometry();
        window.show();
        QTest::qWait(20);
        EXPECT_LE(window.frameGeometry().height(), screen.height());
        EXPECT_LE(window.frameGeometry().width(), screen.width());
        for (auto* each : window.findChildren<QAbstractButton*>()) {
            if (!each->isVisible()) continue;
            EXPECT_EQ(each->visibleRegion().boundingRect(), each->rect()) << each->text().toStdString();
        }
    }

    QtHarness qt_;
};

TEST_F(SmallScreen, alertWithAVeryLongText_scrollsItAndShowsItsButtons) {
    QStringList directories;
    for (int number = 1; number <= 60; ++number)
        directories << QString("/LDAP/number%1.example.com").arg(number);
    AlertPanel panel(nullptr);
    panel.setMessageText("Take these directories off the login policy?");
    panel.setInformativeText(directories.join('\n'));
    panel.addButton("Cancel");
    panel.addButton("Save Anyway");
    panel.arrange();
    expectOnScreen(panel);
    auto* area = panel.findChild<QScrollArea*>("alertText");
    ASSERT_NE(area, nullptr);
    EXPECT_GT(area->verticalScrollBar()->maximum(), 0);
    EXPECT_EQ(panel.informativeText(), directories.join('\n'));
    EXPECT_EQ(panel.accessibleDescription(), directories.join('\n'));
}

TEST_F(SmallScreen, shortAlert_hasNothingToScroll) {
    AlertPanel panel(nullptr);
    panel.setMessageText("Save Changes?");
    panel.setInformativeText("Do you want to save changes before quitting?");
    for (const auto* title : {"Save", "Don’t Save", "Cancel"})
        panel.addButton(title);
    panel.arrange();
    expectOnScreen(panel);
    EXPECT_EQ(panel.findChild<QScrollArea*>("alertText"), nullptr);
}

TEST_F(SmallScreen, aboutAndHelp_fit) {
    AboutPanel about({"Corvane",
                      "1.0",
                      "Directory services of a Linux machine, managed in one window",
                      "Apache License 2.0",
                      {"one", "two", "three", "four", "five", "six", "seven"}},
                     {{"NoticeStartYear", "2026"}}, qt_.guard);
    expectOnScreen(about);
    about.findChild<QToolButton*>()->click();
    QTest::qWait(600); // it unfolds
    expectOnScreen(about);
    HelpWindow help;
    help.open("Corvane Help", "main-window");
    expectOnScreen(help);
}

} // namespace
} // namespace corvane::qt
