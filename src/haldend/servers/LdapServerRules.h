#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace corvane::haldend {

// What a value of an LDAP server may be. Each throws `Failure` with cause, evidence and next step. All of
// them refuse line ends and other control characters, with which a value would become lines of its own in
// sssd.conf, and blanks at the ends, which SSSD doesn't read.

/// `label` names the value in messages, as in "The base DN".
void requirePlainText(const std::string& label, std::string_view text);
/// The name of a section: ASCII letters, digits, and ".", "_", "-" behind the first.
void requireServerName(std::string_view name);
/// A host name, or an IPv4 or IPv6 address without brackets. No port, no scheme.
void requireAddress(std::string_view address);
/// RFC 4514, and no "?", with which SSSD begins a scope.
void requireDN(const std::string& label, const std::string& text);
void requireFilePath(const std::string& label, std::string_view path);
void requireRange(const std::string& label, std::int64_t number, std::int64_t least, std::int64_t most);
/// As `requirePlainText`; the message never shows it.
void requirePassword(std::string_view password);

} // namespace corvane::haldend
