#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace corvane::platform {

/// A network location as the machine's network configuration knows it.
struct NetworkSet {
    std::optional<std::string> name; ///< as the user sees it
    std::optional<std::string> identifier;
    friend bool operator==(const NetworkSet&, const NetworkSet&) = default;
};

/// A handle on the network configuration of the machine that the program runs on. Main thread.
class NetworkPreferences {
public:
    virtual ~NetworkPreferences() = default;
    /// All locations in the store's order; none when there are none or they can't be read.
    [[nodiscard]] virtual std::vector<NetworkSet> allSets() = 0;
    /// The location in use; no value when the store can't tell.
    [[nodiscard]] virtual std::optional<NetworkSet> currentSet() = 0;
};

/// Where the network configuration is to be had.
class NetworkConfiguration {
public:
    virtual ~NetworkConfiguration() = default;
    /// `clientName` tells the store who is asking. Never null.
    [[nodiscard]] virtual std::unique_ptr<NetworkPreferences> create(const std::string& clientName) = 0;
    /// The host name that the operating system reports for this process.
    [[nodiscard]] virtual std::string hostName() = 0;
};

} // namespace corvane::platform
