#pragma once

#include <string>
#include <vector>

#include "haldend/files/SssdFile.h"
#include "util/Bytes.h"

namespace corvane::haldend {

/// Where to search and with what extra filter; "" for none.
struct LdapSearchBase {
    std::string base;
    int scope; ///< as LDAP numbers them: 0 base, 1 one level, 2 subtree
    std::string filter;
};

/// A section of sssd.conf with `id_provider = ldap`, as SSSD understands it. What is read of such a section
/// is read here, and nowhere else. Times in seconds.
struct LdapSection {
    static constexpr int usualConnectTimeout = 6;
    static constexpr int usualSearchTimeout = 8;

    LdapSection() = default;
    LdapSection(const LdapSection&) = default;
    LdapSection& operator=(const LdapSection&) = default;
    ~LdapSection() { util::wipe(password); }

    std::string name;              ///< without "domain/"
    std::vector<std::string> uris; ///< tried in this order; "_srv_" stands for a look-up in the DNS
    bool startTls = false;
    std::string caFile;
    std::string bindName, password;                    ///< "" for an anonymous bind; only a plain password
    std::string passwordType = "password";             ///< the form in which it is stored
    bool hasPassword = false;                          ///< in whatever form
    std::string searchBase;                            ///< in SSSD's form, BASE?SCOPE?FILTER
    std::vector<LdapSearchBase> userBases, groupBases; ///< none: the server's default
    std::string schema = "rfc2307";                    ///< in small letters
    bool computesNumbers = false; ///< from security identifiers, instead of reading them from the directory
    int connectTimeout = usualConnectTimeout;
    int searchTimeout = usualSearchTimeout;
    int pageSize = 1000;
    SssdDomain options; ///< all of them, for the names of classes and attributes

    /// Never fails: what the section says oddly is kept as it is, and a number that is none counts as not
    /// set.
    [[nodiscard]] static LdapSection from(const SssdDomain& domain);
    [[nodiscard]] bool isPasswordReadable() const { return passwordType == "password"; }
};

} // namespace corvane::haldend
