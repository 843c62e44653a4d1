// Works the real window with mouse and key events, one step for each argument:
//
//   corvane-gui-steps --machine DIR STEP...
//
// Steps: lock (click the padlock), services, search, editor (toolbar), authentication, contacts (sub-tabs),
// mode=Automatic|Local|Custom, contactsmode=..., apply (with a yes to directories that leave the login
// policy), row=TABLE:N, alsorow=TABLE:N (with Ctrl), open=TABLE:N (double click), drag=TABLE:FROM:TO,
// click=NAME, type=FIELD:TEXT, menu=MENU/ITEM, edit=FILE (another program adds a comment to that file of the
// machine), answer=BUTTON, key=KEY (as in Ctrl+S), rows=TABLE and text (print), picture=FILE (the window with
// its sheets), dialogue=FILE (a picture of the dialogue that is open), wait=MILLISECONDS. Ends with 0 when
// every step could be done. CORVANE_COLORS=dark shows the window in its dark colours.
#include <QApplication>
#include <QKeySequence>
#include <QMainWindow>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iostream>
#include <map>
#include <string_view>
#include <vector>

#include "desktop/Program.h"
#include "gui/steps/WindowUser.h"
#include "linux/SystemLog.h"
#include "qt/look/Appearance.h"
#include "qt/windows/MainWindowInterface.h"

using namespace corvane;

namespace {

std::pair<QString, int> tableAndRow(const QString& value) {
    return {value.section(':', 0, 0), value.section(':', 1).toInt()};
}

/// The folder that the window works on.
std::string machineFolder;

void editAsAnotherProgram(gui::WindowUser& /*user*/, const QString& file) {
    std::ofstream(machineFolder + "/" + file.toStdString(), std::ios::app)
        << "# changed by another program\n";
}

void apply(gui::WindowUser& user, const QString& /*value*/) {
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, [&] {
        if (user.visibleText().contains("off the login policy?")) user.answer("Save Anyway");
    });
    constexpr int lookEvery = 50; // milliseconds
    watch.start(lookEvery);
    user.click("applyButton");
}

void pressKeys(gui::WindowUser& user, const QString& keys) {
    const auto combination = QKeySequence(keys)[0];
    user.press(combination.key(), combination.keyboardModifiers());
}

using Step = std::function<void(gui::WindowUser&, const QString& value)>;

const std::map<QString, Step>& steps() {
    using User = gui::WindowUser;
    static const std::map<QString, Step> all = {
        {"lock", [](User& user, const QString&) { user.click("authorizationView"); }},
        {"services", [](User& user, const QString&) { user.click("kServices"); }},
        {"search", [](User& user, const QString&) { user.click("kSearchPaths"); }},
        {"editor", [](User& user, const QString&) { user.click("kDebug"); }},
        {"authentication", [](User& user, const QString&) { user.clickTab("Authentication"); }},
        {"contacts", [](User& user, const QString&) { user.clickTab("Contacts"); }},
        {"mode", [](User& user, const QString& item) { user.choose("selectSearchPolicy", item); }},
        {"contactsmode", [](User& user, const QString& item) { user.choose("selectContactPolicy", item); }},
        {"apply", apply},
        {"row",
         [](User& user, const QString& value) {
             user.clickRow(tableAndRow(value).first, tableAndRow(value).second);
         }},
        {"alsorow",
         [](User& user, const QString& value) {
             user.clickRow(tableAndRow(value).first, tableAndRow(value).second, Qt::ControlModifier);
         }},
        {"drag",
         [](User& user, const QString& value) {
             user.dragRow(value.section(':', 0, 0), value.section(':', 1, 1).toInt(),
                          value.section(':', 2).toInt());
         }},
        {"edit", editAsAnotherProgram},
        {"click", [](User& user, const QString& name) { user.click(name); }},
        {"type", [](User& user,
                    const QString& value) { user.type(value.section(':', 0, 0), value.section(':', 1)); }},
        {"open",
         [](User& user, const QString& value) {
             user.doubleClickRow(tableAndRow(value).first, tableAndRow(value).second);
         }},
        {"answer", [](User& user, const QString& button) { user.answer(button); }},
        {"menu",
         [](User& user, const QString& value) {
             user.chooseFromMenu(value.section('/', 0, 0), value.section('/', 1));
         }},
        {"key", pressKeys},
        {"rows",
         [](User& user, const QString& table) {
             std::cout << user.rowsOf(table).join('\n').toStdString() << '\n';
         }},
        {"text", [](User& user, const QString&) { std::cout << user.visibleText().toStdString() << '\n'; }},
        {"picture", [](User& user, const QString& path) { user.savePicture(path); }},
        {"dialogue", [](User& user, const QString& path) { user.saveDialoguePicture(path); }},
        {"wait", [](User&, const QString& milliseconds) { gui::settle(milliseconds.toInt()); }}};
    return all;
}

