#include "haldend/servers/LdapTest.h"

#include <openldap.h>

#include <algorithm>

#include "haldend/files/LdapUri.h"
#include "haldend/ldap/LdapLibrary.h"
#include "sdk/LdapServerCalls.h"

namespace corvane::haldend {

namespace kind = sdk::ldap::failure;
namespace step = sdk::ldap::step;
namespace security = sdk::ldap::security;

namespace {

LdapTestFailure lost(const std::string& peer) {
    return {kind::other, "The server has closed the connection.",
            peer + ": the connection ended before the answer.",
            "See the server's log. A server that only speaks LDAPS drops clients that don't encrypt "
            "immediately."};
}

LdapTestFailure silent(const std::string& peer, int seconds) {
    return {
        kind::timeout, "The server accepts the connection but doesn't respond.",
        peer + ": no answer within " + inSeconds(seconds) + ".",
        "Check whether a directory server, and not something else, listens on that port, and whether it is "
        "overloaded; or choose a longer time limit."};
}

bool isRefusal(int status) {
    constexpr int refusals[] = {LDAP_INAPPROPRIATE_AUTH,        LDAP_UNWILLING_TO_PERFORM,
                                LDAP_STRONG_AUTH_REQUIRED,      LDAP_CONFIDENTIALITY_REQUIRED,
                                LDAP_AUTH_METHOD_NOT_SUPPORTED, LDAP_INSUFFICIENT_ACCESS,
                                LDAP_OPERATIONS_ERROR};
    return std::ranges::find(refusals, status) != std::end(refusals);
}

} // namespace

std::string LdapTest::Answer::text() const {
    return std::string("\"") + ldap_err2string(status) + "\" (" + std::to_string(status) + ")" +
           (diagnostic.empty() ? "" : ": " + diagnostic);
}

std::vector<std::string> LdapTest::valuesOf(LDAPMessage* entry, const std::string& attribute) const {
    std::vector<std::string> values;
    if (attribute.empty()) return values;
    auto** found = ldap_get_values_len(ldap_.get(), entry, attribute.c_str());
    for (auto** value = found; value && *value; ++value)
        values.emplace_back((*value)->bv_val, (*value)->bv_len);
    ldap_value_free_len(found);
    return values;
}

std::string LdapTest::baseIn(const std::string& text) { return text.substr(0, text.find('?')); }

/// Servers say in two ways that they want encryption; one that has it already wants something else.
void LdapTest::requireAllowed(const Answer& answer, const std::string& how) const {
    if (!isRefusal(answer.status)) return;
    const auto evidence = wire_->peer() + " says " + answer.text() + ".";
    const bool wantsMore =
        answer.status == LDAP_STRONG_AUTH_REQUIRED || answer.status == LDAP_CONFIDENTIALITY_REQUIRED;
    if (wantsMore && plan_.server.security == security::none)
        throw LdapTestFailure{kind::encryptionRequired,
                              "The server takes sign-ins over an encrypted connection only.", evidence,
                              "Choose StartTLS or LDAPS as the encryption, and enter the certificate of the "
                              "authority that has signed the server's."};
    if (wantsMore)
        throw LdapTestFailure{kind::bindRefused, "The server wants a stronger sign-in than a password.",
                              evidence,
                              "Ask the server's administrator to allow sign-ins with a password over an "
                              "encrypted connection; SSSD signs in that way here."};
    throw LdapTestFailure{kind::bindRefused, "The server refuses clients that sign in " + how + ".", evidence,
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

void LdapTest::fail(const LdapTestFailure& failure) {
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
    } catch (const LdapTestFailure& failure) {
        fail(failure);
    } catch (const Stopped&) {
        fail({kind::other, "The test was cancelled.", "", ""});
    } catch (const std::exception& exception) {
        fail({kind::other, "The test ran into an unexpected problem.", exception.what(), "Try again."});
    }
    ldap_.reset();
    wire_.reset();
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
    const int standard = usualLdapPort(server.security == security::ldaps);
    std::optional<LdapTestFailure> first;
    std::string tried;
    for (const auto& address : server.addresses) {
        try {
            wire_ = std::make_unique<LdapWire>(stop);
            wire_->connect(address, server.port ? server.port : standard,
                           std::chrono::seconds(server.connectTimeout));
            host_ = address;
            break;
        } catch (const LdapTestFailure& failure) {
            if (!first) first = failure;
            tried += (tried.empty() ? "" : " ") + failure.evidence;
        }
    }
    if (host_.empty() && first) {
        first->evidence = tried;
        throw *first;
    }
    prepareLdapLibrary();
    LDAP* ldap = nullptr;
    if (ldap_init_fd(wire_->socket(), LDAP_PROTO_EXT, nullptr, &ldap) != LDAP_SUCCESS)
        throw LdapTestFailure{kind::other, "The LDAP library can't be used.", wire_->peer(), "Try again."};
    ldap_.reset(ldap);
    const int version = LDAP_VERSION3;
    ldap_set_option(ldap, LDAP_OPT_PROTOCOL_VERSION, &version);
    ldap_set_option(ldap, LDAP_OPT_REFERRALS, LDAP_OPT_OFF);
    Sockbuf* socket = nullptr;
    ldap_get_option(ldap, LDAP_OPT_SOCKBUF, &socket);
    ber_sockbuf_add_io(socket, LdapWire::hooks(), LBER_SBIOD_LEVEL_PROVIDER, wire_.get());
    return wire_->peer() + " answers." + (tried.empty() ? "" : " Before it: " + tried);
}

std::string LdapTest::encrypt() {
    if (plan_.server.security == security::startTLS) startTls();
    wire_->encrypt(host_, plan_.trust, std::chrono::seconds(plan_.server.connectTimeout));
    return wire_->encryption() +
           (plan_.trust.isDemanded ? "" : " Nobody has looked at it: ldap_tls_reqcert says so.");
}

void LdapTest::startTls() {
    int message = 0;
    ldap_extended_operation(ldap_.get(), LDAP_EXOP_START_TLS, nullptr, nullptr, nullptr, &message);
    const auto answer = await(message);
    if (answer.status == LDAP_SUCCESS) return;
    throw LdapTestFailure{kind::tlsUnsupported, "The server can't encrypt with StartTLS.",
                          wire_->peer() + " says " + answer.text() + ".",
                          "Try LDAPS, or have the server's administrator give the server a certificate."};
}

std::string LdapTest::bind() {
    const auto& server = plan_.server;
    if (!server.bindDN.empty() && server.password.empty())
        throw LdapTestFailure{kind::credentials, "There is no password for the bind DN.",
                              plan_.hasReadablePassword
                                  ? "\"" + server.bindDN +
                                        "\" is to sign in, and no password is stored or entered."
                                  : "The stored password is in a form that only SSSD can read.",
                              "Enter the password, or clear the bind DN."};
    if (!server.bindDN.empty() && server.security == security::none && !plan_.mayShowPassword)
        throw LdapTestFailure{
            kind::clearPassword, "The password was not sent.",
            "The connection isn't encrypted: anybody on the network could read the password of "
            "\"" +
                server.bindDN + "\".",
            "Choose StartTLS or LDAPS as the encryption, or agree that this test may send the "
            "password as it is."};
    berval password{server.password.size(), const_cast<char*>(server.password.data())};
    int message = 0;
    ldap_sasl_bind(ldap_.get(), server.bindDN.c_str(), LDAP_SASL_SIMPLE, &password, nullptr, nullptr,
                   &message);
    const auto answer = await(message);
    const auto who = server.bindDN.empty() ? std::string("without a name") : "as \"" + server.bindDN + "\"";
    if (answer.status == LDAP_SUCCESS) return "Signed in " + who + ".";
    const bool isWrong = answer.status == LDAP_INVALID_CREDENTIALS ||
                         answer.status == LDAP_INVALID_DN_SYNTAX || answer.status == LDAP_NO_SUCH_OBJECT;
    if (isWrong && !server.bindDN.empty())
        throw LdapTestFailure{
            kind::credentials, "The bind DN or its password is wrong.",
            wire_->peer() + " says " + answer.text() + " to \"" + server.bindDN + "\".",
            "Enter the password again, and check whether the bind DN is correct; the server "
            "doesn't say which of the two is wrong."};
    requireAllowed(answer, who);
    throw LdapTestFailure{kind::other, "The server doesn't let this machine sign in.",
                          wire_->peer() + " says " + answer.text() + ".", "See the server's log."};
}

std::string LdapTest::findBases(bool isKnown) {
    if (!isKnown && !keepBases())
        throw LdapTestFailure{kind::nothingFound, "The server doesn't list its naming contexts.",
                              wire_->peer() + " names no naming context.",
                              "Ask the server's administrator for the base DN and enter it."};
    const auto count = report_.bases.size();
    return std::to_string(count) + (count == 1 ? " base." : " bases.");
}

/// False where the server names none.
bool LdapTest::keepBases() {
    auto bases = rootValues("namingContexts");
    const auto preferred = rootValues("defaultNamingContext");
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
        auto told = rootValues("defaultNamingContext");
        if (told.empty()) told = rootValues("namingContexts");
        if (told.empty() || told.front().empty())
            throw LdapTestFailure{kind::noSuchBase, "There is no base DN.",
                                  "None is entered, and the server doesn't list its own.",
                                  "Enter the base DN."};
        base_ = told.front();
    }
    const auto answer = search(base_, LDAP_SCOPE_BASE, "(objectClass=*)", {LDAP_NO_ATTRS}, 1);
    if (answer.status == LDAP_SUCCESS && ldap_count_entries(ldap_.get(), answer.message.get()) > 0)
        return isGiven ? "\"" + base_ + "\" is there." : "The server's own: \"" + base_ + "\".";
    requireAllowed(answer, "in this way");
    std::string known;
    for (const auto& name : rootValues("namingContexts"))
        known += (known.empty() ? "" : ", ") + ("\"" + name + "\"");
    throw LdapTestFailure{kind::noSuchBase, "The base DN isn't in this directory.",
                          "\"" + base_ + "\": " + wire_->peer() + " says " + answer.text() + "." +
                              (answer.matched.empty() ? "" : " It only has \"" + answer.matched + "\"."),
                          known.empty() ? "Correct the base DN."
                                        : "Correct the base DN; the server holds " + known + "."};
}

LdapTest::Answer LdapTest::await(int message) const {
    const auto seconds = plan_.server.searchTimeout;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
    for (;;) {
        timeval atOnce{0, 0};
        LDAPMessage* raw = nullptr;
        const int type = ldap_result(ldap_.get(), message, LDAP_MSG_ALL, &atOnce, &raw);
        Answer answer;
        answer.message.reset(raw);
        if (type < 0) throw lost(wire_->peer());
        if (type > 0) {
            char *matched = nullptr, *diagnostic = nullptr;
            if (ldap_parse_result(ldap_.get(), raw, &answer.status, &matched, &diagnostic, nullptr, nullptr,
                                  0) != LDAP_SUCCESS)
                throw lost(wire_->peer());
            answer.matched = matched ? matched : "";
            answer.diagnostic = diagnostic ? diagnostic : "";
            ldap_memfree(matched);
            ldap_memfree(diagnostic);
            return answer;
        }
        if (std::chrono::steady_clock::now() >= deadline) throw silent(wire_->peer(), seconds);
        wire_->pause();
    }
}

LdapTest::Answer LdapTest::search(const std::string& base, int scope, const std::string& filter,
                                  const std::vector<std::string>& attributes, int most) const {
    std::vector<char*> names;
    for (const auto& name : attributes)
        names.push_back(const_cast<char*>(name.c_str()));
    names.push_back(nullptr);
    int message = 0;
    const int status = ldap_search_ext(ldap_.get(), base.c_str(), scope, filter.c_str(), names.data(), 0,
                                       nullptr, nullptr, nullptr, most, &message);
    if (status == LDAP_FILTER_ERROR)
        throw LdapTestFailure{kind::other, "The names of classes and attributes can't be used.", filter,
                              "Correct them in the server's section of sssd.conf."};
    if (status != LDAP_SUCCESS) throw lost(wire_->peer());
    return await(message);
}

std::vector<std::string> LdapTest::rootValues(const char* attribute) const {
    const auto answer = search("", LDAP_SCOPE_BASE, "(objectClass=*)", {attribute}, 1);
    auto* entry = ldap_first_entry(ldap_.get(), answer.message.get());
    return entry ? valuesOf(entry, attribute) : std::vector<std::string>();
}

} // namespace corvane::haldend
