#include "haldend/files/LdapUri.h"

#include <algorithm>
#include <charconv>

#include "haldend/files/SssdFile.h"

namespace corvane::haldend {
namespace {

/// Takes ":1636" off the end; 0 when there is no port.
int takePort(std::string& host) {
    constexpr int highest = 65535;
    const auto colon = host.rfind(':');
    const auto bracket = host.rfind(']');
    if (colon == std::string::npos || (bracket != std::string::npos && bracket > colon)) return 0;
    int port = 0;
    const auto* end = host.data() + host.size();
    const auto [read, status] = std::from_chars(host.data() + colon + 1, end, port);
    if (status != std::errc() || read != end || port < 1 || port > highest) return 0;
    host.resize(colon);
    return port;
}

/// "%2F" is "/".
std::string percentDecoded(std::string_view text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        unsigned byte = 0;
        const auto* digits = text.data() + i + 1;
        if (text[i] == '%' && i + 2 < text.size() &&
            std::from_chars(digits, digits + 2, byte, 16).ptr == digits + 2) {
            result += static_cast<char>(byte);
            i += 2;
        } else {
            result += text[i];
        }
    }
    return result;
}

} // namespace

LdapUri LdapUri::from(std::string_view text) {
    const auto colon = text.find("://");
    LdapUri uri;
    if (colon != std::string_view::npos) uri.scheme = foldedCase(text.substr(0, colon));
    if (uri.scheme != "ldap" && uri.scheme != "ldaps") return {"", std::string(text), 0};
    const auto rest = text.substr(colon + 3);
    uri.host = rest.substr(0, rest.find_first_of("/? \t"));
    uri.port = takePort(uri.host);
    if (uri.port == usualLdapPort(uri.isLdaps())) uri.port = 0;
    if (uri.host.starts_with('[') && uri.host.ends_with(']'))
        uri.host = uri.host.substr(1, uri.host.size() - 2);
    return uri;
}

std::string localSocketPath(std::string_view uri) {
    constexpr std::string_view scheme = "ldapi://";
    if (foldedCase(uri.substr(0, scheme.size())) != scheme) return {};
    uri.remove_prefix(scheme.size());
    const auto path = percentDecoded(uri.substr(0, uri.find_first_of("/?")));
    return path.empty() ? "/var/run/slapd/ldapi" : path;
}

std::string LdapUri::hostAndPort() const {
    const bool isIPv6 = std::ranges::count(host, ':') > 1;
    const auto suffix = port == 0 || port == usualLdapPort(isLdaps()) ? "" : ":" + std::to_string(port);
    return host.empty() ? "" : (isIPv6 ? "[" + host + "]" : host) + suffix;
}

} // namespace corvane::haldend
