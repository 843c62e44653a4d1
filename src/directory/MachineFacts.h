#pragma once

#include <optional>
#include <string>

#include "util/Containers.h"

namespace corvane::directory {

/// What is known of the machine whose directory service is configured. Main thread; each question to a remote
/// server blocks until it answers.
class MachineFacts {
public:
    virtual ~MachineFacts() = default;
    /// The network locations, each a dictionary; empty when there are none or they can't be read.
    [[nodiscard]] virtual util::Array networkSets() = 0;
    /// One of them; null when there is none.
    [[nodiscard]] virtual util::Dictionary currentNetworkSet() = 0;
    [[nodiscard]] virtual std::string hostName() = 0;
    /// Version of the system that the directory service runs on; none when it isn't known.
    [[nodiscard]] virtual std::optional<std::string> osVersion() = 0;
    /// The version is unknown or older than 10.7; versions compare number by number.
    [[nodiscard]] virtual bool legacyDS() = 0;
};

} // namespace corvane::directory
