#include "connectors/ldap/ServerCheck.h"

#include "connectors/ldap/ServerList.h"
#include "sdk/LdapServerCalls.h"

namespace corvane::connectors::ldap {
namespace {

namespace key = sdk::ldap::reportKey;
namespace step = sdk::ldap::step;

std::string stepTitle(const std::string& name) {
    if (name == step::connect) return "Connect";
    if (name == step::encrypt) return "Encrypt the connection";
    if (name == step::bind) return "Sign in";
    if (name == step::base) return "Find the search base";
    if (name == step::user) return "Look up a user";
    return name == step::group ? "Look up a group" : name;
}

CheckReport::State stateNamed(const std::string& name) {
    using State = CheckReport::State;
    if (name == "running") return State::running;
    if (name == "done") return State::done;
    if (name == "failed") return State::failed;
    return name == "skipped" ? State::skipped : State::waiting;
}

CheckReport reportFrom(const sdk::Object& content) {
    CheckReport report;
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

ServerCheck::ServerCheck(const sdk::Host& host, Kind kind, const Server& server, const std::string& user,
                         const std::string& group, bool mayShowPassword)
    : host_(host) {
    auto request = host_.dictionary();
    request.set("kind", host_.string(kind == Kind::test ? "test" : "bases"));
    request.set("server", server.dictionary(host_));
    request.set("user", host_.string(user));
    request.set("group", host_.string(group));
    request.set("clearPassword", host_.boolean(mayShowPassword));
    job_ = call(sdk::ldap::call::startCheck, request)["job"].integer();
}

ServerCheck::~ServerCheck() {
    if (report_.finished) return;
    try {
        (void)call(sdk::ldap::call::cancelCheck, jobRequest());
    } catch (const std::exception& failure) {
        host_.log(std::string("a check could not be cancelled: ") + failure.what());
    }
}

const CheckReport& ServerCheck::poll() {
    if (!report_.finished) report_ = reportFrom(call(sdk::ldap::call::checkReport, jobRequest()));
    return report_;
}

sdk::Object ServerCheck::jobRequest() const {
    auto request = host_.dictionary();
    request.set("job", host_.integer(job_));
    return request;
}

sdk::Object ServerCheck::call(std::int32_t code, const sdk::Object& request) const {
    sdk::AuthorizationForm form;
    (void)host_.makeAuthExternalForm(form);
    return host_.propertyListFromData(
        host_.customCallSendPropertyList(configNode(host_), code, request, form));
}

} // namespace corvane::connectors::ldap
