#include "connectors/ldap/Server.h"

#include "sdk/LdapServerCalls.h"

namespace corvane::connectors::ldap {
namespace {

namespace key = sdk::ldap::serverKey;
namespace security = sdk::ldap::security;

std::span<const std::uint8_t> bytesOf(const std::string& text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

} // namespace

void wipe(std::string& secret) noexcept {
    for (auto& byte : secret)
        const_cast<volatile char&>(byte) = 0;
    secret.clear();
}

Server::~Server() {
    if (password) wipe(*password);
}

Server Server::fresh() {
    Server server;
    server.security = security::startTLS;
    server.schema = sdk::ldap::schema::rfc2307;
    return server;
}

Server Server::from(const sdk::Object& dictionary) {
    Server server = fresh();
    server.name = server.savedName = dictionary[key::name].text();
    server.node = dictionary[key::node].text();
    server.addresses = dictionary[key::addresses].texts();
    server.port = static_cast<int>(dictionary[key::port].integer());
    if (dictionary.has(key::security)) server.security = dictionary[key::security].text();
    server.caFile = dictionary[key::caFile].text();
    server.baseDN = dictionary[key::baseDN].text();
    server.bindDN = dictionary[key::bindDN].text();
    server.hasPassword = dictionary[key::hasPassword].boolean();
    if (dictionary.has(key::schema)) server.schema = dictionary[key::schema].text();
    server.computesNumbers = dictionary[key::computedNumbers].boolean();
    if (dictionary.has(key::connectTimeout))
        server.connectTimeout = static_cast<int>(dictionary[key::connectTimeout].integer());
    if (dictionary.has(key::searchTimeout))
        server.searchTimeout = static_cast<int>(dictionary[key::searchTimeout].integer());
    return server;
}

sdk::Object Server::dictionary(const sdk::Host& host) const {
    auto made = host.dictionary();
    made.set(key::name, host.string(name));
    if (!savedName.empty()) made.set(key::replaces, host.string(savedName));
    made.set(key::addresses, host.array(addresses));
    made.set(key::port, host.integer(port));
    made.set(key::security, host.string(security));
    made.set(key::caFile, host.string(caFile));
    made.set(key::baseDN, host.string(baseDN));
    made.set(key::bindDN, host.string(bindDN));
    if (password) made.set(key::password, host.data(bytesOf(*password)));
    made.set(key::schema, host.string(schema));
    made.set(key::computedNumbers, host.boolean(computesNumbers));
    made.set(key::connectTimeout, host.integer(connectTimeout));
    made.set(key::searchTimeout, host.integer(searchTimeout));
    return made;
}

std::string Server::title() const {
    if (!addresses.empty()) return addresses.front();
    return name.empty() ? "New server" : name;
}

std::string Server::summary() const {
    std::string text = "port " + std::to_string(effectivePort()) + ", " + securityTitle(security);
    if (!baseDN.empty()) text += ", " + baseDN;
    if (addresses.size() > 1) text += ", " + std::to_string(addresses.size() - 1) + " more to fall back on";
    return text;
}

bool Server::showsPassword() const { return security == security::none && !bindDN.empty(); }

bool Server::isSameDirectory(const Server& other) const {
    return addresses == other.addresses && effectivePort() == other.effectivePort() &&
           security == other.security && baseDN == other.baseDN && bindDN == other.bindDN &&
           schema == other.schema && computesNumbers == other.computesNumbers;
}

int Server::effectivePort() const {
    if (port != 0) return port;
    return security == security::ldaps ? ldapsPort : plainPort;
}

std::string securityTitle(const std::string& security) {
    if (security == security::startTLS) return "StartTLS";
    return security == security::ldaps ? "LDAPS" : "not encrypted";
}

} // namespace corvane::connectors::ldap
