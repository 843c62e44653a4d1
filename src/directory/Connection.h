#pragma once

#include <memory>

#include "directory/HaldenNodeConfig.h"
#include "halden/Session.h"

namespace corvane::directory {

/// The directory service that the program works with now: this machine's, or a remote server's. Every answer
/// is that of the moment. Main thread.
class Connection {
public:
    virtual ~Connection() = default;
    [[nodiscard]] virtual bool isRemote() = 0;
    /// Null when the service can't be reached.
    [[nodiscard]] virtual std::shared_ptr<halden::Session> haldenSession() = 0;
    /// The configuration node of the session, opened on first use; null when that fails.
    [[nodiscard]] virtual std::shared_ptr<HaldenNodeConfig> haldenConfigNode() = 0;
};

} // namespace corvane::directory
