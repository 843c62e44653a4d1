#include "haldend/ChildProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <thread>

#include "haldend/FileDescriptor.h"

namespace corvane::haldend {
namespace {

using Clock = std::chrono::steady_clock;
constexpr std::size_t outputKept = 65536;

/// Starts the program with both outputs on `output`. Returns 0 or an error number.
int spawn(pid_t& child, const std::vector<std::string>& arguments, int output) {
    std::vector<char*> pointers;
    for (const auto& argument : arguments) pointers.push_back(const_cast<char*>(argument.c_str()));
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

/// Reads until the other side closes or time is up. True when it closed.
bool readAll(const FileDescriptor& pipe, std::string& output, Clock::time_point deadline) {
    for (;;) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
        if (left <= 0) return false;
        pollfd item{pipe.number(), POLLIN, 0};
        if (::poll(&item, 1, static_cast<int>(left)) <= 0) continue;
        char buffer[4096];
        const auto count = ::read(pipe.number(), buffer, sizeof buffer);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return true;
        if (output.size() < outputKept) output.append(buffer, static_cast<std::size_t>(count));
    }
}

/// Exit status of the child; it is killed at the deadline, which gives -1.
int waitFor(pid_t child, Clock::time_point deadline) {
    for (;;) {
        int status = 0;
        if (::waitpid(child, &status, WNOHANG) == child) return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        if (Clock::now() >= deadline) break;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    return -1;
}

} // namespace

ProcessOutcome runProcess(const std::vector<std::string>& arguments, std::chrono::milliseconds patience) {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) return {-1, std::strerror(errno)};
    const FileDescriptor reading(ends[0]);
    FileDescriptor writing(ends[1]);
    pid_t child = -1;
    const int failed = spawn(child, arguments, writing.number());
    if (failed != 0) return {-1, std::strerror(failed)};
    writing.close();
    ProcessOutcome outcome;
    const auto deadline = Clock::now() + patience;
    if (!readAll(reading, outcome.output, deadline)) outcome.output += "(no answer in time)";
    outcome.status = waitFor(child, deadline);
    return outcome;
}

} // namespace corvane::haldend
