#pragma once

#include <optional>
#include <string>
#include <vector>

#include "haldend/ldap/LdapFailure.h"

namespace corvane::haldend {

struct LdapTestStep {
    std::string name; ///< one of sdk::ldap::step
    std::string state = "waiting";
    std::string detail;
};

/// How far a test of a server has got, in the words of sdk/LdapServerCalls.h. Holds no secret.
struct LdapTestReport {
    bool isFinished = false;
    std::vector<LdapTestStep> steps;
    std::optional<LdapFailure> failure; ///< why it ended early
    std::vector<std::string> bases;
    std::string defaultBase;
};

} // namespace corvane::haldend
