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

/// Something that the host will call back about, until it is cancelled.
struct Awaited {
    Host host;
    std::uint64_t number = 0; ///< the host's; 0 when nothing comes any longer
    std::weak_ptr<Awaited> itself = {};

    explicit Awaited(const Host& itsHost) : host(itsHost) {}
    Awaited(const Awaited&) = delete;
    Awaited& operator=(const Awaited&) = delete;
    virtual ~Awaited() = default;
    /// The object that a call is about, held for as long as the call lasts: its handler may drop it.
    template <typename Kind>
    [[nodiscard]] static std::shared_ptr<Kind> held(void* data) {
        return std::static_pointer_cast<Kind>(static_cast<Awaited*>(data)->itself.lock());
    }
};

/// The one that waits for it. Cancels when it is dropped.
class Awaiting {
public:
    Awaiting() = default;
    /// `begin(tasks, context, data)` asks the host and answers its number; not called on a host that is too
    /// old.
    template <typename Begin>
    Awaiting(std::shared_ptr<Awaited> what, Begin begin) : what_(std::move(what)) {
        what_->itself = what_;
        if (!what_->host.offers(&CorvaneHost::tasks)) return;
        const auto& table = what_->host.table();
        what_->number = begin(*table.tasks, table.context, static_cast<void*>(what_.get()));
    }
    Awaiting(Awaiting&&) = default;
    Awaiting& operator=(Awaiting&& other) noexcept {
        cancel();
        what_ = std::move(other.what_);
        return *this;
    }
    Awaiting(const Awaiting&) = delete;
    Awaiting& operator=(const Awaiting&) = delete;
    ~Awaiting() { cancel(); }

    [[nodiscard]] bool isUnderWay() const { return what_ && what_->number != 0; }
    void cancel() {
        const auto what = std::move(what_);
        if (!what || what->number == 0) return;
        const auto& table = what->host.table();
        table.tasks->cancel(table.context, what->number);
    }

private:
    std::shared_ptr<Awaited> what_;
};

class Timer {
public:
    using Handler = std::function<void()>;
    Timer() = default;
    /// Once after `seconds`, or again and again.
    [[nodiscard]] Timer(const Host& host, double seconds, bool repeats, Handler handler)
        : awaiting_(std::make_shared<State>(host, std::move(handler), repeats),
                    [&](const CorvaneTasks& tasks, void* context, void* data) {
                        return tasks.startTimer(context, seconds, repeats ? 1 : 0, &State::fired, data);
                    }) {}
    void stop() { awaiting_.cancel(); }

private:
    struct State : Awaited {
        State(const Host& itsHost, Handler itsHandler, bool doesRepeat)
            : Awaited(itsHost), handler(std::move(itsHandler)), repeats(doesRepeat) {}
        static void fired(void* data) {
            const auto state = held<State>(data);
            if (!state) return;
            if (!state->repeats) state->number = 0;
            guard(&state->host.table(), "a timer", 0, [&] { return state->handler(), 0; });
        }
        Handler handler;
        bool repeats;
    };
    Awaiting awaiting_;
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

    /// The answer hasn't come yet.
    [[nodiscard]] bool isUnderWay() const { return awaiting_.isUnderWay(); }
    void cancel() { awaiting_.cancel(); }

private:
    struct State : Awaited {
        State(const Host& itsHost, Handler itsHandler) : Awaited(itsHost), handler(std::move(itsHandler)) {}
        static void answered(void* data, CorvaneObject* reply, CorvaneObject* error) {
            const auto state = held<State>(data);
            if (!state) return;
            state->number = 0;
            guard(&state->host.table(), "an answer", 0, [&] {
                const auto& objects = *state->host.table().objects;
                const auto failure = error == nullptr
                                         ? std::nullopt
                                         : std::optional<CallError>(Object(objects, objects.retain(error)));
                state->handler(Object(objects, objects.retain(reply)), failure);
                return 0;
            });
        }
        Handler handler;
    };
    template <typename Begin>
    [[nodiscard]] static Request begun(const Host& host, Handler handler, Begin begin) {
        Request made;
        made.awaiting_ = Awaiting(std::make_shared<State>(host, std::move(handler)), begin);
        return made;
    }
    Awaiting awaiting_;
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
