#pragma once

#include <memory>

#include "halden/Session.h"
#include "platform/Authorization.h"

namespace corvane::auth {

/// The record editor, a component that comes from elsewhere and is only hosted in the main window.
class DirectoryEditor {
public:
    virtual ~DirectoryEditor() = default;
    virtual void setHaldenSession(std::shared_ptr<halden::Session> session) = 0;
    /// Null takes the authorization away.
    virtual void setAuthForLocalNode(std::shared_ptr<platform::Authorization> authorization) = 0;
};

} // namespace corvane::auth
