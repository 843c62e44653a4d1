#pragma once

#include <cstdint>
#include <memory>

#include "platform/Authorization.h"
#include "util/AuthorizationExternalForm.h"

namespace corvane::directory {

/// The rights that a change of the directory service's configuration takes, and the forms in which they reach
/// the service. Main thread.
class Authorizer {
public:
    virtual ~Authorizer() = default;
    /// Is the lock open?
    [[nodiscard]] virtual bool unlocked() const = 0;
    /// Makes sure that there is a directory session, asking the user if needed.
    [[nodiscard]] virtual bool preflightDSRef() = 0;
    /// Makes sure that the rights are held, asking the user if needed. False: the caller gives up.
    [[nodiscard]] virtual bool preflightAuthRights() = 0;
    /// 0 on success; the form is left alone otherwise.
    [[nodiscard]] virtual std::int32_t makeAuthExternalForm(util::AuthorizationExternalForm& form) = 0;
    /// Null before the lock control has one.
    [[nodiscard]] virtual std::shared_ptr<platform::Authorization> authorization() const = 0;
    /// 0 without an authorization.
    [[nodiscard]] virtual platform::AuthorizationRef authorizationRef() const = 0;
};

} // namespace corvane::directory
