#include "fakes/FakeToolkit.h"
#include "formatters/FormatterTesting.h"
#include "formatters/IPv4AddressFormatter.h"
#include "formatters/ToolkitBeep.h"

using namespace corvane;
using namespace corvane::formatters;

namespace {

const std::string addressRequired = "IPv4 address required.";

struct DottedAddress : testing::Test {
    CountedBeeps beeps;
    DottedAddressFormatter formatter{beeps};
};

struct IPv4Address : testing::Test {
    CountedBeeps beeps;
    fakes::FakeStrings strings;
    IPv4AddressFormatter formatter{beeps, strings};
};

/// An owner tries to widen the set.
void giveLetters(ValidCharacterFormatter& formatter) {
    formatter.setValidCharacterSet(
        std::make_shared<const util::CharacterSet>(util::CharacterSet::charactersOf("abc")));
}

} // namespace

TEST_F(DottedAddress, typing_digitsAndDots_isAllowedInAnyOrder) {
    for (const auto* text : {"", "1", "...", "1.2.3.4.5.6", "999.", "\n10.0\n"})
        EXPECT_TRUE(mayBecome(formatter, text)) << text;
    EXPECT_EQ(beeps.count, 0);
}

TEST_F(DottedAddress, typing_digitsOfOtherScripts_isAllowed) {
    EXPECT_TRUE(mayBecome(formatter, "٣.४")) << "Arabic-Indic and Devanagari";
    EXPECT_TRUE(mayBecome(formatter, "\U0001D7D8")) << "a mathematical zero, beyond the first plane";
    EXPECT_FALSE(mayBecome(formatter, "²")) << "a digit, but not a decimal one";
}

TEST_F(DottedAddress, typing_otherCharacters_isRefusedWithABeep) {
    for (const auto* text : {"a", "1,2", "-1", "1 2", "1:2"})
        EXPECT_FALSE(mayBecome(formatter, text)) << text;
    EXPECT_EQ(beeps.count, 5);
}

TEST_F(DottedAddress, setValidCharacterSet_isNeverConsulted) {
    const auto own = formatter.getValidCharacterSet();
    giveLetters(formatter);
    EXPECT_EQ(formatter.getValidCharacterSet(), own);
    EXPECT_FALSE(mayBecome(formatter, "abc"));
    EXPECT_TRUE(mayBecome(formatter, "1.2"));
}

TEST_F(DottedAddress, commit_takesAnything) {
    EXPECT_EQ(commit(formatter, "1..x"), (Commit{true, "1..x", untouched}));
}

TEST_F(IPv4Address, typing_whatCanBecomeAnAddress_isAllowed) {
    for (const auto* text : {"", "1", "192.168.", "1.2.3.4", "01.2", "0.0.0.0", "255.255.255.255", "1.2.3.",
                             "0000000000000000000001", "\n1.2", "1.2.3.4\n"})
        EXPECT_TRUE(mayBecome(formatter, text)) << text;
    EXPECT_EQ(beeps.count, 0);
}

TEST_F(IPv4Address, typing_whatCant_isRefusedWithOneBeep) {
    int refused = 0;
    for (const auto* text : {"192.168..1", "256", "1.2.3.4.5", ".1", "1.2.3.4.", "1..", ".", "1.300", "-1",
                             "1a", "99999999999999999999", "\n256"}) {
        EXPECT_FALSE(mayBecome(formatter, text)) << text;
        EXPECT_EQ(beeps.count, ++refused) << text;
    }
}

TEST_F(IPv4Address, typing_aDigitOfAnotherScript_countsAsNoNumber) {
    EXPECT_TRUE(mayBecome(formatter, "٣٣٣٣.1"));
    EXPECT_FALSE(mayBecome(formatter, "256٣"));
}

TEST_F(IPv4Address, partialString_writesNothing) {
    EXPECT_TRUE(isPartialStringValid(formatter, "1.2"));
    EXPECT_FALSE(isPartialStringValid(formatter, "1.256"));
}

TEST_F(IPv4Address, setValidCharacterSet_isNeverConsulted) {
    giveLetters(formatter);
    EXPECT_FALSE(mayBecome(formatter, "abc"));
    EXPECT_EQ(commit(formatter, "1.2.3.4").accepted, true);
}

TEST_F(IPv4Address, commit_ofAnAddressOrNothing_returnsTheText) {
    for (const auto* text : {"", "10.0.0.255", "0.0.0.0", "01.002.3.4", "\n1.2.3.4\n", "٣.2.3.4"})
        EXPECT_EQ(commit(formatter, text), (Commit{true, text, untouched}));
    EXPECT_EQ(beeps.count, 0);
}

TEST_F(IPv4Address, commit_ofBadNumbers_isRefusedInSilence) {
    for (const auto* text : {"1.2.3", "1.2.3.", "1.2.3.4.5", "1.2.3.256", "256.1.1.1", "1..2.3", ".1.2.3",
                             "1.2.3.99999999999999999999", "\n"})
        EXPECT_EQ(commit(formatter, text), (Commit{false, untouched, addressRequired})) << text;
    EXPECT_EQ(beeps.count, 0);
}

TEST_F(IPv4Address, commit_ofBadCharacters_isRefusedWithABeep) {
    EXPECT_EQ(commit(formatter, "1a.2.3.4"), (Commit{false, untouched, addressRequired}));
    EXPECT_EQ(beeps.count, 1);
}

TEST_F(IPv4Address, commit_withoutAString_isRefusedWithoutADescription) {
    EXPECT_EQ(commit(formatter, std::nullopt), (Commit{false, untouched, untouched}));
    EXPECT_EQ(beeps.count, 0);
}

TEST_F(IPv4Address, commit_withoutPlaces_answersAllTheSame) {
    EXPECT_TRUE(formatter.getObjectValueForString(nullptr, "1.2.3.4", nullptr));
    EXPECT_TRUE(formatter.getObjectValueForString(nullptr, "", nullptr));
    EXPECT_FALSE(formatter.getObjectValueForString(nullptr, "1.2.3", nullptr));
}

TEST(ToolkitBeep, aRefusedKey_soundsTheToolkitsBeep) {
    fakes::Journal journal;
    fakes::FakeApplication application(journal);
    ToolkitBeep beep(application);
    DottedAddressFormatter formatter(beep);
    EXPECT_TRUE(mayBecome(formatter, "1"));
    EXPECT_EQ(journal.count("application.beep"), 0);
    EXPECT_FALSE(mayBecome(formatter, "x"));
    EXPECT_EQ(journal.count("application.beep"), 1);
}

TEST_F(IPv4Address, description_isLocalized) {
    strings.marks = true;
    EXPECT_EQ(commit(formatter, "1").description, "«" + addressRequired + "»");
}
