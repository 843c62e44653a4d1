#pragma once

#include <cstddef>

namespace corvane::plist {

/// Bounds that keep hostile or broken input from exhausting the process.
inline constexpr std::size_t maximumDepth = 64;                 ///< nested containers
inline constexpr std::size_t maximumSize = 64U * 1024U * 1024U; ///< bytes of a document and of all its leaves
inline constexpr std::size_t maximumObjects = 1'000'000; ///< objects, a shared one counted at each reference

} // namespace corvane::plist
