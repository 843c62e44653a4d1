#include "connectors/ldap/TestWindow.h"

#include <algorithm>

#include "sdk/LdapServerCalls.h"

namespace corvane::connectors::ldap {
namespace {

std::string trimmed(const std::string& text) {
    const auto first = text.find_first_not_of(" \t");
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

} // namespace

TestWindow::TestWindow(const sdk::Host& host, const Server& server) : host_(host), server_(server) {
    server_.showsPassword() ? ask() : open();
}

void TestWindow::ask() {
    auto question = sdk::FormWindow::message("clearPasswordQuestion", "Send the Password Unencrypted?",
                                             "The connection to " + server_.title() +
                                                 " isn’t encrypted. Send the password all the same?",
                                             "Anybody on the network could read the password of " +
                                                 server_.bindDN + ". With StartTLS or LDAPS nobody can.");
    question.button(sdk::FormButton("dontTest", "Don’t Test", {}, "cancel").isDefault());
    question.button(sdk::FormButton(
        "sendPassword", "Send Password", [this] { open(); }, "destructive"));
    form_ = sdk::Form(host_, question);
}

void TestWindow::open() {
    using sdk::FormItem;
    sdk::FormWindow window("serverTest", "Test of " + server_.title());
    window.size(600, 460);
    window.add(FormItem::text("testUser", "Look up the &user:")
                   .set("placeholder", "any user")
                   .enterPresses("testAgain"));
    window.add(FormItem::text("testGroup", "Look up the &group:")
                   .set("placeholder", "any group")
                   .enterPresses("testAgain"));
    window.add(FormItem::steps("testSteps"));
    window.add(FormItem::progress("testProgress", "The test is running"));
    window.add(FormItem::result("testResult"));
    window.button(sdk::FormButton("testAgain", "Test &Again", [this] { start(); }));
    window.button(sdk::FormButton("testClose", "Cancel", {}, "cancel").isDefault());
    window.button(sdk::FormButton("copyReport", "Co&py Report", {}, "copy")
                      .help("Copies everything that this window says."));
    window.onClosed([this] { test_.reset(); });
    form_ = sdk::Form(host_, window);
    start();
}

void TestWindow::start() {
    form_.setParagraphs("testResult", {});
    test_.reset();
    setRunning(true);
    try {
        test_ = std::make_unique<ServerTest>(host_, ServerTest::Kind::test, server_,
                                             trimmed(form_.text("testUser")),
                                             trimmed(form_.text("testGroup")), server_.showsPassword());
        test_->follow([this](const TestReport& report) { show(report); },
                      [this](const sdk::CallError& error) { showError(error); });
    } catch (const sdk::CallError& error) {
        showError(error);
    }
}

void TestWindow::setRunning(bool running) {
    form_.setVisible("testProgress", running);
    form_.setEnabled("testAgain", !running);
    form_.setEnabled("copyReport", !running);
    form_.setTitle("testClose", running ? "Cancel" : "Close");
}

void TestWindow::show(const TestReport& report) {
    form_.setSteps("testSteps", report.steps);
    if (!report.finished) return;
    setRunning(false);
    // What was seen is beside the step already, where the step itself has failed.
    const bool isSaid = std::ranges::any_of(report.steps, [&](const sdk::FormStep& step) {
        return step.state == "failed" && step.detail == report.failure.evidence;
    });
    if (report.failed)
        showFailure(report.failure.cause, isSaid ? "" : report.failure.evidence, report.failure.nextStep);
    else
        showSuccess();
}

// A server without encryption must not be praised: SSSD refuses every log-in there.
void TestWindow::showSuccess() {
    if (server_.security == sdk::ldap::security::none)
        form_.setParagraphs("testResult",
                            {"Users and groups are found, but nobody can log in.",
                             "SSSD doesn’t check passwords over a connection that isn’t encrypted. Choose "
                             "StartTLS or LDAPS so that users can log in."});
    else
        form_.setParagraphs("testResult",
                            {"The server works.", "Users and groups can be looked up with these settings."});
}

void TestWindow::showFailure(const std::string& cause, const std::string& evidence,
                             const std::string& nextStep) {
    std::vector<std::string> parts{cause};
    for (const auto& part : {evidence, nextStep})
        if (!part.empty()) parts.push_back(part);
    form_.setParagraphs("testResult", parts);
}

void TestWindow::showError(const sdk::CallError& error) {
    setRunning(false);
    showFailure(error.what(), error.reason(), error.recovery());
}

} // namespace corvane::connectors::ldap
