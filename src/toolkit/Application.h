#pragma once

#include <map>
#include <string>
#include <string_view>

#include "toolkit/Window.h"

namespace corvane::toolkit {

enum class EventType { keyDown, keyUp, other };

/// Keys held beside the key itself.
struct Modifiers {
    bool command = false; ///< the platform's key for menu commands
    bool control = false; ///< the second command key
    bool option = false;
    bool shift = false;
};

/// An input event before it is dispatched.
struct Event {
    EventType type = EventType::other;
    Modifiers modifiers;
    /// The key's characters without the modifiers, but for Shift, which keeps its effect.
    std::string charactersIgnoringModifiers;
};

/// An entry of a menu. `action` names the operation that it runs.
class MenuItem {
public:
    virtual ~MenuItem() = default;
    [[nodiscard]] virtual std::string action() const = 0;
    virtual void setTitle(std::string_view title) = 0;
    [[nodiscard]] virtual std::string title() const = 0;
};

/// What the application is made of at run time.
class Application {
public:
    virtual ~Application() = default;
    [[nodiscard]] virtual bool isActive() const = 0;
    /// Asks the application's delegate and ends the event loop unless it refuses.
    virtual void terminate() = 0;
    /// Runs `window` modally until `stopModal`; the answer is the code given there. 0 when the window was
    /// closed otherwise.
    [[nodiscard]] virtual int runModalForWindow(Window& window) = 0;
    virtual void stopModal(int code) = 0;
    /// The system's sound for what can't be done.
    virtual void beep() = 0;
    virtual void orderFrontStandardAboutPanel(const std::map<std::string, std::string>& options) = 0;
    /// Opens the help book of that name at an anchor.
    virtual void openHelpAnchor(std::string_view anchor, std::string_view book) = 0;
};

} // namespace corvane::toolkit
