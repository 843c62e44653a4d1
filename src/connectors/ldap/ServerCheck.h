#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "connectors/ldap/Server.h"

namespace corvane::connectors::ldap {

/// How far a check has come.
struct CheckReport {
    enum class State { waiting, running, done, failed, skipped };
    struct Step {
        std::string title; ///< for people
        State state = State::waiting;
        std::string detail; ///< what was seen
        friend bool operator==(const Step&, const Step&) = default;
    };
    struct Failure {
        std::string kind; ///< one of sdk::ldap::failure
        std::string cause, evidence, nextStep;
    };
    bool finished = false;
    bool failed = false;
    std::vector<Step> steps;
    Failure failure; ///< where `failed`
    std::vector<std::string> bases;
    std::string defaultBase;
};

/// A server being tried by the directory service, in the background. Goes on until it is finished or this
/// object goes, which cancels it. Main thread.
class ServerCheck {
public:
    enum class Kind { test, bases };
    /// Begins at once; throws `sdk::CallError`. `user` and `group`: names to look up, "" for any.
    /// `mayShowPassword`: the user has agreed that a password is sent over an unencrypted connection.
    ServerCheck(const sdk::Host& host, Kind kind, const Server& server, const std::string& user,
                const std::string& group, bool mayShowPassword = false);
    ServerCheck(const ServerCheck&) = delete;
    ServerCheck& operator=(const ServerCheck&) = delete;
    ~ServerCheck();

    /// Asks the service how far it is; throws `sdk::CallError`. The last report is kept once it is finished.
    const CheckReport& poll();
    [[nodiscard]] const CheckReport& report() const { return report_; }

private:
    [[nodiscard]] sdk::Object call(std::int32_t code, const sdk::Object& request) const;
    [[nodiscard]] sdk::Object jobRequest() const;

    const sdk::Host& host_;
    std::int64_t job_ = 0;
    CheckReport report_;
};

} // namespace corvane::connectors::ldap
