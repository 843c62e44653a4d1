#pragma once

#include <string_view>

/// Keys and marker texts of the dictionary that describes one connector. All values are texts, but for
/// "PlugInIndex", a number that is there only when the service reported a version.
namespace corvane::plugins::service {

inline constexpr std::string_view name = "PlugInName";
inline constexpr std::string_view loaded = "PlugInLoaded";
inline constexpr std::string_view userSetLoaded = "UserSetLoaded";
inline constexpr std::string_view version = "PlugInVersion";
inline constexpr std::string_view index = "PlugInIndex";
inline constexpr std::string_view configAvailable = "PlugInConfigAvail";
inline constexpr std::string_view configFile = "PlugInConfigFile";

inline constexpr std::string_view active = "Active";
/// The marker of a connector that the user has switched off. An opaque text, never shown; spelled like this
/// on purpose, because states are told apart by plain comparison.
inline constexpr std::string_view makeInactive = "Make InActive";
inline constexpr std::string_view unknown = "Unknown";
inline constexpr std::string_view notAvailable = "Not Available";

} // namespace corvane::plugins::service
