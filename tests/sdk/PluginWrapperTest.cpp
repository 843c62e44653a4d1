#include "sdk/PluginWrapper.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <stdexcept>

#include "fakes/RecordingPlugin.h"

using namespace corvane;
using Recording = fakes::RecordingPlugin<0>;

namespace {

struct ThrowsNoException {
    bool isDirty() { throw 7; }
};
struct CantBeMade {
    CantBeMade() { throw std::runtime_error("no"); }
};

struct ThrowsNumberWhenMade {
    ThrowsNumberWhenMade() { throw 7; }
};
struct Introduced {
    static constexpr sdk::About about{"Example", "1.0", "Jane Doe", "https://example.com"};
};

void ignoreReason(void* /*context*/, const char* /*reason*/) {}

/// A host that writes failures down.
CorvaneHost hostThatKeeps(std::string& failures) {
    CorvaneHost host{};
    host.context = &failures;
    host.pluginFailed = [](void* context, const char* operation, const char* reason) {
        *static_cast<std::string*>(context) += std::string(operation) + ": " + reason + "\n";
    };
    return host;
}

/// Entries of a table that are filled, `create` and `destroy` left out.
int filledEntries(const CorvanePlugin& t) {
    const bool filled[] = {t.setPluginAPIImplementor != nullptr,
                           t.pluginName != nullptr,
                           t.isEnabledForLocation != nullptr,
                           t.canSetEnabledForLocation != nullptr,
                           t.setEnabledForLocation != nullptr,
                           t.canConfigure != nullptr,
                           t.configureButtonClicked != nullptr,
                           t.selfTest != nullptr,
                           t.isDirty != nullptr,
                           t.saveChanges != nullptr,
                           t.revertChanges != nullptr,
                           t.applicationWillQuitSavingChanges != nullptr,
                           t.applicationWillLockSavingChanges != nullptr,
                           t.shouldAllowNodeNameOnSearchPolicy != nullptr,
                           t.nodesToRemove != nullptr};
    return static_cast<int>(std::count(std::begin(filled), std::end(filled), true));
}

} // namespace

TEST(PluginWrapper, classWithEveryMethod_fillsEveryEntry) {
    const auto& table = *sdk::tableFor<Recording>();
    EXPECT_EQ(table.size, sizeof(CorvanePlugin));
    EXPECT_EQ(table.version, static_cast<std::uint32_t>(CORVANE_PLUGIN_VERSION));
    EXPECT_EQ(filledEntries(table), 15);
}

TEST(PluginWrapper, classWithoutMethods_fillsWhatTheWrapperNeedsAlone) {
    const auto& table = *sdk::tableFor<fakes::EmptyPlugin>();
    EXPECT_EQ(filledEntries(table), 1);
    EXPECT_NE(table.setPluginAPIImplementor, nullptr);
}

TEST(PluginWrapper, table_isTheSameOneEveryTime) {
    EXPECT_EQ(sdk::tableFor<Recording>(), sdk::tableFor<Recording>());
}

TEST(PluginWrapper, whatIsThrown_becomesAReportAndFalse) {
    std::string told;
    const auto host = hostThatKeeps(told);
    const auto& table = *sdk::tableFor<ThrowsNoException>();
    void* self = table.create(ignoreReason, nullptr);
    EXPECT_EQ(table.isDirty(self), 0) << "before there is anybody to report to";
    table.setPluginAPIImplementor(self, &host);
    EXPECT_EQ(table.isDirty(self), 0);
    table.destroy(self);
    EXPECT_EQ(told, "isDirty: an unknown exception\n");
}

TEST(PluginWrapper, objectThatCantBeMade_isNullAndSaysWhy) {
    std::string reason;
    const auto take = [](void* context, const char* text) { *static_cast<std::string*>(context) = text; };
    EXPECT_EQ(sdk::tableFor<CantBeMade>()->create(take, &reason), nullptr);
    EXPECT_EQ(reason, "no");
    EXPECT_EQ(sdk::tableFor<ThrowsNumberWhenMade>()->create(take, &reason), nullptr);
    EXPECT_EQ(reason, "an unknown exception");
}

TEST(PluginWrapper, tableForAHost_isThereForVersionsThatItCanUseAlone) {
    const auto fits = [](std::uint32_t oldest, std::uint32_t newest) {
        const CorvaneHandshake host{sizeof host, oldest, newest, "Any"};
        return sdk::tableForHost<fakes::EmptyPlugin>(&host) == sdk::tableFor<fakes::EmptyPlugin>();
    };
    EXPECT_TRUE(fits(2, 2));
    EXPECT_TRUE(fits(1, 3));
    EXPECT_FALSE(fits(1, 1));
    EXPECT_FALSE(fits(3, 4));
}

TEST(PluginWrapper, about_isTheClassesOwn) {
    const auto* about = sdk::tableFor<Introduced>()->about;
    ASSERT_NE(about, nullptr);
    EXPECT_EQ(about->size, sizeof(CorvaneAbout));
    EXPECT_STREQ(about->name, "Example");
    EXPECT_STREQ(about->version, "1.0");
    EXPECT_STREQ(about->author, "Jane Doe");
    EXPECT_STREQ(about->homePage, "https://example.com");
    EXPECT_EQ(sdk::tableFor<fakes::EmptyPlugin>()->about, nullptr);
}

TEST(PluginWrapper, nodesToRemove_comeOneByOneUntilNull_andAreAskedForOnce) {
    Recording::script() = {};
    Recording::script().nodesToRemove = {"/L/one", "/L/two"};
    const auto& table = *sdk::tableFor<Recording>();
    void* self = table.create(ignoreReason, nullptr);
    EXPECT_STREQ(table.nodesToRemove(self, 0), "/L/one");
    Recording::script().nodesToRemove.clear();
    EXPECT_STREQ(table.nodesToRemove(self, 1), "/L/two");
    EXPECT_EQ(table.nodesToRemove(self, 2), nullptr);
    EXPECT_EQ(table.nodesToRemove(self, 0), nullptr);
    table.destroy(self);
}

TEST(PluginWrapper, nameThatFails_isNull) {
    Recording::script() = {};
    const auto& table = *sdk::tableFor<Recording>();
    void* self = table.create(ignoreReason, nullptr);
    EXPECT_STREQ(table.pluginName(self), "Shown Name");
    Recording::script().throwsIn = "pluginName";
    EXPECT_EQ(table.pluginName(self), nullptr);
    table.destroy(self);
}
