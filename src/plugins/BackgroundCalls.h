#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

#include "platform/RunLoop.h"

namespace corvane::plugins {

/// Requests that would keep the main thread waiting, done one after the other in a thread of their own, which
/// begins with the first of them. Main thread.
class BackgroundCalls {
public:
    /// What is left to do on the main thread once a request has been answered.
    using Completion = std::function<void()>;
    /// Runs in the background. It must not throw.
    using Request = std::function<Completion()>;

    /// `runLoop` outlives this.
    explicit BackgroundCalls(platform::RunLoop& runLoop) : runLoop_(runLoop) {}
    BackgroundCalls(const BackgroundCalls&) = delete;
    BackgroundCalls& operator=(const BackgroundCalls&) = delete;
    ~BackgroundCalls() { finish(); }

    void run(Request request);
    /// Waits for the request that is under way. Those that were not begun, and all that come later, are
    /// dropped.
    void finish();

private:
    void work();

    platform::RunLoop& runLoop_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Request> waiting_;
    bool ends_ = false;
    std::thread thread_;
};

} // namespace corvane::plugins
