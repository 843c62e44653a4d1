#include "haldend/nodes/LdapTestCalls.h"

#include <algorithm>

#include "haldend/nodes/LdapServers.h"
#include "haldend/servers/AccountDefaults.h"
#include "haldend/servers/LdapServerRequest.h"
#include "haldend/servers/LdapTest.h"
#include "haldend/storage/Failure.h"
#include "sdk/LdapServerCalls.h"

namespace corvane::haldend {
namespace {

namespace reportKey = sdk::ldap::reportKey;

Failure badRequest(const std::string& reason) {
    return {halden::ErrorCode::parameter, "The request to test an LDAP server can't be understood.", reason,
            "Use a program of the same version as this service."};
}

std::int64_t jobIn(const LdapRequestValues& request) {
    const auto number = request.values().valueForKey("job").as<util::Number>();
    if (number.isNull() || number.isBoolean()) throw badRequest("\"job\" isn't a number.");
    return number.integerValue();
}

bool wantsBases(const util::Dictionary& values) {
    const auto kind = plainTextIn(values, "kind");
    if (kind != "test" && kind != "bases") throw badRequest("\"kind\" is \"" + kind + "\".");
    return kind == "bases";
}

bool mayShowPassword(const util::Dictionary& values) {
    if (!values.containsKey("clearPassword")) return false;
    const auto value = values.valueForKey("clearPassword").as<util::Number>();
    if (value.isNull() || !value.isBoolean()) throw badRequest("\"clearPassword\" isn't a boolean.");
    return value.booleanValue();
}

/// The addresses without those that a person has written in another way: such a server can't be tested here.
void keepPlainAddresses(LdapServer& server) {
    std::erase_if(server.addresses, [](const auto& address) {
        return address == "_srv_" || address.find("://") != std::string::npos;
    });
    if (server.addresses.empty())
        throw Failure(halden::ErrorCode::parameter, "The LDAP server can't be tested.",
                      "It has no address of its own; SSSD looks one up in the DNS by itself.",
                      "Name the host on which it runs.");
}

/// The saved section as it will be: with what is added when it begins to compute numbers.
SssdDomain optionsFor(const LdapServerPut& put, const SssdFile& saved) {
    SssdDomain options;
    if (put.before) options = *saved.domainNamed(put.before->name);
    if (put.server.computesNumbers && !(put.before && put.before->computesNumbers))
        for (const auto& added : missingAccountDefaults(saved, put.before ? put.before->name : std::string()))
            options.options.emplace(added.key, added.value);
    completeAccountOptions(options, saved);
    options.name = put.server.name;
    options.options.erase("ldap_default_authtok");
    return options;
}

LdapTestPlan planFrom(const util::Dictionary& values, const SssdFile& saved, const MachineFolder& folder) {
    LdapTestPlan plan;
    plan.wantsBases = wantsBases(values);
    plan.mayShowPassword = mayShowPassword(values);
    plan.user = plainTextIn(values, "user");
    plan.group = plainTextIn(values, "group");
    const auto described = values.valueForKey("server").as<util::Dictionary>();
    if (described.isNull()) throw badRequest("\"server\" isn't a dictionary.");
    const auto put = tryRequestFrom(described, saved.domains());
    plan.server = put.server;
    plan.hasReadablePassword = !plan.server.hasPassword || !plan.server.password.empty();
    if (put.password) plan.server.password = *put.password;
    keepPlainAddresses(plan.server);
    plan.options = optionsFor(put, saved);
    plan.options.options["ldap_tls_cacert"] = plan.server.caFile;
    plan.trust = LdapTrust::from(plan.options, folder);
    return plan;
}

util::Value valueOf(const LdapTestStep& step) {
    return util::Dictionary{{"step", step.name}, {"state", step.state}, {"detail", step.detail}};
}

util::ValueMap valuesOf(const LdapTestReport& report) {
    util::ValueList steps;
    for (const auto& step : report.steps)
        steps.push_back(valueOf(step));
    util::ValueMap values{{reportKey::finished, report.isFinished},
                          {reportKey::steps, util::Array(std::move(steps))},
                          {reportKey::bases, util::Array::ofTexts(report.bases)},
                          {reportKey::defaultBase, report.defaultBase}};
    if (report.failure)
        values.emplace(reportKey::failure, util::Dictionary{{"kind", report.failure->kind},
                                                            {"cause", report.failure->cause},
                                                            {"evidence", report.failure->evidence},
                                                            {"nextStep", report.failure->nextStep}});
    return values;
}

/// What servers and certificates say may hold anything; a property list may not.
void makePlain(std::string& text) {
    for (auto& c : text)
        if ((static_cast<unsigned char>(c) < 0x20 && c != '\n') || c == 0x7F) c = ' ';
}

void makePlain(LdapTestReport& report) {
    for (auto& step : report.steps)
        makePlain(step.detail);
    for (auto& base : report.bases)
        makePlain(base);
    makePlain(report.defaultBase);
    if (!report.failure) return;
    makePlain(report.failure->cause);
    makePlain(report.failure->evidence);
    makePlain(report.failure->nextStep);
}

} // namespace

util::Bytes startLdapTest(Engine& engine, util::BytesView bytes) {
    const LdapRequestValues request(bytes, engine.codec());
    auto& machine = engine.machine();
    const auto& saved = machine.snapshot().sssd();
    return replyOf({{"job", engine.testJobs().start(planFrom(request.values(), saved, machine.folder()))}},
                   engine.codec());
}

util::Bytes ldapTestReport(Engine& engine, util::BytesView bytes) {
    const LdapRequestValues request(bytes, engine.codec());
    auto report = engine.testJobs().report(jobIn(request));
    makePlain(report);
    return replyOf(valuesOf(report), engine.codec());
}

util::Bytes cancelLdapTest(Engine& engine, util::BytesView bytes) {
    const LdapRequestValues request(bytes, engine.codec());
    engine.testJobs().cancel(jobIn(request));
    return replyOf({}, engine.codec());
}

} // namespace corvane::haldend
