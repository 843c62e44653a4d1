#include "haldend/sssd/SssdOwner.h"

#include <gmock/gmock.h>

using namespace corvane::haldend;
using testing::HasSubstr;

namespace {

constexpr FileOwner rootsFolder{0, 0, 0700};
constexpr FileOwner sssdsFolder{0, 990, 0750};

std::string remark(const FileOwner& file, const FileOwner& folder = rootsFolder) {
    return sssdOwnerRemark("/etc/sssd/sssd.conf", file, folder);
}

} // namespace

TEST(SssdOwner, rootsFileForRootAlone_isFine) {
    for (const mode_t mode : {0600U, 0400U, 0700U, 0500U})
        EXPECT_EQ(remark({0, 0, mode}), "") << std::oct << mode;
}

TEST(SssdOwner, otherOwnersGroupsAndModes_areEachPointedOut) {
    EXPECT_EQ(remark({1000, 0, 0600}),
              "/etc/sssd/sssd.conf doesn't belong to root, so SSSD refuses to start.");
    EXPECT_THAT(remark({0, 1000, 0600}), HasSubstr("doesn't belong to the group of root"));
    for (const mode_t mode : {0640U, 0644U, 0604U, 0620U, 0610U})
        EXPECT_THAT(remark({0, 0, mode}), HasSubstr("by others than root")) << std::oct << mode;
    EXPECT_THAT(remark({0, 0, 0200}), HasSubstr("may not be read by its owner"));
}

TEST(SssdOwner, folderOfAnAccountOfSssdsOwn_allowsThatGroupToRead) {
    EXPECT_EQ(remark({0, 990, 0640}, sssdsFolder), "");
    EXPECT_EQ(remark({990, 990, 0600}, {990, 990, 0700}), "");
    EXPECT_THAT(remark({0, 990, 0660}, sssdsFolder), HasSubstr("by others than root"));
    EXPECT_THAT(remark({0, 0, 0640}, sssdsFolder), HasSubstr("by others than root"));
    EXPECT_THAT(remark({0, 1000, 0640}, sssdsFolder), HasSubstr("group of root"));
    EXPECT_THAT(remark({1000, 0, 0600}, sssdsFolder), HasSubstr("doesn't belong to root"));
}
