#include "oracle/WorkedMachine.h"

#include <algorithm>

#include "haldend/policy/Connectors.h"
#include "haldend/policy/DomainNodes.h"
#include "sdk/LdapServerCalls.h"

namespace corvane::oracle {
namespace {

namespace key = sdk::ldap::serverKey;
using halden::NodeType;

int ldapConnectorCall() {
    return std::ranges::find(haldend::connectors, "LDAP", &haldend::Connector::name)->callCode();
}

std::vector<std::string> withoutLocalNodes(std::vector<std::string> names) {
    const auto& local = haldend::localNodeNames();
    std::erase_if(names, [&](const auto& name) { return std::ranges::find(local, name) != local.end(); });
    return names;
}

} // namespace

WorkedMachine::WorkedMachine(std::string folder)
    : folder_(std::move(folder)), engine_(std::make_shared<haldend::Engine>(folder_, codec_, log_)),
      framework_(engine_), service_(engine_), authorization_(service_.createAuthorization()) {
    (void)authorization_->obtainRights({{std::string(haldend::configureRight), "", 0}}, 19);
}

Files WorkedMachine::files() const {
    auto all = filesBelow(folder_);
    std::erase_if(all, [](const auto& entry) { return entry.first.starts_with("var/lib/corvane/"); });
    return all;
}

std::shared_ptr<halden::Node> WorkedMachine::node(NodeType type) const {
    return framework_.defaultSession()->nodeWithType(type, nullptr);
}

std::vector<std::string> WorkedMachine::detail(std::string_view name) const {
    const auto details = node(NodeType::authenticationSearchNode)->nodeDetails(std::nullopt, nullptr);
    if (details.isNull()) return {};
    const auto values = details.valueForKey(name).as<util::Array>();
    return values.isNull() ? std::vector<std::string>() : values.texts();
}

int WorkedMachine::mode() const {
    const auto words = detail(halden::attribute::searchPolicy);
    if (words.empty()) return 0;
    if (words.front() == halden::attribute::automaticSearchPath) return 111;
    return words.front() == halden::attribute::localOnlySearchPath ? 222 : 333;
}

std::vector<std::string> WorkedMachine::path(halden::Error& error) const {
    const auto names = node(NodeType::authenticationSearchNode)->subnodeNames(&error);
    return names.isNull() ? std::vector<std::string>() : withoutLocalNodes(names.texts());
}

std::vector<std::string> WorkedMachine::automaticPath() const {
    return withoutLocalNodes(detail(halden::attribute::automaticSearchPath));
}

halden::Error WorkedMachine::call(NodeType type, int code, const util::Bytes& payload) {
    util::AuthorizationExternalForm form;
    (void)service_.makeExternalForm(authorization_->authorizationRef(), form);
    util::Bytes request(form.bytes.begin(), form.bytes.end());
    request.insert(request.end(), payload.begin(), payload.end());
    halden::Error error;
    (void)node(type)->customCall(code, request, &error);
    return error;
}

halden::Error WorkedMachine::setMode(int mode) { return call(NodeType::authenticationSearchNode, mode); }

halden::Error WorkedMachine::setCustom(const std::vector<std::string>& nodes) {
    return call(NodeType::authenticationSearchNode, 444, *codec_.binary(util::Array::ofTexts(nodes)));
}

halden::Error WorkedMachine::setContactsList(const std::vector<std::string>& nodes) {
    return call(NodeType::contactsSearchNode, 444, *codec_.binary(util::Array::ofTexts(nodes)));
}

halden::Error WorkedMachine::setContactsMode(int mode) { return call(NodeType::contactsSearchNode, mode); }

halden::Error WorkedMachine::flipLdap() { return call(NodeType::configNode, ldapConnectorCall()); }

util::Dictionary WorkedMachine::listing() const {
    halden::Error error;
    const auto reply = node(NodeType::configNode)->customCall(sdk::ldap::call::listServers, {}, &error);
    return reply ? codec_.parse(*reply, nullptr).as<util::Dictionary>() : util::Dictionary();
}

std::vector<std::string> WorkedMachine::servers() const {
    std::vector<std::string> names;
    const auto listed = listing().valueForKey("servers").as<util::Array>();
    if (!listed.isNull())
        for (const auto& server : listed.elements())
            names.push_back(server.as<util::Dictionary>().textForKey(key::name));
    return names;
}

std::string WorkedMachine::nodeOfServer(const std::string& name) const {
    const auto listed = listing().valueForKey("servers").as<util::Array>();
    if (!listed.isNull())
        for (const auto& server : listed.elements())
            if (const auto values = server.as<util::Dictionary>(); values.textForKey(key::name) == name)
                return values.textForKey(key::node);
    return {};
}

halden::Error WorkedMachine::writeServers(const util::Array& put, const util::Array& remove) {
    const util::Dictionary values{
        {"revision", listing().textForKey("revision")}, {"put", put}, {"remove", remove}};
    return call(NodeType::configNode, sdk::ldap::call::writeServers, *codec_.xml(values));
}

halden::Error WorkedMachine::addServer(const std::string& name, const std::string& address) {
    const util::Dictionary server{
        {key::name, name}, {key::addresses, util::Array{address}}, {key::baseDN, "dc=orchard,dc=example"}};
    return writeServers({server}, util::Array(util::ValueList{}));
}

halden::Error WorkedMachine::removeServer(const std::string& name) {
    return writeServers(util::Array(util::ValueList{}), {name});
}

} // namespace corvane::oracle
