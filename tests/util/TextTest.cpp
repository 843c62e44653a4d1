#include <gtest/gtest.h>

#include "util/Bytes.h"
#include "util/CaseFolding.h"
#include "util/NotificationCenter.h"
#include "util/TextComparison.h"
#include "util/TextFormat.h"

using namespace corvane::util;

TEST(CompareNumerically, digitsCompareAsNumbers) {
    EXPECT_TRUE(compareNumerically("10.6.8", "10.7") < 0);
    EXPECT_TRUE(compareNumerically("10.10", "10.7") > 0);
    EXPECT_TRUE(compareNumerically("11.0", "10.7") > 0);
    EXPECT_TRUE(compareNumerically("10.7", "10.7") == 0);
    EXPECT_TRUE(compareNumerically("10.07", "10.7") == 0);
    EXPECT_TRUE(compareNumerically("10.7.1", "10.7") > 0);
    EXPECT_TRUE(compareNumerically("V1", "v1") == 0);
}

TEST(CompareCaseInsensitively, caseDoesntOrder) {
    EXPECT_TRUE(compareCaseInsensitively("ldap", "LDAP") == 0);
    EXPECT_TRUE(compareCaseInsensitively("BSD", "ldap") < 0);
    EXPECT_TRUE(compareCaseInsensitively("ab", "abc") < 0);
}

TEST(CompareCaseInsensitively, lettersOfEveryScript_areFolded) {
    for (const auto& [a, b] :
         {std::pair("ÄPFEL", "äpfel"), {"ПУТЬ", "путь"}, {"ΣΊΣΥΦΟΣ", "σίσυφος"}, {"Ĳ", "ĳ"}})
        EXPECT_EQ(compareCaseInsensitively(a, b), std::strong_ordering::equal) << a;
    EXPECT_NE(compareCaseInsensitively("Ä", "A"), std::strong_ordering::equal);
    EXPECT_EQ(compareNumerically("Ö 9", "ö 10"), std::strong_ordering::less);
}

TEST(CaseFolded, bytesThatAreNoText_stayAsTheyAre) {
    EXPECT_EQ(caseFolded("A\xFF"
                         "B\xC3"),
              "a\xFF"
              "b\xC3");
    EXPECT_EQ(caseFolded("\xEF\xBF\xBD"), "\xEF\xBF\xBD");
    EXPECT_EQ(caseFolded("𐐀"), "𐐨");
}

TEST(ContainsCaseInsensitively, findsAPartInAnyCase) {
    EXPECT_TRUE(containsCaseInsensitively("/LDAP/Zürich", "ZÜR"));
    EXPECT_TRUE(containsCaseInsensitively("/LDAP/one", "dap"));
    EXPECT_TRUE(containsCaseInsensitively("", ""));
    EXPECT_FALSE(containsCaseInsensitively("/LDAP/Zurich", "zür"));
    EXPECT_FALSE(containsCaseInsensitively("a", "ab"));
}

TEST(Formatted, placeholdersAreFilledInOrder) {
    EXPECT_EQ(formatted("%@ is missing. Try %@.", {"a", "b"}), "a is missing. Try b.");
    EXPECT_EQ(formatted("error %d, code %ld", {"3", "-5"}), "error 3, code -5");
}

TEST(Formatted, argumentsAreNeverFormats) { EXPECT_EQ(formatted("%@ and %@", {"%@", "x"}), "%@ and x"); }

TEST(Formatted, missingArgument_leavesThePlaceholder) { EXPECT_EQ(formatted("%@ %@", {"a"}), "a %@"); }

TEST(NotificationCenter, posting_reachesObserversOfThatNameInOrder) {
    NotificationCenter center;
    std::string heard;
    const auto first = center.observe("name", [&] { heard += "1"; });
    const auto other = center.observe("other", [&] { heard += "x"; });
    const auto second = center.observe("name", [&] { heard += "2"; });
    center.post("name");
    EXPECT_EQ(heard, "12");
}

TEST(NotificationCenter, observationDroppedDuringDelivery_isNotDeliveredTo) {
    NotificationCenter center;
    int heard = 0;
    std::unique_ptr<NotificationCenter::Observation> second;
    const auto first = center.observe("name", [&] { second.reset(); });
    second = center.observe("name", [&] { ++heard; });
    center.post("name");
    EXPECT_EQ(heard, 0);
}

TEST(NotificationCenter, observationMayOutliveTheCenter) {
    std::unique_ptr<NotificationCenter::Observation> observation;
    {
        NotificationCenter center;
        observation = center.observe("name", [] {});
    }
    observation.reset();
}

TEST(TextParts, areOneMoreThanTheSeparators) {
    using Parts = std::vector<std::string_view>;
    EXPECT_EQ(separated("a.b..c", '.'), (Parts{"a", "b", "", "c"}));
    EXPECT_EQ(separated("", '.'), Parts{""});
    EXPECT_EQ(separated(".", '.'), (Parts{"", ""}));
}

TEST(WipeGuard, secret_isGoneWhenItsScopeEndsByAnException) {
    std::string secret = "a password";
    const char* place = secret.data();
    try {
        const corvane::util::WipeGuard guard(secret);
        throw 1;
    } catch (int) {
        EXPECT_TRUE(secret.empty());
    }
    EXPECT_EQ(place[2], '\0') << "overwritten, not only shortened";
}
