#include "connectors/ldap/ServerTest.h"

#include "connectors/ldap/ServerList.h"
#include "sdk/LdapServerCalls.h"

namespace corvane::connectors::ldap {
namespace {

namespace key = sdk::ldap::reportKey;
namespace step = sdk::ldap::step;

/// How often the service is asked how far it is, in seconds.
constexpr double pollInterval = 0.12;

std::string stepTitle(const std::string& name) {
    if (name == step::connect) return "Connect";
    if (name == step::encrypt) return "Encrypt the connection";
    if (name == step::bind) return "Sign in";
    if (name == step::base) return "Find the search base";
    if (name == step::user) return "Look up a user";
    return name == step::group ? "Look up a group" : name;
}

/// The service's word for a step's state where a form has it too; else "waiting".
std::string stateNamed(const std::string& name) {
    const bool isKnown = name == "running" || name == "done" || name == "failed" || name == "skipped";
    return isKnown ? name : "waiting";
}

TestReport reportFrom(const sdk::Object& content) {
    TestReport report;
    report.finished = content[key::finished].boolean();
    const auto steps = content[key::steps];
    for (std::uint64_t i = 0; i < steps.count(); ++i) {
        const auto each = steps.at(i);
        report.steps.push_back(
            {stepTitle(each["step"].text()), stateNamed(each["state"].text()), each["detail"].text()});
    }
    if (const auto failure = content[key::failure]) {
        report.failed = true;
        report.failure = {failure["kind"].text(), failure["cause"].text(), failure["evidence"].text(),
                          failure["nextStep"].text()};
    }
    report.bases = content[key::bases].texts();
    report.defaultBase = content[key::defaultBase].text();
    return report;
}

} // namespace

ServerTest::ServerTest(const sdk::Host& host, Kind kind, const Server& server, const std::string& user,
                       const std::string& group, bool mayShowPassword)
    : host_(host) {
    auto request = host_.dictionary();
    request.set("kind", host_.string(kind == Kind::test ? "test" : "bases"));
    request.set("server", server.dictionary(host_));
    request.set("user", host_.string(user));
    request.set("group", host_.string(group));
    request.set("clearPassword", host_.boolean(mayShowPassword));
    job_ = call(sdk::ldap::call::startTest, request)["job"].integer();
}

ServerTest::~ServerTest() {
    if (report_.finished) return;
    try {
        (void)call(sdk::ldap::call::cancelTest, jobRequest());
    } catch (const std::exception& failure) {
        host_.log(std::string("a test of a server could not be cancelled: ") + failure.what());
    }
}

void ServerTest::follow(Progress progress, Failed failed) {
    progress_ = std::move(progress);
    failed_ = std::move(failed);
    ask();
}

void ServerTest::ask() {
    try {
        send();
    } catch (const sdk::CallError& error) {
        const auto failed = failed_;
        failed(error);
    }
}

void ServerTest::send() {
    sdk::AuthorizationForm form;
    (void)host_.makeAuthExternalForm(form); // the service refuses one that could not be made, and says why
    request_ = sdk::Request::sendPropertyList(
        host_, configNode(host_), sdk::ldap::call::testReport, jobRequest(), form,
        [this](const sdk::Object& reply, const std::optional<sdk::CallError>& error) {
            answered(reply, error);
        });
}

void ServerTest::answered(const sdk::Object& reply, const std::optional<sdk::CallError>& error) {
    const auto failed = failed_; // copies: either may destroy this object
    const auto progress = progress_;
    if (error) return failed(*error);
    try {
        report_ = reportFrom(host_.propertyListFromData(reply));
    } catch (const sdk::CallError& unreadable) {
        return failed(unreadable);
    }
    if (!report_.finished) timer_ = sdk::Timer(host_, pollInterval, false, [this] { ask(); });
    const auto report = report_;
    progress(report);
}

const TestReport& ServerTest::poll() {
    if (!report_.finished) report_ = reportFrom(call(sdk::ldap::call::testReport, jobRequest()));
    return report_;
}

sdk::Object ServerTest::jobRequest() const {
    auto request = host_.dictionary();
    request.set("job", host_.integer(job_));
    return request;
}

sdk::Object ServerTest::call(std::int32_t code, const sdk::Object& request) const {
    sdk::AuthorizationForm form;
    (void)host_.makeAuthExternalForm(form);
    return host_.propertyListFromData(
        host_.customCallSendPropertyList(configNode(host_), code, request, form));
}

} // namespace corvane::connectors::ldap
