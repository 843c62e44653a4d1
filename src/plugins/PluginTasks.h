#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>

#include "halden/Node.h"
#include "platform/PropertyListCodec.h"
#include "plugins/PluginCallbacks.h"
#include "sdk/Tasks.h"
#include "util/AuthorizationExternalForm.h"

namespace corvane::plugins {

/// What one plug-in object waits for: timers, posted work and requests. All of it is dropped with this.
/// Main thread, but for `post`.
class PluginTasks {
public:
    using Number = std::uint64_t;
    /// Who gets an answer: the plug-in's own function and what it passed along.
    struct Receiver {
        CorvaneCompletion completion;
        void* data;
    };

    explicit PluginTasks(PluginCallbacks callbacks);
    PluginTasks(const PluginTasks&) = delete;
    PluginTasks& operator=(const PluginTasks&) = delete;
    ~PluginTasks();

    /// Any thread.
    void post(CorvaneTask task, void* data);
    [[nodiscard]] Number startTimer(double seconds, bool repeats, CorvaneTask task, void* data);
    /// `request` is overwritten when it is no longer needed.
    [[nodiscard]] Number send(std::shared_ptr<halden::Node> node, std::int32_t code, util::Bytes request,
                              Receiver receiver);
    [[nodiscard]] Number query(std::shared_ptr<halden::Node> node, halden::QueryParameters parameters,
                               Receiver receiver);
    /// Answers an error without asking anybody.
    [[nodiscard]] Number refuse(halden::Error error, Receiver receiver);
    void cancel(Number number);

private:
    /// Shared with what comes back later, which finds out here whether anybody still waits.
    struct Waiting;
    struct Answer;
    using Ask = std::function<Answer(halden::Error& error)>;
    [[nodiscard]] Number ask(Ask question, Receiver receiver);
    static void deliver(Waiting& waiting, Number number, const Receiver& receiver, const Answer& answer);

    std::shared_ptr<Waiting> waiting_;
};

/// The table, the same for every plug-in. Contexts are `PluginHostTable`s.
[[nodiscard]] const CorvaneTasks& hostTasksTable();

} // namespace corvane::plugins
