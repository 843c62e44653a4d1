#include "directory/AttributeNameCompare.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

using corvane::directory::compareAttributeName;

TEST(AttributeNameCompare, standardNames_standBeforeNativeOnes) {
    EXPECT_TRUE(compareAttributeName("dsAttrTypeStandard:Zone", "dsAttrTypeNative:alias") < 0);
    EXPECT_TRUE(compareAttributeName("dsAttrTypeNative:alias", "dsAttrTypeStandard:Zone") > 0);
}

TEST(AttributeNameCompare, namesOfOneKind_areOrderedAsTexts) {
    EXPECT_TRUE(compareAttributeName("dsAttrTypeStandard:A", "dsAttrTypeStandard:B") < 0);
    EXPECT_TRUE(compareAttributeName("dsAttrTypeNative:b", "dsAttrTypeNative:a") > 0);
    EXPECT_TRUE(compareAttributeName("dsAttrTypeNative:a", "dsAttrTypeNative:a") == 0);
}

TEST(AttributeNameCompare, otherNames_areOrderedAsTextsAmongAll) {
    EXPECT_TRUE(compareAttributeName("alias", "dsAttrTypeStandard:Zone") < 0);
    EXPECT_TRUE(compareAttributeName("zone", "dsAttrTypeNative:alias") > 0);
    EXPECT_TRUE(compareAttributeName("", "dsAttrTypeNative:alias") < 0);
}

TEST(AttributeNameCompare, prefix_isComparedWithItsCapitals) {
    EXPECT_TRUE(compareAttributeName("dsattrtypestandard:Zone", "dsAttrTypeNative:alias") > 0)
        << "no standard name, so the texts decide";
}

TEST(AttributeNameCompare, sortedList_beginsWithTheStandardNames) {
    std::vector<std::string> names = {"dsAttrTypeNative:a", "dsAttrTypeStandard:Z", "dsAttrTypeNative:b",
                                      "dsAttrTypeStandard:A"};
    std::ranges::sort(names, [](const auto& x, const auto& y) { return compareAttributeName(x, y) < 0; });
    EXPECT_EQ(names, (std::vector<std::string>{"dsAttrTypeStandard:A", "dsAttrTypeStandard:Z",
                                               "dsAttrTypeNative:a", "dsAttrTypeNative:b"}));
}
