#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace corvane::haldend {

/// How a child process ended and what it said on its two outputs.
struct ProcessOutcome {
    int status = -1; ///< exit status; -1 when it was killed, ran out of time or could not be started
    std::string output;
};

/// Called every few milliseconds while its caller is kept waiting, on the caller's thread. It starts no
/// request of its own. May be empty.
using StillWaiting = std::function<void()>;

/// Runs a program to its end, without a shell, with an empty standard input. `arguments` begins with the
/// program's absolute path. It is killed when it takes longer than `timeout`. At most 64 KiB of its output
/// are kept.
[[nodiscard]] ProcessOutcome runProcess(const std::vector<std::string>& arguments,
                                        std::chrono::milliseconds timeout,
                                        const StillWaiting& stillWaiting = {});

} // namespace corvane::haldend
