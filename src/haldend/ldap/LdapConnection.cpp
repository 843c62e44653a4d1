#include "haldend/ldap/LdapConnection.h"

#include <algorithm>
#include <ldap.h>
#include <optional>

#include "haldend/files/LdapUri.h"
#include "haldend/ldap/HandshakeGuard.h"
#include "haldend/ldap/LdapLibrary.h"
#include "haldend/storage/Failure.h"

namespace corvane::haldend {

struct LdapConnection::Handle {
    LDAP* ldap = nullptr;
    std::string uri;

    explicit Handle(std::string address) : uri(std::move(address)) {}
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    ~Handle() {
        if (ldap) ldap_unbind_ext_s(ldap, nullptr, nullptr);
    }

    void open(const LdapSettings& settings);
    void setTimes(const LdapSettings& settings);
    void setTls(const LdapSettings& settings);
    void startTls();
    void bind(const LdapSettings& settings);
    [[nodiscard]] std::string diagnostics() const;
    void require(int status, const std::string& step) const;
    [[nodiscard]] std::vector<AttributeMap> entriesIn(LDAPMessage* message, const LdapSearch& search) const;
    [[nodiscard]] std::vector<std::string> valuesOf(LDAPMessage* entry, const std::string& attribute) const;
};

namespace {

struct MessageDeleter {
    void operator()(LDAPMessage* message) const { ldap_msgfree(message); }
};
using Message = std::unique_ptr<LDAPMessage, MessageDeleter>;

struct ControlDeleter {
    void operator()(LDAPControl* control) const { ldap_control_free(control); }
};
using Control = std::unique_ptr<LDAPControl, ControlDeleter>;

std::string nextStep(int status, const std::string& uri) {
    switch (status) {
    case LDAP_SERVER_DOWN:
    case LDAP_CONNECT_ERROR:
        return "Check whether the server runs, whether its address and port are right, and whether a "
               "firewall lies between; with TLS, whether its certificate is trusted here.";
    case LDAP_TIMEOUT:
        return "Check whether the server is overloaded or a firewall is dropping the replies, and try again.";
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
    case LDAP_FILTER_ERROR:
        return "Correct the search filter in the configuration of " + uri + ".";
    default:
        return "See the server's log for details.";
    }
}

/// A failure on the way from one server to the next.
Failure ldapFailure(int status, const std::string& uri, const std::string& step,
                    const std::string& diagnostics) {
    const bool isRefusal = status == LDAP_INVALID_CREDENTIALS || status == LDAP_INSUFFICIENT_ACCESS ||
                           status == LDAP_INAPPROPRIATE_AUTH;
    return {isRefusal ? halden::ErrorCode::credentials : halden::ErrorCode::nodeUnreachable,
            "The directory server returned an error.",
            uri + ": trying to " + step + " failed: " + ldap_err2string(status) +
                (diagnostics.empty() ? "" : " (" + diagnostics + ")") + ".",
            nextStep(status, uri)};
}

/// Results of a search that brought what it could before a limit.
bool isLimit(int status) {
    return status == LDAP_SIZELIMIT_EXCEEDED || status == LDAP_TIMELIMIT_EXCEEDED ||
           status == LDAP_ADMINLIMIT_EXCEEDED || status == LDAP_TIMEOUT;
}

timeval secondsAsTime(int seconds) { return {seconds, 0}; }

} // namespace

void LdapConnection::Handle::open(const LdapSettings& settings) {
    prepareLdapLibrary();
    require(ldap_initialize(&ldap, uri.c_str()), "understand the address");
    const int version = LDAP_VERSION3;
    ldap_set_option(ldap, LDAP_OPT_PROTOCOL_VERSION, &version);
    ldap_set_option(ldap, LDAP_OPT_REFERRALS, LDAP_OPT_OFF);
    ldap_set_option(ldap, LDAP_OPT_RESTART, LDAP_OPT_ON);
    setTimes(settings);
    setTls(settings);
    const bool isEncrypted = settings.startTls || LdapUri::from(uri).isLdaps();
    std::optional<HandshakeGuard> guard;
    if (isEncrypted)
        guard.emplace(ldap, std::chrono::seconds(settings.networkTimeout + settings.operationTimeout));
    if (settings.startTls && !LdapUri::from(uri).isLdaps()) startTls();
    bind(settings);
}

void LdapConnection::Handle::setTimes(const LdapSettings& settings) {
    const auto network = secondsAsTime(settings.networkTimeout);
    const auto operation = secondsAsTime(settings.operationTimeout);
    ldap_set_option(ldap, LDAP_OPT_NETWORK_TIMEOUT, &network);
    ldap_set_option(ldap, LDAP_OPT_TIMEOUT, &operation);
}

void LdapConnection::Handle::setTls(const LdapSettings& settings) {
    const auto set = [&](int option, const std::string& text, const char* name) {
        if (!text.empty())
            require(ldap_set_option(ldap, option, text.c_str()), std::string("use ") + name + " " + text);
    };
    set(LDAP_OPT_X_TLS_CACERTFILE, settings.caFile, "the certificates of");
    set(LDAP_OPT_X_TLS_CACERTDIR, settings.caFolder, "the certificates in");
    static const std::map<std::string, int, std::less<>> levels{{"never", LDAP_OPT_X_TLS_NEVER},
                                                                {"allow", LDAP_OPT_X_TLS_ALLOW},
                                                                {"try", LDAP_OPT_X_TLS_TRY},
                                                                {"demand", LDAP_OPT_X_TLS_DEMAND},
                                                                {"hard", LDAP_OPT_X_TLS_HARD}};
    const auto level = levels.find(settings.requireCertificate);
    const int wanted = level == levels.end() ? LDAP_OPT_X_TLS_HARD : level->second;
    ldap_set_option(ldap, LDAP_OPT_X_TLS_REQUIRE_CERT, &wanted);
    const bool usesTls = settings.startTls || LdapUri::from(uri).isLdaps();
    const int forClient = 0; // without this the options above are only remembered, not used
    if (usesTls)
        require(ldap_set_option(ldap, LDAP_OPT_X_TLS_NEWCTX, &forClient), "prepare an encrypted connection");
}

void LdapConnection::Handle::startTls() {
    require(ldap_start_tls_s(ldap, nullptr, nullptr), "encrypt the connection");
}

void LdapConnection::Handle::bind(const LdapSettings& settings) {
    berval password{settings.password.size(), const_cast<char*>(settings.password.data())};
    require(ldap_sasl_bind_s(ldap, settings.bindName.c_str(), LDAP_SASL_SIMPLE, &password, nullptr, nullptr,
                             nullptr),
            settings.bindName.empty() ? "connect" : "sign in as " + settings.bindName);
}

std::string LdapConnection::Handle::diagnostics() const {
    char* text = nullptr;
    if (!ldap || ldap_get_option(ldap, LDAP_OPT_DIAGNOSTIC_MESSAGE, &text) != LDAP_OPT_SUCCESS || !text)
        return {};
    std::string result = text;
    ldap_memfree(text);
    return result;
}

void LdapConnection::Handle::require(int status, const std::string& step) const {
    if (status != LDAP_SUCCESS) throw ldapFailure(status, uri, step, diagnostics());
}

std::vector<AttributeMap> LdapConnection::Handle::entriesIn(LDAPMessage* message,
                                                            const LdapSearch& search) const {
    std::vector<AttributeMap> entries;
    for (auto* entry = ldap_first_entry(ldap, message); entry; entry = ldap_next_entry(ldap, entry)) {
        AttributeMap attributes;
        for (const auto& name : search.attributes)
            if (auto values = valuesOf(entry, name); !values.empty())
                attributes.emplace(name, std::move(values));
        entries.push_back(std::move(attributes));
    }
    return entries;
}

std::vector<std::string> LdapConnection::Handle::valuesOf(LDAPMessage* entry,
                                                          const std::string& attribute) const {
    std::vector<std::string> values;
    auto** found = ldap_get_values_len(ldap, entry, attribute.c_str());
    for (auto** value = found; value && *value; ++value)
        values.emplace_back((*value)->bv_val, (*value)->bv_len);
    ldap_value_free_len(found);
    return values;
}

LdapConnection::LdapConnection(const LdapSettings& settings) : settings_(settings) {
    std::string reasons;
    for (std::size_t i = 0; i < settings.uris.size(); ++i) {
        try {
            handle_ = std::make_unique<Handle>(settings.uris[i]);
            handle_->open(settings);
            return;
        } catch (const Failure& failure) {
            reasons += (reasons.empty() ? "" : " ") + failure.error().reason;
            if (i + 1 < settings.uris.size()) continue;
            auto error = failure.error();
            error.description =
                "The directory of section [domain/" + settings.domain.name + "] can't be reached.";
            error.reason = reasons;
            throw Failure(error);
        }
    }
}

LdapConnection::~LdapConnection() = default;

std::string LdapConnection::defaultBase() {
    const std::vector<std::string> names{"defaultNamingContext", "namingContexts"};
    const auto entries = search({{"", LDAP_SCOPE_BASE, ""}, "(objectClass=*)", names, 0, false});
    for (const auto& name : names)
        if (const auto found = entries.empty() ? AttributeMap::const_iterator() : entries.front().find(name);
            !entries.empty() && found != entries.front().end())
            return found->second.front();
    return {};
}

namespace {

/// Where a paged search has got to. The server's cookie is its own.
class Pages {
public:
    explicit Pages(LDAP* ldap) : ldap_(ldap) {}
    Pages(const Pages&) = delete;
    Pages& operator=(const Pages&) = delete;
    ~Pages() { ber_memfree(cookie_.bv_val); }

