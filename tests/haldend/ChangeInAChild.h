#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <string>

#include "haldend/TestMachine.h"

namespace corvane::haldend::test {

/// What a change of the machine said, told across a process boundary.
struct Outcome {
    int code = -1;
    std::string text;
};

/// Runs `action` in a child process, because it gives up rights or limits for good.
inline Outcome inChild(const std::function<halden::Error()>& action) {
    int ends[2];
    if (::pipe(ends) != 0) return {};
    const pid_t child = ::fork();
    if (child == 0) {
        halden::Error error;
        try {
            error = action();
        } catch (const std::exception& exception) {
            error.description = exception.what();
        }
        const auto report = std::to_string(error.code) + "\n" + error.description + "\n" + error.reason +
                            "\n" + error.recovery;
        ::_exit(::write(ends[1], report.data(), report.size()) == static_cast<ssize_t>(report.size()) ? 0
                                                                                                      : 1);
    }
    ::close(ends[1]);
    std::string report;
    char buffer[4096];
    for (ssize_t count = 0; (count = ::read(ends[0], buffer, sizeof buffer)) > 0;)
        report.append(buffer, static_cast<std::size_t>(count));
    ::close(ends[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "the child ended with " << status;
    return {std::atoi(report.c_str()), report};
}

inline void expectOldState(const TestMachine& machine) {
    EXPECT_EQ(machine.folder.read("etc/nsswitch.conf"), plainNsswitch);
    EXPECT_EQ(machine.folder.read("etc/sssd/sssd.conf"), twoDirectories);
    EXPECT_FALSE(machine.folder.has("var/lib/corvane/policies.plist"));
    EXPECT_FALSE(machine.folder.has("var/lib/corvane/journal"));
    EXPECT_FALSE(machine.folder.has("etc/.nsswitch.conf.corvane-new"));
    EXPECT_FALSE(machine.folder.has("etc/sssd/.sssd.conf.corvane-new"));
}

inline void expectFailure(const Outcome& outcome, const std::string& cause, const std::string& nextStep) {
    EXPECT_GT(outcome.code, 0);
    EXPECT_NE(outcome.text.find(cause), std::string::npos) << outcome.text;
    EXPECT_NE(outcome.text.find(nextStep), std::string::npos) << outcome.text;
}

inline bool isRoot() { return ::geteuid() == 0; }

} // namespace corvane::haldend::test
