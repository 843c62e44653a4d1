#include "haldend/nodes/ConfigNode.h"

#include <algorithm>

#include "haldend/nodes/LdapServers.h"
#include "haldend/nodes/LdapTestCalls.h"
#include "haldend/records/AccountFiles.h"
#include "haldend/storage/Failure.h"
#include "sdk/LdapServerCalls.h"

namespace corvane::haldend {
namespace {

using namespace halden;

constexpr std::string_view knownRecordTypes[] = {recordType::users, recordType::groups, recordType::plugins,
                                                 recordType::recordTypes, recordType::attributeTypes};
constexpr std::string_view knownAttributes[] = {attribute::recordName,
                                                attribute::realName,
                                                attribute::uniqueID,
                                                attribute::primaryGroupID,
                                                attribute::homeDirectory,
                                                attribute::userShell,
                                                attribute::groupMembership,
                                                attribute::mail,
                                                attribute::phone,
                                                attribute::functionalState,
                                                attribute::version,
                                                attribute::configAvailable,
                                                attribute::configFile,
                                                attribute::searchPolicy,
                                                attribute::automaticSearchPath,
                                                attribute::customSearchPath,
                                                attribute::localOnlySearchPath,
                                                attribute::operatingSystemVersion};

AttributeMap named(std::string_view name) {
    return {{std::string(attribute::recordName), {std::string(name)}}};
}

AttributeMap attributesOf(const Connector& connector, const DisabledConnectors& disabled) {
    auto attributes = named(connector.name);
    attributes[std::string(attribute::functionalState)] = {disabled.contains(connector.name) ? "Inactive"
                                                                                             : "Active"};
    attributes[std::string(attribute::version)] = {std::string(connector.version)};
    return attributes;
}

void append(RecordList& records, const QueryParameters& parameters, std::string_view type,
            const AttributeMap& attributes) {
    if (wantsType(parameters, type) && !isFull(parameters, records) && matches(parameters, attributes))
        records.push_back(recordFor(parameters, type, attributes));
}

Failure wrongLength(std::size_t length) {
    return {ErrorCode::parameter, "The request is too short or too long.",
            "It has " + std::to_string(length) + " bytes; it begins with an authorization of 32.",
            "Use a program of the same version as this service."};
}

void flip(MachinePolicy& policy, const Connector& connector) {
    const std::string name(connector.name);
    if (policy.disabled.erase(name) != 0) return;
    if (!connector.canBeSwitchedOff)
        throw Failure(ErrorCode::parameter, "The connector " + name + " can't be switched off.",
                      "The machine can't be used or administered without it.", "Leave it switched on.");
    policy.disabled.insert(name);
}

} // namespace

util::BytesView authorizationIn(util::BytesView request) {
    if (request.size() < util::AuthorizationExternalForm::length) throw wrongLength(request.size());
    return request.first(util::AuthorizationExternalForm::length);
}

util::BytesView soleAuthorizationIn(util::BytesView request) {
    if (request.size() != util::AuthorizationExternalForm::length) throw wrongLength(request.size());
    return request;
}

RecordList ConfigNode::fetch(const QueryParameters& parameters, bool) {
    RecordList records;
    if (wantsType(parameters, recordType::plugins)) {
        const auto disabled = engine().machine().snapshot().disabledConnectors();
        for (const auto& connector : engine().connectorCatalog().all())
            append(records, parameters, recordType::plugins, attributesOf(connector, disabled));
    }
    for (const auto name : knownRecordTypes)
        append(records, parameters, recordType::recordTypes, named(name));
    for (const auto name : knownAttributes)
        append(records, parameters, recordType::attributeTypes, named(name));
    return records;
}

AttributeMap ConfigNode::details() {
    const auto osRelease = engine().machine().folder().read(machineFile::osRelease);
    const auto version = osReleaseValue(osRelease.value_or(""), "VERSION_ID");
    if (version.empty()) return {};
    return {{std::string(attribute::operatingSystemVersion), {version}}};
}

std::vector<std::string> ConfigNode::subnodes() {
    std::vector<std::string> names;
    for (const auto& connector : connectors)
        names.push_back("/" + std::string(connector.name));
    return names;
}

/// None for a number that isn't about LDAP servers.
std::optional<util::Bytes> ConfigNode::ldapCall(std::int32_t code, util::BytesView request) {
    namespace ldap = sdk::ldap::call;
    using Answerer = util::Bytes (*)(Engine&, util::BytesView);
    static constexpr std::pair<std::int32_t, Answerer> answerers[] = {{ldap::writeServers, writeLdapServers},
                                                                      {ldap::startTest, startLdapTest},
                                                                      {ldap::testReport, ldapTestReport},
                                                                      {ldap::cancelTest, cancelLdapTest}};
    if (code == ldap::listServers) return listLdapServers(engine());
    for (const auto& [known, answer] : answerers)
        if (code == known) {
            engine().requireConfigureRight(authorizationIn(request));
            return answer(engine(), request.subspan(util::AuthorizationExternalForm::length));
        }
    return std::nullopt;
}

util::Bytes ConfigNode::call(std::int32_t code, util::BytesView request) {
    if (auto reply = ldapCall(code, request)) return *reply;
    const auto known = engine().connectorCatalog().all();
    const auto found = std::ranges::find(known, code, &Connector::callCode);
    if (found == known.end()) return EngineNode::call(code, request);
    engine().requireConfigureRight(soleAuthorizationIn(request));
    engine().machine().change(Machine::View::authentication,
                              [&](MachinePolicy& policy) { flip(policy, *found); });
    return {};
}

} // namespace corvane::haldend
