// Typed reads and writes of settings, type lists and formatters of ranges, as a plug-in meets them.
#include <gtest/gtest.h>

#include "fakes/FakeHost.h"
#include "plugins/PluginHostTable.h"
#include "sdk/SettingsDictionary.h"

using namespace corvane;
using Texts = std::vector<std::string>;

namespace {

struct SettingsOfAPlugin : testing::Test {
    fakes::FakeHost program;
    std::shared_ptr<plugins::PluginAPIImplementor> implementor = program.makeImplementor();
    plugins::PluginHostTable hostTable{implementor, "Mine"};
    sdk::Host host{hostTable.table()};
    sdk::SettingsDictionary settings{host, host.dictionary()};
};

} // namespace

TEST_F(SettingsOfAPlugin, scalars_areConvertedOrTheDefault) {
    EXPECT_TRUE(settings.object().set("text", host.string("12abc")));
    EXPECT_EQ(settings.integerForKey("text", 7), 12);
    EXPECT_EQ(settings.integerForKey("absent", 7), 7);
    EXPECT_TRUE(settings.object().set("yes", host.string("yes")));
    EXPECT_TRUE(settings.booleanForKey("yes", false));
    EXPECT_TRUE(settings.setInteger(-3, "number"));
    EXPECT_EQ(settings.integerForKey("number", 0), -3);
    EXPECT_TRUE(settings.setUnsigned(4'000'000'000U, "big"));
    EXPECT_EQ(settings.unsignedForKey("big", 0), 4'000'000'000U);
}

TEST_F(SettingsOfAPlugin, wrongKind_isLoggedWithTheKeyAndTreatedAsMissing) {
    EXPECT_TRUE(settings.object().set("list", host.array({"a"})));
    EXPECT_EQ(settings.unsignedForKey("list", 5), 5U);
    ASSERT_EQ(program.done.size(), 1U);
    EXPECT_EQ(program.done[0].find("log Unexpected setting for unsigned key \"list\": "), 0U)
        << program.done[0];
    EXPECT_EQ(settings.stringForKey("list"), "");
    EXPECT_EQ(settings.arrayForKey("list").texts(), Texts{"a"});
}

TEST_F(SettingsOfAPlugin, emptyValues_removeTheirKey) {
    EXPECT_TRUE(settings.setString(host.string("x"), "a", true));
    EXPECT_TRUE(settings.setString(host.string(""), "a", true));
    EXPECT_FALSE(settings.containsKey("a"));
    EXPECT_TRUE(settings.setString({}, "a", false));
    EXPECT_TRUE(settings.containsKey("a"));
    EXPECT_TRUE(settings.setExists(true, "b"));
    EXPECT_TRUE(settings.setExists(false, "b"));
    EXPECT_FALSE(settings.containsKey("b"));
    EXPECT_TRUE(settings.setBoolean(false, "c"));
    EXPECT_TRUE(settings.containsKey("c"));
    EXPECT_TRUE(settings.setArray(host.array(), "d"));
    EXPECT_FALSE(settings.containsKey("d"));
}

TEST_F(SettingsOfAPlugin, objects_areStoredAndReadAsTheyAre) {
    const auto inner = host.dictionary();
    EXPECT_TRUE(inner.set("early", host.integer(1)));
    EXPECT_TRUE(settings.setDictionary(inner, "dictionary"));
    EXPECT_TRUE(inner.set("late", host.integer(2)));
    EXPECT_TRUE(settings.dictionaryForKey("dictionary").has("late")) << "the object itself";
    const std::uint8_t bytes[] = {1, 2, 3};
    EXPECT_TRUE(settings.setData(host.data(bytes), "data"));
    const auto data = settings.dataForKey("data");
    EXPECT_EQ(data.bytes().size(), 3U);
    EXPECT_TRUE(settings.setNumber(host.integer(0), "number"));
    EXPECT_EQ(settings.integerForKey("number", 9), 0) << "zero is stored";
    EXPECT_TRUE(settings.setNumber({}, "number"));
    EXPECT_FALSE(settings.containsKey("number"));
}

TEST_F(SettingsOfAPlugin, writesThatCantBe_changeNothing) {
    EXPECT_FALSE(settings.setArray(host.string("x"), "a")) << "another kind";
    EXPECT_FALSE(settings.setDictionary(settings.object(), "itself")) << "it would have no end";
    EXPECT_EQ(settings.object().count(), 0U);
    const sdk::SettingsDictionary none(host, host.string("x"));
    EXPECT_FALSE(none.setInteger(1, "a"));
    EXPECT_EQ(none.integerForKey("a", 9), 9);
    EXPECT_FALSE(none.arrayForKey("a"));
}

TEST_F(SettingsOfAPlugin, mutableDeepCopy_canBeChangedAtEveryDepth) {
    EXPECT_TRUE(settings.object().set("inner", host.dictionary()));
    const auto copy = settings.mutableDeepCopy();
    EXPECT_TRUE(copy["inner"].set("key", host.integer(1)));
    EXPECT_FALSE(settings.object()["inner"].has("key"));
}

TEST_F(SettingsOfAPlugin, olderHost_answersDefaults) {
    auto older = hostTable.table();
    older.size = offsetof(CorvaneHost, settings);
    const sdk::SettingsDictionary read(sdk::Host(older), host.dictionary());
    EXPECT_EQ(read.integerForKey("a", 3), 3);
    EXPECT_FALSE(read.setInteger(1, "a"));
}

TEST_F(SettingsOfAPlugin, characterRanges_takeTheirEndsAndNothingBeside) {
    const auto formatter = host.characterRangeFormatter({{'a', 'f'}, {0x10FFFF, 0x10FFFF}});
    const auto may = [&](const char* text) {
        return hostTable.table().formatters->isPartialStringValid(formatter.get(), text, "") != 0;
    };
    EXPECT_TRUE(may("a") && may("f") && may("\xF4\x8F\xBF\xBF"));
    EXPECT_FALSE(may("g") || may("`"));
    EXPECT_FALSE(host.characterRangeFormatter({{'f', 'a'}}));
    EXPECT_FALSE(host.characterRangeFormatter({{0, 0x110000}}));
    EXPECT_TRUE(host.characterRangeFormatter({})) << "one that takes nothing";
}

TEST_F(SettingsOfAPlugin, typeLists_areTheServicesOwn) {
    fakes::Journal journal;
    const auto session = std::make_shared<fakes::FakeSession>(journal);
    program.configNode = std::make_shared<directory::HaldenNodeConfig>(
        session->nodeWithType(halden::NodeType::configNode, nullptr));
    const auto add = [&](std::string_view type, const std::string& name) {
        session->config().records.push_back(std::make_shared<fakes::FakeRecord>(std::string(type), name));
    };
    add(halden::recordType::recordTypes, "Users");
    add(halden::recordType::attributeTypes, "Shell");
    const auto node = host.haldenConfigNode();
    EXPECT_EQ(host.standardRecordTypes(node), Texts{"Users"});
    EXPECT_EQ(host.standardAttributeTypes(node), Texts{"Shell"});
    EXPECT_TRUE(host.standardRecordTypes({}).empty());
}
