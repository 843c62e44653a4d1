#pragma once

#include <ldap.h>

#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

#include "haldend/ldap/LdapTestReport.h"
#include "haldend/ldap/LdapWire.h"
#include "haldend/servers/LdapServer.h"

namespace corvane::haldend {

/// What is to be tried.
struct LdapTestPlan {
    LdapServer server; ///< with the password that is to be used
    WireTrust trust;
    SssdDomain options;              ///< the saved section's, for the names of classes and attributes
    bool mayShowPassword = false;    ///< it may be sent over a connection that isn't encrypted
    bool wantsBases = false;         ///< only what the server has, instead of all that a machine needs of it
    bool hasReadablePassword = true; ///< false: stored in a form that only SSSD can read
    std::string user, group;         ///< "" for any one
};

/// Tries a server step by step, in a thread of its own; `report` may be asked for from any thread in the
/// meantime. Holds everything that the thread needs.
class LdapTest {
public:
    explicit LdapTest(LdapTestPlan plan);
    LdapTest(const LdapTest&) = delete;
    LdapTest& operator=(const LdapTest&) = delete;

    /// Ends by itself, or soon after `stop` is requested. Never throws.
    void run(const std::stop_token& stop) noexcept;
    [[nodiscard]] LdapTestReport report() const;

private:
    struct Unbinder {
        void operator()(LDAP* ldap) const { ldap_unbind_ext_s(ldap, nullptr, nullptr); }
    };
    struct MessageDeleter {
        void operator()(LDAPMessage* message) const { ldap_msgfree(message); }
    };
    using Message = std::unique_ptr<LDAPMessage, MessageDeleter>;
    /// What the server has said to one request.
    struct Answer {
        int status = 0;
        std::string diagnostic; ///< in the server's own words
        std::string matched;    ///< how much of a name that isn't there is there
        Message message;
        /// "Invalid credentials (49), “…”" for people.
        [[nodiscard]] std::string text() const;
    };
    struct Account;

    void takeAll(const std::stop_token& stop);
    template <typename Action>
    void take(const char* step, const Action& action);
    void skip(const char* step, const std::string& detail);
    void note(const char* step, const char* state, const std::string& detail);
    void fail(const LdapTestFailure& failure);

    std::string connect(const std::stop_token& stop);
    std::string encrypt();
    void startTls();
    std::string bind();
    std::string findBase();
    void takeBases();
    std::string findBases(bool isKnown);
    bool keepBases();
    std::string findUser();
    std::string findGroup();
    [[nodiscard]] std::string findAccount(const Account& wanted) const;
    [[noreturn]] void failToFind(const Account& wanted) const;
    [[nodiscard]] std::optional<std::string> described(LDAPMessage* entry, const Account& wanted) const;
    [[nodiscard]] std::optional<std::string> numbersOf(LDAPMessage* entry, const Account& wanted) const;
    [[nodiscard]] std::optional<std::string> computedNumbersOf(LDAPMessage* entry,
                                                               const Account& wanted) const;
    [[nodiscard]] bool isUsable(const std::string& number) const;
    /// Throws where the server has refused to do something for this kind of sign-in.
    void requireAllowed(const Answer& answer, const std::string& how) const;

    [[nodiscard]] Answer await(int message) const;
    [[nodiscard]] Answer search(const std::string& base, int scope, const std::string& filter,
                                const std::vector<std::string>& attributes, int most) const;
    [[nodiscard]] std::vector<std::string> valuesOf(LDAPMessage* entry, const std::string& attribute) const;
    [[nodiscard]] std::vector<std::string> rootValues(const char* attribute) const;
    [[nodiscard]] std::string name(const char* key) const;
    [[nodiscard]] std::string baseFor(const char* key) const;
    /// SSSD's BASE?SCOPE?FILTER without what follows the base.
    [[nodiscard]] static std::string baseIn(const std::string& text);

    LdapTestPlan plan_;
    std::unique_ptr<LdapWire> wire_; ///< outlives `ldap_`
    std::unique_ptr<LDAP, Unbinder> ldap_;
    std::string host_, base_;
    mutable std::mutex mutex_; ///< of the report
    LdapTestReport report_;
};

} // namespace corvane::haldend
