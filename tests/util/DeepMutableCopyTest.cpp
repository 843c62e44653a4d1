#include "util/DeepMutableCopy.h"

#include <gtest/gtest.h>

#include <functional>

using namespace corvane::util;

namespace {

/// A leaf with one kind of copy or none.
class Leaf final : public OpaqueObject {
public:
    Leaf(Value immutable, Value mutableForm)
        : immutable_(std::move(immutable)), mutable_(std::move(mutableForm)) {}
    [[nodiscard]] Value immutableCopy() const override { return immutable_; }
    [[nodiscard]] Value mutableCopy() const override { return mutable_; }

private:
    Value immutable_;
    Value mutable_;
};

Value leaf(Value immutable, Value mutableForm) {
    return Value(std::make_shared<Leaf>(immutable, mutableForm));
}

/// Does something while it is being copied.
class Intruder final : public OpaqueObject {
public:
    explicit Intruder(std::function<void()> what) : what_(std::move(what)) {}
    [[nodiscard]] Value immutableCopy() const override {
        what_();
        return {};
    }

private:
    std::function<void()> what_;
};

/// Changes a container while its elements are being copied.
class Saboteur final : public OpaqueObject {
public:
    explicit Saboteur(Array victim) : victim_(std::move(victim)) {}
    [[nodiscard]] Value immutableCopy() const override {
        auto victim = victim_;
        victim.append("one more");
        return {};
    }

private:
    Array victim_;
};

} // namespace

TEST(DeepMutableCopy, ofEmptyContainers_isEmptyNewAndMutable) {
    const Array array((ValueList()));
    EXPECT_EQ(deepMutableCopy(array), array);
    EXPECT_TRUE(deepMutableCopy(array).isMutable());
    EXPECT_TRUE(deepMutableCopy(Dictionary(ValueMap())).isMutable());
    EXPECT_TRUE(deepMutableCopy(Set({})).isMutable());
    EXPECT_EQ(deepMutableCopy(Set({})).count(), 0U);
}

TEST(DeepMutableCopy, dictionaryInArrayInDictionary_isCopiedAtEveryDepth) {
    const Dictionary source = {{"list", Array{Dictionary{{"k", "v"}}}}};
    auto copy = deepMutableCopy(source);
    auto inner = copy.valueForKey("list").as<Array>().at(0).as<Dictionary>();
    inner.set("k", "changed");
    copy.valueForKey("list").as<Array>().append("more");
    EXPECT_EQ(source, Value(Dictionary{{"list", Array{Dictionary{{"k", "v"}}}}}));
}

TEST(DeepMutableCopy, containersInSetsAndSetsInArrays_areCopiedToo) {
    const auto inSet = Dictionary{{"k", "v"}};
    const Array source{Set{inSet}};
    const auto set = deepMutableCopy(source).at(0).as<Set>();
    EXPECT_TRUE(set.isMutable());
    for (const auto& element : set.elements()) {
        EXPECT_TRUE(element.isMutable());
        EXPECT_FALSE(element.isSameObjectAs(inSet));
    }
}

TEST(DeepMutableCopy, containersThatAreMutableAlready_areCopiedToo) {
    auto inner = Array::makeMutable();
    inner.append("one");
    auto outer = Dictionary::makeMutable();
    outer.set("list", inner);
    const auto copy = deepMutableCopy(outer);
    inner.append("two");
    outer.set("other", "x");
    EXPECT_EQ(copy.valueForKey("list"), Value(Array{"one"}));
    EXPECT_EQ(copy.count(), 1U);
    auto copied = copy.valueForKey("list").as<Array>();
    copied.append("three");
    EXPECT_EQ(inner, (Array{"one", "two"}));
}

TEST(DeepMutableCopy, leaves_areImmutableByDefault) {
    const auto source = Array{String::makeMutable("text"), Data::makeMutable({1})};
    const auto copy = deepMutableCopy(source);
    EXPECT_FALSE(copy.at(0).isMutable());
    EXPECT_FALSE(copy.at(1).isMutable());
    EXPECT_THROW(copy.at(0).as<String>().setText("x"), ImmutableObjectException);
}

