#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "util/Containers.h"

/// The toolbar's items and the pages that they lead to: one immutable dictionary by item identifier, made on
/// first use. Each value has the texts "tabID" and "sortOrder".
namespace corvane::app::tabtable {

inline constexpr std::string_view services = "kServices";
inline constexpr std::string_view searchPaths = "kSearchPaths";
inline constexpr std::string_view directoryEditor = "kDebug";

[[nodiscard]] const util::Dictionary& table();
/// Compares two entries by "sortOrder" as the user's locale does: negative, zero or positive.
[[nodiscard]] int toolbarValueCompare(const util::Dictionary& a, const util::Dictionary& b);
/// The item identifiers in their order on screen.
[[nodiscard]] std::vector<std::string> sortedIdentifiers();
/// "" for an identifier outside the table.
[[nodiscard]] std::string tabIDOf(const std::string& identifier);
/// The first item that leads to this page.
[[nodiscard]] std::optional<std::string> identifierForTabID(const std::string& tabID);
/// English text of the label, "Unknown" outside the table.
[[nodiscard]] std::string labelKeyOf(const std::string& identifier);
/// "" for none.
[[nodiscard]] std::string imageNameOf(const std::string& identifier);

} // namespace corvane::app::tabtable
