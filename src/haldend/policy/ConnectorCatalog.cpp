#include "haldend/policy/ConnectorCatalog.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

namespace corvane::haldend {
namespace {

namespace fs = std::filesystem;

constexpr const char* plugInExtension = ".cvplug";
/// One byte longer than the longest version text of the service's own connectors.
constexpr std::string_view shortestGuestVersion = "0.0.0.0.0";
static_assert(std::ranges::all_of(connectors, [](const Connector& own) {
    return own.version.size() < shortestGuestVersion.size();
}));
/// More guests than this are left out: each takes one number of the service's calls.
constexpr std::size_t mostGuests = 100;
constexpr std::size_t longestName = 64;

/// Only a plain name becomes a connector's: it is used in records, node names and the stored policy.
bool isPlain(const std::string& name) {
    return !name.empty() && name.size() <= longestName && std::ranges::all_of(name, [](unsigned char c) {
        return std::isalnum(c) != 0 || c == '-' || c == '_' || c == '.';
    });
}

std::set<std::string> namesIn(const std::string& folder) {
    std::set<std::string> names;
    std::error_code problem;
    for (fs::directory_iterator at(folder, problem), end; !problem && at != end; at.increment(problem))
        if (at->path().extension() == plugInExtension && isPlain(at->path().stem()))
            names.insert(at->path().stem());
    return names;
}

bool isOwn(const std::string& name) {
    return std::ranges::find(connectors, name, &Connector::name) != connectors.end();
}

} // namespace

const ConnectorCatalog::Guest* ConnectorCatalog::guestNamed(const std::string& name) {
    const auto known = std::ranges::find(guests_, name, &Guest::name);
    if (known != guests_.end()) return &*known;
    if (guests_.size() == mostGuests) return nullptr;
    guests_.push_back({name, std::string(shortestGuestVersion) + std::string(guests_.size(), '0')});
    return &guests_.back();
}

std::vector<Connector> ConnectorCatalog::all() {
    std::vector<Connector> everyOne(connectors.begin(), connectors.end());
    std::set<std::string> names;
    for (const auto& folder : folders_)
        names.merge(namesIn(folder));
    for (const auto& name : names) {
        if (isOwn(name)) continue;
        if (const auto* guest = guestNamed(name)) everyOne.push_back({guest->name, guest->version, true});
    }
    return everyOne;
}

} // namespace corvane::haldend
