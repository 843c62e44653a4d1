#pragma once

#include <functional>
#include <memory>
#include <string>

#include "auth/RemoteAuthorization.h"
#include "halden/Session.h"

namespace corvane::auth {

/// Asks for a server, a user name and a password and opens a session there. It reports to its owner once per
/// showing: accepted or cancelled. Main thread.
class ConnectionDialog {
public:
    struct Owner {
        virtual ~Owner() = default;
        virtual void authAccepted() = 0;
        virtual void authCanceled() = 0;
    };

    virtual ~ConnectionDialog() = default;
    /// Address and user name can't be changed then.
    virtual void setAcceptsPasswordOnly(bool passwordOnly) = 0;
    /// Shows the dialog as a free window that reports to `owner`.
    virtual void showWindow(Owner& owner) = 0;
    /// Shows the dialog and blocks until it is answered: 1 for accepted. Nothing is reported to an owner.
    [[nodiscard]] virtual int runModal() = 0;
    virtual void saveFrame() = 0;

    /// Results of the last success; null before it and after `reset`.
    [[nodiscard]] virtual std::shared_ptr<halden::Session> haldenSession() const = 0;
    [[nodiscard]] virtual std::shared_ptr<RemoteAuthorization> remoteAuth() const = 0;
    [[nodiscard]] virtual std::string ipAddress() const = 0;
    /// Forgets the results and the password.
    virtual void reset() = 0;
};

} // namespace corvane::auth
