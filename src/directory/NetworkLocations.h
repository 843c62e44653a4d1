#pragma once

#include <memory>
#include <optional>
#include <string>

#include "directory/HaldenNodeConfig.h"

namespace corvane::directory {

/// What is known of the machine that is being configured. Main thread.
class NetworkLocations {
public:
    struct Needs {
        virtual ~Needs() = default;
        /// The configuration node if somebody has opened it on the current session, else null. Never opens
        /// it.
        [[nodiscard]] virtual std::shared_ptr<HaldenNodeConfig> openedConfigNode() = 0;
    };
    explicit NetworkLocations(Needs& needs);

    /// Version of the system that the directory service runs on: the last one it reports. None when it
    /// reports none, and none until the configuration node of the current session has been opened.
    [[nodiscard]] std::optional<std::string> osVersion();
    /// The version is unknown or older than 10.7; versions compare number by number.
    [[nodiscard]] bool legacyDS();

private:
    Needs& needs_;
};

} // namespace corvane::directory
