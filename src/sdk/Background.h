#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "Guard.h"
#include "Host.h"

/// What would keep the window waiting, done in the background: timers and requests. Dropping one of these
/// objects cancels it; each may be dropped in its own call. Handlers are called on the main thread, never
/// from inside the constructor. On a host that is too old nothing is ever called. Main thread.
namespace corvane::sdk {

class Timer {
public:
    using Handler = std::function<void()>;
    Timer() = default;
    /// Once after `seconds`, or again and again.
    [[nodiscard]] Timer(const Host& host, double seconds, bool repeats, Handler handler)
        : state_(std::make_shared<State>(State{host, std::move(handler), repeats, 0, {}})) {
        if (!host.offers(&CorvaneHost::tasks)) return;
        const auto& table = host.table();
        state_->number =
            table.tasks->startTimer(table.context, seconds, repeats ? 1 : 0, &State::fired, state_.get());
        state_->itself = state_;
    }
    Timer(Timer&&) = default;
    Timer& operator=(Timer&& other) noexcept {
        stop();
        state_ = std::move(other.state_);
        return *this;
    }
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;
    ~Timer() { stop(); }

    void stop() {
        const auto state = std::move(state_);
        if (!state || state->number == 0) return;
        const auto& table = state->host.table();
        table.tasks->cancel(table.context, state->number);
    }

private:
    struct State {
        static void fired(void* self) {
            const auto held = static_cast<State*>(self)->itself.lock(); // the handler may drop the timer
            if (!held) return;
            if (!held->repeats) held->number = 0;
            guard(&held->host.table(), "a timer", 0, [&] { return held->handler(), 0; });
        }
        Host host;
        Handler handler;
        bool repeats;
        std::uint64_t number;
        std::weak_ptr<State> itself;
    };
    std::shared_ptr<State> state_;
};

/// A request to a node of the directory service. The answer comes later; where it failed, `error` says why
/// and the reply is none.
class [[nodiscard]] Request {
public:
    using Handler = std::function<void(const Object& reply, const std::optional<CallError>& error)>;
    Request() = default;
    /// As `Host::customCallSendPropertyList`; the reply is data.
    [[nodiscard]] static Request sendPropertyList(const Host& host, const Object& node, std::int32_t code,
                                                  const Object& propertyList, const AuthorizationForm& form,
                                                  Handler handler) {
        return begun(host, std::move(handler), [&](const CorvaneTasks& tasks, void* context, void* data) {
            return tasks.customCallSendPropertyList(context, node.get(), code, propertyList.get(),
                                                    form.data(), &State::answered, data);
        });
    }
    /// As `Host::customCall`; the reply is data, or none.
    [[nodiscard]] static Request customCall(const Host& host, const Object& node, std::int32_t code,
                                            std::span<const std::uint8_t> bytes, Handler handler) {
        return begun(host, std::move(handler), [&](const CorvaneTasks& tasks, void* context, void* data) {
            return tasks.customCall(context, node.get(), code, bytes.data(), bytes.size(), &State::answered,
                                    data);
        });
    }
    /// As `Host::records`; the reply is an array of dictionaries.
    [[nodiscard]] static Request records(const Host& host, const Object& node, const std::string& recordType,
                                         const std::string& name, const std::vector<std::string>& attributes,
                                         std::uint32_t maximum, Handler handler) {
        const auto names = host.array(attributes);
        return begun(host, std::move(handler), [&](const CorvaneTasks& tasks, void* context, void* data) {
            return tasks.records(context, node.get(), recordType.c_str(),
                                 name.empty() ? nullptr : name.c_str(), names.get(), maximum,
                                 &State::answered, data);
        });
    }
    Request(Request&&) = default;
    Request& operator=(Request&& other) noexcept {
        cancel();
        state_ = std::move(other.state_);
        return *this;
    }
    Request(const Request&) = delete;
    Request& operator=(const Request&) = delete;
    ~Request() { cancel(); }

    /// The answer hasn't come yet.
    [[nodiscard]] bool isUnderWay() const { return state_ && state_->number != 0; }
    void cancel() {
        const auto state = std::move(state_);
        if (!state || state->number == 0) return;
        const auto& table = state->host.table();
        table.tasks->cancel(table.context, state->number);
    }

private:
    struct State {
        static void answered(void* self, CorvaneObject* reply, CorvaneObject* error) {
            const auto held = static_cast<State*>(self)->itself.lock(); // the handler may drop the request
            if (!held) return;
            held->number = 0;
            guard(&held->host.table(), "an answer", 0, [&] {
                const auto& objects = *held->host.table().objects;
                const auto failure = error == nullptr
                                         ? std::nullopt
                                         : std::optional<CallError>(Object(objects, objects.retain(error)));
                held->handler(Object(objects, objects.retain(reply)), failure);
                return 0;
            });
        }
        Host host;
        Handler handler;
        std::uint64_t number;
        std::weak_ptr<State> itself;
    };
    template <typename Begin>
    [[nodiscard]] static Request begun(const Host& host, Handler handler, Begin begin) {
        Request made;
        made.state_ = std::make_shared<State>(State{host, std::move(handler), 0, {}});
        made.state_->itself = made.state_;
        if (host.offers(&CorvaneHost::tasks))
            made.state_->number = begin(*host.table().tasks, host.table().context, made.state_.get());
        return made;
    }
    std::shared_ptr<State> state_;
};

/// Calls `handler` soon, on the main thread. May be called from any thread, for as long as the plug-in object
/// lives.
inline void post(const Host& host, std::function<void()> handler) {
    if (!host.offers(&CorvaneHost::tasks)) return;
    const auto& table = host.table();
    auto* held = new std::pair<Host, std::function<void()>>(host, std::move(handler));
    const auto run = [](void* data) {
        const std::unique_ptr<std::pair<Host, std::function<void()>>> posted(
            static_cast<std::pair<Host, std::function<void()>>*>(data));
        guard(&posted->first.table(), "posted work", 0, [&] { return posted->second(), 0; });
    };
    table.tasks->post(table.context, run, held);
}

} // namespace corvane::sdk
