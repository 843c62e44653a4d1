// corvane-oracle-window FOLDER SETTINGS-FILE [STEP...]: changes the login policy of a machine folder in the
// real window, with the mouse, and prints the directories that the table then shows, one a line. Steps:
//
//   Automatic, Local, Custom   chosen in the pop-up button
//   less                       the first directory of a custom list is deleted
//   apply                      Apply; a question is answered with what isn't Cancel
//
// Ends with status 3, and the words of the message on standard error, when the service refused the change.
#include <QAbstractButton>
#include <QApplication>
#include <QMainWindow>
#include <QTest>
#include <QTimer>
#include <iostream>

#include "desktop/Program.h"
#include "gui/steps/WindowUser.h"
#include "linux/SystemLog.h"
#include "qt/look/Appearance.h"
#include "qt/windows/MainWindowInterface.h"

using namespace corvane;

namespace {

constexpr auto table = "selectNode";
constexpr int refused = 3;

QString plain(const QAbstractButton& button) { return button.text().remove('&'); }

QList<QAbstractButton*> visibleButtons() {
    QList<QAbstractButton*> buttons;
    for (auto* top : QApplication::topLevelWidgets())
        for (auto* each : top->findChildren<QAbstractButton*>())
            if (each->isVisible() && each->isEnabled()) buttons.append(each);
    return buttons;
}

/// The button beside a visible Cancel, null when nothing is asked.
QAbstractButton* consent() {
    const auto buttons = visibleButtons();
    for (const auto* cancel : buttons)
        if (plain(*cancel) == "Cancel")
            for (auto* other : buttons)
                if (other != cancel && other->parentWidget() == cancel->parentWidget()) return other;
    return nullptr;
}

/// The only button of a message, null when there is none.
QAbstractButton* dismissal() {
    for (auto* button : visibleButtons())
        if (plain(*button) == "OK" && consent() == nullptr) return button;
    return nullptr;
}

/// Answers whatever Apply brings up.
class Answerer {
public:
    explicit Answerer(gui::WindowUser& user) : user_(user) {
        QObject::connect(&watch_, &QTimer::timeout, [this] { look(); });
        watch_.start(50);
    }
    [[nodiscard]] const QString& message() const { return message_; }

private:
    void look() {
        if (auto* button = consent()) return user_.answer(plain(*button));
        if (dismissal() == nullptr) return;
        message_ += user_.visibleText() + "\n";
        user_.answer("OK");
    }

    gui::WindowUser& user_;
    QTimer watch_;
    QString message_;
};

bool isDirectory(const QString& row) { return row != "/Local/Accounts" && row != "/BSD/Files"; }

void deleteFirstDirectory(gui::WindowUser& user) {
    const auto rows = user.rowsOf(table);
    for (int row = 0; row < rows.size(); ++row) {
        if (!isDirectory(rows[row])) continue;
        user.clickRow(table, row);
        user.click("deleteNode");
        return user.answer("OK");
    }
    throw std::runtime_error("there is no directory to delete");
}

/// The message of a refusal, "" when it was done.
QString perform(gui::WindowUser& user, const QString& step) {
    if (step == "less") {
        deleteFirstDirectory(user);
    } else if (step != "apply") {
        user.choose("selectSearchPolicy", step);
    } else if (user.isEnabled("applyButton")) {
        const Answerer answerer(user);
        user.click("applyButton");
        gui::settle(300);
        return answerer.message();
    }
    return {};
}

int work(desktop::Program& program, const QStringList& steps) {
    program.launch(false);
    auto& shell = program.window().shell();
    if (!QTest::qWaitForWindowExposed(&shell)) throw std::runtime_error("the window doesn't come up");
    gui::WindowUser user(shell);
    user.click("authorizationView");
    user.click("kSearchPaths");
    for (const auto& step : steps)
        if (const auto message = perform(user, step); !message.isEmpty()) {
            std::cerr << message.simplified().toStdString() << std::endl;
            return refused;
        }
    for (const auto& row : user.rowsOf(table))
        if (isDirectory(row)) std::cout << row.toStdString() << '\n';
    std::cout.flush();
    return EXIT_SUCCESS;
}

} // namespace

int main(int count, char** arguments) {
    qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext&, const QString&) {}); // standard error is for refusals
    QApplication application(count, arguments);
    qt::installAppearance(application, qt::ColorScheme::light);
    const auto words = QApplication::arguments();
    if (words.size() < 3) {
        std::cerr << "Usage: corvane-oracle-window FOLDER SETTINGS-FILE STEP...\n";
        return 2;
    }
    const auto files = desktop::InstalledFiles::find(QApplication::applicationFilePath().toStdString());
    linux_::SystemLog log;
    int status = EXIT_FAILURE;
    try {
        desktop::Program program(application, {words[1].toStdString(), files, words[2], false}, log);
        QTimer::singleShot(0, &application, [&] {
            try {
                status = work(program, words.mid(3));
            } catch (const std::exception& problem) {
                std::cerr << problem.what() << std::endl;
            }
            std::_Exit(status); // a question may be in the way of an orderly end
        });
        return QApplication::exec();
    } catch (const std::exception& problem) {
        std::cerr << problem.what() << '\n';
        return EXIT_FAILURE;
    }
}
