#pragma once

#include <memory>

#include "connectors/ldap/ServerTest.h"
#include "sdk/Form.h"

namespace corvane::connectors::ldap {

/// Tests a server step by step while the user looks on, and says in plain words what failed. Begins at once,
/// or, where a password would be sent unencrypted, when the user has agreed. Closing it cancels the test, and
/// so does destroying this. Main thread.
class TestWindow {
public:
    /// `host` outlives this.
    TestWindow(const sdk::Host& host, const Server& server);
    TestWindow(const TestWindow&) = delete;
    TestWindow& operator=(const TestWindow&) = delete;

private:
    void ask();
    void open();
    void start();
    void show(const TestReport& report);
    void showFailure(const std::string& cause, const std::string& evidence, const std::string& nextStep);
    void showError(const sdk::CallError& error);
    void showSuccess();
    void setRunning(bool running);

    const sdk::Host& host_;
    Server server_;
    std::unique_ptr<ServerTest> test_;
    sdk::Form form_;
};

} // namespace corvane::connectors::ldap
