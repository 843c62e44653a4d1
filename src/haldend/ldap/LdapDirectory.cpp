#include "haldend/ldap/LdapDirectory.h"

#include <ldap.h>

#include "haldend/files/LdapUri.h"
#include "haldend/storage/Failure.h"
#include "sdk/LdapServerCalls.h"

namespace corvane::haldend {
namespace {

std::string nextStep(int status, const std::string& uri) {
    switch (status) {
    case LDAP_INVALID_CREDENTIALS:
    case LDAP_INAPPROPRIATE_AUTH:
        return "Correct ldap_default_bind_dn and ldap_default_authtok for " + uri + ".";
    case LDAP_NO_SUCH_OBJECT:
        return "Correct ldap_search_base for " + uri + ".";
    case LDAP_SIZELIMIT_EXCEEDED:
    case LDAP_ADMINLIMIT_EXCEEDED:
        return "Search for less, accept partial results, or raise the server's limit.";
    case LDAP_TIMELIMIT_EXCEEDED:
        return "Search for less, or raise the server's time limit.";
    default:
        return "See the server's log for details.";
    }
}

/// A failure on the way from one server to the next.
Failure failure(int code, const std::string& uri, const std::string& step, const std::string& reason,
                const std::string& recovery) {
    return {code, "The directory server returned an error.",
            uri + ": trying to " + step + " failed. " + reason, recovery};
}

Failure refused(const LdapAnswer& answer, const std::string& uri, const std::string& step) {
    const bool isRefusal = answer.status == LDAP_INVALID_CREDENTIALS ||
                           answer.status == LDAP_INSUFFICIENT_ACCESS ||
                           answer.status == LDAP_INAPPROPRIATE_AUTH;
    return failure(isRefusal ? halden::ErrorCode::credentials : halden::ErrorCode::nodeUnreachable, uri, step,
                   "It says " + answer.text() + ".", nextStep(answer.status, uri));
}

/// Runs one step of the way to a server; what the client throws becomes a `Failure`.
template <typename Action>
auto take(const std::string& uri, const std::string& step, const Action& action) {
    try {
        return action();
    } catch (const LdapFailure& trouble) {
        throw failure(halden::ErrorCode::nodeUnreachable, uri, step, trouble.cause + " " + trouble.evidence,
                      trouble.nextStep);
    }
}

std::string unreachable(const LdapSection& section) {
    return "The directory of section [domain/" + section.name + "] can't be reached.";
}

void requireUsable(const LdapSection& section) {
    if (section.uris.empty())
        throw Failure(halden::ErrorCode::nodeUnreachable, unreachable(section),
                      "Its configuration names no server (ldap_uri); SSSD looks one up in the DNS by itself.",
                      "Set ldap_uri in that section of sssd.conf.");
    if (!section.bindName.empty() && !section.isPasswordReadable())
        throw Failure(
            halden::ErrorCode::credentials,
            "The directory of section [domain/" + section.name + "] can't be read.",
            "Its password is stored in a form that only SSSD can read (ldap_default_authtok_type = " +
                section.passwordType + ").",
            "Store it as a plain password, or let the server answer anonymous searches.");
}

} // namespace

LdapDirectory::LdapDirectory(LdapSection section, LdapTrust trust)
    : section_(std::move(section)), trust_(std::move(trust)) {
    std::erase(section_.uris, "_srv_");
    requireUsable(section_);
    std::string reasons;
    for (const auto& uri : section_.uris) {
        try {
            open(uri);
            return;
        } catch (const Failure& failure) {
            auto error = failure.error();
            reasons += (reasons.empty() ? "" : " ") + error.reason;
            if (&uri != &section_.uris.back()) continue;
            error.description = unreachable(section_);
            error.reason = reasons;
            throw Failure(error);
        }
    }
}

void LdapDirectory::open(const std::string& uri) {
    uri_ = uri;
    const auto server = LdapUri::from(uri);
    const auto path = localSocketPath(uri);
    if (server.scheme.empty() && path.empty())
        throw failure(halden::ErrorCode::nodeUnreachable, uri, "understand the address",
                      "It isn't the URI of an LDAP server.",
                      "Write it like ldap://ldap.example.com in ldap_uri.");
    client_ = std::make_unique<LdapClient>(LdapTimeLimits{std::chrono::seconds(section_.connectTimeout),
                                                          std::chrono::seconds(section_.searchTimeout)});
    const int port = server.port ? server.port : usualLdapPort(server.isLdaps());
    const auto host = server.host.empty() ? "localhost" : server.host; // as the LDAP library has it
    take(uri, "connect",
         [&] { path.empty() ? client_->connect(host, port) : client_->connectLocally(path); });
    if (server.isLdaps() || section_.startTls)
        take(uri, "encrypt the connection", [&] {
            if (!server.isLdaps()) client_->startTls();
            client_->encrypt(trust_);
        });
    bind();
}

void LdapDirectory::bind() {
    const bool isAnonymous = section_.bindName.empty();
    const auto step = isAnonymous ? std::string("sign in anonymously") : "sign in as " + section_.bindName;
    const auto answer = take(uri_, step, [&] {
        return client_->bind(section_.bindName, isAnonymous ? std::string() : section_.password);
    });
    if (answer.status != LDAP_SUCCESS) throw refused(answer, uri_, step);
}

std::string LdapDirectory::defaultBase() {
    return take(uri_, "ask for its bases", [&] { return client_->defaultBase(); });
}

void LdapDirectory::search(LdapSearch search, bool allowPartial, const LdapClient::Each& each) {
    const auto step = "search below \"" + search.base + "\"";
    search.pageSize = section_.pageSize;
    const auto answer = take(uri_, step, [&] {
        try {
            return client_->search(search, each);
        } catch (const LdapFailure& trouble) {
            if (allowPartial && trouble.kind == sdk::ldap::failure::timeout) return LdapAnswer();
            throw;
        }
    });
    if (answer.status == LDAP_SUCCESS || (allowPartial && isLdapLimit(answer.status))) return;
    throw refused(answer, uri_, step);
}

} // namespace corvane::haldend
