#include "haldend/servers/LdapServerRequest.h"

#include "haldend/files/LdapUri.h"
#include <algorithm>
#include <array>

#include "haldend/servers/LdapServerRules.h"
#include "haldend/storage/Failure.h"
#include "sdk/LdapServerCalls.h"

namespace corvane::haldend {
namespace {

namespace key = sdk::ldap::serverKey;
namespace security = sdk::ldap::security;
namespace schema = sdk::ldap::schema;

constexpr std::size_t maximumServers = 100;
constexpr std::size_t maximumAddresses = 16;
constexpr int longestTimeout = 120;
constexpr int highestPort = 65535;

Failure refused(const std::string& reason, const std::string& nextStep) {
    return {halden::ErrorCode::parameter, "The LDAP servers can't be changed in this way.", reason, nextStep};
}

Failure malformed(const std::string& what) {
    return refused(what, "Use a program of the same version as this service.");
}

std::optional<std::string> optionalText(const util::Dictionary& values, const char* name) {
    if (!values.containsKey(name)) return std::nullopt;
    const auto value = values.valueForKey(name);
    if (!value.isKind(util::Kind::String)) throw malformed(std::string("\"") + name + "\" is no text.");
    return value.as<util::String>().text();
}

std::int64_t numberIn(const util::Dictionary& values, const char* name, std::int64_t fallback) {
    if (!values.containsKey(name)) return fallback;
    const auto value = values.valueForKey(name).as<util::Number>();
    if (value.isNull() || value.isBoolean() || value.isFloating())
        throw malformed(std::string("\"") + name + "\" is no whole number.");
    return value.integerValue();
}

bool flagIn(const util::Dictionary& values, const char* name, bool fallback) {
    if (!values.containsKey(name)) return fallback;
    const auto value = values.valueForKey(name).as<util::Number>();
    if (value.isNull() || !value.isBoolean())
        throw malformed(std::string("\"") + name + "\" isn't a boolean.");
    return value.booleanValue();
}

std::vector<std::string> textsIn(const util::Dictionary& values, const char* name, std::size_t most) {
    const auto value = values.valueForKey(name);
    if (value.isNull()) return {};
    const auto list = value.as<util::Array>();
    if (list.isNull()) throw malformed(std::string("\"") + name + "\" is no list.");
    if (list.count() > most)
        throw refused(std::string("\"") + name + "\" has " + std::to_string(list.count()) + " entries.",
                      "Use at most " + std::to_string(most) + ".");
    for (const auto& element : list.elements())
        if (!element.isKind(util::Kind::String))
            throw malformed(std::string("An entry of \"") + name + "\" is no text.");
    return list.texts();
}

bool sameName(std::string_view a, std::string_view b) { // SSSD tells no capitals from small letters there
    return std::ranges::equal(a, b, [](unsigned char x, unsigned char y) {
        const auto low = [](unsigned char c) { return c >= 'A' && c <= 'Z' ? c + 32 : int(c); };
        return low(x) == low(y);
    });
}

const SssdDomain* sectionNamed(const std::vector<SssdDomain>& saved, std::string_view name) {
    const auto found = std::ranges::find_if(saved, [&](const auto& d) { return sameName(d.name, name); });
    return found == saved.end() ? nullptr : &*found;
}

const SssdDomain& requireServer(const std::vector<SssdDomain>& saved, const std::string& name) {
    const auto found = std::ranges::find(saved, name, &SssdDomain::name);
    if (found == saved.end())
        throw refused("There is no LDAP server \"" + name + "\" on this machine.",
                      "Look at the servers as they are now, and try again.");
    if (!isLdapServer(*found))
        throw refused("The section [domain/" + name + "] of sssd.conf isn't an LDAP server (id_provider = " +
                          found->option("id_provider") + ").",
                      "Choose another name.");
    return *found;
}

template <std::size_t N>
void requireOneOf(const std::string& label, const std::string& text,
                  const std::array<const char*, N>& known) {
    if (std::ranges::find(known, text) == known.end())
        throw malformed(label + " is \"" + text.substr(0, 40) + "\".");
}

/// Texts and numbers of a request over what the server says so far.
void fillIn(LdapServer& server, const util::Dictionary& values) {
    const auto take = [&](const char* name, std::string& text) {
        if (auto given = optionalText(values, name)) text = std::move(*given);
    };
    take(key::name, server.name);
    take(key::security, server.security);
    take(key::caFile, server.caFile);
    take(key::baseDN, server.baseDN);
    take(key::bindDN, server.bindDN);
    take(key::schema, server.schema);
    if (values.containsKey(key::addresses))
        server.addresses = textsIn(values, key::addresses, maximumAddresses);
    server.computesNumbers = flagIn(values, key::computedNumbers, server.computesNumbers);
    const auto port = numberIn(values, key::port, server.port);
    requireRange("The port", port, 0, highestPort);
    const bool isStandard = port == usualLdapPort(server.security == security::ldaps);
    server.port = isStandard ? 0 : static_cast<int>(port);
}

void fillInTimes(LdapServer& server, const util::Dictionary& values) {
    const auto take = [&](const char* name, const std::string& label, int& seconds) {
        const auto given = numberIn(values, name, seconds);
        if (given != seconds) requireRange(label, given, 1, longestTimeout);
        seconds = static_cast<int>(given);
    };
    take(key::connectTimeout, "The time limit for connecting, in seconds,", server.connectTimeout);
    take(key::searchTimeout, "The time limit for searching, in seconds,", server.searchTimeout);
}

/// An IPv6 address may come in its brackets.
void tidyAddresses(std::vector<std::string>& addresses) {
    for (auto& address : addresses)
        if (address.starts_with('[') && address.ends_with(']'))
            address = address.substr(1, address.size() - 2);
}

/// Every value that is new is looked at; what the machine's administrator has written otherwise may be odd.
void check(const LdapServer& server, const std::optional<LdapServer>& before) {
    const auto isNew = [&](auto LdapServer::*field) { return !before || server.*field != (*before).*field; };
    if (isNew(&LdapServer::security))
        requireOneOf("The security mode", server.security,
                     std::array{security::startTLS, security::ldaps, security::none});
    if (isNew(&LdapServer::schema))
        requireOneOf("The schema", server.schema,
                     std::array{schema::rfc2307, schema::rfc2307bis, schema::activeDirectory});
    const bool mayCompute = server.schema == schema::activeDirectory || !server.computesNumbers;
    if (!mayCompute && (isNew(&LdapServer::computesNumbers) || isNew(&LdapServer::schema)))
        throw refused("Numbers can't be computed with the schema " + server.schema + ".",
                      "Choose the schema of Active Directory, or the numbers that the directory stores.");
    if (isNew(&LdapServer::addresses) || isNew(&LdapServer::port) || isNew(&LdapServer::security)) {
        if (server.addresses.empty())
            throw refused("The server has no address.", "Name the host on which it runs.");
        for (const auto& address : server.addresses)
            requireAddress(address);
    }
    if (isNew(&LdapServer::caFile)) requireFilePath("The file of certificates", server.caFile);
    if (isNew(&LdapServer::baseDN)) requireDN("The base DN", server.baseDN);
    if (isNew(&LdapServer::bindDN)) requireDN("The bind DN", server.bindDN);
}

std::optional<std::string> passwordIn(const util::Dictionary& values) {
    if (!values.containsKey(key::password)) return std::nullopt;
    const auto data = values.valueForKey(key::password).as<util::Data>();
    if (data.isNull()) throw malformed("\"password\" isn't data.");
    auto password = util::textFromBytes(data.bytes());
    try {
        requirePassword(password);
    } catch (...) {
        util::wipe(password);
        throw;
    }
    return password;
}

LdapServerPut putFrom(const util::Dictionary& values, const SssdDomain* saved) {
    LdapServerPut put;
    if (saved) put.before = LdapServer::from(*saved);
    if (put.before) put.server = *put.before;
    fillIn(put.server, values);
    fillInTimes(put.server, values);
    if (!put.before || put.server.addresses != put.before->addresses) tidyAddresses(put.server.addresses);
    check(put.server, put.before);
    put.password = passwordIn(values);
    return put;
}

std::string sourceOf(const LdapServerPut& put) { return put.before ? put.before->name : std::string(); }

void requireDistinct(const LdapServersRequest& request, const std::vector<SssdDomain>& saved) {
    std::vector<std::string> names;
    std::vector<std::string> sources = request.remove;
    for (const auto& put : request.put) {
        if (std::ranges::any_of(names, [&](const auto& name) { return sameName(name, put.server.name); }))
            throw refused("Two servers are named \"" + put.server.name + "\".",
                          "Give one of them another name.");
        names.push_back(put.server.name);
        if (put.before) sources.push_back(sourceOf(put));
    }
    std::ranges::sort(sources);
    if (const auto twice = std::ranges::adjacent_find(sources); twice != sources.end())
        throw refused("The server \"" + *twice + "\" appears twice.", "List it only once.");
    for (const auto& name : names) {
        const auto* taken = sectionNamed(saved, name);
        if (taken && !std::ranges::binary_search(sources, taken->name))
            throw refused("sssd.conf has a section [domain/" + taken->name + "] already.",
                          "Choose another name.");
    }
}

} // namespace

std::string plainTextIn(const util::Dictionary& values, const char* name) {
    auto text = optionalText(values, name).value_or("");
    requirePlainText(std::string("\"") + name + "\"", text);
    return text;
}

std::optional<std::string> LdapServersRequest::nameAfter(const std::string& section) const {
    if (std::ranges::find(remove, section) != remove.end()) return std::nullopt;
    const auto found =
        std::ranges::find_if(put, [&](const auto& one) { return one.before && one.before->name == section; });
    return found == put.end() ? section : found->server.name;
}

LdapServersRequest writeRequestFrom(const util::Dictionary& values, const std::vector<SssdDomain>& saved) {
    LdapServersRequest request;
    request.remove = textsIn(values, "remove", maximumServers);
    for (const auto& name : request.remove)
        (void)requireServer(saved, name);
    const auto value = values.valueForKey("put");
    const auto list = value.as<util::Array>();
    if (!value.isNull() && list.isNull()) throw malformed("\"put\" isn't a list.");
    if (list.count() > maximumServers)
        throw refused("There are " + std::to_string(list.count()) + " servers to write.",
                      "Write at most " + std::to_string(maximumServers) + " at a time.");
    for (const auto& element : list.elements()) {
        const auto server = element.as<util::Dictionary>();
        if (server.isNull()) throw malformed("An entry of \"put\" isn't a dictionary.");
        const auto name = optionalText(server, key::name).value_or("");
        const auto replaced = optionalText(server, key::replaces).value_or("");
        const auto found = std::ranges::find(saved, name, &SssdDomain::name);
        const auto* present = found == saved.end() ? nullptr : &requireServer(saved, name);
        request.put.push_back(putFrom(server, replaced.empty() ? present : &requireServer(saved, replaced)));
        const auto& put = request.put.back();
        if (!put.before || put.before->name != put.server.name) requireServerName(name);
    }
    requireDistinct(request, saved);
    return request;
}

LdapServerPut tryRequestFrom(const util::Dictionary& server, const std::vector<SssdDomain>& saved) {
    const auto name = plainTextIn(server, key::name);
    const auto replaced = plainTextIn(server, key::replaces);
    const auto found = std::ranges::find(saved, replaced.empty() ? name : replaced, &SssdDomain::name);
    return putFrom(server, found != saved.end() && isLdapServer(*found) ? &*found : nullptr);
}

void wipePasswords(const util::Value& request) noexcept {
    const auto wipeIn = [](const util::Dictionary& server) {
        const auto data = server.valueForKey(key::password).as<util::Data>();
        // The object isn't constant, only this view of it; it was made for this request alone.
        if (!data.isNull()) util::wipe(const_cast<util::Bytes&>(data.bytes()));
    };
    const auto values = request.as<util::Dictionary>();
    wipeIn(values.valueForKey("server").as<util::Dictionary>());
    for (const auto& server : values.valueForKey("put").as<util::Array>().elements())
        wipeIn(server.as<util::Dictionary>());
}

} // namespace corvane::haldend
