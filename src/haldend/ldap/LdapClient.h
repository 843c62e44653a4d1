#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

#include "haldend/ldap/LdapFailure.h"
#include "haldend/ldap/LdapTrust.h"

struct berval;
struct ldap;
struct ldapcontrol;
struct ldapmsg;

namespace corvane::haldend {

class LdapWire;

/// How long a server may take.
struct LdapTimeLimits {
    std::chrono::seconds connect{6}; ///< look-up and connection together; encryption once more
    std::chrono::seconds answer{8};  ///< to one request, from its first byte sent to the last one received
};

/// One entry of an answer. A view: valid only during the call that it is passed to.
class LdapEntry {
public:
    using Visit = std::function<void(std::string_view attribute, std::string_view value)>;

    LdapEntry(ldap* handle, ldapmsg* message) : handle_(handle), message_(message) {}
    /// Its distinguished name.
    [[nodiscard]] std::string name() const;
    /// None where it hasn't the attribute. Case doesn't matter.
    [[nodiscard]] std::vector<std::string> values(const std::string& attribute) const;
    /// All values in the order in which they came, attributes as the server spells them.
    void eachValue(const Visit& visit) const;

private:
    ldap* handle_;
    ldapmsg* message_;
};

/// What is looked for.
struct LdapSearch {
    std::string base;
    int scope = 2; ///< as LDAP numbers them: 0 base, 1 one level, 2 subtree
    std::string filter;
    std::vector<std::string> attributes;
    std::size_t most = 0; ///< entries; 0: unlimited
    int pageSize = 0;     ///< entries that the server sends at a time; 0: all at once
};

/// What a server has said to a request.
struct LdapAnswer {
    int status = 0;         ///< LDAP's number
    std::string diagnostic; ///< in the server's own words
    std::string matched;    ///< how much of a name that isn't there is there
    std::string cookie;     ///< where the next page begins; "" after the last one
    /// "Invalid credentials" (49): “…”, for people.
    [[nodiscard]] std::string text() const;
};

/// A connection to one LDAP server. Nothing here waits longer than its time limit, or than a few hundredths
/// of a second after `stop` is requested, and a server that hangs up doesn't end the process. Each operation
/// throws `LdapFailure` or `Stopped`; what the server refuses is an answer, not a failure. One thread.
class LdapClient {
public:
    using Each = std::function<void(const LdapEntry&)>;

    explicit LdapClient(LdapTimeLimits limits = {}, std::stop_token stop = {});
    LdapClient(const LdapClient&) = delete;
    LdapClient& operator=(const LdapClient&) = delete;
    ~LdapClient();

    void connect(const std::string& host, int port);
    /// To the server of this machine that listens on a socket of the file system.
    void connectLocally(const std::string& path);
    /// Asks for encryption on a connection that is plain so far; `encrypt` comes next.
    void startTls();
    void encrypt(const LdapTrust& trust);
    /// An empty name for an anonymous bind.
    [[nodiscard]] LdapAnswer bind(const std::string& name, const std::string& password);
    /// Calls `each` as the entries come in. What came before a limit of the server or a failure counts.
    [[nodiscard]] LdapAnswer search(const LdapSearch& search, const Each& each);
    /// Of the entry that describes the server itself.
    [[nodiscard]] std::vector<std::string> rootValues(const std::string& attribute);
    /// The base below which the server keeps its entries, by its own word; "" when it doesn't say.
    [[nodiscard]] std::string defaultBase();

    /// "192.0.2.1, port 389", once connected.
    [[nodiscard]] const std::string& peer() const;
    /// For people, once encrypted.
    [[nodiscard]] std::string encryption() const;

private:
    struct Unbind {
        void operator()(ldap* handle) const;
    };
    struct Request;
    void adopt();
    void startClock();
    void requireSent(int status) const;
    [[nodiscard]] LdapAnswer answerTo(const Request& request);
    [[nodiscard]] LdapAnswer page(const LdapSearch& search, std::size_t left, const std::string& cookie,
                                  const Each& each);

    LdapTimeLimits limits_;
    std::stop_token stop_;
    std::chrono::steady_clock::time_point deadline_; ///< of the request under way
    std::string host_;
    std::unique_ptr<LdapWire> wire_; ///< outlives `handle_`
    std::unique_ptr<ldap, Unbind> handle_;
};

/// Text as it must be in a search filter: what has a meaning there is written as a backslash and its number.
[[nodiscard]] std::string filterEscaped(std::string_view text);

/// Whether a server broke a search off because it has found or taken enough.
[[nodiscard]] bool isLdapLimit(int status);

} // namespace corvane::haldend