void perform(gui::WindowUser& user, const QString& word) {
    const auto found = steps().find(word.section('=', 0, 0));
    if (found == steps().end()) throw std::runtime_error("there is no step " + word.toStdString());
    found->second(user, word.section('=', 1));
}

/// Performs the steps one after the other. A step that opens a modal dialogue comes back only when that is
/// answered; the steps behind it are then performed meanwhile.
class StepRunner {
public:
    StepRunner(gui::WindowUser& user, QStringList words) : user_(user), words_(std::move(words)) {}

    [[nodiscard]] int run() {
        QTimer::singleShot(0, &context_, [this] { next(); });
        return QApplication::exec();
    }

private:
    void next() {
        if (words_.isEmpty()) return QCoreApplication::exit(EXIT_SUCCESS);
        const auto word = words_.takeFirst();
        QTimer patience;
        patience.setSingleShot(true);
        bool goesOnMeanwhile = false;
        QObject::connect(&patience, &QTimer::timeout, &context_, [&] {
            goesOnMeanwhile = true;
            next();
        });
        constexpr int patienceMilliseconds = 2500;
        if (!word.startsWith("wait=")) patience.start(patienceMilliseconds);
        performOrFail(word);
        patience.stop();
        if (!goesOnMeanwhile) QTimer::singleShot(0, &context_, [this] { next(); });
    }
    void performOrFail(const QString& word) {
        try {
            perform(user_, word);
        } catch (const std::exception& problem) {
            std::cerr << "Step " << word.toStdString() << ": " << problem.what()
                      << "\nTo be read in the window:\n"
                      << user_.visibleText().toStdString() << std::endl;
            std::_Exit(EXIT_FAILURE); // a modal dialogue may stand in the way of an orderly end
        }
    }

    gui::WindowUser& user_;
    QStringList words_;
    QObject context_;
};

int work(desktop::Program& program, const QStringList& words) {
    program.launch(false);
    auto& shell = program.window().shell();
    if (!QTest::qWaitForWindowExposed(&shell)) throw std::runtime_error("the window doesn't come up");
    gui::WindowUser user(shell);
    return StepRunner(user, words).run();
}

} // namespace

int main(int count, char** arguments) {
    // Dragging moves the X server's own pointer, which counts in the screen's pixels: double density is for
    // pictures alone.
    const std::vector<std::string_view> words(arguments, arguments + count);
    const bool drags = std::ranges::any_of(words, [](auto word) { return word.starts_with("drag="); });
    if (!drags) qt::prepareForPictures();
    QApplication application(count, arguments);
    const bool dark = qgetenv("CORVANE_COLORS") == "dark";
    qt::installAppearance(application, dark ? qt::ColorScheme::dark : qt::ColorScheme::light);
    auto steps = QApplication::arguments().mid(1);
    if (steps.size() < 2 || steps.takeFirst() != "--machine") {
        std::cerr << "Usage: corvane-gui-steps --machine DIR STEP...\n";
        return 2;
    }
    machineFolder = steps.takeFirst().toStdString();
    const auto files = desktop::InstalledFiles::find(QApplication::applicationFilePath().toStdString());
    linux_::SystemLog log;
    try {
        desktop::Program program(application, {machineFolder, files, "", false}, log);
        return work(program, steps);
    } catch (const std::exception& problem) {
        std::cerr << problem.what() << '\n';
        return EXIT_FAILURE;
    }
}
