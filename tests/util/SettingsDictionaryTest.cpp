#include "util/SettingsDictionary.h"

#include <gtest/gtest.h>

#include "util/DeepMutableCopy.h"

using namespace corvane::util;

namespace {

struct RecordedLog final : ProcessLog {
    void log(std::string_view line) override { lines.emplace_back(line); }
    std::vector<std::string> lines;
};

struct Settings : testing::Test {
    RecordedLog log;
    Dictionary stored = Dictionary::makeMutable({{"number", 42},
                                                 {"negative", -7},
                                                 {"yes", true},
                                                 {"text", "12abc"},
                                                 {"list", Array{"a"}},
                                                 {"data", Data(Bytes{1, 2})},
                                                 {"entries", Dictionary{{"k", 1}}}});
    SettingsDictionary settings{stored, log};
    MutableSettingsDictionary writable{stored, log};

    [[nodiscard]] std::vector<std::string> onlyLine(const std::string& line) const { return {line}; }
};

struct TextAsNumber {
    const char* text;
    std::int32_t integer;
    bool boolean;
};

} // namespace

TEST_F(Settings, absentKey_returnsTheDefaultAndLogsNothing) {
    EXPECT_EQ(settings.integerForKey("none", 5), 5);
    EXPECT_EQ(settings.unsignedForKey("none", 6U), 6U);
    EXPECT_TRUE(settings.booleanForKey("none", true));
    EXPECT_EQ(settings.objectForKey("none").text(), "");
    EXPECT_FALSE(settings.objectForKey("none").isNull());
    EXPECT_FALSE(settings.arrayForKey("none").isNull());
    EXPECT_TRUE(settings.arrayForKey("none").isEmpty());
    EXPECT_FALSE(settings.dictionaryForKey("none").isNull());
    EXPECT_TRUE(settings.dictionaryForKey("none").isEmpty());
    EXPECT_FALSE(settings.dataForKey("none").isNull());
    EXPECT_TRUE(settings.dataForKey("none").bytes().empty());
    EXPECT_TRUE(log.lines.empty());
}

TEST_F(Settings, expectedKind_returnsTheStoredObjectItself) {
    EXPECT_EQ(settings.integerForKey("number", 0), 42);
    EXPECT_EQ(settings.unsignedForKey("number", 0), 42U);
    EXPECT_TRUE(settings.booleanForKey("number", false));
    EXPECT_TRUE(settings.objectForKey("text").isSameObjectAs(stored.valueForKey("text")));
    EXPECT_TRUE(settings.arrayForKey("list").isSameObjectAs(stored.valueForKey("list")));
    EXPECT_TRUE(settings.dictionaryForKey("entries").isSameObjectAs(stored.valueForKey("entries")));
    EXPECT_TRUE(settings.dataForKey("data").isSameObjectAs(stored.valueForKey("data")));
    EXPECT_TRUE(log.lines.empty());
}

TEST_F(Settings, booleans_answerAllThreeScalarGetters) {
    EXPECT_EQ(settings.integerForKey("yes", 0), 1);
    EXPECT_EQ(settings.unsignedForKey("yes", 0), 1U);
    EXPECT_TRUE(settings.booleanForKey("yes", false));
}

TEST_F(Settings, mutableContainers_countAsTheirKind) {
    writable.setArray(Array::makeMutable({"x"}), "mutable");
    EXPECT_EQ(settings.arrayForKey("mutable").textAt(0), "x");
    EXPECT_TRUE(log.lines.empty());
}

TEST_F(Settings, integerFromArray_logsOneLineAndReturnsTheDefault) {
    EXPECT_EQ(settings.integerForKey("list", 9), 9);
    EXPECT_EQ(log.lines, onlyLine("Unexpected setting for integer key \"list\": (a)"));
}

TEST_F(Settings, unsignedFromText_logsAndReturnsTheDefault) {
    EXPECT_EQ(settings.unsignedForKey("text", 9), 9U);
    EXPECT_EQ(log.lines, onlyLine("Unexpected setting for unsigned key \"text\": 12abc"));
}

TEST_F(Settings, booleanFromData_logsAndReturnsTheDefault) {
    EXPECT_TRUE(settings.booleanForKey("data", true));
    EXPECT_EQ(log.lines, onlyLine("Unexpected setting for boolean key \"data\": <0102>"));
}

TEST_F(Settings, objectGetterOfAnotherKind_logsItsTypeWordAndReturnsAnEmptyObject) {
    EXPECT_EQ(settings.objectForKey("number").text(), "");
    EXPECT_TRUE(settings.arrayForKey("text").isEmpty());
    EXPECT_TRUE(settings.dictionaryForKey("text").isEmpty());
    EXPECT_TRUE(settings.dataForKey("text").bytes().empty());
    EXPECT_EQ(log.lines, (std::vector<std::string>{"Unexpected setting for string key \"number\": 42",
                                                   "Unexpected setting for array key \"text\": 12abc",
                                                   "Unexpected setting for dictionary key \"text\": 12abc",
                                                   "Unexpected setting for data key \"text\": 12abc"}));
}

TEST_F(Settings, datesAnswerNoScalarQuery) {
    stored.set("date", Date(0));
    EXPECT_EQ(settings.integerForKey("date", 3), 3);
    EXPECT_EQ(log.lines.size(), 1U);
}

TEST_F(Settings, getters_neverChangeTheDictionary) {
    const auto before = stored.immutableCopy();
    (void)settings.integerForKey("list", 0);
    (void)settings.arrayForKey("none");
    EXPECT_EQ(stored, before);
}

