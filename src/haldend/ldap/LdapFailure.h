#pragma once

#include <string>

namespace corvane::haldend {

/// Why something that was wanted of a server didn't work. `kind` is one of sdk::ldap::failure; the rest is
/// for people. Thrown by the client; those who use it turn it into what their callers know.
struct LdapFailure {
    std::string kind, cause, evidence, nextStep;
};

/// "1 second", "6 seconds".
[[nodiscard]] inline std::string inSeconds(long number) {
    return std::to_string(number) + (number == 1 ? " second" : " seconds");
}

} // namespace corvane::haldend
