#pragma once

#include <functional>
#include <string>
#include <vector>

#include "connectors/ldap/Server.h"
#include "sdk/Background.h"
#include "sdk/FormItems.h"

namespace corvane::connectors::ldap {

/// How far a test has come.
struct TestReport {
    struct Failure {
        std::string kind; ///< one of sdk::ldap::failure
        std::string cause, evidence, nextStep;
    };
    bool finished = false;
    bool failed = false;
    std::vector<sdk::FormStep> steps; ///< titles for people; details are what was seen
    Failure failure;                  ///< where `failed`
    std::vector<std::string> bases;
    std::string defaultBase;
};

/// A server being tested by the directory service, in the background. Goes on until it is finished or this
/// object is destroyed, which cancels it. Main thread.
class ServerTest {
public:
    enum class Kind { test, bases };
    using Progress = std::function<void(const TestReport& report)>;
    using Failed = std::function<void(const sdk::CallError& error)>;

    /// Begins at once, without waiting for any server; throws `sdk::CallError`. `user` and `group`: names to
    /// look up, "" for any. `mayShowPassword`: the user has agreed that a password is sent over an
    /// unencrypted connection.
    ServerTest(const sdk::Host& host, Kind kind, const Server& server, const std::string& user,
               const std::string& group, bool mayShowPassword = false);
    ServerTest(const ServerTest&) = delete;
    ServerTest& operator=(const ServerTest&) = delete;
    ~ServerTest();

    /// Calls `progress` again and again, the last time with a finished report; or `failed`, once and last,
    /// when the service can't be asked. Either may destroy this object.
    void follow(Progress progress, Failed failed);
    /// Asks and waits for the answer. The last report is kept once it is finished. Throws `sdk::CallError`.
    const TestReport& poll();

private:
    void ask();
    void send();
    void answered(const sdk::Object& reply, const std::optional<sdk::CallError>& error);
    [[nodiscard]] sdk::Object call(std::int32_t code, const sdk::Object& request) const;
    [[nodiscard]] sdk::Object jobRequest() const;

    const sdk::Host& host_;
    std::int64_t job_ = 0;
    TestReport report_;
    Progress progress_;
    Failed failed_;
    sdk::Timer timer_;
    sdk::Request request_;
};

} // namespace corvane::connectors::ldap
