#include "util/Containers.h"

#include <gtest/gtest.h>

using namespace corvane::util;

TEST(Array, sharedByReference_aChangeIsSeenThroughEveryHandle) {
    auto list = Array::makeMutable({"/Local/Accounts"});
    Value sameList = list;
    list.append("/LDAP/one");
    EXPECT_EQ(sameList.as<Array>().textAt(1), "/LDAP/one");
}

TEST(Array, changeOfImmutableForm_isRefused) {
    Array list{"a"};
    EXPECT_THROW(list.append("b"), ImmutableObjectException);
    EXPECT_EQ(list.count(), 1U);
}

TEST(Array, positionPastTheEnd_raisesRangeException) {
    auto list = Array::makeMutable({"a"});
    EXPECT_THROW((void)list.at(1), RangeException);
    EXPECT_THROW(list.removeAt(1), RangeException);
    EXPECT_THROW(list.insert("b", 2), RangeException);
    EXPECT_NO_THROW(list.insert("b", 1));
}

TEST(Array, changedWhileWalked_raises) {
    auto list = Array::makeMutable({"a", "b", "c"});
    const auto walkAndChange = [&] {
        for (const auto& element : list.elements())
            if (element == Value("a")) list.append("d");
    };
    EXPECT_THROW(walkAndChange(), EnumerationMutationException);
}

TEST(Array, removeAllEqualTo_removesEveryOccurrence) {
    auto list = Array::makeMutable({"a", "b", "a"});
    list.removeAllEqualTo("a");
    EXPECT_EQ(list.texts(), std::vector<std::string>{"b"});
}

TEST(Array, nullHandle_readsAsEmptyAndRefusesChanges) {
    Array none;
    EXPECT_EQ(none.count(), 0U);
    EXPECT_THROW(none.append("a"), ImmutableObjectException);
}

TEST(Dictionary, settingNull_removesTheKey) {
    auto entries = Dictionary::makeMutable({{"key", 1}});
    entries.set("key", {});
    EXPECT_FALSE(entries.containsKey("key"));
}

TEST(Set, equalElement_isKeptOnce) {
    auto set = Set::makeMutable();
    set.add("a");
    set.add("a");
    EXPECT_EQ(set.count(), 1U);
    EXPECT_EQ((Set{"a", "b"}), Value(Set{"b", "a"}));
}

TEST(Value, typedHandleOfAnotherKind_isNull) {
    const Value text("12");
    EXPECT_TRUE(text.as<Number>().isNull());
    EXPECT_EQ(text.as<String>().text(), "12");
}

TEST(Number, formsCompareByValue_booleansOnlyWithBooleans) {
    EXPECT_EQ(Value(1), Value(1U));
    EXPECT_EQ(Value(1), Value(1.0));
    EXPECT_FALSE(Value(1) == Value(true));
    EXPECT_FALSE(Value(-1) == Value(~std::uint64_t{0}));
}

TEST(Number, outOfRangeOrFractional_isClampedAndCut) {
    EXPECT_EQ(Number(1e300).integerValue(), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(Number(-2.9).integerValue(), -2);
    EXPECT_EQ(Number(-5).unsignedValue(), 0U);
}

TEST(String, mutableForm_isIndependentOfItsCopies) {
    auto text = String::makeMutable("one");
    const auto copy = text.immutableCopy();
    text.setText("two");
    EXPECT_EQ(copy, Value("one"));
    EXPECT_THROW(copy.as<String>().setText("three"), ImmutableObjectException);
}

static_assert(!std::is_constructible_v<Number, const char*>);
static_assert(!std::is_constructible_v<Number, int*>);
static_assert(!std::is_constructible_v<Value, int*>);
