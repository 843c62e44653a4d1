#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "haldend/servers/LdapServer.h"
#include "util/Containers.h"

namespace corvane::haldend {

/// One server of a request, its absent keys filled in from what is saved or from the defaults.
struct LdapServerPut {
    LdapServerPut() = default;
    LdapServerPut(const LdapServerPut&) = default;
    LdapServerPut& operator=(const LdapServerPut&) = default;
    ~LdapServerPut() {
        if (password) util::wipe(*password);
    }

    LdapServer server;                   ///< with the saved password
    std::optional<LdapServer> before;    ///< the saved server that it stands for, none for a new one
    std::optional<std::string> password; ///< none: as it is; empty: to be taken away
};

/// What is to become of a machine's servers, checked as a whole.
struct LdapServersRequest {
    std::vector<LdapServerPut> put;
    std::vector<std::string> remove;

    /// The section's name afterwards, none when it is removed. A name that isn't spoken of stays.
    [[nodiscard]] std::optional<std::string> nameAfter(const std::string& section) const;
};

/// Reads the "put" and "remove" of a request to write. `saved` are the machine's sections, of all kinds.
/// Throws `Failure` in plain words for anything that couldn't be written and read back as it was meant.
[[nodiscard]] LdapServersRequest writeRequestFrom(const util::Dictionary& values,
                                                  const std::vector<SssdDomain>& saved);
/// Reads one server that is to be tried: it may have no name yet. Throws as above.
[[nodiscard]] LdapServerPut tryRequestFrom(const util::Dictionary& server,
                                           const std::vector<SssdDomain>& saved);
/// A text of the request, "" where it is absent. Throws when it is no text, too long, or holds line ends and
/// the like.
[[nodiscard]] std::string plainTextIn(const util::Dictionary& values, const char* key);
/// Overwrites the password in what was read from a request. Nobody else may hold those values.
void wipePasswords(const util::Value& request) noexcept;

} // namespace corvane::haldend
