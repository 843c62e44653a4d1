// Timers, posted work and requests whose answers come later, as a plug-in meets them.
#include <gtest/gtest.h>

#include <future>
#include <thread>

#include "fakes/FakeHost.h"
#include "plugins/PluginHostTable.h"
#include "sdk/Background.h"

using namespace corvane;
using Texts = std::vector<std::string>;

namespace {

struct TasksOfAPlugin : testing::Test {
    TasksOfAPlugin() {
        program.session = session;
        program.configNode = std::make_shared<directory::HaldenNodeConfig>(
            session->nodeWithType(halden::NodeType::configNode, nullptr));
        session->config().onCall = [this](const fakes::ReceivedCall& call, halden::Error* error) {
            askedOn = std::this_thread::get_id();
            asked.push_back({call.code, {call.request.begin(), call.request.end()}});
            if (refusal) *error = refusal;
            return refusal ? std::nullopt : std::optional(util::bytesFromText("reply"));
        };
    }
    [[nodiscard]] sdk::Object node() const { return host.haldenConfigNode(); }
    [[nodiscard]] sdk::Request send(std::int32_t code, sdk::Request::Handler handler) {
        return sdk::Request::customCall(host, node(), code, {}, std::move(handler));
    }
    /// Waits for the answer of a request that was sent last: they are answered in turn.
    void waitForAll() {
        bool isDone = false;
        const auto last = send(9999, [&](const auto&, const auto&) { isDone = true; });
        while (!isDone)
            ASSERT_TRUE(program.runLoop.waitForPosted());
    }

    fakes::Journal journal;
    std::shared_ptr<fakes::FakeSession> session = std::make_shared<fakes::FakeSession>(journal);
    halden::Error refusal;
    std::vector<std::pair<std::int32_t, util::Bytes>> asked;
    std::thread::id askedOn;
    fakes::FakeHost program;
    std::unique_ptr<plugins::PluginHostTable> hostTable =
        std::make_unique<plugins::PluginHostTable>(program.makeImplementor(), "Mine");
    sdk::Host host{hostTable->table()};
};

} // namespace

TEST_F(TasksOfAPlugin, timer_firesOnceOrAgainAndAgain) {
    int once = 0;
    int often = 0;
    const sdk::Timer first(host, 1, false, [&] { ++once; });
    const sdk::Timer second(host, 1, true, [&] { ++often; });
    program.runLoop.advance(0.5);
    EXPECT_EQ(once + often, 0);
    program.runLoop.advance(3);
    EXPECT_EQ(once, 1);
    EXPECT_EQ(often, 3);
}

TEST_F(TasksOfAPlugin, droppedTimer_neverFires) {
    int fired = 0;
    {
        const sdk::Timer timer(host, 1, true, [&] { ++fired; });
    }
    program.runLoop.advance(5);
    EXPECT_EQ(fired, 0);
    EXPECT_TRUE(program.runLoop.intervals().empty());
}

TEST_F(TasksOfAPlugin, timerDroppedInItsOwnCall_isHarmless) {
    int fired = 0;
    std::optional<sdk::Timer> timer;
    timer.emplace(host, 1, true, [&] {
        ++fired;
        timer.reset();
    });
    program.runLoop.advance(5);
    EXPECT_EQ(fired, 1);
}

TEST_F(TasksOfAPlugin, impossibleTimer_isNone) {
    const auto& table = hostTable->table();
    const auto task = [](void*) {};
    EXPECT_EQ(table.tasks->startTimer(table.context, -1, 0, task, nullptr), 0U);
    EXPECT_EQ(
        table.tasks->startTimer(table.context, std::numeric_limits<double>::quiet_NaN(), 0, task, nullptr),
        0U);
    EXPECT_EQ(table.tasks->startTimer(table.context, 1, 0, nullptr, nullptr), 0U);
}

