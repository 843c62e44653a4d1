#pragma once

#include <string>
#include <string_view>

namespace corvane::haldend {

/// Where a server of a directory is reached, as an option of SSSD names it: "ldaps://[::1]:1636/".
struct LdapUri {
    std::string scheme; ///< "ldap" or "ldaps", in whatever case it was written; "" for any other text
    std::string host;   ///< without brackets; the whole text where `scheme` is ""
    int port = 0;       ///< 0: the scheme's usual one

    /// Never fails. A port that is none stays a part of the host.
    [[nodiscard]] static LdapUri from(std::string_view text);
    /// Encrypted from the first byte on.
    [[nodiscard]] bool isLdaps() const { return scheme == "ldaps"; }
    /// "ldap.example.com", "[::1]:1636"; "" where there is no host.
    [[nodiscard]] std::string hostAndPort() const;
    /// The whole URI, without a path.
    [[nodiscard]] std::string text() const { return scheme + "://" + hostAndPort(); }
};

/// The socket in the file system that a URI such as "ldapi://%2Frun%2Fslapd%2Fldapi" names, the LDAP
/// library's own where it names none; "" for a URI of another scheme.
[[nodiscard]] std::string localSocketPath(std::string_view uri);

/// The port that a server is reached on where nothing else is said.
[[nodiscard]] constexpr int usualLdapPort(bool isLdaps) { return isLdaps ? 636 : 389; }

} // namespace corvane::haldend
