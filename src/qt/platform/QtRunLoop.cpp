#include "qt/platform/QtRunLoop.h"

#include <QTimer>
#include <algorithm>
#include <cmath>
#include <limits>

namespace corvane::qt {

namespace {

class LoopTimer final : public platform::Timer {
public:
    LoopTimer(double seconds, bool once, std::function<void()> action, HandlerGuard& guard) {
        timer_.setSingleShot(once);
        // The action is held by the connection, and copied for a call that drops the timer.
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [action = std::move(action), &guard] {
            const auto held = action;
            guard.run("a timer", held);
        });
        const double milliseconds =
            std::clamp(std::round(seconds * 1000), 0.0, double(std::numeric_limits<int>::max()));
        timer_.start(int(milliseconds));
    }
    void invalidate() override { timer_.stop(); }

private:
    QTimer timer_;
};

} // namespace

std::unique_ptr<platform::Timer> QtRunLoop::scheduleRepeatingTimer(double seconds,
                                                                   std::function<void()> action) {
    return std::make_unique<LoopTimer>(seconds, false, std::move(action), guard_);
}

std::unique_ptr<platform::Timer> QtRunLoop::scheduleTimer(double seconds, std::function<void()> action) {
    return std::make_unique<LoopTimer>(seconds, true, std::move(action), guard_);
}

void QtRunLoop::post(std::function<void()> action) {
    QMetaObject::invokeMethod(
        &context_, [this, action = std::move(action)] { guard_.run("posted work", action); },
        Qt::QueuedConnection);
}

} // namespace corvane::qt
