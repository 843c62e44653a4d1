#include <QApplication>
#include <QMainWindow>
#include <QTimer>
#include <clocale>
#include <iostream>
#include <locale>

#include "desktop/CommandLine.h"
#include "desktop/Program.h"
#include "linux/SystemLog.h"
#include "qt/look/Appearance.h"

using namespace corvane;

namespace {

constexpr int usageError = 2;

/// Shows the pane, saves its picture and gives the program's exit code.
int saveScreenshot(desktop::Program& program, const desktop::CommandLine& commandLine) {
    program.launch(false);
    program.showPane(commandLine.pane);
    constexpr int settledMilliseconds = 200;
    int status = EXIT_FAILURE;
    QTimer::singleShot(settledMilliseconds, [&] {
        if (qt::renderToFile(program.window().shell(), QString::fromStdString(commandLine.screenshot)))
            status = EXIT_SUCCESS;
        QCoreApplication::exit();
    });
    QApplication::exec();
    if (status == EXIT_SUCCESS)
        std::cout << "Saved the picture " << commandLine.screenshot << "\n";
    else
        std::cerr << "The picture " << commandLine.screenshot
                  << " can't be saved. Check that its folder is there and may be written, and that its name "
                     "ends in "
                     ".png.\n";
    return status;
}

/// The collation of the user's language; the plain one where that isn't installed.
void useUsersLocale() {
    try {
        std::locale::global(std::locale(std::locale(), "", std::locale::collate));
    } catch (const std::runtime_error&) {
        return;
    }
}

int run(int count, char** arguments, const desktop::CommandLine& commandLine) {
    const bool picture = !commandLine.screenshot.empty();
    if (picture) {
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
        qt::prepareForPictures();
    }
    QApplication application(count, arguments);
    QApplication::setApplicationName("Corvane");
    QApplication::setApplicationVersion(CORVANE_VERSION);
    useUsersLocale();
    const auto scheme = qgetenv("CORVANE_COLORS");
    qt::installAppearance(application, scheme == "dark"    ? qt::ColorScheme::dark
                                       : scheme == "light" ? qt::ColorScheme::light
                                                           : qt::ColorScheme::automatic);
    linux_::SystemLog log;
    const auto folder =
        commandLine.machineFolder.empty() ? desktop::privateMachineFolder() : commandLine.machineFolder;
    desktop::Program program(
        application,
        {folder, desktop::InstalledFiles::find(QApplication::applicationFilePath().toStdString()), {}, true},
        log);
    if (picture) return saveScreenshot(program, commandLine);
    std::cout << "Working on the machine folder " << folder << "\n";
    program.launch(true);
    return QApplication::exec();
}

} // namespace

int main(int count, char** arguments) {
    const std::vector<std::string> words(arguments + 1, arguments + count);
    const auto commandLine = desktop::CommandLine::parse(words);
    if (commandLine.help) {
        std::cout << desktop::CommandLine::helpText();
        return EXIT_SUCCESS;
    }
    if (!commandLine.problem.empty()) {
        std::cerr << commandLine.problem << " See --help.\n";
        return usageError;
    }
    if (const auto problem = desktop::missingDisplay(commandLine, words)) {
        std::cerr << *problem;
        return usageError;
    }
    try {
        return run(count, arguments, commandLine);
    } catch (const std::exception& problem) {
        std::cerr << "Corvane can't start.\n" << problem.what() << "\n";
        return EXIT_FAILURE;
    }
}
