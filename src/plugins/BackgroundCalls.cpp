#include "plugins/BackgroundCalls.h"

namespace corvane::plugins {

void BackgroundCalls::finish() {
    {
        const std::lock_guard lock(mutex_);
        ends_ = true;
        waiting_.clear();
    }
    changed_.notify_all();
    if (thread_.joinable()) thread_.join();
}

void BackgroundCalls::run(Request request) {
    {
        const std::lock_guard lock(mutex_);
        if (ends_) return;
        waiting_.push_back(std::move(request));
    }
    changed_.notify_all();
    if (!thread_.joinable()) thread_ = std::thread([this] { work(); });
}

void BackgroundCalls::work() {
    std::unique_lock lock(mutex_);
    while (true) {
        changed_.wait(lock, [this] { return ends_ || !waiting_.empty(); });
        if (ends_) return;
        auto request = std::move(waiting_.front());
        waiting_.pop_front();
        lock.unlock();
        runLoop_.post(request());
        request = {};
        lock.lock();
    }
}

} // namespace corvane::plugins
