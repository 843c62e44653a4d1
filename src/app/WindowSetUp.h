#pragma once

#include <memory>

#include "app/Collaborators.h"

namespace corvane::app {

/// What an interface file can't say for itself: which collaborator answers which control, and what happens
/// when the window is first shown. Main thread.
class WindowSetUp {
public:
    /// Connects the controls, and listens for changes of the search policies.
    WindowSetUp(Environment& environment, Collaborators& collaborators);
    WindowSetUp(const WindowSetUp&) = delete;
    WindowSetUp& operator=(const WindowSetUp&) = delete;

    /// Sets the window up on the first call, then shows it. `sender` stays the owner until the next call.
    void showWindow(MainControllerOwner& sender);
    /// The directory service has announced a change of the search policies.
    void searchPolicyChange();

private:
    void connectTables();
    void connectButtons();
    [[nodiscard]] bool listenForSearchPolicyChanges();
    void awakeFromNib();
    void showMachine();

    Environment& environment_;
    Collaborators& c_;
    bool windowLoaded_ = false;
    std::unique_ptr<util::NotificationCenter::Observation> searchPathChanges_;
};

} // namespace corvane::app
