#include "haldend/storage/ChildProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <thread>

#include "haldend/storage/FileDescriptor.h"

namespace corvane::haldend {
namespace {

using Clock = std::chrono::steady_clock;
constexpr std::size_t outputKept = 65536;

/// Starts the program with both outputs on `output`. Returns 0 or an error number.
int spawn(pid_t& child, const std::vector<std::string>& arguments, int output) {
    std::vector<char*> pointers;
    for (const auto& argument : arguments)
        pointers.push_back(const_cast<char*>(argument.c_str()));
    pointers.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output, STDERR_FILENO);
    const int status = posix_spawn(&child, pointers[0], &actions, nullptr, pointers.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    return status;
}

/// Takes over what has arrived, waiting a moment for it. False at the end of the output.
bool readSome(const FileDescriptor& pipe, std::string& output, int milliseconds) {
    pollfd item{pipe.number(), POLLIN, 0};
    if (::poll(&item, 1, milliseconds) <= 0) return true;
    char buffer[4096];
    const auto count = ::read(pipe.number(), buffer, sizeof buffer);
    if (count <= 0) return count < 0 && errno == EINTR;
    if (output.size() < outputKept) output.append(buffer, static_cast<std::size_t>(count));
    return true;
}

/// Waits for the program itself, not for the end of its output: a daemon that it leaves behind may keep that
/// open.
ProcessOutcome waitFor(pid_t child, const FileDescriptor& pipe, Clock::time_point deadline,
                       const StillWaiting& stillWaiting) {
    ProcessOutcome outcome;
    bool isOpen = true;
    while (Clock::now() < deadline) {
        if (stillWaiting) stillWaiting();
        int status = 0;
        if (::waitpid(child, &status, WNOHANG) == child) {
            for (auto before = outcome.output.size() + 1; isOpen && before != outcome.output.size();) {
                before = outcome.output.size();
                isOpen = readSome(pipe, outcome.output, 0);
            }
            outcome.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
            return outcome;
        }
        if (isOpen)
            isOpen = readSome(pipe, outcome.output, 5);
        else
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    outcome.output += "(no answer in time)";
    return outcome;
}

} // namespace

ProcessOutcome runProcess(const std::vector<std::string>& arguments, std::chrono::milliseconds timeout,
                          const StillWaiting& stillWaiting) {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) return {-1, std::strerror(errno)};
    const FileDescriptor reading(ends[0]);
    FileDescriptor writing(ends[1]);
    pid_t child = -1;
    const int failed = spawn(child, arguments, writing.number());
    if (failed != 0) return {-1, std::strerror(failed)};
    writing.close();
    return waitFor(child, reading, Clock::now() + timeout, stillWaiting);
}

} // namespace corvane::haldend
