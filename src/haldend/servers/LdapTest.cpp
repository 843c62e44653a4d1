#include "haldend/servers/LdapTest.h"

#include <ldap.h>

#include <algorithm>

#include "haldend/files/LdapUri.h"
#include "sdk/LdapServerCalls.h"

namespace corvane::haldend {

namespace kind = sdk::ldap::failure;
namespace step = sdk::ldap::step;
namespace security = sdk::ldap::security;

namespace {

bool isRefusal(int status) {
    constexpr int refusals[] = {LDAP_INAPPROPRIATE_AUTH,        LDAP_UNWILLING_TO_PERFORM,
                                LDAP_STRONG_AUTH_REQUIRED,      LDAP_CONFIDENTIALITY_REQUIRED,
                                LDAP_AUTH_METHOD_NOT_SUPPORTED, LDAP_INSUFFICIENT_ACCESS,
                                LDAP_OPERATIONS_ERROR};
    return std::ranges::find(refusals, status) != std::end(refusals);
}

} // namespace

std::string LdapTest::baseIn(const std::string& text) { return text.substr(0, text.find('?')); }

/// Servers say in two ways that they want encryption; one that has it already wants something else.
void LdapTest::requireAllowed(const LdapAnswer& answer, const std::string& how) const {
    if (!isRefusal(answer.status)) return;
    const auto evidence = client_->peer() + " says " + answer.text() + ".";
    const bool wantsMore =
        answer.status == LDAP_STRONG_AUTH_REQUIRED || answer.status == LDAP_CONFIDENTIALITY_REQUIRED;
    if (wantsMore && plan_.server.security == security::none)
        throw LdapFailure{kind::encryptionRequired,
                          "The server takes sign-ins over an encrypted connection only.", evidence,
                          "Choose StartTLS or LDAPS as the encryption, and enter the certificate of the "
                          "authority that has signed the server's."};
    if (wantsMore)
        throw LdapFailure{kind::bindRefused, "The server wants a stronger sign-in than a password.", evidence,
                          "Ask the server's administrator to allow sign-ins with a password over an "
                          "encrypted connection; SSSD signs in that way here."};
    throw LdapFailure{kind::bindRefused, "The server refuses clients that sign in " + how + ".", evidence,
                      "Enter a bind DN and a password, encrypt the connection, or have the server's "
                      "administrator allow this kind of sign-in."};
}

LdapTest::LdapTest(LdapTestPlan plan) : plan_(std::move(plan)) {
    std::vector<const char*> names{step::connect, step::encrypt, step::bind, step::base};
    if (!plan_.wantsBases) names.insert(names.end(), {step::user, step::group});
    for (const auto* name : names)
        report_.steps.push_back({name, "waiting", ""});
}

LdapTestReport LdapTest::report() const {
    const std::lock_guard lock(mutex_);
    return report_;
}

void LdapTest::note(const char* name, const char* state, const std::string& detail) {
    const std::lock_guard lock(mutex_);
    const auto found = std::ranges::find(report_.steps, name, &LdapTestStep::name);
    found->state = state;
    found->detail = detail;
}

void LdapTest::skip(const char* name, const std::string& detail) { note(name, "skipped", detail); }

template <typename Action>
void LdapTest::take(const char* name, const Action& action) {
    note(name, "running", "");
    note(name, "done", action());
}

void LdapTest::fail(const LdapFailure& failure) {
    const std::lock_guard lock(mutex_);
    report_.failure = failure;
    for (auto& one : report_.steps) {
        if (one.state == "running") {
            one.state = "failed";
            one.detail = failure.evidence;
        }
        if (one.state == "waiting") one.state = "skipped";
    }
}

void LdapTest::run(const std::stop_token& stop) noexcept {
    try {
        takeAll(stop);
    } catch (const LdapFailure& failure) {
        fail(failure);
    } catch (const Stopped&) {
        fail({kind::other, "The test was cancelled.", "", ""});
    } catch (const std::exception& exception) {
        fail({kind::other, "The test ran into an unexpected problem.", exception.what(), "Try again."});
    }
    client_.reset();
    util::wipe(plan_.server.password);
    const std::lock_guard lock(mutex_);
    report_.isFinished = true;
}

void LdapTest::takeAll(const std::stop_token& stop) {
    take(step::connect, [&] { return connect(stop); });
    if (plan_.server.security == security::none)
        skip(step::encrypt, "Encryption is switched off: SSSD looks accounts up, but logs nobody in.");
    else
        take(step::encrypt, [&] { return encrypt(); });
    if (plan_.wantsBases) return takeBases();
    take(step::bind, [&] { return bind(); });
    take(step::base, [&] { return findBase(); });
    take(step::user, [&] { return findUser(); });
    take(step::group, [&] { return findGroup(); });
}

/// Most servers say their bases to anybody: a sign-in that would be refused must not hide them.
void LdapTest::takeBases() {
    note(step::base, "running", "");
    const bool isOpen = keepBases();
    if (!isOpen && !plan_.server.bindDN.empty()) {
        note(step::base, "waiting", "");
        take(step::bind, [&] { return bind(); });
    } else {
        skip(step::bind, isOpen ? "The server says its bases to anybody." : "No bind DN is given.");
    }
    take(step::base, [&] { return findBases(isOpen); });
}

/// The first address that answers counts, as with SSSD; the others are named with what was wrong.
std::string LdapTest::connect(const std::stop_token& stop) {
    const auto& server = plan_.server;
    const int port = server.port ? server.port : usualLdapPort(server.security == security::ldaps);
    const LdapTimeLimits limits{std::chrono::seconds(server.connectTimeout),
                                std::chrono::seconds(server.searchTimeout)};
    std::optional<LdapFailure> first;
    std::string tried;
    for (const auto& address : server.addresses) {
        try {
            client_ = std::make_unique<LdapClient>(limits, stop);
            client_->connect(address, port);
            return client_->peer() + " answers." + (tried.empty() ? "" : " Before it: " + tried);
        } catch (const LdapFailure& failure) {
            if (!first) first = failure;
            tried += (tried.empty() ? "" : " ") + failure.evidence;
        }
    }
    first->evidence = tried;
    throw *first;
}

std::string LdapTest::encrypt() {
    if (plan_.server.security == security::startTLS) client_->startTls();
    client_->encrypt(plan_.trust);
    return client_->encryption() +
           (plan_.trust.isDemanded ? "" : " Nobody has looked at it: ldap_tls_reqcert says so.");
}

std::string LdapTest::bind() {
    const auto& server = plan_.server;
    if (!server.bindDN.empty() && server.password.empty())
        throw LdapFailure{kind::credentials, "There is no password for the bind DN.",
                          plan_.hasReadablePassword
                              ? "\"" + server.bindDN +
                                    "\" is to sign in, and no password is stored or entered."
                              : "The stored password is in a form that only SSSD can read.",
                          "Enter the password, or clear the bind DN."};
    if (!server.bindDN.empty() && server.security == security::none && !plan_.mayShowPassword)
        throw LdapFailure{kind::clearPassword, "The password was not sent.",
                          "The connection isn't encrypted: anybody on the network could read the password of "
                          "\"" +
                              server.bindDN + "\".",
                          "Choose StartTLS or LDAPS as the encryption, or agree that this test may send the "
                          "password as it is."};
    const auto answer = client_->bind(server.bindDN, server.password);
    const auto who = server.bindDN.empty() ? std::string("without a name") : "as \"" + server.bindDN + "\"";
    if (answer.status == LDAP_SUCCESS) return "Signed in " + who + ".";
    const bool isWrong = answer.status == LDAP_INVALID_CREDENTIALS ||
                         answer.status == LDAP_INVALID_DN_SYNTAX || answer.status == LDAP_NO_SUCH_OBJECT;
    if (isWrong && !server.bindDN.empty())
        throw LdapFailure{kind::credentials, "The bind DN or its password is wrong.",
                          client_->peer() + " says " + answer.text() + " to \"" + server.bindDN + "\".",
                          "Enter the password again, and check whether the bind DN is correct; the server "
                          "doesn't say which of the two is wrong."};
    requireAllowed(answer, who);
    throw LdapFailure{kind::other, "The server doesn't let this machine sign in.",
                      client_->peer() + " says " + answer.text() + ".", "See the server's log."};
}

std::string LdapTest::findBases(bool isKnown) {
    if (!isKnown && !keepBases())
        throw LdapFailure{kind::nothingFound, "The server doesn't list its naming contexts.",
                          client_->peer() + " names no naming context.",
                          "Ask the server's administrator for the base DN and enter it."};
    const auto count = report_.bases.size();
    return std::to_string(count) + (count == 1 ? " base." : " bases.");
}

/// False where the server names none.
bool LdapTest::keepBases() {
    auto bases = client_->rootValues("namingContexts");
    const auto preferred = client_->rootValues("defaultNamingContext");
    std::erase(bases, ""); // some servers name the root of everything
    if (bases.empty()) bases = preferred;
    if (bases.empty()) return false;
    const std::lock_guard lock(mutex_);
    report_.bases = bases;
    report_.defaultBase = preferred.empty() ? bases.front() : preferred.front();
    return true;
}

std::string LdapTest::findBase() {
    base_ = baseIn(plan_.server.baseDN);
    const bool isGiven = !base_.empty();
    if (!isGiven) { // SSSD asks the server, too
        base_ = client_->defaultBase();
        if (base_.empty())
            throw LdapFailure{kind::noSuchBase, "There is no base DN.",
                              "None is entered, and the server doesn't list its own.", "Enter the base DN."};
    }
    bool isThere = false;
    const auto answer = client_->search({base_, LDAP_SCOPE_BASE, "(objectClass=*)", {LDAP_NO_ATTRS}, 1},
                                        [&](const LdapEntry&) { isThere = true; });
    if (answer.status == LDAP_SUCCESS && isThere)
        return isGiven ? "\"" + base_ + "\" is there." : "The server's own: \"" + base_ + "\".";
    requireAllowed(answer, "in this way");
    std::string known;
    for (const auto& name : client_->rootValues("namingContexts"))
        known += (known.empty() ? "" : ", ") + ("\"" + name + "\"");
    throw LdapFailure{kind::noSuchBase, "The base DN isn't in this directory.",
                      "\"" + base_ + "\": " + client_->peer() + " says " + answer.text() + "." +
                          (answer.matched.empty() ? "" : " It only has \"" + answer.matched + "\"."),
                      known.empty() ? "Correct the base DN."
                                    : "Correct the base DN; the server holds " + known + "."};
}

} // namespace corvane::haldend