    [[nodiscard]] Control control(int size) {
        LDAPControl* control = nullptr;
        if (ldap_create_page_control(ldap_, size, cookie_.bv_val ? &cookie_ : nullptr, 0, &control) !=
            LDAP_SUCCESS)
            return {};
        return Control(control);
    }
    /// Takes the cookie over. False after the last page, and where the server knows no pages.
    [[nodiscard]] bool turn(LDAPMessage* message) {
        LDAPControl** controls = nullptr;
        ldap_parse_result(ldap_, message, nullptr, nullptr, nullptr, nullptr, &controls, 0);
        ber_memfree(cookie_.bv_val);
        cookie_ = {0, nullptr};
        if (auto* answer =
                controls ? ldap_control_find(LDAP_CONTROL_PAGEDRESULTS, controls, nullptr) : nullptr) {
            ber_int_t estimate = 0;
            ldap_parse_pageresponse_control(ldap_, answer, &estimate, &cookie_);
        }
        ldap_controls_free(controls);
        return cookie_.bv_len > 0;
    }

private:
    LDAP* ldap_;
    berval cookie_{0, nullptr};
};

} // namespace

std::vector<AttributeMap> LdapConnection::search(const LdapSearch& search) {
    std::vector<char*> names;
    for (const auto& name : search.attributes)
        names.push_back(const_cast<char*>(name.c_str()));
    names.push_back(nullptr);
    std::vector<AttributeMap> entries;
    Pages pages(handle_->ldap);
    for (bool more = true; more;) {
        const auto left = search.maximumResults == 0 ? 0 : search.maximumResults - entries.size();
        const auto size = left == 0 ? settings_.pageSize
                                    : std::min<int>(settings_.pageSize,
                                                    static_cast<int>(std::min<std::size_t>(left, 100000)));
        const auto page = pages.control(size);
        LDAPControl* controls[] = {search.base.scope == LDAP_SCOPE_BASE ? nullptr : page.get(), nullptr};
        auto patience = secondsAsTime(settings_.operationTimeout);
        LDAPMessage* raw = nullptr;
        const int status = ldap_search_ext_s(handle_->ldap, search.base.base.c_str(), search.base.scope,
                                             search.filter.c_str(), names.data(), 0, controls, nullptr,
                                             &patience, static_cast<int>(left), &raw);
        const Message message(raw);
        if (message)
            for (auto& entry : handle_->entriesIn(message.get(), search))
                entries.push_back(std::move(entry));
        const bool isFull = search.maximumResults != 0 && entries.size() >= search.maximumResults;
        if (isFull) entries.resize(search.maximumResults);
        if (isFull || (isLimit(status) && search.allowPartial)) return entries;
        handle_->require(status, "search below \"" + search.base.base + "\"");
        more = pages.turn(message.get());
    }
    return entries;
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

} // namespace corvane::haldend
