// The window's place and page from one run of the program to the next.
#include <QApplication>
#include <QMainWindow>
#include <QScreen>
#include <QTest>

#include "gui/policies/PolicyWindow.h"

namespace corvane::gui {
namespace {

class Restart : public PolicyWindow {
protected:
    /// Where the window is after a run that begins where the last one ended; `meanwhile` is what its user
    /// does.
    QPoint run(const std::function<void(desktop::Program&)>& meanwhile = {}) {
        const auto files = desktop::InstalledFiles::find(QApplication::applicationFilePath().toStdString());
        const auto settings = machine_.folder.path() + "/settings.ini";
        desktop::Program program(*qApp,
                                 desktop::Program::Settings{machine_.folder.path(), files,
                                                            QString::fromStdString(settings), false},
                                 machine_.log);
        program.launch(true);
        auto& shell = program.window().shell();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&shell));
        settle(50);
        if (meanwhile) meanwhile(program);
        settle(50);
        const auto place = shell.frameGeometry().topLeft();
        const auto screen = QGuiApplication::primaryScreen()->availableGeometry();
        EXPECT_TRUE(screen.contains(shell.frameGeometry())) << place.x() << " " << place.y();
        program.window().window.saveState();
        shell.hide();
        return place;
    }
};

TEST_F(Restart, twentyTimes_leavesTheWindowWhereItIs) {
    const auto first = run([](auto& program) { program.window().shell().move(130, 5); });
    for (int time = 1; time <= 20; ++time)
        ASSERT_EQ(run(), first) << "restart " << time;
}

TEST_F(Restart, twentyTimesOnTheLargePage_leavesTheWindowWhereItIs) {
    (void)run([](auto& program) { program.showPane("editor"); });
    const auto first = run();
    for (int time = 1; time <= 20; ++time)
        ASSERT_EQ(run(), first) << "restart " << time;
}

TEST_F(Restart, aPlaceThatIsNoLongerOnAScreen_isMovedOntoOne) {
    (void)run();
    auto text = machine_.folder.read("settings.ini");
    const auto at = text.find("windowTopLeft=");
    ASSERT_NE(at, std::string::npos) << text;
    text.replace(at, text.find('\n', at) - at, "windowTopLeft=\"{5000, -4000}\"");
    machine_.folder.write("settings.ini", text);
    (void)run(); // says by itself whether the window is on the screen
}

} // namespace
} // namespace corvane::gui
