#pragma once

#include <functional>

#include "toolkit/Geometry.h"

namespace corvane::toolkit {

class Window;

/// Everything in this folder belongs to the interface that was loaded, or to whoever made it through
/// `Toolkit`; the program borrows it. Main thread throughout.
class View {
public:
    virtual ~View() = default;
    virtual void setHidden(bool hidden) = 0;
    [[nodiscard]] virtual bool isHidden() const = 0;
    [[nodiscard]] virtual Rect frame() const = 0;
    /// The window that shows the view; null while it is in none.
    [[nodiscard]] virtual Window* window() const = 0;
};

/// A view that the user can operate while it is enabled.
class Control : public View {
public:
    virtual void setEnabled(bool enabled) = 0;
    [[nodiscard]] virtual bool isEnabled() const = 0;
    /// What a gesture of the user does; the control hands itself over as the sender. Setting state from the
    /// program never runs the action.
    using Action = std::function<void(Control& sender)>;
    virtual void setAction(Action action) = 0;
};

} // namespace corvane::toolkit
