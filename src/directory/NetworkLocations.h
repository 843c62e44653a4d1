#pragma once

#include <memory>
#include <optional>
#include <string>

#include "directory/HaldenNodeConfig.h"
#include "directory/MachineFacts.h"
#include "platform/Environment.h"

namespace corvane::directory {

/// What is known of the machine that is being configured: its network locations, its name and its system.
/// On this machine the answers are the network configuration's, on a remote one the server's. Failures never
/// raise and never show an alert: they are logged, and the answer is what is left. Main thread.
class NetworkLocations final : public MachineFacts {
public:
    struct Needs {
        virtual ~Needs() = default;
        [[nodiscard]] virtual bool isRemote() = 0;
        /// The configuration node of the current session; null when the service can't be reached.
        [[nodiscard]] virtual std::shared_ptr<HaldenNodeConfig> haldenConfigNode() = 0;
        /// The configuration node if it has been opened on the current session, else null. Never opens
        /// it.
        [[nodiscard]] virtual std::shared_ptr<HaldenNodeConfig> openedConfigNode() = 0;
        /// Address of the remote server, as it was typed.
        [[nodiscard]] virtual std::string ipAddress() = 0;
    };
    NetworkLocations(platform::Environment& environment, Needs& needs);

    /// The handle on this machine's network configuration, made on first use.
    [[nodiscard]] platform::NetworkPreferences& scPrefs();
    /// The strings "name", "id" and "path", as far as the first that is missing: a set without a name gives
    /// an empty dictionary, one without an identifier a dictionary with the name alone. Callers rely on
    /// neither.
    [[nodiscard]] static util::Dictionary dictionaryForNetworkSet(const platform::NetworkSet& set);
    [[nodiscard]] util::Array networkSets() override;
    [[nodiscard]] util::Dictionary currentNetworkSet() override;
    /// A remote server that doesn't report its name is called by its address.
    [[nodiscard]] std::string hostName() override;

    /// The last version that the service reports. None when it reports none, and none until the configuration
    /// node of the current session has been opened.
    [[nodiscard]] std::optional<std::string> osVersion() override;
    [[nodiscard]] bool legacyDS() override;

private:
    /// The node, with a line in the log when it can't be opened.
    [[nodiscard]] std::shared_ptr<HaldenNodeConfig> configNodeFor(const char* operation);
    [[nodiscard]] util::Bytes remoteValue(HaldenNodeConfig* node, std::int32_t code, const std::string& key,
                                          halden::Error& error);
    [[nodiscard]] util::Dictionary remoteDictionary(util::BytesView reply) const;
    [[nodiscard]] util::Array remoteNetworkSets();
    [[nodiscard]] util::Dictionary remoteCurrentNetworkSet();
    [[nodiscard]] std::string remoteHostName();
    void log(const std::string& line);

    platform::Environment& environment_;
    Needs& needs_;
    std::unique_ptr<platform::NetworkPreferences> _scPrefs;
};

} // namespace corvane::directory
