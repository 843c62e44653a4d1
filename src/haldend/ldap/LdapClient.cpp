#include "haldend/ldap/LdapClient.h"

#include <ldap.h>
#include <openldap.h>

#include <algorithm>

#include "haldend/ldap/LdapLibrary.h"
#include "haldend/ldap/LdapWire.h"
#include "sdk/LdapServerCalls.h"

namespace corvane::haldend {
namespace {

namespace kind = sdk::ldap::failure;
using Clock = std::chrono::steady_clock;

struct Release {
    void operator()(LDAPMessage* message) const { ldap_msgfree(message); }
    void operator()(LDAPControl* control) const { ldap_control_free(control); }
    void operator()(BerElement* element) const { ber_free(element, 0); }
};
using Message = std::unique_ptr<LDAPMessage, Release>;
using Control = std::unique_ptr<LDAPControl, Release>;
using Element = std::unique_ptr<BerElement, Release>;

LdapFailure lost(const std::string& peer) {
    return {kind::other, "The server has closed the connection.",
            peer + ": the connection ended before the answer.",
            "See the server's log. A server that only speaks LDAPS drops clients that don't encrypt "
            "immediately."};
}

LdapFailure silent(const std::string& peer, std::chrono::seconds limit) {
    return {
        kind::timeout, "The server accepts the connection but doesn't respond.",
        peer + ": no answer within " + inSeconds(limit.count()) + ".",
        "Check whether a directory server, and not something else, listens on that port, and whether it is "
        "overloaded; or choose a longer time limit."};
}

std::string taken(char* text) {
    std::string result = text ? text : "";
    ldap_memfree(text);
    return result;
}

std::string_view viewOf(const berval& value) { return {value.bv_val, value.bv_len}; }

/// "" where the server knows no pages.
std::string cookieIn(LDAP* handle, LDAPControl** controls) {
    auto* reply = controls ? ldap_control_find(LDAP_CONTROL_PAGEDRESULTS, controls, nullptr) : nullptr;
    berval cookie{0, nullptr};
    ber_int_t estimate = 0;
    if (!reply || ldap_parse_pageresponse_control(handle, reply, &estimate, &cookie) != LDAP_SUCCESS)
        return {};
    std::string text(viewOf(cookie));
    ber_memfree(cookie.bv_val);
    return text;
}

Control pageControl(LDAP* handle, std::size_t size, const std::string& cookie) {
    berval place{cookie.size(), const_cast<char*>(cookie.data())};
    LDAPControl* control = nullptr;
    const auto number = static_cast<ber_int_t>(size);
    if (ldap_create_page_control(handle, number, cookie.empty() ? nullptr : &place, 0, &control) !=
        LDAP_SUCCESS)
        return {};
    return Control(control);
}

LdapAnswer parsed(LDAP* handle, LDAPMessage* message, const std::string& peer) {
    LdapAnswer answer;
    char *matched = nullptr, *diagnostic = nullptr;
    LDAPControl** controls = nullptr;
    if (ldap_parse_result(handle, message, &answer.status, &matched, &diagnostic, nullptr, &controls, 0) !=
        LDAP_SUCCESS)
        throw lost(peer);
    answer.matched = taken(matched);
    answer.diagnostic = taken(diagnostic);
    answer.cookie = cookieIn(handle, controls);
    ldap_controls_free(controls);
    return answer;
}

} // namespace

std::string LdapEntry::name() const { return taken(ldap_get_dn(handle_, message_)); }

std::vector<std::string> LdapEntry::values(const std::string& attribute) const {
    std::vector<std::string> values;
    if (attribute.empty()) return values;
    auto** found = ldap_get_values_len(handle_, message_, attribute.c_str());
    for (auto** value = found; value && *value; ++value)
        values.emplace_back(viewOf(**value));
    ldap_value_free_len(found);
    return values;
}

void LdapEntry::eachValue(const Visit& visit) const {
    BerElement* raw = nullptr;
    berval name{0, nullptr};
    if (ldap_get_dn_ber(handle_, message_, &raw, &name) != LDAP_SUCCESS) return;
    const Element element(raw);
    for (;;) {
        berval* values = nullptr; // what they point to belongs to the message
        if (ldap_get_attribute_ber(handle_, message_, raw, &name, &values) != LDAP_SUCCESS || !name.bv_val)
            return;
        for (auto* value = values; value && value->bv_val; ++value)
            visit(viewOf(name), viewOf(*value));
        ber_memfree(values);
    }
}

std::string LdapAnswer::text() const {
    return std::string("\"") + ldap_err2string(status) + "\" (" + std::to_string(status) + ")" +
           (diagnostic.empty() ? "" : ": " + diagnostic);
}

/// A request that is on its way, and what is to be done with the entries that it brings.
struct LdapClient::Request {
    int number;
    std::size_t most = 0;
    const Each* each = nullptr;
};

void LdapClient::Unbind::operator()(ldap* handle) const { ldap_unbind_ext_s(handle, nullptr, nullptr); }

LdapClient::LdapClient(LdapTimeLimits limits, std::stop_token stop)
    : limits_(limits), stop_(std::move(stop)) {}

LdapClient::~LdapClient() = default;

const std::string& LdapClient::peer() const { return wire_->peer(); }

std::string LdapClient::encryption() const { return wire_->encryption(); }

void LdapClient::connect(const std::string& host, int port) {
    prepareLdapLibrary();
    host_ = host;
    wire_ = std::make_unique<LdapWire>(stop_);
    wire_->connect(host, port, limits_.connect);
    adopt();
}

void LdapClient::connectLocally(const std::string& path) {
    prepareLdapLibrary();
    host_ = path;
    wire_ = std::make_unique<LdapWire>(stop_);
    wire_->connectLocally(path, limits_.connect);
    adopt();
}

/// Makes the LDAP library read and write through the wire.
void LdapClient::adopt() {
    LDAP* handle = nullptr;
    if (ldap_init_fd(wire_->socket(), LDAP_PROTO_EXT, nullptr, &handle) != LDAP_SUCCESS)
        throw LdapFailure{kind::other, "The LDAP library can't be used.", wire_->peer(), "Try again."};
    handle_.reset(handle);
    const int version = LDAP_VERSION3;
    ldap_set_option(handle, LDAP_OPT_PROTOCOL_VERSION, &version);
    ldap_set_option(handle, LDAP_OPT_REFERRALS, LDAP_OPT_OFF);
    Sockbuf* socket = nullptr;
    ldap_get_option(handle, LDAP_OPT_SOCKBUF, &socket);
    ber_sockbuf_add_io(socket, LdapWire::hooks(), LBER_SBIOD_LEVEL_PROVIDER, wire_.get());
}

/// One time limit for a request and its answer.
void LdapClient::startClock() {
    deadline_ = Clock::now() + limits_.answer;
    wire_->setWriteDeadline(deadline_);
}

void LdapClient::requireSent(int status) const {
    if (stop_.stop_requested()) throw Stopped();
    if (status == LDAP_SUCCESS) return;
    throw Clock::now() < deadline_ ? lost(wire_->peer()) : silent(wire_->peer(), limits_.answer);
}

void LdapClient::startTls() {
    int number = 0;
    startClock();
    requireSent(
        ldap_extended_operation(handle_.get(), LDAP_EXOP_START_TLS, nullptr, nullptr, nullptr, &number));
    const auto answer = answerTo({number});
    if (answer.status != LDAP_SUCCESS)
        throw LdapFailure{kind::tlsUnsupported, "The server can't encrypt with StartTLS.",
                          wire_->peer() + " says " + answer.text() + ".",
                          "Try LDAPS, or have the server's administrator give the server a certificate."};
}

void LdapClient::encrypt(const LdapTrust& trust) { wire_->encrypt(host_, trust, limits_.connect); }

LdapAnswer LdapClient::bind(const std::string& name, const std::string& password) {
    berval secret{password.size(), const_cast<char*>(password.data())};
    int number = 0;
    startClock();
    requireSent(
        ldap_sasl_bind(handle_.get(), name.c_str(), LDAP_SASL_SIMPLE, &secret, nullptr, nullptr, &number));
    return answerTo({number});
}

LdapAnswer LdapClient::search(const LdapSearch& search, const Each& each) {
    std::size_t count = 0;
    std::string cookie;
    for (;;) {
        const auto left = search.most == 0 ? 0 : search.most - count;
        auto answer = page(search, left, cookie, [&](const LdapEntry& entry) {
            ++count;
            each(entry);
        });
        const bool isFull = search.most != 0 && count >= search.most;
        if (answer.status != LDAP_SUCCESS || answer.cookie.empty() || isFull) return answer;
        cookie = std::move(answer.cookie);
    }
}

LdapAnswer LdapClient::page(const LdapSearch& search, std::size_t left, const std::string& cookie,
                            const Each& each) {
    std::vector<char*> names;
    for (const auto& name : search.attributes)
        names.push_back(const_cast<char*>(name.c_str()));
    names.push_back(nullptr);
    const auto size = static_cast<std::size_t>(search.pageSize);
    const auto control = search.pageSize > 0
                             ? pageControl(handle_.get(), left == 0 ? size : std::min(size, left), cookie)
                             : Control();
    LDAPControl* controls[] = {control.get(), nullptr};
    // Servers count the entries of earlier pages, too.
    const auto limit = static_cast<int>(std::min<std::size_t>(search.most, LDAP_MAXINT));
    int number = 0;
    startClock();
    const int status =
        ldap_search_ext(handle_.get(), search.base.c_str(), search.scope, search.filter.c_str(), names.data(),
                        0, controls, nullptr, nullptr, limit, &number);
    if (status == LDAP_FILTER_ERROR)
        throw LdapFailure{kind::other, "The names of classes and attributes can't be used.", search.filter,
                          "Correct them in the server's section of sssd.conf."};
    requireSent(status);
    return answerTo({number, left, &each});
}

/// Reads message by message, so that no answer is ever kept whole; when enough has come, the server is told
/// to stop.
LdapAnswer LdapClient::answerTo(const Request& request) {
    std::size_t count = 0;
    for (;;) {
        timeval atOnce{0, 0};
        LDAPMessage* raw = nullptr;
        const int type = ldap_result(handle_.get(), request.number, LDAP_MSG_ONE, &atOnce, &raw);
        const Message message(raw);
        if (stop_.stop_requested()) throw Stopped();
        if (type < 0) throw lost(wire_->peer());
        if (Clock::now() >= deadline_) throw silent(wire_->peer(), limits_.answer);
        if (type == 0) {
            wire_->pause();
        } else if (type == LDAP_RES_SEARCH_ENTRY) {
            if (request.each) (*request.each)(LdapEntry(handle_.get(), raw));
            if (++count != request.most) continue;
            ldap_abandon_ext(handle_.get(), request.number, nullptr, nullptr);
            return {};
        } else if (type != LDAP_RES_SEARCH_REFERENCE && type != LDAP_RES_INTERMEDIATE) {
            return parsed(handle_.get(), raw, wire_->peer());
        }
    }
}

std::vector<std::string> LdapClient::rootValues(const std::string& attribute) {
    std::vector<std::string> values;
    const auto answer = search({"", LDAP_SCOPE_BASE, "(objectClass=*)", {attribute}},
                               [&](const LdapEntry& entry) { values = entry.values(attribute); });
    return answer.status == LDAP_SUCCESS ? values : std::vector<std::string>();
}

std::string LdapClient::defaultBase() {
    for (const auto* name : {"defaultNamingContext", "namingContexts"})
        if (const auto values = rootValues(name); !values.empty() && !values.front().empty())
            return values.front();
    return {};
}

std::string filterEscaped(std::string_view text) {
    static constexpr char digits[] = "0123456789abcdef";
    std::string result;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '*' || c == '(' || c == ')' || c == '\\' || byte < 0x20 || byte >= 0x7F)
            result.append({'\\', digits[byte >> 4U], digits[byte & 15U]});
        else
            result += c;
    }
    return result;
}

bool isLdapLimit(int status) {
    return status == LDAP_SIZELIMIT_EXCEEDED || status == LDAP_TIMELIMIT_EXCEEDED ||
           status == LDAP_ADMINLIMIT_EXCEEDED;
}

} // namespace corvane::haldend
