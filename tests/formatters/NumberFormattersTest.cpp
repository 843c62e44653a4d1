#include "formatters/FormatterTesting.h"
#include "formatters/NumberEnforcer.h"

using namespace corvane;
using namespace corvane::formatters;
using util::Decimal;

namespace {

struct Enforcer : testing::Test {
    fakes::FakeStrings strings;
    NumberEnforcer formatter{strings};
    void between(const char* minimum, const char* maximum) {
        formatter.setMinimum(Decimal::fromText(minimum));
        formatter.setMaximum(Decimal::fromText(maximum));
    }
};

struct Numbers : testing::Test {
    fakes::FakeStrings strings;
    NumberFormatter formatter{strings};
    std::optional<std::string> shown(const util::Value& value) {
        return formatter.stringForObjectValue(value);
    }
};

} // namespace

TEST_F(Enforcer, madeWithoutASource_hasNoBounds) {
    EXPECT_TRUE(formatter.minimum().isNotANumber());
    EXPECT_TRUE(formatter.maximum().isNotANumber());
    EXPECT_TRUE(formatter.stringIsValid(""));
    EXPECT_TRUE(formatter.stringIsValid("0"));
    EXPECT_TRUE(formatter.stringIsValid(std::string(5000, '9')));
}

TEST_F(Enforcer, madeFromAnother_takesAllItsSettings) {
    NumberFormatter source(strings);
    source.setDecimalSeparator(",");
    source.setThousandSeparator(".");
    source.setHasThousandSeparators(true);
    source.setLocalizesFormat(true);
    source.setAllowsFloats(false);
    source.setRoundingBehavior({util::RoundingMode::up, 2});
    source.setMinimum(Decimal::fromText("1.5"));
    source.setMaximum(Decimal::fromText("99"));
    source.setFormat("#,##0");
    const NumberEnforcer copy(strings, &source);
    source.setMaximum({});
    EXPECT_EQ(copy.decimalSeparator(), ",");
    EXPECT_EQ(copy.thousandSeparator(), ".");
    EXPECT_TRUE(copy.hasThousandSeparators());
    EXPECT_TRUE(copy.localizesFormat());
    EXPECT_FALSE(copy.allowsFloats());
    EXPECT_EQ(copy.roundingBehavior(), (RoundingBehavior{util::RoundingMode::up, 2}));
    EXPECT_EQ(copy.minimum().text(), "1.5");
    EXPECT_EQ(copy.maximum().text(), "99");
    EXPECT_EQ(copy.format(), "#,##0");
}

TEST_F(Enforcer, typing_anythingButDigits_isRefused) {
    for (const auto* text : {"-", "-5", "5-", "+5", "1.5", "1,5", "1 000", "a", "٣", "5\n", "0x1", "1e3"})
        EXPECT_FALSE(mayBecome(formatter, text, "1")) << text;
}

TEST_F(Enforcer, typing_signsAndSeparators_isRefusedEvenWhereTheSettingsHaveThem) {
    formatter.setAllowsFloats(true);
    formatter.setHasThousandSeparators(true);
    formatter.setMinimum(Decimal::fromText("-10"));
    for (const auto* text : {"-5", "1.5", "1,000"})
        EXPECT_FALSE(mayBecome(formatter, text)) << text;
}

TEST_F(Enforcer, typing_withAMaximum_allowsUpToIt) {
    between("", "100");
    EXPECT_TRUE(mayBecome(formatter, "100"));
    EXPECT_TRUE(mayBecome(formatter, "0100"));
    EXPECT_FALSE(mayBecome(formatter, "101"));
    EXPECT_TRUE(mayBecome(formatter, ""));
}

TEST_F(Enforcer, typing_withAMinimum_neverPassesThroughSmallerNumbers) {
    between("10", "");
    EXPECT_FALSE(mayBecome(formatter, "5"));
    EXPECT_TRUE(mayBecome(formatter, "50")) << "pasted";
    EXPECT_TRUE(mayBecome(formatter, "10"));
    EXPECT_FALSE(mayBecome(formatter, "-"));
    EXPECT_TRUE(mayBecome(formatter, "", "10"));
}

TEST_F(Enforcer, typing_intoAFieldThatHoldsAnInvalidText_isAllWaysAllowed) {
    between("10", "100");
    EXPECT_TRUE(mayBecome(formatter, "5", "500"));
    EXPECT_TRUE(mayBecome(formatter, "-", "abc"));
    EXPECT_FALSE(mayBecome(formatter, "5", ""));
}

TEST_F(Enforcer, bounds_compareExactlyAtAnyLength) {
    between("", "340282366920938463463374607431768211456");
    EXPECT_TRUE(mayBecome(formatter, "340282366920938463463374607431768211456"));
    EXPECT_FALSE(mayBecome(formatter, "340282366920938463463374607431768211457"));
    between("9.5", "10.5");
    EXPECT_FALSE(mayBecome(formatter, "9"));
    EXPECT_TRUE(mayBecome(formatter, "10"));
    EXPECT_FALSE(mayBecome(formatter, "11"));
}

TEST_F(Enforcer, commit_isTheNumberFormattersOwn) {
    between("10", "100");
    EXPECT_EQ(commit(formatter, "0050"), (Commit{true, "50", untouched}));
    EXPECT_EQ(commit(formatter, "5"), (Commit{false, untouched, "The number must be at least 10."}));
    EXPECT_EQ(formatter.stringForObjectValue(util::Value(50)), "50");
}

TEST_F(Numbers, typing_anything_isAllowed) {
    EXPECT_TRUE(mayBecome(formatter, "x"));
    EXPECT_TRUE(isPartialStringValid(formatter, "-"));
}

