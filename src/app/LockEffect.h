#pragma once

#include "app/MainWindow.h"
#include "searchpolicy/SearchPolicyPane.h"
#include "searchpolicy/UnsavedNotices.h"
#include "services/ModifiedState.h"

namespace corvane::app {

/// What opening and closing the lock does to the window's controls. Main thread.
class LockEffect {
public:
    struct Parts {
        MainWindow& window;
        services::ServicesTable& servicesTable;
        services::ModifiedState& modified;
        searchpolicy::SearchPolicyPane& authenticationPane;
        searchpolicy::SearchPolicyPane& contactsPane;
        searchpolicy::UnsavedNotices& notices;
    };

    LockEffect(const MainWindowOutlets& outlets, Parts parts) : outlets_(outlets), parts_(parts) {}

    /// Tables are redrawn in either case. Closing disables what changes anything, Apply included, and takes
    /// every selection away; opening enables it and selects the first connector.
    void lockStateChanged(bool unlocked);

private:
    void lock();
    void unlock();

    MainWindowOutlets outlets_;
    Parts parts_;
};

} // namespace corvane::app
