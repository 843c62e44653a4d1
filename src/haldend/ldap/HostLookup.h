#pragma once

#include <netdb.h>

#include <chrono>
#include <memory>
#include <stop_token>
#include <string>
#include <vector>

namespace corvane::haldend {

/// Thrown where somebody has asked to stop.
struct Stopped {};

/// One way to reach a host.
struct HostAddress {
    int family = 0;
    std::vector<unsigned char> socketAddress; ///< as the system has it
    std::string text;                         ///< "192.0.2.1" or "2001:db8::1"
};

/// The addresses of a host, in the system's order. `status`, an EAI number, is 0 when there are any.
struct HostLookupResult {
    int status = EAI_AGAIN;
    std::vector<HostAddress> addresses;
};

/// Looks a host up without ever waiting longer than `deadline`, although the system's own look-up can't be
/// interrupted: that is left to a thread which holds nothing but its own result. Throws `Stopped`. Any
/// thread.
[[nodiscard]] HostLookupResult lookUpHost(const std::string& host, int port, const std::stop_token& stop,
                                          std::chrono::steady_clock::time_point deadline);

} // namespace corvane::haldend