TEST_F(Numbers, commit_readsNumbersExactly) {
    EXPECT_EQ(commit(formatter, " 42 "), (Commit{true, "42", untouched}));
    EXPECT_EQ(commit(formatter, "-1.50").accepted, true);
    EXPECT_EQ(commit(formatter, "18446744073709551615").value, "18446744073709551615");
    EXPECT_EQ(commit(formatter, "123456789012345678901234567890.1").value,
              "123456789012345678901234567890.1");
    EXPECT_EQ(commit(formatter, "").value, "(null)");
    EXPECT_EQ(commit(formatter, std::nullopt), (Commit{false, untouched, untouched}));
}

TEST_F(Numbers, commit_ofWhatIsNoNumber_isDescribed) {
    for (const std::string text : {"abc", "1.2.3", "1,000", "-", "."})
        EXPECT_EQ(commit(formatter, text), (Commit{false, untouched, "“" + text + "” is not a number."}));
    formatter.setAllowsFloats(false);
    EXPECT_EQ(commit(formatter, "1.5").description, "“1.5” is not a whole number.");
    EXPECT_TRUE(commit(formatter, "1.0").accepted);
}

TEST_F(Numbers, commit_outsideTheBounds_isDescribed) {
    formatter.setMinimum(Decimal::fromText("-0.5"));
    formatter.setMaximum(Decimal::fromText("10"));
    EXPECT_EQ(commit(formatter, "-0.51").description, "The number must be at least -0.5.");
    EXPECT_EQ(commit(formatter, "10.01").description, "The number must be at most 10.");
    EXPECT_TRUE(commit(formatter, "-0.5").accepted);
}

TEST_F(Numbers, separators_areReadAndShown) {
    formatter.setDecimalSeparator(",");
    formatter.setThousandSeparator(".");
    formatter.setHasThousandSeparators(true);
    EXPECT_EQ(shown(util::Value("1234567.25")), "1.234.567,25");
    EXPECT_EQ(commit(formatter, "1.234.567,25").value, util::Value(1234567.25).description());
}

TEST_F(Numbers, format_shapesWhatIsShown) {
    formatter.setFormat("$#,##0.00");
    EXPECT_EQ(shown(util::Value(1234)), "$1,234.00");
    EXPECT_EQ(shown(util::Value("-1234.567")), "-$1,234.57");
    EXPECT_EQ(commit(formatter, "$1,234.00").value, "1234");
    EXPECT_EQ(commit(formatter, "-$5.00").value, "-5");
    formatter.setFormat("0;none;(0)");
    EXPECT_EQ(shown(util::Value(-3)), "(3)");
    EXPECT_EQ(commit(formatter, "(3)").value, "-3");
}

TEST_F(Numbers, format_mayShowZeroInItsOwnWay) {
    formatter.setFormat("0;0.00;(0)");
    EXPECT_EQ(shown(util::Value(0)), "0.00");
    EXPECT_EQ(shown(util::Value(1)), "1");
}

TEST_F(Numbers, localizedFormat_hasTheSeparatorsOfTheLocale) {
    formatter.setDecimalSeparator(",");
    EXPECT_EQ(shown(util::Value("1.5")), "1,5");
    formatter.setLocalizesFormat(true); // the tests' locale is "C"
    EXPECT_EQ(shown(util::Value("1.5")), "1.5");
    EXPECT_EQ(commit(formatter, "2.5").value, util::Value(2.5).description());
}

TEST_F(Numbers, commit_roundsAsTheSettingsSay) {
    formatter.setRoundingBehavior({util::RoundingMode::down, 1});
    EXPECT_EQ(commit(formatter, "1.29").value, util::Value(1.2).description());
    formatter.setMaximum(Decimal::fromText("1.2"));
    EXPECT_TRUE(commit(formatter, "1.29").accepted) << "the bounds are for what is left";
}

TEST_F(Numbers, commit_ofAGreatInteger_isANumberAmongValues) {
    util::Value value;
    ASSERT_TRUE(formatter.getObjectValueForString(&value, "18446744073709551615", nullptr));
    EXPECT_EQ(value, util::Value(std::uint64_t(18446744073709551615U)));
}

TEST_F(Numbers, commit_ofNegativeZero_isZero) {
    formatter.setMinimum(Decimal::fromText("0"));
    EXPECT_TRUE(commit(formatter, "-0").accepted);
    EXPECT_TRUE(commit(formatter, "-0.0").accepted);
}

TEST_F(Numbers, rounding_followsItsMode) {
    const auto rounded = [&](util::RoundingMode mode, const char* number) {
        formatter.setRoundingBehavior({mode, 1});
        return *shown(util::Value(number));
    };
    using enum util::RoundingMode;
    EXPECT_EQ(rounded(plain, "0.25"), "0.3");
    EXPECT_EQ(rounded(bankers, "0.25"), "0.2");
    EXPECT_EQ(rounded(bankers, "0.35"), "0.4");
    EXPECT_EQ(rounded(bankers, "0.2501"), "0.3");
    EXPECT_EQ(rounded(down, "-0.21"), "-0.3");
    EXPECT_EQ(rounded(down, "0.29"), "0.2");
    EXPECT_EQ(rounded(up, "0.21"), "0.3");
    EXPECT_EQ(rounded(up, "-0.29"), "-0.2");
    EXPECT_EQ(rounded(plain, "9.96"), "10");
}

TEST_F(Numbers, stringForObjectValue_ofWhatIsNoNumber_isNone) {
    EXPECT_EQ(shown(util::Value("abc")), std::nullopt);
    EXPECT_EQ(shown({}), std::nullopt);
    EXPECT_EQ(shown(util::Value(0.5)), "0.5");
    EXPECT_EQ(shown(util::Value(1e20)), "100000000000000000000");
}
