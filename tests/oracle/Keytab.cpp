#include "oracle/Keytab.h"

#include <cstdint>

namespace corvane::oracle {
namespace {

/// Numbers are big-endian in a keytab.
template <typename Number>
std::string bytes(Number number) {
    std::string text;
    for (int shift = (static_cast<int>(sizeof(Number)) - 1) * 8; shift >= 0; shift -= 8)
        text += static_cast<char>(number >> shift);
    return text;
}

std::string counted(const std::string& text) { return bytes(static_cast<std::uint16_t>(text.size())) + text; }

} // namespace

std::string keytabFor(const std::string& host, const std::string& realm) {
    constexpr std::uint16_t components = 2, aes256 = 18;
    constexpr std::uint32_t hostService = 3, time = 0;
    const std::string key(32, '\1');
    const auto entry = bytes(components) + counted(realm) + counted("host") + counted(host) +
                       bytes(hostService) + bytes(time) + bytes(std::uint8_t{1}) + bytes(aes256) +
                       counted(key);
    return "\5\2" + bytes(static_cast<std::uint32_t>(entry.size())) + entry;
}

} // namespace corvane::oracle
