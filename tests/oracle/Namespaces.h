#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "oracle/Files.h"

namespace corvane::oracle {

/// Runs `body` as the first process of namespaces of its own (mounts, processes, network, names) and returns
/// what it wrote to the descriptor that it gets. There /etc holds `files` (from "etc/") and nothing else but
/// a few files that programs need to start; /run, /var/log, /var/tmp and SSSD's folders are new and empty;
/// every other file is read-only. Every process that is left ends with `body`, and all of it with the caller.
/// Throws `std::runtime_error` with the reason when it couldn't be set up, when `body` threw, or when it took
/// longer than `limit`. For a process of one thread; needs root.
[[nodiscard]] std::string runApart(const Files& files, std::chrono::milliseconds limit,
                                   const std::function<void(int output)>& body);

/// For this process: mounts of its own in which everything but `writable` (an existing folder) is read-only,
/// and /run, /var/log and /var/tmp are new and empty. Throws `std::runtime_error`.
void protectMachine(const std::string& writable);

/// Starts a program. `output` becomes its standard output, `errors` its standard error; -1 for /dev/null.
/// `environment` is all it gets. It is killed when its parent ends.
[[nodiscard]] pid_t start(const std::vector<std::string>& arguments,
                          const std::vector<std::string>& environment, int output, int errors);

/// Everything up to the end of the descriptor.
[[nodiscard]] std::string readAll(int descriptor);

} // namespace corvane::oracle
