#pragma once

#include "haldend/ldap/LdapClient.h"
#include "haldend/ldap/LdapSection.h"

namespace corvane::haldend {

/// An authenticated connection to one of the servers of a section. Every step has a time limit from there.
/// One thread.
class LdapDirectory {
public:
    /// Connects to the first server that answers, and signs in. Throws `Failure` with what each of them said.
    explicit LdapDirectory(LdapSection section, LdapTrust trust = {});
    LdapDirectory(const LdapDirectory&) = delete;
    LdapDirectory& operator=(const LdapDirectory&) = delete;

    /// The base below which the server keeps its entries, by its own word; "" when it doesn't say. Throws
    /// `Failure`.
    [[nodiscard]] std::string defaultBase();
    /// Calls `each` as the entries come in, page by page. With `allowPartial` what came before a limit of
    /// the server or of time will do. Throws `Failure`, and whatever `each` throws.
    void search(LdapSearch search, bool allowPartial, const LdapClient::Each& each);

private:
    void open(const std::string& uri);
    void bind();

    LdapSection section_;
    LdapTrust trust_;
    std::string uri_; ///< of the server that answers
    std::unique_ptr<LdapClient> client_;
};

} // namespace corvane::haldend
