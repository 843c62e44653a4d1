#pragma once

#include <memory>
#include <optional>
#include <string>

#include "directory/HaldenNodeConfig.h"
#include "platform/Environment.h"

namespace corvane::directory {

/// What is known of the machine that is being configured: its network locations, its name and its system.
/// On this machine the answers are the network configuration's, on a remote one the server's. Failures never
/// raise and never show an alert: they are logged, and the answer is what is left. Main thread; each question
/// to a remote server blocks until it answers.
class NetworkLocations {
public:
    struct Needs {
        virtual ~Needs() = default;
        [[nodiscard]] virtual bool isRemote() = 0;
        /// The configuration node of the current session; null when the service can't be reached.
        [[nodiscard]] virtual std::shared_ptr<HaldenNodeConfig> haldenConfigNode() = 0;
        /// The configuration node if somebody has opened it on the current session, else null. Never opens
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
    /// An array of such dictionaries, empty when there are none or they can't be had.
    [[nodiscard]] util::Array networkSets();
    /// One of them; null when there is none.
    [[nodiscard]] util::Dictionary currentNetworkSet();
    /// The machine's host name. A remote server that doesn't tell is called by its address.
    [[nodiscard]] std::string hostName();

    /// Version of the system that the directory service runs on: the last one it reports. None when it
    /// reports none, and none until the configuration node of the current session has been opened.
    [[nodiscard]] std::optional<std::string> osVersion();
    /// The version is unknown or older than 10.7; versions compare number by number.
    [[nodiscard]] bool legacyDS();

private:
    /// The node, with a line in the log when it can't be had.
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
