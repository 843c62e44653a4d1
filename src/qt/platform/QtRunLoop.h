#pragma once

#include <QObject>

#include "platform/RunLoop.h"
#include "qt/HandlerGuard.h"

namespace corvane::qt {

/// Timers of Qt's event loop on the main thread.
class QtRunLoop final : public platform::RunLoop {
public:
    explicit QtRunLoop(HandlerGuard& guard) : guard_(guard) {}
    [[nodiscard]] std::unique_ptr<platform::Timer>
    scheduleRepeatingTimer(double seconds, std::function<void()> action) override;
    [[nodiscard]] std::unique_ptr<platform::Timer> scheduleTimer(double seconds,
                                                                 std::function<void()> action) override;
    void post(std::function<void()> action) override;

private:
    HandlerGuard& guard_;
    QObject context_; ///< of what is posted; lives on the main thread
};

} // namespace corvane::qt
