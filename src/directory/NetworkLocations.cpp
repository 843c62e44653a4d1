#include "directory/NetworkLocations.h"

#include "util/TextComparison.h"

namespace corvane::directory {

NetworkLocations::NetworkLocations(Needs& needs) : needs_(needs) {}

std::optional<std::string> NetworkLocations::osVersion() {
    const auto node = needs_.openedConfigNode();
    if (!node) return std::nullopt;
    const std::string key(halden::attribute::operatingSystemVersion);
    const auto details = node->nodeDetails(std::vector{key}, nullptr);
    const auto values = details.valueForKey(key).as<util::Array>();
    if (values.isEmpty()) return std::nullopt;
    return values.textAt(values.count() - 1);
}

bool NetworkLocations::legacyDS() {
    const auto version = osVersion();
    return !version || util::compareNumerically(*version, "10.7") < 0;
}

} // namespace corvane::directory
