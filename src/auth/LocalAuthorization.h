#pragma once

#include <cstdint>
#include <memory>

#include "auth/DirectoryConnection.h"
#include "auth/DirectoryEditor.h"
#include "directory/Authorizer.h"
#include "platform/AuthorizationView.h"
#include "platform/Environment.h"

namespace corvane::auth {

/// Who may change anything: the lock control at the foot of the window and its rights, or the rights held on
/// a remote server, and the external form in which either reaches the directory service. Main thread.
class LocalAuthorization final : public directory::Authorizer, public platform::AuthorizationViewDelegate {
public:
    struct Needs {
        virtual ~Needs() = default;
        /// The lock was opened or closed: controls follow.
        virtual void lockStateChanged(bool unlocked) = 0;
        /// Offers to save what is unsaved before locking; false keeps the lock open.
        [[nodiscard]] virtual bool applicationShouldSaveChangesBeforeLocking() = 0;
        /// Asks for the remote server's password; true when it was accepted there.
        [[nodiscard]] virtual bool runPasswordDialog() = 0;
        /// Hands the dialog's results to the connection.
        virtual void authAccepted() = 0;
        /// Lets the panes be read anew unless there are unsaved edits.
        virtual void invalidatePanesUnlessEdited() = 0;
    };

    LocalAuthorization(platform::Environment& environment, DirectoryConnection& connection,
                       platform::AuthorizationView& view, DirectoryEditor& editor, Needs& needs);
    LocalAuthorization(const LocalAuthorization&) = delete;
    LocalAuthorization& operator=(const LocalAuthorization&) = delete;

    /// The two rights of every request: to configure directory services, then to change system preferences.
    [[nodiscard]] static platform::AuthorizationRights rights();

    /// Connects the lock control, and opens or closes the lock as the rights are held or not.
    void setUpLockControl();

    [[nodiscard]] bool unlocked() const override { return unlocked_; }
    void setUnlocked(bool unlocked);
    /// The local node has accepted this authorization.
    [[nodiscard]] bool isAuthed() const { return authedToLocalNode_; }
    [[nodiscard]] std::shared_ptr<platform::Authorization> authorization() const override {
        return authorization_;
    }
    [[nodiscard]] platform::AuthorizationRef authorizationRef() const override;

    /// Are the rights held? The user is not asked.
    [[nodiscard]] bool haveAuthRights() const;
    [[nodiscard]] bool preflightAuthRights() override;
    [[nodiscard]] bool preflightDSRef() override;
    [[nodiscard]] std::int32_t makeAuthExternalForm(util::AuthorizationExternalForm& form) override;

    /// Authenticates the local node. Locally this is done once and only while the lock control is open; a
    /// remote node is authenticated at every call. Failures are logged, never shown.
    void authToLocalNode();
    /// Forgets that the node was authenticated; credentials set on the node stay.
    void deauthToLocalNode() { authedToLocalNode_ = false; }

    /// Spelled like this on purpose: it is the name that the timer and the window call.
    void udpateAuthStatus();
    /// The hosted record editor has unlocked or locked by itself.
    void didAuthenticate() { setUnlocked(true); }
    void didDeauthenticate() { setUnlocked(false); }

    void authorizationViewCreatedAuthorization(platform::AuthorizationView& view) override;
    void authorizationViewDidAuthorize(platform::AuthorizationView& view) override;
    void authorizationViewDidDeauthorize(platform::AuthorizationView& view) override;
    [[nodiscard]] bool authorizationViewShouldDeauthorize(platform::AuthorizationView& view) override;
    void authorizationViewReleasedAuthorization(platform::AuthorizationView& view) override;

private:
    [[nodiscard]] bool preflightRemoteRights();
    [[nodiscard]] bool preflightLocalRights();
    void setCredentials(const util::AuthorizationExternalForm& form);

    platform::Environment& environment_;
    DirectoryConnection& connection_;
    platform::AuthorizationView& view_;
    DirectoryEditor& editor_;
    Needs& needs_;
    std::shared_ptr<platform::Authorization> authorization_;
    bool unlocked_ = false;
    bool authedToLocalNode_ = false;
};

} // namespace corvane::auth
