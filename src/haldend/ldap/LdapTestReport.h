#pragma once

#include <optional>
#include <string>
#include <vector>

namespace corvane::haldend {

/// Why a try of a server ended early. `kind` is one of sdk::ldap::failure; the rest is for people. Thrown
/// from step to step inside a check; it never leaves its thread that way.
struct LdapTestFailure {
    std::string kind, cause, evidence, nextStep;
};

/// "1 second", "6 seconds".
[[nodiscard]] inline std::string inSeconds(long number) {
    return std::to_string(number) + (number == 1 ? " second" : " seconds");
}

struct LdapTestStep {
    std::string name; ///< one of sdk::ldap::step
    std::string state = "waiting";
    std::string detail;
};

/// How far a try of a server has got, in the words of sdk/LdapServerCalls.h. Holds no secret.
struct LdapTestReport {
    bool isFinished = false;
    std::vector<LdapTestStep> steps;
    std::optional<LdapTestFailure> failure;
    std::vector<std::string> bases;
    std::string defaultBase;
};

} // namespace corvane::haldend
