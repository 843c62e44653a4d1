#include "contract/platform/DesktopContracts.h"

#include <algorithm>
#include <thread>
#include <vector>

using namespace corvane;
using namespace corvane::contract;
using Names = std::vector<std::string>;

namespace corvane::contract {
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(UserDefaultsContract);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(RunLoopContract);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(WorkspaceContract);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(LocalizedStringsContract);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(BundleLoaderContract);
} // namespace corvane::contract

TEST_P(UserDefaultsContract, absentKey_isNoTextAndFalse) {
    const auto world = GetParam().make();
    EXPECT_EQ(world->defaults().stringForKey("absent"), std::nullopt);
    EXPECT_FALSE(world->defaults().boolForKey("absent"));
}

TEST_P(UserDefaultsContract, textWritten_isReadBackAsItWas) {
    const auto world = GetParam().make();
    for (const auto* text :
         {"server.example.com", "", "αβγ ’ “x”", "two\nlines", "a=b;c,[d]%41\\n", "  spaced  "}) {
        world->defaults().setString("Last Server IP Address", text);
        EXPECT_EQ(world->defaults().stringForKey("Last Server IP Address"), text);
        world->restart();
        EXPECT_EQ(world->defaults().stringForKey("Last Server IP Address"), text) << "after a restart";
    }
}

TEST_P(UserDefaultsContract, truthValueWritten_isReadBack) {
    const auto world = GetParam().make();
    for (const bool value : {true, false}) {
        world->defaults().setBool("FirstLaunch", value);
        EXPECT_EQ(world->defaults().boolForKey("FirstLaunch"), value);
        world->restart();
        EXPECT_EQ(world->defaults().boolForKey("FirstLaunch"), value) << "after a restart";
    }
}

TEST_P(UserDefaultsContract, keys_areIndependentAndToldApartByCase) {
    const auto world = GetParam().make();
    world->defaults().setString("Key", "one");
    world->defaults().setString("key", "two");
    world->defaults().setString("key/sub", "three");
    EXPECT_EQ(world->defaults().stringForKey("Key"), "one");
    EXPECT_EQ(world->defaults().stringForKey("key"), "two");
    EXPECT_EQ(world->defaults().stringForKey("key/sub"), "three");
}

TEST_P(RunLoopContract, timer_firesFromTheLoopAgainAndAgain) {
    const auto world = GetParam().make();
    int calls = 0;
    const auto timer = world->runLoop().scheduleRepeatingTimer(RunLoopUnderTest::interval, [&] { ++calls; });
    ASSERT_NE(timer, nullptr);
    EXPECT_EQ(calls, 0);
    world->letOneIntervalPass();
    EXPECT_GE(calls, 1);
    const int before = calls;
    world->letOneIntervalPass();
    EXPECT_GT(calls, before);
}

TEST_P(RunLoopContract, timerInvalidatedOrDropped_firesNoMore) {
    const auto world = GetParam().make();
    int calls = 0;
    const auto count = [&] { ++calls; };
    const auto invalidated = world->runLoop().scheduleRepeatingTimer(RunLoopUnderTest::interval, count);
    auto dropped = world->runLoop().scheduleRepeatingTimer(RunLoopUnderTest::interval, count);
    invalidated->invalidate();
    invalidated->invalidate(); // harmless
    dropped.reset();
    world->letOneIntervalPass();
    EXPECT_EQ(calls, 0);
}

TEST_P(RunLoopContract, timerInvalidatedFromItsOwnCall_firesOnce) {
    const auto world = GetParam().make();
    int calls = 0;
    std::unique_ptr<platform::Timer> timer;
    timer = world->runLoop().scheduleRepeatingTimer(RunLoopUnderTest::interval, [&] {
        ++calls;
        timer->invalidate();
    });
    world->letOneIntervalPass();
    world->letOneIntervalPass();
    EXPECT_EQ(calls, 1);
}

TEST_P(RunLoopContract, timerDroppedFromItsOwnCall_firesOnceAndKeepsWhatTheCallHolds) {
    const auto world = GetParam().make();
    int calls = 0;
    std::unique_ptr<platform::Timer> timer;
    const auto held = std::make_shared<int>(5);
    timer = world->runLoop().scheduleRepeatingTimer(RunLoopUnderTest::interval, [&, held] {
        timer.reset();
        calls += *held; // what the action holds is still there
    });
    world->letOneIntervalPass();
    world->letOneIntervalPass();
    EXPECT_EQ(calls, 5);
    EXPECT_EQ(held.use_count(), 1) << "nobody keeps the action of a timer that is gone";
}

TEST_P(RunLoopContract, postedWork_isDoneInOrderByTheLoopWhateverThreadItComesFrom) {
    const auto world = GetParam().make();
    std::vector<int> done;
    std::vector<std::thread::id> threads;
    const auto note = [&](int number) {
        done.push_back(number);
        threads.push_back(std::this_thread::get_id());
    };
    world->runLoop().post([&] { note(1); });
    std::thread([&] { world->runLoop().post([&] { note(2); }); }).join();
    EXPECT_TRUE(done.empty()) << "not from inside the call";
    world->letOneIntervalPass();
    EXPECT_EQ(done, (std::vector<int>{1, 2}));
    EXPECT_EQ(threads, std::vector<std::thread::id>(2, std::this_thread::get_id()));
}

