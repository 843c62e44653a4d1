#pragma once

#include <functional>

#include "toolkit/Application.h"

namespace corvane::app {

/// Sees every event before the toolkit dispatches it, and takes one key combination for itself: "d" with the
/// command and control keys, whatever else is held. Main thread.
class DSApplication {
public:
    explicit DSApplication(std::function<void()> toggleDebugMenu)
        : toggleDebugMenu_(std::move(toggleDebugMenu)) {}

    /// True when the event was taken and must not be dispatched.
    [[nodiscard]] bool sendEvent(const toolkit::Event& event) const {
        const bool taken = event.type == toolkit::EventType::keyDown && event.modifiers.command &&
                           event.modifiers.control && event.charactersIgnoringModifiers == "d";
        if (taken) toggleDebugMenu_();
        return taken;
    }

private:
    std::function<void()> toggleDebugMenu_;
};

} // namespace corvane::app
