#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

#include "haldend/ldap/HostLookup.h"
#include "haldend/ldap/LdapClient.h"
#include "haldend/servers/LdapServer.h"
#include "haldend/servers/LdapTestReport.h"

namespace corvane::haldend {

/// What is to be tested.
struct LdapTestPlan {
    LdapServer server; ///< with the password that is to be used
    LdapTrust trust;
    SssdDomain options;              ///< the saved section's, for the names of classes and attributes
    bool mayShowPassword = false;    ///< it may be sent over a connection that isn't encrypted
    bool wantsBases = false;         ///< only what the server has, instead of all that a machine needs of it
    bool hasReadablePassword = true; ///< false: stored in a form that only SSSD can read
    std::string user, group;         ///< "" for any one
};

/// Tests a server step by step, in a thread of its own; `report` may be asked for from any thread in the
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
    struct Account;

    void takeAll(const std::stop_token& stop);
    template <typename Action>
    void take(const char* step, const Action& action);
    void skip(const char* step, const std::string& detail);
    void note(const char* step, const char* state, const std::string& detail);
    void fail(const LdapFailure& failure);

    std::string connect(const std::stop_token& stop);
    std::string encrypt();
    std::string bind();
    std::string findBase();
    void takeBases();
    std::string findBases(bool isKnown);
    bool keepBases();
    std::string findUser();
    std::string findGroup();
    [[nodiscard]] std::string findAccount(const Account& wanted) const;
    [[noreturn]] void failToFind(const Account& wanted) const;
    [[nodiscard]] std::optional<std::string> described(const LdapEntry& entry, const Account& wanted) const;
    [[nodiscard]] std::optional<std::string> numbersOf(const LdapEntry& entry, const Account& wanted) const;
    [[nodiscard]] std::optional<std::string> computedNumbersOf(const LdapEntry& entry,
                                                               const Account& wanted) const;
    [[nodiscard]] bool isUsable(const std::string& number) const;
    /// Throws where the server has refused to do something for this kind of sign-in.
    void requireAllowed(const LdapAnswer& answer, const std::string& how) const;

    [[nodiscard]] std::string name(const char* key) const;
    [[nodiscard]] std::string baseFor(const char* key) const;
    /// SSSD's BASE?SCOPE?FILTER without what follows the base.
    [[nodiscard]] static std::string baseIn(const std::string& text);

    LdapTestPlan plan_;
    std::unique_ptr<LdapClient> client_;
    std::string base_;
    mutable std::mutex mutex_; ///< of the report
    LdapTestReport report_;
};

} // namespace corvane::haldend