TEST(DeepMutableCopy, withMutableLeaves_textAndDataBecomeMutableAndIndependent) {
    const auto source = Array{"text", Data(Bytes{1})};
    const auto copy = deepMutableCopyWithMutableLeaves(source, true);
    copy.at(0).as<String>().setText("changed");
    copy.at(1).as<Data>().setBytes({9});
    EXPECT_EQ(source.textAt(0), "text");
    EXPECT_EQ(source.at(1), Value(Data(Bytes{1})));
}

TEST(DeepMutableCopy, withMutableLeaves_holdsAtEveryDepth) {
    const Dictionary source = {{"k", Array{Set{"in set"}, Dictionary{{"k", "in dictionary"}}}}};
    const auto list = deepMutableCopyWithMutableLeaves(source, true).valueForKey("k").as<Array>();
    for (const auto& element : list.at(0).as<Set>().elements())
        EXPECT_TRUE(element.isMutable());
    EXPECT_TRUE(list.at(1).as<Dictionary>().valueForKey("k").isMutable());
}

TEST(DeepMutableCopy, numbersAndDates_areTheSameValuesAndNeverMutable) {
    const auto source = Array{42, true, Date(7)};
    for (const bool leaves : {false, true}) {
        const auto copy = deepMutableCopyWithMutableLeaves(source, leaves);
        EXPECT_EQ(copy, source);
        for (const auto& element : copy.elements())
            EXPECT_FALSE(element.isMutable());
    }
}

TEST(DeepMutableCopy, leafWithBothCopies_isCopiedAsTheFlagSays) {
    const Array source{leaf("immutable", "mutable")};
    EXPECT_EQ(deepMutableCopyWithMutableLeaves(source, false).textAt(0), "immutable");
    EXPECT_EQ(deepMutableCopyWithMutableLeaves(source, true).textAt(0), "mutable");
}

TEST(DeepMutableCopy, leafWithOnlyAnImmutableCopy_getsThatEvenWithMutableLeaves) {
    EXPECT_EQ(deepMutableCopyWithMutableLeaves(Array{leaf("immutable", {})}, true).textAt(0), "immutable");
}

TEST(DeepMutableCopy, leafWithoutACopy_isShared) {
    const auto shared = leaf({}, {});
    EXPECT_TRUE(deepMutableCopyWithMutableLeaves(Array{shared}, true).at(0).isSameObjectAs(shared));
}

TEST(DeepMutableCopy, setElementsThatBecomeEqual_collapse) {
    const Set source{leaf("same", {}), leaf("same", {})};
    ASSERT_EQ(source.count(), 2U);
    EXPECT_EQ(deepMutableCopy(source).count(), 1U);
}

TEST(DeepMutableCopy, sourceChangedDuringTheCopy_raises) {
    auto source = Array::makeMutable();
    source.append(Value(std::make_shared<Saboteur>(source)));
    source.append("second");
    EXPECT_THROW((void)deepMutableCopy(source), EnumerationMutationException);
    source.removeAt(0); // breaks the cycle of references
}

TEST(DeepMutableCopy, dictionaryOrSetChangedDuringItsCopy_raisesToo) {
    auto entries = Dictionary::makeMutable();
    auto set = Set::makeMutable();
    const auto changesAll = std::make_shared<Intruder>([&] {
        entries.set("new", 1);
        set.add("new");
    });
    entries.set("a", Value(changesAll));
    entries.set("b", 1);
    EXPECT_THROW((void)deepMutableCopy(entries), EnumerationMutationException);
    set.add(Value(changesAll));
    set.add("b");
    EXPECT_THROW((void)deepMutableCopy(set), EnumerationMutationException);
    entries.remove("a");
    set.remove(Value(changesAll));
}

TEST(DeepMutableCopy, keys_areExactlyTheSources) {
    const Dictionary source = {{"b", 1}, {"", 2}, {"a", Array{1}}};
    EXPECT_EQ(deepMutableCopy(source).keys(), source.keys());
}
