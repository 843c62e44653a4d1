#include "haldend/servers/LdapServerRules.h"

#include <arpa/inet.h>

#include <algorithm>
#include <ldap.h>

#include "haldend/storage/Failure.h"

namespace corvane::haldend {
namespace {

constexpr std::size_t maximumLength = 1024;
constexpr std::size_t maximumNameLength = 128;
constexpr std::size_t maximumHostLength = 253;
constexpr std::size_t maximumLabelLength = 63;

Failure refused(const std::string& reason, const std::string& nextStep) {
    return {halden::ErrorCode::parameter, "The LDAP server can't be used as it is described.", reason,
            nextStep};
}

std::string shown(std::string_view text) {
    std::string result = "\"";
    for (const unsigned char c : text.substr(0, 80))
        result += c < 0x20 || c == 0x7F ? '?' : static_cast<char>(c);
    return result + (text.size() > 80 ? "…\"" : "\"");
}

bool isAsciiLetterOrDigit(unsigned char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// Bytes of the UTF-8 character that begins with `first`, 0 for none.
std::size_t characterLength(unsigned char first) {
    if (first < 0x80) return 1;
    if (first >= 0xC2 && first < 0xE0) return 2;
    if (first >= 0xE0 && first < 0xF0) return 3;
    return first >= 0xF0 && first < 0xF5 ? 4 : 0;
}

bool isUtf8(std::string_view text) {
    for (std::size_t i = 0; i < text.size();) {
        const auto length = characterLength(static_cast<unsigned char>(text[i]));
        if (length == 0 || i + length > text.size()) return false;
        for (std::size_t k = 1; k < length; ++k)
            if ((static_cast<unsigned char>(text[i + k]) & 0xC0U) != 0x80U) return false;
        i += length;
    }
    return true;
}

/// Why a text can't stand in a line of sssd.conf, as the end of a sentence; "" when it can.
std::string objection(std::string_view text) {
    if (text.size() > maximumLength)
        return "is longer than " + std::to_string(maximumLength) + " characters.";
    if (std::ranges::any_of(text, [](unsigned char c) { return c < 0x20 || c == 0x7F; }))
        return "holds a line end or another control character.";
    if (!isUtf8(text)) return "isn't UTF-8 text.";
    if (text.starts_with(' ') || text.ends_with(' '))
        return "begins or ends with a blank, which SSSD ignores.";
    return {};
}

bool isNumericAddress(const std::string& text) {
    unsigned char bytes[sizeof(in6_addr)];
    return ::inet_pton(AF_INET, text.c_str(), bytes) == 1 || ::inet_pton(AF_INET6, text.c_str(), bytes) == 1;
}

bool isHostLabel(std::string_view label) {
    return !label.empty() && label.size() <= maximumLabelLength && label.front() != '-' &&
           label.back() != '-' && std::ranges::all_of(label, [](unsigned char c) {
               return isAsciiLetterOrDigit(c) || c == '-' || c == '_';
           });
}

bool isHostName(std::string_view name) {
    if (name.empty() || name.size() > maximumHostLength) return false;
    if (name.ends_with('.')) name.remove_suffix(1);
    std::string_view last;
    for (bool more = true; more;) {
        const auto dot = name.find('.');
        last = name.substr(0, dot);
        if (!isHostLabel(last)) return false;
        more = dot != std::string_view::npos;
        if (more) name.remove_prefix(dot + 1);
    }
    return !std::ranges::all_of(last, [](unsigned char c) { return c >= '0' && c <= '9'; });
}

} // namespace

void requirePlainText(const std::string& label, std::string_view text) {
    const auto why = objection(text);
    if (!why.empty()) throw refused(label + " " + shown(text) + " " + why, "Correct it and try again.");
}

void requireServerName(std::string_view name) {
    const auto isInner = [](unsigned char c) {
        return isAsciiLetterOrDigit(c) || c == '.' || c == '_' || c == '-';
    };
    if (!name.empty() && name.size() <= maximumNameLength && std::ranges::all_of(name, isInner) &&
        isAsciiLetterOrDigit(static_cast<unsigned char>(name.front())))
        return;
    throw refused(
        "The name " + shown(name) + " can't be the name of a section of sssd.conf.",
        "Use letters from A to Z, digits, periods, hyphens and underscores, and begin with a letter "
        "or a digit; at most 128 of them.");
}

void requireAddress(std::string_view address) {
    if (isNumericAddress(std::string(address)) || isHostName(address)) return;
    throw refused(shown(address) + " isn't a host name or IP address.",
                  "Write it like ldap.example.com, 192.0.2.10 or 2001:db8::10, without \"ldap://\" and "
                  "without a port, which has a field of its own. A name with other letters is written in "
                  "its ASCII form (xn--…).");
}

void requireDN(const std::string& label, const std::string& text) {
    requirePlainText(label, text);
    LDAPDN name = nullptr;
    const bool isValid = ldap_str2dn(text.c_str(), &name, LDAP_DN_FORMAT_LDAPV3) == LDAP_SUCCESS &&
                         text.find('?') == std::string::npos;
    ldap_dnfree(name);
    if (!isValid)
        throw refused(label + " " + shown(text) + " isn't a distinguished name.",
                      "Write it like ou=people,dc=example,dc=com.");
}

void requireFilePath(const std::string& label, std::string_view path) {
    requirePlainText(label, path);
    if (!path.empty() && !path.starts_with('/'))
        throw refused(label + " " + shown(path) + " isn't an absolute path.",
                      "Write it like /etc/ssl/certs/example.pem.");
}

void requireRange(const std::string& label, std::int64_t number, std::int64_t least, std::int64_t most) {
    if (number >= least && number <= most) return;
    throw refused(label + " is " + std::to_string(number) + ".",
                  "Choose a number from " + std::to_string(least) + " to " + std::to_string(most) + ".");
}

void requirePassword(std::string_view password) {
    const auto why = objection(password);
    if (!why.empty())
        throw refused("The password " + why, "Give the directory's account another password, because SSSD "
                                             "couldn't read this one from its configuration.");
}

} // namespace corvane::haldend
