#include "formatters/ASCIIFormatter.h"
#include "formatters/FormatterTesting.h"
#include "util/Containers.h"

using namespace corvane;
using namespace corvane::formatters;

namespace {

const std::string onlyAscii = "This field must contain only ASCII (Roman) characters.";

struct Ascii : testing::Test {
    fakes::FakeStrings strings;
    ASCIIFormatter formatter{strings};
};

struct ValidCharacters : testing::Test {
    CountedBeeps beeps;
    ValidCharacterFormatter formatter{beeps};
    void accept(std::string_view characters) {
        formatter.setValidCharacterSet(
            std::make_shared<const util::CharacterSet>(util::CharacterSet::charactersOf(characters)));
    }
};

} // namespace

TEST_F(Ascii, typing_anyText_isAllowed) {
    EXPECT_TRUE(mayBecome(formatter, "abc"));
    EXPECT_TRUE(mayBecome(formatter, "abcé"));
    EXPECT_TRUE(isPartialStringValid(formatter, "日本語"));
}

TEST_F(Ascii, commit_ofAsciiText_returnsTheText) {
    EXPECT_EQ(commit(formatter, "abc ~\x7F\t"), (Commit{true, "abc ~\x7F\t", untouched}));
    EXPECT_EQ(commit(formatter, ""), (Commit{true, "", untouched}));
}

TEST_F(Ascii, commit_ofOtherCharacters_isRefusedWithWhatIsLeftWithoutThem) {
    EXPECT_EQ(commit(formatter, "abcé"), (Commit{false, "abc", onlyAscii}));
    EXPECT_EQ(commit(formatter, "éàbüc"), (Commit{false, "bc", onlyAscii}));
    EXPECT_EQ(commit(formatter, "\xC2\x80"), (Commit{false, "", onlyAscii})) << "U+0080 is the first one";
}

TEST_F(Ascii, commit_ofCharactersBeyondTheFirstPlane_takesThemOutWhole) {
    EXPECT_EQ(commit(formatter, "a\U0001F600b"), (Commit{false, "ab", onlyAscii}));
}

TEST_F(Ascii, commit_ofBytesThatAreNoText_takesThemOut) {
    EXPECT_EQ(commit(formatter, "a\xFF\xC3z"), (Commit{false, "az", onlyAscii}));
}

TEST_F(Ascii, commit_withoutAString_isRefusedAndTouchesNothing) {
    EXPECT_EQ(commit(formatter, std::nullopt), (Commit{false, untouched, untouched}));
}

TEST_F(Ascii, description_isLocalized) {
    strings.marks = true;
    EXPECT_EQ(commit(formatter, "é").description, "«" + onlyAscii + "»");
}

TEST_F(Ascii, stringForObjectValue_isTheStringItselfOrNone) {
    EXPECT_EQ(formatter.stringForObjectValue(util::Value("é")), "é");
    EXPECT_EQ(formatter.stringForObjectValue(util::Value(5)), std::nullopt);
    EXPECT_EQ(formatter.stringForObjectValue({}), std::nullopt);
}

TEST_F(ValidCharacters, typing_lettersWithLineFeedsAround_isAllowed) {
    accept("abc");
    for (const auto* text : {"", "abc", "abc\n", "\n\nabc\n\n", "\n"})
        EXPECT_TRUE(mayBecome(formatter, text)) << text;
    EXPECT_EQ(beeps.count, 0);
}

TEST_F(ValidCharacters, typing_anythingElse_isRefusedWithABeep) {
    accept("abc");
    int refused = 0;
    for (const auto* text : {"ab c", "abcd", "a\nb", "abc\r", " abc", "abc\t", "ABC"}) {
        EXPECT_FALSE(mayBecome(formatter, text)) << text;
        EXPECT_EQ(beeps.count, ++refused);
    }
}

TEST_F(ValidCharacters, typing_countsCharactersNotBytes) {
    accept("é\U0001F600");
    EXPECT_TRUE(mayBecome(formatter, "é\U0001F600é"));
    EXPECT_FALSE(mayBecome(formatter, "è")) << "shares its first byte with é";
    EXPECT_FALSE(mayBecome(formatter, "\U0001F601"));
    EXPECT_FALSE(mayBecome(formatter, "\xC3"));
}

TEST_F(ValidCharacters, typing_aLineFeedThatIsInTheSet_isAllowedInside) {
    accept("ab\n");
    EXPECT_TRUE(mayBecome(formatter, "a\nb"));
}

TEST_F(ValidCharacters, typing_withoutASet_allowsLineFeedsOnly) {
    EXPECT_EQ(formatter.getValidCharacterSet(), nullptr);
    EXPECT_TRUE(mayBecome(formatter, ""));
    EXPECT_TRUE(mayBecome(formatter, "\n"));
    EXPECT_FALSE(mayBecome(formatter, "a"));
}

TEST_F(ValidCharacters, setValidCharacterSet_replacesTheSet) {
    accept("abc");
    const auto before = formatter.getValidCharacterSet();
    accept("xyz");
    EXPECT_TRUE(before->contains('a')) << "whoever still looks at the old set may";
    EXPECT_TRUE(mayBecome(formatter, "xyz"));
    EXPECT_FALSE(mayBecome(formatter, "abc"));
}

TEST_F(ValidCharacters, partialString_writesNothing) {
    accept("abc");
    EXPECT_TRUE(isPartialStringValid(formatter, "a"));
    EXPECT_FALSE(isPartialStringValid(formatter, "d"));
}

TEST_F(ValidCharacters, commit_neverLooksAtTheCharacters) {
    accept("abc");
    EXPECT_EQ(commit(formatter, "xyz é"), (Commit{true, "xyz é", untouched}));
    EXPECT_EQ(commit(formatter, ""), (Commit{true, "", untouched}));
    EXPECT_EQ(beeps.count, 0);
}

TEST_F(ValidCharacters, commit_withoutPlaceOrString_isRefusedWithoutADescription) {
    auto description = untouched;
    EXPECT_FALSE(formatter.getObjectValueForString(nullptr, "abc", &description));
    EXPECT_EQ(description, untouched);
    EXPECT_EQ(commit(formatter, std::nullopt), (Commit{false, untouched, untouched}));
    util::Value value;
    EXPECT_TRUE(formatter.getObjectValueForString(&value, "abc", nullptr));
}

TEST_F(ValidCharacters, stringForObjectValue_isTheTextOfAnyValue) {
    EXPECT_EQ(formatter.stringForObjectValue(util::Value("a b")), "a b");
    EXPECT_EQ(formatter.stringForObjectValue(util::Value(42)), "42");
    EXPECT_EQ(formatter.stringForObjectValue({}), "(null)");
}

TEST_F(ValidCharacters, attributedString_hasTheDefaultAttributes) {
    const toolkit::TextAttributes attributes{toolkit::NamedColor::gray, 18, {}};
    EXPECT_EQ(formatter.attributedStringForObjectValue(util::Value("abc"), attributes),
              (toolkit::AttributedString{"abc", attributes}));
    EXPECT_THROW((void)formatter.attributedStringForObjectValue(util::Value(1), attributes),
                 std::invalid_argument);
}