TEST_F(TasksOfAPlugin, postedWork_isDoneOnTheMainThreadInOrder) {
    Texts done;
    sdk::post(host, [&] { done.emplace_back("first"); });
    std::thread([&] { sdk::post(host, [&] { done.emplace_back("second"); }); }).join();
    EXPECT_TRUE(done.empty()) << "not from inside the call";
    program.runLoop.runPosted();
    EXPECT_EQ(done, (Texts{"first", "second"}));
}

TEST_F(TasksOfAPlugin, request_isSentInTheBackgroundAndAnsweredOnTheMainThread) {
    std::thread::id answeredOn;
    std::string reply;
    const auto request = send(1201, [&](const sdk::Object& data, const std::optional<sdk::CallError>& error) {
        answeredOn = std::this_thread::get_id();
        reply = error ? "error" : std::string(data.bytes().begin(), data.bytes().end());
    });
    EXPECT_TRUE(request.isUnderWay());
    waitForAll();
    EXPECT_EQ(reply, "reply");
    EXPECT_EQ(answeredOn, std::this_thread::get_id());
    EXPECT_NE(askedOn, std::this_thread::get_id());
    EXPECT_FALSE(request.isUnderWay());
    EXPECT_EQ(asked.front().first, 1201);
}

TEST_F(TasksOfAPlugin, refusedRequest_bringsTheError) {
    refusal = {4400, "It was not saved.", "The disk is full.", "Make room."};
    std::string said;
    const auto request = send(1, [&](const sdk::Object& data, const std::optional<sdk::CallError>& error) {
        EXPECT_FALSE(data);
        said = std::string(error->what()) + error->reason() + error->recovery();
    });
    waitForAll();
    EXPECT_EQ(said, "It was not saved.The disk is full.Make room.");
}

TEST_F(TasksOfAPlugin, propertyList_isSentBehindTheAuthorization) {
    sdk::AuthorizationForm form;
    (void)host.makeAuthExternalForm(form);
    auto list = host.dictionary();
    list.set("job", host.integer(3));
    const auto request =
        sdk::Request::sendPropertyList(host, node(), 1211, list, form, [](const auto&, const auto&) {});
    waitForAll();
    const auto& bytes = asked.front().second;
    ASSERT_GT(bytes.size(), 32U);
    EXPECT_EQ(bytes.front(), 0x42);
    const util::Bytes document(bytes.begin() + 32, bytes.end());
    EXPECT_EQ(program.codec.parse(document, nullptr).as<util::Dictionary>().valueForKey("job"),
              util::Value(3));
}

TEST_F(TasksOfAPlugin, valueWithoutAPropertyListForm_isAnErrorAndNothingIsSent) {
    bool failed = false;
    const sdk::AuthorizationForm form;
    const auto request = sdk::Request::sendPropertyList(
        host, node(), 1211, {}, form,
        [&](const auto&, const std::optional<sdk::CallError>& error) { failed = error.has_value(); });
    EXPECT_FALSE(failed) << "not from inside the call";
    program.runLoop.runPosted();
    EXPECT_TRUE(failed);
    EXPECT_TRUE(asked.empty());
}

TEST_F(TasksOfAPlugin, cancelledRequest_isNeverAnswered) {
    bool heard = false;
    {
        const auto request = send(1, [&](const auto&, const auto&) { heard = true; });
    }
    waitForAll();
    EXPECT_FALSE(heard);
}

TEST_F(TasksOfAPlugin, requestCancelledWhileItWaits_isNeverSent) {
    std::promise<void> release;
    session->config().onCall = [&, gate = release.get_future().share()](const fakes::ReceivedCall& call,
                                                                        halden::Error*) {
        asked.push_back({call.code, {}});
        if (call.code == 1) gate.wait();
        return std::optional(util::Bytes());
    };
    const auto first = send(1, [](const auto&, const auto&) {});
    {
        const auto second = send(2, [](const auto&, const auto&) {});
    }
    release.set_value();
    waitForAll();
    ASSERT_EQ(asked.size(), 2U);
    EXPECT_EQ(asked[0].first, 1);
    EXPECT_EQ(asked[1].first, 9999);
}

