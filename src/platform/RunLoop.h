#pragma once

#include <functional>
#include <memory>

namespace corvane::platform {

/// A scheduled call. Dropping it, or `invalidate`, ends it; both may be done from inside the call.
class Timer {
public:
    virtual ~Timer() = default;
    virtual void invalidate() = 0;
};

/// The main thread's event loop. Timers are made and dropped on the main thread.
class RunLoop {
public:
    virtual ~RunLoop() = default;
    /// Calls `action` every `seconds` from the main loop until the timer is invalidated or dropped.
    [[nodiscard]] virtual std::unique_ptr<Timer> scheduleRepeatingTimer(double seconds,
                                                                        std::function<void()> action) = 0;
    /// Calls `action` once from the main loop, `seconds` from now, unless the timer is invalidated or dropped
    /// before.
    [[nodiscard]] virtual std::unique_ptr<Timer> scheduleTimer(double seconds,
                                                               std::function<void()> action) = 0;
    /// Calls `action` once from the main loop, after what was posted before, never from inside this call. Any
    /// thread.
    virtual void post(std::function<void()> action) = 0;
};

} // namespace corvane::platform
