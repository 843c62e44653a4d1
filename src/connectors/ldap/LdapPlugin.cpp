#include "connectors/ldap/LdapPlugin.h"

#include <chrono>
#include <thread>

namespace corvane::connectors::ldap {

void LdapPlugin::configureButtonClicked(void* /*sender*/) {
    if (window_ && window_->isOpen()) return window_->raise();
    try {
        list_.readIfClean();
    } catch (const sdk::CallError& error) {
        return sdk::Form::show(host_, sdk::errorMessage("LDAP Connector", error));
    }
    window_.reset();
    window_ = std::make_unique<ServersWindow>(host_, list_, isEnabledForLocation(nullptr),
                                              [this] { windowClosed(); });
}

void LdapPlugin::windowClosed() {
    wanted_ = window_->isUsed();
    if (isDirty()) host_.markDirty();
}

bool LdapPlugin::saveChanges() {
    try {
        list_.save();
    } catch (const sdk::CallError& error) {
        sdk::Form::show(host_, sdk::errorMessage("The LDAP servers were not saved.", error));
        return false;
    }
    if (wanted_ && *wanted_ != isEnabled()) host_.setPluginEnabled("LDAP", *wanted_);
    wanted_.reset();
    return true;
}

bool LdapPlugin::revertChanges() {
    list_.revert();
    wanted_.reset();
    return true;
}

bool LdapPlugin::works(const Server& server, const TestReport& report) const {
    if (report.failed)
        host_.log(server.title() + ": " + report.failure.cause + " " + report.failure.evidence);
    return report.finished && !report.failed;
}

TestReport LdapPlugin::waitForReport(const Server& server) const {
    using Clock = std::chrono::steady_clock;
    constexpr auto pause = std::chrono::milliseconds(50);
    constexpr auto longestWait = std::chrono::minutes(1);
    ServerTest test(host_, ServerTest::Kind::test, server, "", "");
    const auto end = Clock::now() + longestWait;
    auto report = test.poll();
    while (!report.finished && Clock::now() < end) {
        std::this_thread::sleep_for(pause);
        report = test.poll();
    }
    return report;
}

bool LdapPlugin::selfTest() {
    list_.readIfClean();
    bool all = true;
    for (const auto& server : list_.servers())
        all = works(server, waitForReport(server)) && all;
    return all;
}

void LdapPlugin::beginSelfTest(sdk::TruthTaker finished) {
    list_.readIfClean();
    selfTest_ = std::make_unique<SelfTest>();
    selfTest_->finished = finished;
    selfTest_->waiting.assign(list_.servers().rbegin(), list_.servers().rend());
    testNext();
}

void LdapPlugin::testNext() {
    if (selfTest_->waiting.empty()) {
        const auto done = std::move(selfTest_);
        return done->finished(done->allWork);
    }
    const auto server = selfTest_->waiting.back();
    selfTest_->waiting.pop_back();
    const auto takeResult = [this](bool isGood) {
        selfTest_->allWork = selfTest_->allWork && isGood;
        testNext();
    };
    const auto failed = [this, server, takeResult](const sdk::CallError& error) {
        host_.log(server.title() + ": " + error.what() + " " + error.reason());
        takeResult(false);
    };
    try {
        selfTest_->test = std::make_unique<ServerTest>(host_, ServerTest::Kind::test, server, "", "");
    } catch (const sdk::CallError& error) {
        return failed(error);
    }
    selfTest_->test->follow(
        [this, server, takeResult](const TestReport& report) {
            if (report.finished) takeResult(works(server, report));
        },
        failed);
}

} // namespace corvane::connectors::ldap
