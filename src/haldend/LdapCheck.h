#pragma once

#include <ldap.h>

#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

#include "haldend/LdapCheckReport.h"
#include "haldend/LdapServer.h"
#include "haldend/LdapWire.h"

namespace corvane::haldend {

/// What is to be tried.
struct LdapCheckPlan {
    LdapServer server; ///< with the password that is to be used
    WireTrust trust;
    SssdDomain options;              ///< the saved section's, for the names of classes and attributes
    bool wantsBases = false;         ///< only what the server has, instead of all that a machine needs of it
    bool hasReadablePassword = true; ///< false: stored in a form that only SSSD can read
    std::string user, group;         ///< "" for any one
};

/// Tries a server step by step, in a thread of its own; `report` may be asked for from any thread meanwhile.
/// Holds everything that the thread needs.
class LdapCheck {
public:
    explicit LdapCheck(LdapCheckPlan plan);
    LdapCheck(const LdapCheck&) = delete;
    LdapCheck& operator=(const LdapCheck&) = delete;

    /// Ends by itself, or soon after `stop` is requested. Never throws.
    void run(const std::stop_token& stop) noexcept;
    [[nodiscard]] CheckReport report() const;

private:
    struct Unbinder {
        void operator()(LDAP* ldap) const { ldap_unbind_ext_s(ldap, nullptr, nullptr); }
    };
    struct MessageDeleter {
        void operator()(LDAPMessage* message) const { ldap_msgfree(message); }
    };
    using Message = std::unique_ptr<LDAPMessage, MessageDeleter>;
    struct Answer;
    struct Search;

    void takeAll(const std::stop_token& stop);
    template <typename Action>
    void take(const char* step, const Action& action);
    void skip(const char* step, const std::string& detail);
    void note(const char* step, const char* state, const std::string& detail);
    void fail(const CheckFailure& failure);

    std::string connect(const std::stop_token& stop);
    std::string encrypt();
    void startTls();
    std::string bind();
    std::string findBase();
    std::string findBases();
    std::string findUser();
    std::string findGroup();
    std::string findEntry(const Search& wanted);

    [[nodiscard]] Answer await(int message) const;
    [[nodiscard]] Answer search(const std::string& base, int scope, const std::string& filter,
                                const std::vector<std::string>& attributes) const;
    [[nodiscard]] std::vector<std::string> rootValues(const char* attribute) const;
    [[nodiscard]] std::string name(const char* key) const;
    [[nodiscard]] std::string baseFor(const char* key) const;

    LdapCheckPlan plan_;
    std::unique_ptr<LdapWire> wire_; ///< outlives `ldap_`
    std::unique_ptr<LDAP, Unbinder> ldap_;
    std::string host_, base_;
    mutable std::mutex mutex_; ///< of the report
    CheckReport report_;
};

} // namespace corvane::haldend
