#include "plugins/PluginTasks.h"

#include <atomic>
#include <cmath>
#include <map>

#include "directory/CustomCalls.h"
#include "plugins/BackgroundCalls.h"
#include "plugins/HostObject.h"
#include "plugins/HostQueries.h"
#include "plugins/PluginHostTable.h"

namespace corvane::plugins {

struct PluginTasks::Waiting {
    explicit Waiting(PluginCallbacks itsCallbacks) : callbacks(std::move(itsCallbacks)) {}
    PluginCallbacks callbacks;
    Number last = 0;
    /// Read in the background before a request is sent: is it still wanted?
    using Wanted = std::shared_ptr<std::atomic<bool>>;
    std::map<Number, Wanted> requests;
    std::map<Number, std::unique_ptr<platform::Timer>> timers;
    bool isOver = false; ///< the plug-in object is gone
};

namespace {

/// A request's bytes, overwritten whether it was sent, cancelled or dropped.
struct Secret {
    explicit Secret(util::Bytes what) : bytes(std::move(what)) {}
    Secret(const Secret&) = delete;
    Secret& operator=(const Secret&) = delete;
    ~Secret() { util::wipe(bytes); }
    util::Bytes bytes;
};

} // namespace

/// Nothing in it belongs to the main thread before it gets there.
struct PluginTasks::Answer {
    halden::Error error;
    std::optional<util::Bytes> reply;
    std::optional<halden::RecordList> records;
};

PluginTasks::PluginTasks(PluginCallbacks callbacks)
    : waiting_(std::make_shared<Waiting>(std::move(callbacks))) {}

PluginTasks::~PluginTasks() {
    waiting_->isOver = true;
    waiting_->timers.clear();
    for (const auto& [number, wanted] : waiting_->requests)
        *wanted = false;
    waiting_->requests.clear();
}

void PluginTasks::post(CorvaneTask task, void* data) {
    waiting_->callbacks.host().surroundings().runLoop.post([waiting = waiting_, task, data] {
        if (!waiting->isOver) waiting->callbacks.run("posted work", [&] { task(data); });
    });
}

PluginTasks::Number PluginTasks::startTimer(double seconds, bool repeats, CorvaneTask task, void* data) {
    auto& waiting = *waiting_;
    const auto number = ++waiting.last;
    // A weak reference: the timer is one of the things that are waiting.
    const auto fire = [weak = std::weak_ptr(waiting_), number, repeats, task, data] {
        const auto held = weak.lock();
        if (!held) return;
        const auto itself = repeats ? nullptr : std::move(held->timers[number]);
        if (!repeats) held->timers.erase(number);
        held->callbacks.run("a timer", [&] { task(data); });
    };
    auto& loop = waiting.callbacks.host().surroundings().runLoop;
    waiting.timers[number] =
        repeats ? loop.scheduleRepeatingTimer(seconds, fire) : loop.scheduleTimer(seconds, fire);
    return number;
}

PluginTasks::Number PluginTasks::ask(Ask question, Receiver receiver) {
    const auto number = ++waiting_->last;
    const auto wanted = std::make_shared<std::atomic<bool>>(true);
    waiting_->requests[number] = wanted;
    waiting_->callbacks.host().surroundings().background.run(
        [waiting = waiting_, number, receiver, wanted,
         question = std::move(question)]() -> BackgroundCalls::Completion {
            if (!*wanted) return [] {};
            auto answer = std::make_shared<Answer>();
            try {
                *answer = question(answer->error);
            } catch (const std::exception& failure) {
                answer->error = {CORVANE_ERROR_HOST, "The request failed.", failure.what(), ""};
            }
            return [waiting, number, receiver, answer] { deliver(*waiting, number, receiver, *answer); };
        });
    return number;
}

PluginTasks::Number PluginTasks::send(std::shared_ptr<halden::Node> node, std::int32_t code,
                                      util::Bytes request, Receiver receiver) {
    const auto held = std::make_shared<const Secret>(std::move(request));
    return ask(
        [node = std::move(node), code, held](halden::Error&) {
            Answer answer;
            answer.reply = node->customCall(code, held->bytes, &answer.error);
            return answer;
        },
        receiver);
}

PluginTasks::Number PluginTasks::query(std::shared_ptr<halden::Node> node, halden::QueryParameters parameters,
                                       Receiver receiver) {
    return ask(
        [node = std::move(node), parameters = std::move(parameters)](halden::Error&) {
            Answer answer;
            const auto query = node->query(parameters, &answer.error);
            if (query) answer.records = query->results(false, &answer.error);
            return answer;
        },
        receiver);
}

PluginTasks::Number PluginTasks::refuse(halden::Error error, Receiver receiver) {
    const auto number = ++waiting_->last;
    waiting_->requests[number] = std::make_shared<std::atomic<bool>>(true);
    const auto answer = std::make_shared<Answer>();
    answer->error = std::move(error);
    waiting_->callbacks.host().surroundings().runLoop.post(
        [waiting = waiting_, number, receiver, answer] { deliver(*waiting, number, receiver, *answer); });
    return number;
}

void PluginTasks::deliver(Waiting& waiting, Number number, const Receiver& receiver, const Answer& answer) {
    if (waiting.requests.erase(number) == 0) return; // cancelled
    CorvaneObject* reply = nullptr;
    CorvaneObject* error = nullptr;
    if (answer.error) report(answer.error, &error);
    if (answer.reply) reply = newReference(util::Data(*answer.reply));
    if (answer.records) reply = newReference(arrayOf(*answer.records));
    waiting.callbacks.run("an answer", [&] { receiver.completion(receiver.data, reply, error); });
    hostObjectsTable().release(reply);
    hostObjectsTable().release(error);
}

void PluginTasks::cancel(Number number) {
    if (const auto request = waiting_->requests.find(number); request != waiting_->requests.end()) {
        *request->second = false;
        waiting_->requests.erase(request);
    }
    const auto timer = waiting_->timers.find(number);
    if (timer == waiting_->timers.end()) return;
    const auto dropped = std::move(timer->second); // may be the one whose call this is
    waiting_->timers.erase(timer);
}

namespace {

PluginTasks& tasksOf(void* context) { return static_cast<PluginHostTable*>(context)->tasks(); }

/// Begins a request to the node behind a reference; for what is no node, the receiver gets an error. 0
/// without a receiver.
template <typename Body>
uint64_t begin(void* context, CorvaneObject* object, PluginTasks::Receiver receiver, Body body) noexcept {
    if (receiver.completion == nullptr) return 0;
    return shielded<uint64_t>(0, nullptr, [&] {
        const auto* node = contentOf<HostNode>(object);
        if (node == nullptr) return tasksOf(context).refuse(wrongObject("node"), receiver);
        return body(*node);
    });
}

uint64_t customCall(void* context, CorvaneObject* object, int32_t code, const void* request, uint64_t length,
                    CorvaneCompletion completion, void* data) {
    return begin(context, object, {completion, data}, [&](const HostNode& node) {
        const auto* bytes = static_cast<const uint8_t*>(request);
        return tasksOf(context).send(node.node, code,
                                     bytes == nullptr ? util::Bytes() : util::Bytes(bytes, bytes + length),
                                     {completion, data});
    });
}

uint64_t customCallSendPropertyList(void* context, CorvaneObject* object, int32_t code,
                                    const CorvaneObject* propertyList, const uint8_t authorization[32],
                                    CorvaneCompletion completion, void* data) {
    return begin(context, object, {completion, data}, [&](const HostNode& node) {
        halden::Error error;
        auto request = directory::propertyListRequest(valueOf(propertyList), *node.codec,
                                                      authorizationFrom(authorization), &error);
        if (!request) return tasksOf(context).refuse(error, {completion, data});
        return tasksOf(context).send(node.node, code, std::move(*request), {completion, data});
    });
}

uint64_t records(void* context, CorvaneObject* object, const char* recordType, const char* name,
                 CorvaneObject* attributes, uint32_t maximum, CorvaneCompletion completion, void* data) {
    return begin(context, object, {completion, data}, [&](const HostNode& node) {
        return tasksOf(context).query(node.node, parametersFor(recordType, name, attributes, maximum),
                                      {completion, data});
    });
}

uint64_t startTimer(void* context, double seconds, int8_t repeats, CorvaneTask task, void* data) {
    if (task == nullptr || !std::isfinite(seconds) || seconds < 0) return 0;
    return shielded<uint64_t>(0, nullptr,
                              [&] { return tasksOf(context).startTimer(seconds, repeats != 0, task, data); });
}

} // namespace

const CorvaneTasks& hostTasksTable() {
    static const CorvaneTasks table = [] {
        CorvaneTasks made{};
        made.size = sizeof made;
        made.post = [](void* context, CorvaneTask task, void* data) {
            if (task == nullptr) return;
            shielded<int>(0, nullptr, [&] { return tasksOf(context).post(task, data), 0; });
        };
        made.startTimer = startTimer;
        made.customCall = customCall;
        made.customCallSendPropertyList = customCallSendPropertyList;
        made.records = records;
        made.cancel = [](void* context, uint64_t number) {
            shielded<int>(0, nullptr, [&] { return tasksOf(context).cancel(number), 0; });
        };
        return made;
    }();
    return table;
}

} // namespace corvane::plugins
