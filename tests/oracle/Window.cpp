#include "oracle/Window.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <stdexcept>

#include "oracle/Namespaces.h"
#include "oracle/Reports.h"

namespace corvane::oracle {
namespace {

constexpr int refused = 3;

struct Outcome {
    int status;
    std::string output, errors;
};

/// Both outputs are short: neither fills its pipe while the other is read.
Outcome run(const std::vector<std::string>& arguments, const std::vector<std::string>& environment) {
    int output[2], errors[2];
    if (::pipe2(output, O_CLOEXEC) != 0 || ::pipe2(errors, O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe");
    const pid_t child = start(arguments, environment, output[1], errors[1]);
    ::close(output[1]);
    ::close(errors[1]);
    Outcome outcome{0, readAll(output[0]), readAll(errors[0])};
    ::close(output[0]);
    ::close(errors[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    outcome.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return outcome;
}

} // namespace

halden::Error Window::take(const std::vector<std::string>& steps) {
    const auto program =
        (std::filesystem::read_symlink("/proc/self/exe").parent_path() / "corvane-oracle-window").string();
    if (!std::filesystem::exists(program))
        throw std::runtime_error("there is no " + program + "; build the target corvane-oracle-window");
    std::vector<std::string> words{program, folder_, scratch_ + "/settings.ini"};
    words.insert(words.end(), steps.begin(), steps.end());
    const auto outcome =
        run(words, {"QT_QPA_PLATFORM=offscreen", "HOME=" + scratch_, "XDG_RUNTIME_DIR=" + scratch_,
                    "TMPDIR=" + scratch_, "LC_ALL=C.UTF-8", "PATH=/usr/bin:/bin"});
    halden::Error error;
    if (outcome.status == refused) {
        error.code = halden::ErrorCode::storage;
        error.description = outcome.errors;
    } else if (outcome.status != 0) {
        throw std::runtime_error("the window couldn't be worked: " + outcome.errors);
    }
    shown_ = parts(outcome.output, '\n');
    return error;
}

} // namespace corvane::oracle
