#include "app/TabTable.h"

#include <algorithm>

#include "util/TextComparison.h"

namespace corvane::app::tabtable {
namespace {

constexpr std::string_view tabID = "tabID";
constexpr std::string_view sortOrder = "sortOrder";

util::Dictionary entry(const char* tab, const char* order) { return {{"tabID", tab}, {"sortOrder", order}}; }

util::Dictionary entryOf(const std::string& identifier) {
    return table().valueForKey(identifier).as<util::Dictionary>();
}

} // namespace

const util::Dictionary& table() {
    static const util::Dictionary made = {{std::string(services), entry("1", "08")},
                                          {std::string(searchPaths), entry("20", "09")},
                                          {std::string(directoryEditor), entry("11", "12")}};
    return made;
}

int toolbarValueCompare(const util::Dictionary& a, const util::Dictionary& b) {
    const auto order = util::compareInLocale(a.textForKey(sortOrder), b.textForKey(sortOrder));
    return order < 0 ? -1 : order > 0 ? 1 : 0;
}

std::vector<std::string> sortedIdentifiers() {
    auto identifiers = table().keys();
    std::ranges::sort(identifiers, [](const auto& a, const auto& b) {
        return toolbarValueCompare(entryOf(a), entryOf(b)) < 0;
    });
    return identifiers;
}

std::string tabIDOf(const std::string& identifier) { return entryOf(identifier).textForKey(tabID); }

std::optional<std::string> identifierForTabID(const std::string& tab) {
    for (const auto& identifier : table().keys())
        if (tabIDOf(identifier) == tab) return identifier;
    return std::nullopt;
}

std::string labelKeyOf(const std::string& identifier) {
    if (identifier == services) return "Services";
    if (identifier == searchPaths) return "Search Policy";
    if (identifier == directoryEditor) return "Directory Editor";
    return "Unknown";
}

std::string imageNameOf(const std::string& identifier) {
    if (identifier == services) return "Services_32";
    if (identifier == searchPaths) return "SearchPaths_32";
    if (identifier == directoryEditor) return "Halden_32";
    return "";
}

} // namespace corvane::app::tabtable
