#pragma once

#include <algorithm>
#include <chrono>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include "platform/RunLoop.h"

namespace corvane::fakes {

/// Time stands still; a test makes it pass, or makes timers fire.
class FakeRunLoop final : public platform::RunLoop {
public:
    [[nodiscard]] std::unique_ptr<platform::Timer>
    scheduleRepeatingTimer(double seconds, std::function<void()> action) override {
        return std::make_unique<FakeTimer>(*this, seconds, false, std::move(action));
    }
    [[nodiscard]] std::unique_ptr<platform::Timer> scheduleTimer(double seconds,
                                                                 std::function<void()> action) override {
        return std::make_unique<FakeTimer>(*this, seconds, true, std::move(action));
    }
    void post(std::function<void()> action) override {
        const std::lock_guard lock(mutex_);
        posted_.push_back(std::move(action));
    }
    /// Runs what was posted, and what that posts.
    void runPosted() {
        while (auto action = takePosted())
            action();
    }
    /// Waits until something was posted by another thread, ten seconds at most, and runs it.
    [[nodiscard]] bool waitForPosted() {
        for (int i = 0; i < 1000; ++i) {
            if (auto action = takePosted()) return action(), runPosted(), true;
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return false;
    }
    /// Lets time pass, and each timer fire when its time has come.
    void advance(double seconds) {
        const double end = now_ + seconds;
        while (!running_.empty()) {
            auto* next =
                *std::ranges::min_element(running_, {}, [](const auto* timer) { return timer->due; });
            if (next->due > end) break;
            now_ = next->due;
            fire(*next);
        }
        now_ = end;
    }
    /// Intervals of the timers that are running, in seconds.
    [[nodiscard]] std::vector<double> intervals() const {
        std::vector<double> all;
        for (const auto* timer : running_)
            all.push_back(timer->seconds);
        return all;
    }
    void fireAll() {
        const auto timers = running_;
        for (auto* timer : timers)
            if (std::ranges::find(running_, timer) != running_.end()) fire(*timer);
    }

private:
    struct FakeTimer final : platform::Timer {
        FakeTimer(FakeRunLoop& runLoop, double interval, bool isOnce, std::function<void()> what)
            : loop(runLoop), seconds(interval), once(isOnce), due(runLoop.now_ + interval),
              action(std::move(what)) {
            loop.running_.push_back(this);
        }
        FakeTimer(const FakeTimer&) = delete;
        FakeTimer& operator=(const FakeTimer&) = delete;
        ~FakeTimer() override { invalidate(); }
        void invalidate() override { std::erase(loop.running_, this); }
        FakeRunLoop& loop;
        double seconds;
        bool once;
        double due;
        std::function<void()> action;
    };
    /// The action may drop its timer, and itself with it.
    static void fire(FakeTimer& timer) {
        const auto action = timer.action;
        timer.due += timer.seconds;
        if (timer.once) timer.invalidate();
        action();
    }
    std::function<void()> takePosted() {
        const std::lock_guard lock(mutex_);
        if (posted_.empty()) return {};
        auto first = std::move(posted_.front());
        posted_.pop_front();
        return first;
    }
    double now_ = 0;
    std::vector<FakeTimer*> running_;
    std::mutex mutex_;
    std::deque<std::function<void()>> posted_;
};

} // namespace corvane::fakes
