#pragma once

#include <exception>
#include <string>
#include <utility>

#include "util/ProcessLog.h"

namespace corvane::qt {

/// The border between Qt's event dispatch and the program. An exception must not travel through Qt, and a
/// handler that fails must not end the program: it is logged and the event loop goes on. Main thread.
class HandlerGuard {
public:
    /// `log` outlives the guard, and the guard everything that it was given to.
    explicit HandlerGuard(util::ProcessLog& log) : log_(log) {}
    HandlerGuard(const HandlerGuard&) = delete;
    HandlerGuard& operator=(const HandlerGuard&) = delete;

    /// Runs a handler that answers nothing. `gesture` says in the log what the user did.
    template <typename Handler>
    void run(const char* gesture, Handler&& handler) {
        try {
            std::forward<Handler>(handler)();
        } catch (const std::exception& error) {
            report(gesture, error.what());
        } catch (...) {
            report(gesture, "unknown exception");
        }
    }

    /// The handler's answer; `fallback` when it failed.
    template <typename Answer, typename Handler>
    [[nodiscard]] Answer answer(const char* gesture, Answer fallback, Handler&& handler) {
        run(gesture, [&] { fallback = std::forward<Handler>(handler)(); });
        return fallback;
    }

    void report(const char* gesture, const char* reason) {
        log_.log(std::string("Exception while handling ") + gesture + ": " + reason);
    }

private:
    util::ProcessLog& log_;
};

} // namespace corvane::qt