TEST_P(RunLoopContract, timerScheduledOnce_firesOnceUnlessItIsInvalidatedOrDropped) {
    const auto world = GetParam().make();
    int calls = 0;
    const auto count = [&] { ++calls; };
    const auto timer = world->runLoop().scheduleTimer(RunLoopUnderTest::interval, count);
    const auto invalidated = world->runLoop().scheduleTimer(RunLoopUnderTest::interval, count);
    auto dropped = world->runLoop().scheduleTimer(RunLoopUnderTest::interval, count);
    invalidated->invalidate();
    dropped.reset();
    EXPECT_EQ(calls, 0);
    world->letOneIntervalPass();
    world->letOneIntervalPass();
    EXPECT_EQ(calls, 1);
}

TEST_P(WorkspaceContract, fileExists_forFilesAndProgramsThatAreThere) {
    const auto world = GetParam().make();
    EXPECT_TRUE(world->workspace().fileExists(world->file()));
    EXPECT_TRUE(world->workspace().fileExists(world->program()));
    EXPECT_FALSE(world->workspace().fileExists(world->missing()));
    EXPECT_FALSE(world->workspace().fileExists(""));
}

TEST_P(WorkspaceContract, programLaunched_isStartedWithoutArguments) {
    const auto world = GetParam().make();
    EXPECT_TRUE(world->workspace().launchApplication(world->program()));
    EXPECT_EQ(world->started(), (std::vector<Names>{{world->program()}}));
}

TEST_P(WorkspaceContract, fileOpened_isTheProgramsOneArgument) {
    const auto world = GetParam().make();
    EXPECT_TRUE(world->workspace().openFile(world->file(), world->program()));
    EXPECT_EQ(world->started(), (std::vector<Names>{{world->program(), world->file()}}));
}

TEST_P(WorkspaceContract, programThatIsMissing_isNotStarted) {
    const auto world = GetParam().make();
    EXPECT_FALSE(world->workspace().launchApplication(world->missing()));
    EXPECT_FALSE(world->workspace().openFile(world->file(), world->missing()));
    EXPECT_TRUE(world->started().empty());
}

TEST_P(LocalizedStringsContract, keyWithoutATranslation_isItsOwnText) {
    const auto world = GetParam().make();
    for (const auto* key : {"Save Changes?", "Plug-in configuration file %@ is missing.", "Root User…", ""})
        EXPECT_EQ(world->strings().localized(key), key);
}

TEST_P(LocalizedStringsContract, keyWithATranslation_isTranslated) {
    const auto world = GetParam().make();
    if (const auto pair = world->translated()) {
        EXPECT_EQ(world->strings().localized(pair->first), pair->second);
    }
}

TEST_P(BundleLoaderContract, entriesOfAFolder_areAllThatIsThere) {
    const auto world = GetParam().make();
    auto entries = world->loader().entriesOfFolder(world->folder());
    std::ranges::sort(entries);
    EXPECT_EQ(entries, (Names{"Broken.cvplug", "Good.cvplug", "notes.txt"}));
}

TEST_P(BundleLoaderContract, folderThatIsMissing_hasNoEntriesAndIsNoMatter) {
    const auto world = GetParam().make();
    EXPECT_TRUE(world->loader().entriesOfFolder("/nowhere/at/all/").empty());
    EXPECT_TRUE(world->logged().empty());
}

TEST_P(BundleLoaderContract, pathWithoutAModule_givesNullAndTheLogSaysWhich) {
    const auto world = GetParam().make();
    const auto path = world->folder() + "Missing.cvplug";
    EXPECT_EQ(world->loader().bundleAtPath(path), nullptr);
    ASSERT_EQ(world->logged().size(), 1U);
    EXPECT_NE(world->logged()[0].find(path), std::string::npos);
}

TEST_P(BundleLoaderContract, loadedModule_hasTheSymbolsThatItExports) {
    const auto world = GetParam().make();
    const auto bundle = world->loader().bundleAtPath(world->folder() + "Good.cvplug");
    ASSERT_NE(bundle, nullptr);
    EXPECT_EQ(bundle->symbol(BundleLoaderUnderTest::exported), nullptr) << "not loaded yet";
    EXPECT_TRUE(bundle->load());
    EXPECT_NE(bundle->symbol(BundleLoaderUnderTest::exported), nullptr);
    EXPECT_EQ(bundle->symbol("no_such_symbol"), nullptr);
    EXPECT_TRUE(world->logged().empty());
}

TEST_P(BundleLoaderContract, moduleThatCantBeLoaded_isRefusedAndTheLogSaysWhich) {
    const auto world = GetParam().make();
    const auto path = world->folder() + "Broken.cvplug";
    const auto bundle = world->loader().bundleAtPath(path);
    ASSERT_NE(bundle, nullptr);
    EXPECT_FALSE(bundle->load());
    EXPECT_EQ(bundle->symbol(BundleLoaderUnderTest::exported), nullptr);
    ASSERT_EQ(world->logged().size(), 1U);
    EXPECT_NE(world->logged()[0].find(path), std::string::npos);
}

TEST_P(BundleLoaderContract, folderOfTheProgramsOwnPlugins_endsWithASlash) {
    const auto world = GetParam().make();
    EXPECT_TRUE(world->loader().builtInPlugInsPath().ends_with('/'));
}
