#pragma once

#include "auth/ConnectionDialog.h"

namespace corvane::app {

/// What the main controller asks of the application's delegate, which is the sender of the last `showWindow`.
class MainControllerOwner {
public:
    virtual ~MainControllerOwner() = default;
    /// True to go on. `quitting` is false for locking, connecting and disconnecting.
    [[nodiscard]] virtual bool applicationShouldSaveChanges(bool quitting) = 0;
    /// False cancels the quit.
    [[nodiscard]] virtual bool applicationShouldTerminate() = 0;
    /// The dialog that asks for a remote server's password.
    [[nodiscard]] virtual auth::ConnectionDialog& authDialog() = 0;
    virtual void authAccepted() = 0;
};

/// The owner of the window, and what holds while it has none. Main thread.
class WindowOwner {
public:
    /// Borrowed until the next call.
    void set(MainControllerOwner& owner) { owner_ = &owner; }

    [[nodiscard]] bool applicationShouldSaveChangesBeforeLocking() {
        return owner_ == nullptr || owner_->applicationShouldSaveChanges(false);
    }
    [[nodiscard]] bool applicationShouldTerminate() {
        return owner_ == nullptr || owner_->applicationShouldTerminate();
    }
    [[nodiscard]] bool runPasswordDialog() {
        if (owner_ == nullptr) return false;
        auto& dialog = owner_->authDialog();
        dialog.setAcceptsPasswordOnly(true);
        constexpr int accepted = 1;
        return dialog.runModal() == accepted;
    }
    void authAccepted() {
        if (owner_ != nullptr) owner_->authAccepted();
    }

private:
    MainControllerOwner* owner_ = nullptr;
};

} // namespace corvane::app
