#pragma once

#include <optional>
#include <string>
#include <vector>

#include "sdk/Host.h"

namespace corvane::connectors::ldap {

constexpr int plainPort = 389; ///< also with StartTLS
constexpr int ldapsPort = 636;

/// Overwrites a secret in a way that an optimiser may not leave out.
void wipe(std::string& secret) noexcept;

/// One LDAP server as its settings say. A value; a password that was typed is overwritten when it is
/// destroyed.
struct Server {
    Server() = default;
    Server(const Server&) = default;
    Server(Server&&) = default;
    Server& operator=(const Server&) = default;
    Server& operator=(Server&&) = default;
    ~Server();

    std::string name;                   ///< the machine's own name for it; "" to be made of the first address
    std::string savedName;              ///< the name under which it is saved; "" for a new server
    std::string node;                   ///< the directory node that was saved; "" for a new server
    std::vector<std::string> addresses; ///< asked in this order
    int port = 0;                       ///< 0: the standard one
    std::string security;               ///< one of sdk::ldap::security
    std::string caFile;
    std::string baseDN;
    std::string bindDN;
    bool hasPassword = false;            ///< one is saved
    std::optional<std::string> password; ///< typed and not saved yet; "" takes the saved one away
    std::string schema;                  ///< one of sdk::ldap::schema
    bool computesNumbers = false;        ///< from security identifiers; else the directory stores them
    int connectTimeout = 6;              ///< seconds
    int searchTimeout = 8;               ///< seconds

    /// A server with the defaults: StartTLS, RFC 2307, an anonymous bind.
    [[nodiscard]] static Server fresh();
    /// What the directory service says about a saved one.
    [[nodiscard]] static Server from(const sdk::Object& dictionary);
    /// The request's form; a password only where one was typed.
    [[nodiscard]] sdk::Object dictionary(const sdk::Host& host) const;

    /// What people call it: its first address, else its name.
    [[nodiscard]] std::string title() const;
    /// One line about how it is reached: "port 389, StartTLS, base dc=example,dc=com".
    [[nodiscard]] std::string summary() const;
    /// A password of the sign-in account would pass over the network readable by anybody.
    [[nodiscard]] bool showsPassword() const;
    /// Reached, asked and read in the same way: the same directory twice.
    [[nodiscard]] bool isSameDirectory(const Server& other) const;
    /// The port that is really used.
    [[nodiscard]] int effectivePort() const;

    friend bool operator==(const Server&, const Server&) = default;
};

/// The security mode in people's words.
[[nodiscard]] std::string securityTitle(const std::string& security);

} // namespace corvane::connectors::ldap