TEST_F(TasksOfAPlugin, records_areAskedForAsByTheBlockingEntry) {
    session->config().records = {std::make_shared<fakes::FakeRecord>("Users", "alice"),
                                 std::make_shared<fakes::FakeRecord>("Users", "bob")};
    std::uint64_t count = 0;
    const auto request = sdk::Request::records(host, node(), "Users", "bob", {"RealName"}, 7,
                                               [&](const sdk::Object& records, const auto& error) {
                                                   EXPECT_FALSE(error);
                                                   count = records.count();
                                               });
    waitForAll();
    const auto& asking = session->config().queries.back();
    EXPECT_EQ(asking.recordTypes, Texts{"Users"});
    EXPECT_EQ(asking.values, Texts{"bob"});
    EXPECT_EQ(asking.attributesToReturn, Texts{"RealName"});
    EXPECT_EQ(asking.maximumResults, 7U);
    EXPECT_EQ(count, host.records(node(), "Users", "bob", {"RealName"}, 7).count());
}

TEST_F(TasksOfAPlugin, hostWithoutTasks_neverCallsBack) {
    auto older = hostTable->table();
    older.size = offsetof(CorvaneHost, tasks);
    const sdk::Host old(older);
    const sdk::Timer timer(old, 0, false, [] { FAIL(); });
    const auto request =
        sdk::Request::customCall(old, node(), 1, {}, [](const auto&, const auto&) { FAIL(); });
    sdk::post(old, [] { FAIL(); });
    EXPECT_FALSE(request.isUnderWay());
    program.runLoop.advance(1);
    program.runLoop.runPosted();
    EXPECT_TRUE(asked.empty());
}

TEST_F(TasksOfAPlugin, destroyedPluginObject_hearsOfNothingAnyMore) {
    int heard = 0;
    const auto& table = hostTable->table();
    const auto count = [](void* data) { ++*static_cast<int*>(data); };
    const auto answer = [](void* data, CorvaneObject*, CorvaneObject*) { ++*static_cast<int*>(data); };
    EXPECT_NE(table.tasks->startTimer(table.context, 1, 1, count, &heard), 0U);
    table.tasks->post(table.context, count, &heard);
    const auto config = node();
    EXPECT_NE(table.tasks->customCall(table.context, config.get(), 1, nullptr, 0, answer, &heard), 0U);
    hostTable.reset();
    program.runLoop.advance(5);
    EXPECT_TRUE(program.runLoop.waitForPosted()) << "the post, which does nothing, and perhaps the answer";
    EXPECT_EQ(heard, 0);
}

TEST_F(TasksOfAPlugin, handlerThatThrows_isReportedLikeAnyOperation) {
    const sdk::Timer timer(host, 1, false, [] { throw std::runtime_error("oops"); });
    program.runLoop.advance(2);
    EXPECT_EQ(program.done, Texts{"failed Mine a timer: oops"});
}

TEST_F(TasksOfAPlugin, whatIsNoNode_isAnErrorForTheHandler) {
    std::optional<sdk::CallError> heard;
    const auto request = sdk::Request::records(
        host, {}, "dsRecTypeStandard:Users", "", {}, 1,
        [&](const sdk::Object&, const std::optional<sdk::CallError>& error) { heard = error; });
    EXPECT_TRUE(request.isUnderWay());
    EXPECT_FALSE(heard) << "never from inside the call itself";
    ASSERT_TRUE(program.runLoop.waitForPosted());
    ASSERT_TRUE(heard);
    EXPECT_EQ(heard->code(), CORVANE_ERROR_PARAMETER);
    EXPECT_NE(std::string(heard->what()).find("node"), std::string::npos);
    EXPECT_FALSE(request.isUnderWay());
}

TEST_F(TasksOfAPlugin, requestWithoutAReceiver_isNotBegun) {
    const auto& table = hostTable->table();
    const auto config = node();
    EXPECT_EQ(table.tasks->customCall(table.context, config.get(), 1, nullptr, 0, nullptr, nullptr), 0U);
}
