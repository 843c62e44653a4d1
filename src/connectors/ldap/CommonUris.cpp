#include "connectors/ldap/CommonUris.h"

#include <algorithm>
#include <charconv>
#include <string_view>

#include "connectors/ldap/Server.h"

namespace corvane::connectors::ldap {
namespace {

struct Uri {
    std::string host;
    bool isLdaps = false;
    int port = 0;
};

bool takePrefix(std::string_view& text, std::string_view prefix) {
    const auto isSame = [](char a, char b) { return (a >= 'A' && a <= 'Z' ? a + ('a' - 'A') : a) == b; };
    if (text.size() < prefix.size() || !std::ranges::equal(text.substr(0, prefix.size()), prefix, isSame))
        return false;
    text.remove_prefix(prefix.size());
    return true;
}

/// The host in front of a port; the brackets of an IPv6 address are taken off. Empty when there is none.
std::string takeHost(std::string_view& text) {
    if (text.starts_with('[')) {
        const auto end = text.find(']');
        if (end == std::string_view::npos) return "";
        const std::string host(text.substr(1, end - 1));
        text.remove_prefix(end + 1);
        return host;
    }
    const std::string host(text.substr(0, text.find(':')));
    text.remove_prefix(host.size());
    return host;
}

/// Nothing, or a colon and a number; -1 for anything else.
int portFrom(std::string_view text, int standard) {
    if (text.empty() || text == ":") return 0;
    int port = 0;
    const auto* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data() + 1, end, port);
    if (text.front() != ':' || error != std::errc() || stop != end || port < 1 || port > 65535) return -1;
    return port == standard ? 0 : port;
}

std::optional<Uri> uriFrom(std::string_view text) {
    Uri uri;
    uri.isLdaps = takePrefix(text, "ldaps://");
    if (!uri.isLdaps && !takePrefix(text, "ldap://")) return std::nullopt;
    auto authority = text.substr(0, text.find_first_of("/?"));
    uri.host = takeHost(authority);
    uri.port = portFrom(authority, uri.isLdaps ? ldapsPort : plainPort);
    const bool isHost =
        !uri.host.empty() && uri.host.find_first_of(" \t@[]%\"<>\\^`{|}") == std::string::npos;
    return isHost && uri.port >= 0 ? std::optional(uri) : std::nullopt;
}

} // namespace

std::optional<CommonUris> commonUris(const std::vector<std::string>& texts) {
    std::optional<CommonUris> common;
    for (const auto& each : texts) {
        const auto uri = uriFrom(each);
        if (!uri || (common && (common->isLdaps != uri->isLdaps || common->port != uri->port)))
            return std::nullopt;
        if (!common) common = CommonUris{{}, uri->isLdaps, uri->port};
        common->hosts.push_back(uri->host);
    }
    return common;
}

} // namespace corvane::connectors::ldap
