#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace corvane::util {

/// Raw bytes, owned. Requests to and replies from the directory service travel in this form.
using Bytes = std::vector<std::uint8_t>;
/// Raw bytes, borrowed for the length of one call.
using BytesView = std::span<const std::uint8_t>;

/// The UTF-8 bytes of a text, without a terminator.
[[nodiscard]] inline Bytes bytesFromText(std::string_view text) { return {text.begin(), text.end()}; }

/// The bytes read as UTF-8 text; nothing is checked or converted.
[[nodiscard]] inline std::string textFromBytes(BytesView bytes) { return {bytes.begin(), bytes.end()}; }

/// Overwrites memory that held a secret in a way that an optimiser may not leave out.
inline void wipe(void* memory, std::size_t length) noexcept {
    auto* bytes = static_cast<volatile std::uint8_t*>(memory);
    for (std::size_t i = 0; i < length; ++i)
        bytes[i] = 0;
}
inline void wipe(std::string& secret) noexcept {
    wipe(secret.data(), secret.size());
    secret.clear();
}
inline void wipe(Bytes& secret) noexcept {
    wipe(secret.data(), secret.size());
    secret.clear();
}

/// Overwrites a secret when its scope ends, also when something is thrown.
template <typename Secret>
class WipeGuard {
public:
    explicit WipeGuard(Secret& secret) : secret_(secret) {}
    WipeGuard(const WipeGuard&) = delete;
    WipeGuard& operator=(const WipeGuard&) = delete;
    ~WipeGuard() { wipe(secret_); }

private:
    Secret& secret_;
};

} // namespace corvane::util