TEST_F(Settings, containsKey_holdsForAnyValueAndLogsNothing) {
    writable.setBoolean(false, "off");
    writable.setString(String(""), "empty", false);
    EXPECT_TRUE(settings.containsKey("off"));
    EXPECT_TRUE(settings.containsKey("empty"));
    EXPECT_TRUE(settings.containsKey("list"));
    EXPECT_FALSE(settings.containsKey("none"));
    EXPECT_TRUE(log.lines.empty());
}

TEST_F(Settings, textConvertsByItsBeginning) {
    const TextAsNumber table[] = {{"12abc", 12, true},
                                  {"  -3", -3, true},
                                  {"+7", 7, true},
                                  {"abc", 0, false},
                                  {"", 0, false},
                                  {"0", 0, false},
                                  {"007", 7, true},
                                  {"yes", 0, true},
                                  {"Yup", 0, true},
                                  {"true", 0, true},
                                  {"TRUE", 0, true},
                                  {"no", 0, false},
                                  {"00y", 0, true},
                                  {" -0T", 0, true},
                                  {"- 1", 0, false},
                                  {"\t\n 5", 5, true},
                                  {"\v\f\rT", 0, true},
                                  {"9", 9, true},
                                  {"on", 0, false},
                                  {"99999999999", 2147483647, true},
                                  {"-99999999999", -2147483648, true}};
    for (const auto& row : table) {
        writable.setString(String(row.text), "key", false);
        EXPECT_EQ(settings.integerForKey("key", -1), row.integer) << row.text;
        EXPECT_EQ(settings.booleanForKey("key", !row.boolean), row.boolean) << row.text;
    }
    EXPECT_TRUE(log.lines.empty());
}

TEST_F(Settings, numbersOutsideTheRange_areClamped) {
    stored.set("big", std::int64_t{1} << 40U);
    EXPECT_EQ(settings.integerForKey("big", 0), 2147483647);
    EXPECT_EQ(settings.unsignedForKey("big", 0), 4294967295U);
    EXPECT_EQ(settings.unsignedForKey("negative", 1), 0U);
}

TEST_F(Settings, setScalars_storeWhateverTheyGet) {
    writable.setInteger(0, "i");
    writable.setUnsigned(0, "u");
    writable.setBoolean(false, "b");
    EXPECT_EQ(stored.valueForKey("i"), Value(0));
    EXPECT_EQ(stored.valueForKey("u"), Value(0U));
    EXPECT_EQ(stored.valueForKey("b"), Value(false));
}

TEST_F(Settings, setExists_trueStoresTrue_falseRemoves) {
    writable.setExists(true, "there");
    EXPECT_EQ(stored.valueForKey("there"), Value(true));
    writable.setExists(false, "there");
    EXPECT_FALSE(stored.containsKey("there"));
    writable.setExists(false, "never was"); // harmless
}

TEST_F(Settings, setString_emptyRemovesOnlyWhenAskedTo) {
    writable.setString(String("x"), "s", true);
    EXPECT_EQ(stored.textForKey("s"), "x");
    writable.setString(String(""), "s", true);
    EXPECT_FALSE(stored.containsKey("s"));
    writable.setString(String(""), "s", false);
    EXPECT_EQ(stored.valueForKey("s"), Value(""));
    writable.setString(String(), "s", true);
    EXPECT_FALSE(stored.containsKey("s"));
    writable.setString(String(), "s", false);
    EXPECT_EQ(stored.valueForKey("s"), Value(""));
}

TEST_F(Settings, setEmptyOrNullObjects_removeTheirKey) {
    writable.setArray(Array(ValueList()), "list");
    writable.setDictionary(Dictionary(ValueMap()), "entries");
    writable.setData(Data(Bytes()), "data");
    writable.setNumber(Number(), "number");
    for (const auto* key : {"list", "entries", "data", "number"})
        EXPECT_FALSE(stored.containsKey(key)) << key;
    writable.setNumber(Number(0), "number");
    EXPECT_TRUE(stored.containsKey("number"));
    writable.setArray(Array(), "absent"); // null and absent: harmless
}

TEST_F(Settings, setters_storeTheObjectItself) {
    const auto list = Array::makeMutable({"a"});
    writable.setArray(list, "key");
    EXPECT_TRUE(stored.valueForKey("key").isSameObjectAs(list));
}

TEST_F(Settings, mutableDeepCopy_makesContainersAndLeavesMutable) {
    const auto copy = settings.mutableDeepCopy();
    ASSERT_FALSE(copy.isNull());
    EXPECT_EQ(copy, stored);
    EXPECT_TRUE(copy.isMutable());
    EXPECT_TRUE(copy.valueForKey("list").isMutable());
    EXPECT_TRUE(copy.valueForKey("text").isMutable());
    EXPECT_TRUE(copy.valueForKey("data").isMutable());
    EXPECT_FALSE(copy.valueForKey("number").isMutable());
}

TEST_F(Settings, mutableDeepCopyOfAnythingButAPropertyList_returnsNothingAndLogsNothing) {
    stored.set("set", Set{"a"});
    EXPECT_TRUE(settings.mutableDeepCopy().isNull());
    stored.set("set", Value(std::make_shared<OpaqueObject>()));
    EXPECT_TRUE(settings.mutableDeepCopy().isNull());
    stored.set("set", Dictionary{{"inner", Array{Value(std::make_shared<OpaqueObject>())}}});
    EXPECT_TRUE(settings.mutableDeepCopy().isNull());
    stored.set("set", Array{Set{"a"}});
    EXPECT_TRUE(settings.mutableDeepCopy().isNull());
    EXPECT_TRUE(log.lines.empty());
}
