#include "util/CharacterSet.h"

#include <gtest/gtest.h>

using namespace corvane::util;

TEST(TakeCharacter, ofEveryLength_takesItWhole) {
    std::string_view text = "aé€\U0001F600";
    EXPECT_EQ(takeCharacter(text), U'a');
    EXPECT_EQ(takeCharacter(text), U'é');
    EXPECT_EQ(takeCharacter(text), U'€');
    EXPECT_EQ(takeCharacter(text), U'\U0001F600');
    EXPECT_TRUE(text.empty());
}

TEST(TakeCharacter, ofWhatIsNotWellFormed_takesOneByte) {
    for (const std::string_view bad :
         {"\xFF", "\xC3", "\xC3(", "\xC0\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\x80"}) {
        auto text = bad;
        EXPECT_EQ(takeCharacter(text), U'\uFFFD');
        EXPECT_EQ(text.size(), bad.size() - 1);
    }
}

TEST(CharacterSet, range_holdsItsLengthAndNoMore) {
    const auto set = CharacterSet::range(10, 5);
    EXPECT_FALSE(set.contains(9));
    EXPECT_TRUE(set.contains(10));
    EXPECT_TRUE(set.contains(14));
    EXPECT_FALSE(set.contains(15));
    EXPECT_EQ(CharacterSet::range(10, 0), CharacterSet());
    EXPECT_EQ(CharacterSet::range(0x10FFFF, 0xFFFFFFFF), CharacterSet::charactersOf("\U0010FFFF"));
}

TEST(CharacterSet, rangeUpToTheLastCharacter_hasNothingAboveIt) {
    const auto end = CharacterSet::range(0x10FFF0, 16);
    EXPECT_TRUE(end.contains(0x10FFFF));
    EXPECT_FALSE(end.contains(0x110000));
    const auto rest = end.inverted();
    EXPECT_EQ(rest, CharacterSet::range(0, 0x10FFF0));
    EXPECT_TRUE(rest.contains(0x10FFEF));
    EXPECT_FALSE(rest.contains(0x10FFFF));
    EXPECT_EQ(rest.unitedWith(end), CharacterSet().inverted());
}

TEST(CharacterSet, rangeBeyondTheLastCharacter_endsThere) {
    EXPECT_EQ(CharacterSet::range(0x10FFF0, 1000), CharacterSet::range(0x10FFF0, 16));
    EXPECT_EQ(CharacterSet::range(1, 0xFFFFFFFF).inverted(), CharacterSet::range(0, 1));
}

TEST(TakeCharacter, surrogatesUpToTheLast_areNotWellFormed) {
    std::string_view last = "\xED\xBF\xBF"; // U+DFFF
    EXPECT_EQ(takeCharacter(last), U'\uFFFD');
    EXPECT_EQ(last.size(), 2U);
    std::string_view before = "\xED\x9F\xBF", after = "\xEE\x80\x80";
    EXPECT_EQ(takeCharacter(before), U'\uD7FF');
    EXPECT_EQ(takeCharacter(after), U'\uE000');
}

TEST(CharacterSet, inverted_holdsEverythingElse) {
    const auto others = CharacterSet::range(0, 128).inverted();
    EXPECT_FALSE(others.contains(127));
    EXPECT_TRUE(others.contains(128));
    EXPECT_TRUE(others.contains(0x10FFFF));
    EXPECT_EQ(others.inverted(), CharacterSet::range(0, 128));
    EXPECT_EQ(CharacterSet().inverted().inverted(), CharacterSet());
}

TEST(CharacterSet, charactersThatTouch_becomeOneRange) {
    EXPECT_EQ(CharacterSet::charactersOf("caebd"), CharacterSet::range('a', 5));
    EXPECT_EQ(CharacterSet::range(0, 10).unitedWith(CharacterSet::range(5, 10)), CharacterSet::range(0, 15));
}

TEST(CharacterSet, decimalDigits_areThoseOfAllScripts) {
    const auto& digits = CharacterSet::decimalDigits();
    for (const char32_t digit : {U'0', U'9', U'٣', U'४', U'\uFF19', U'\U0001D7FF'})
        EXPECT_TRUE(digits.contains(digit)) << std::uint32_t(digit);
    for (const char32_t other : {U'/', U':', U'²', U'½', U'一', U'Ⅷ'})
        EXPECT_FALSE(digits.contains(other)) << std::uint32_t(other);
}

TEST(CharacterSet, takeRun_takesTheLongestRun) {
    std::string_view text = "éàéx é";
    EXPECT_EQ(CharacterSet::charactersOf("éà").takeRun(text), "éàé");
    EXPECT_EQ(text, "x é");
    EXPECT_EQ(CharacterSet::charactersOf("éà").takeRun(text), "");
}
