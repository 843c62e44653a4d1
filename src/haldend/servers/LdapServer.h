#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "haldend/files/SssdFile.h"
#include "haldend/files/SssdLines.h"
#include "util/Bytes.h"

namespace corvane::haldend {

/// An LDAP server as administrators see it: an `LdapSection` in the words of sdk/LdapServerCalls.h. Times in
/// seconds. Two are equal when the section of either would say the same.
struct LdapServer {
    LdapServer() = default;
    LdapServer(const LdapServer&) = default;
    LdapServer& operator=(const LdapServer&) = default;
    ~LdapServer() { util::wipe(password); }

    std::string name;                   ///< of the section, without "domain/"
    std::vector<std::string> addresses; ///< without scheme; what isn't a host's address stands as it is
    int port = 0;                       ///< 0: the security mode's standard port
    std::string security = "startTLS";
    std::string caFile, baseDN, bindDN, password;
    bool hasPassword = false; ///< in whatever form
    std::string schema = "rfc2307";
    bool computesNumbers = false; ///< from security identifiers, instead of reading them from the directory
    int connectTimeout = 6;
    int searchTimeout = 8;

    /// `domain` is a section with `id_provider = ldap`. Never fails: what it says oddly is kept as it is.
    [[nodiscard]] static LdapServer from(const SssdDomain& domain);
    /// The addresses with scheme and port, in their order, as SSSD and the LDAP library take them.
    [[nodiscard]] std::vector<std::string> uris() const;
};

[[nodiscard]] bool isLdapServer(const SssdDomain& domain);

/// Makes the section `[domain/NAME]`, at the end when it is missing, say what `server` says. `before` is what
/// it says now, none for a new one: lines about what doesn't differ keep their bytes, and what is SSSD's
/// default isn't written where it didn't stand. `password`: none to leave the stored one, empty to take it
/// away.
void writeSection(SssdLines& lines, const LdapServer& server, const std::optional<LdapServer>& before,
                  const std::optional<std::string>& password);

} // namespace corvane::haldend
