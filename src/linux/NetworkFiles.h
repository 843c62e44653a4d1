#pragma once

#include "platform/NetworkConfiguration.h"

namespace corvane::linux_ {

/// Network locations from NetworkManager's files: each connection profile (keyfile) of a machine is a set,
/// and the one that a device runs with is the current one. What can't be read counts as absent. Main thread.
class NetworkFiles final : public platform::NetworkConfiguration {
public:
    /// `root`: "/" or a private machine folder.
    explicit NetworkFiles(std::string root) : root_(std::move(root)) {}
    [[nodiscard]] std::unique_ptr<platform::NetworkPreferences>
    create(const std::string& clientName) override;
    [[nodiscard]] std::string hostName() override;

private:
    std::string root_;
};

} // namespace corvane::linux_
