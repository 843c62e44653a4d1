// How long Corvane takes from the start of its process until its window is painted for the first time, and
// how much memory it has then, side by side with the least that a Qt program can do: a window with one label.
//
//   corvane-benchmark-starting [RUNS]      10 runs of each, taking turns; the median counts
//
// Each run is a process of its own, on one private machine folder with its sample directory, which the first
// run makes. The clock starts before the fork and stops when the child reports that the paint event is over.
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QApplication>
#include <QLabel>
#include <QMainWindow>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <stdexcept>
#include <vector>

#include "desktop/Program.h"
#include "qt/look/Appearance.h"
#include "util/ProcessLog.h"

using namespace corvane;

namespace {

using Clock = std::chrono::steady_clock;

/// What one process reports when its window has been painted.
struct Sample {
    double milliseconds = 0;
    double kilobytes = 0; ///< private memory and its share of what it has in common with others (PSS)
};

class ErrorLog final : public util::ProcessLog {
public:
    void log(std::string_view line) override { std::cerr << line << "\n"; }
};

double proportionalKilobytes() {
    std::ifstream lines("/proc/self/smaps_rollup");
    for (std::string word; lines >> word;) {
        double value = 0;
        if (word == "Pss:" && lines >> value) return value;
    }
    throw std::runtime_error("the system doesn't say how much memory a process has");
}

/// Calls `painted` once, when the window's first paint event is over.
class FirstPaint final : public QObject {
public:
    FirstPaint(QWidget& window, std::function<void()> painted) : painted_(std::move(painted)) {
        window.installEventFilter(this);
    }
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint && painted_)
            QMetaObject::invokeMethod(this, std::exchange(painted_, {}), Qt::QueuedConnection);
        return false;
    }

private:
    std::function<void()> painted_;
};

[[noreturn]] void reportAndEnd(int pipe) {
    const double kilobytes = proportionalKilobytes();
    const bool isWritten = ::write(pipe, &kilobytes, sizeof kilobytes) == sizeof kilobytes;
    ::_exit(isWritten ? EXIT_SUCCESS : EXIT_FAILURE);
}

void showBareWindow(int pipe) {
    QMainWindow window;
    window.setCentralWidget(new QLabel("A window"));
    const FirstPaint first(window, [pipe] { reportAndEnd(pipe); });
    window.show();
    QApplication::exec();
}

void showCorvane(QApplication& application, const std::string& folder, int pipe) {
    ErrorLog log;
    qt::installAppearance(application, qt::ColorScheme::light);
    desktop::Program program(
        application,
        {folder, desktop::InstalledFiles::find(QApplication::applicationFilePath().toStdString()), QString(),
         true},
        log);
    const FirstPaint first(program.window().shell(), [pipe] { reportAndEnd(pipe); });
    program.launch(false);
    QApplication::exec();
}

/// A child that runs this program again, so that it starts as any program does.
Sample run(const char* self, const std::string& kind, const std::string& folder) {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    const auto start = Clock::now();
    const pid_t child = ::fork();
    if (child == 0) {
        const int pipe = ::dup(ends[1]); // without O_CLOEXEC
        const auto number = std::to_string(pipe);
        ::execl("/proc/self/exe", self, kind.c_str(), number.c_str(), folder.c_str(), nullptr);
        ::_exit(EXIT_FAILURE);
    }
    ::close(ends[1]);
    Sample sample;
    const bool isRead =
        ::read(ends[0], &sample.kilobytes, sizeof sample.kilobytes) == sizeof sample.kilobytes;
    sample.milliseconds = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
    ::close(ends[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    if (!isRead || status != 0) throw std::runtime_error("the process " + kind + " showed no window");
    return sample;
}

Sample median(std::vector<Sample> samples) {
    const auto middle = samples.begin() + long(samples.size() / 2);
    Sample result;
    std::ranges::nth_element(samples, middle, {}, &Sample::milliseconds);
    result.milliseconds = middle->milliseconds;
    std::ranges::nth_element(samples, middle, {}, &Sample::kilobytes);
    result.kilobytes = middle->kilobytes;
    return result;
}

void compare(const char* self, int runs) {
    auto pattern = (std::filesystem::temp_directory_path() / "corvane-starting-XXXXXX").string();
    if (!::mkdtemp(pattern.data())) throw std::runtime_error("no temporary folder");
    const std::string machine = pattern + "/machine";
    std::vector<Sample> bare, corvane;
    (void)run(self, "--bare", machine);
    (void)run(self, "--corvane", machine);
    for (int i = 0; i < runs; ++i) {
        bare.push_back(run(self, "--bare", machine));
        corvane.push_back(run(self, "--corvane", machine));
    }
    std::filesystem::remove_all(pattern);
    const auto least = median(bare), ours = median(corvane);
    std::printf("%-28s %12s %12s %7s\n", "start to first paint", "bare window", "Corvane", "times");
    std::printf("%-28s %12.1f %12.1f %7.2f\n", "    milliseconds", least.milliseconds, ours.milliseconds,
                ours.milliseconds / least.milliseconds);
    std::printf("%-28s %12.1f %12.1f %7.2f\n", "    memory (PSS), MiB", least.kilobytes / 1024,
                ours.kilobytes / 1024, ours.kilobytes / least.kilobytes);
}

int showWindow(int count, char** arguments) {
    const std::string kind = arguments[1], folder = arguments[3];
    const int pipe = std::stoi(arguments[2]);
    QApplication application(count, arguments);
    kind == "--bare" ? showBareWindow(pipe) : showCorvane(application, folder, pipe);
    return EXIT_FAILURE;
}

} // namespace

int main(int count, char** arguments) {
    try {
        if (count == 4) return showWindow(count, arguments);
        compare(arguments[0], count > 1 ? std::stoi(arguments[1]) : 10);
        return EXIT_SUCCESS;
    } catch (const std::exception& problem) {
        std::cerr << problem.what() << "\n";
        return EXIT_FAILURE;
    }
}
