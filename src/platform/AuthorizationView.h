#pragma once

#include <memory>

#include "platform/Authorization.h"

namespace corvane::platform {

class AuthorizationView;

class AuthorizationViewDelegate {
public:
    virtual ~AuthorizationViewDelegate() = default;
    virtual void authorizationViewCreatedAuthorization(AuthorizationView& view) = 0;
    virtual void authorizationViewDidAuthorize(AuthorizationView& view) = 0;
    virtual void authorizationViewDidDeauthorize(AuthorizationView& view) = 0;
    /// False keeps the lock open.
    [[nodiscard]] virtual bool authorizationViewShouldDeauthorize(AuthorizationView& view) = 0;
    virtual void authorizationViewReleasedAuthorization(AuthorizationView& view) = 0;
};

enum class AuthorizationViewState { startup = 0, locked = 1, inProgress = 2, unlocked = 3 };

/// The lock control: shows whether the rights are held, obtains them and gives them back. Main thread.
class AuthorizationView {
public:
    virtual ~AuthorizationView() = default;
    virtual void setDelegate(AuthorizationViewDelegate* delegate) = 0;
    virtual void setAuthorizationRights(const AuthorizationRights& rights) = 0;
    /// Null when the service gives none.
    [[nodiscard]] virtual std::shared_ptr<Authorization> authorization() const = 0;
    [[nodiscard]] virtual AuthorizationViewState authorizationState() const = 0;
    /// Looks whether the rights are still held and shows the result; when that differs from what it showed,
    /// the delegate hears of it as if the user had done it.
    virtual void updateStatus() = 0;
    virtual void setHidden(bool hidden) = 0;
    [[nodiscard]] virtual bool isHidden() const = 0;
};

} // namespace corvane::platform
