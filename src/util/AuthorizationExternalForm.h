#pragma once

#include <array>
#include <cstdint>

#include "util/Bytes.h"

namespace corvane::util {

/// The fixed 32-byte opaque block that stands for an authorization outside the object that holds it.
/// It is a bearer secret: all zero until it is made, wiped when it goes out of scope, never logged.
struct AuthorizationExternalForm {
    static constexpr std::size_t length = 32;

    AuthorizationExternalForm() = default;
    AuthorizationExternalForm(const AuthorizationExternalForm&) = default;
    AuthorizationExternalForm& operator=(const AuthorizationExternalForm&) = default;
    ~AuthorizationExternalForm() { clear(); }

    void clear() noexcept { wipe(bytes.data(), bytes.size()); }
    [[nodiscard]] BytesView view() const noexcept { return bytes; }

    std::array<std::uint8_t, length> bytes{};
};

} // namespace corvane::util
