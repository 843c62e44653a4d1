#include "haldend/NsswitchFile.h"

#include <gtest/gtest.h>

#include "haldend/Failure.h"

using namespace corvane::haldend;

namespace {

std::shared_ptr<Lenses> lenses() {
    static const auto shared = std::make_shared<Lenses>();
    return shared;
}
NsswitchFile file(const std::string& text) { return {lenses(), text, "/etc/nsswitch.conf"}; }
std::string with(const std::string& text) { return file(text).textUsingSssd(true); }
std::string without(const std::string& text) { return file(text).textUsingSssd(false); }

} // namespace

TEST(NsswitchFile, sssWanted_comesRightAfterFilesInTheFourDatabases) {
    EXPECT_EQ(with("passwd: files systemd\ngroup:\tfiles systemd\nshadow:   files\nnetgroup: nis\n"),
              "passwd: files sss systemd\ngroup:\tfiles sss systemd\nshadow:   files sss\nnetgroup: nis sss\n");
}

TEST(NsswitchFile, sssNotWanted_goesFromTheFourDatabasesAlone) {
    EXPECT_EQ(without("passwd: files sss systemd\ngroup: sss files\nservices: db files sss\nautomount:  sss\n"),
              "passwd: files systemd\ngroup: files\nservices: db files sss\nautomount:  sss\n");
}

TEST(NsswitchFile, sssAlreadyThere_staysWhereItStands) {
    const std::string text = "passwd:         sss files # first\ngroup: files systemd sss\n";
    EXPECT_EQ(with(text), text);
}

TEST(NsswitchFile, commentsAndForeignLines_keepEveryOctet) {
    const std::string text = "# /etc/nsswitch.conf\n#\n\n  # indented \t note\npasswd:   files  systemd   # people\n\n\n"
                             "hosts:          files mdns4_minimal [NOTFOUND=return] dns\nnetgroup:       nis\n\n# end";
    const auto on = with(text);
    EXPECT_NE(on.find("passwd:   files  sss systemd   # people\n"), std::string::npos) << on;
    EXPECT_NE(on.find("hosts:          files mdns4_minimal [NOTFOUND=return] dns\n"), std::string::npos);
    EXPECT_EQ(without(on), text);
}

TEST(NsswitchFile, reactions_keepTheirPlace) {
    const std::string text = "passwd: files [!SUCCESS=continue] ldap\ngroup: files [SUCCESS=merge] systemd\n";
    EXPECT_EQ(with(text), "passwd: files sss [!SUCCESS=continue] ldap\ngroup: files sss [SUCCESS=merge] systemd\n");
    EXPECT_EQ(without(with(text)), text);
}

TEST(NsswitchFile, missingDatabases_stayMissing) { EXPECT_EQ(with("passwd: files\n"), "passwd: files sss\n"); }

TEST(NsswitchFile, noAccountDatabase_isAClearErrorWhenSssIsWanted) {
    EXPECT_EQ(without("hosts: files dns\n"), "hosts: files dns\n");
    EXPECT_EQ(without(""), "");
    try {
        (void)with("hosts: files dns\n");
        FAIL();
    } catch (const Failure& failure) {
        EXPECT_NE(failure.error().reason.find("/etc/nsswitch.conf has no line"), std::string::npos);
        EXPECT_NE(failure.error().recovery.find("passwd: files"), std::string::npos);
    }
}

TEST(NsswitchFile, usesSssd_looksAtUsersAndGroups) {
    EXPECT_TRUE(file("passwd: files sss\n").usesSssd());
    EXPECT_TRUE(file("group: files sss\n").usesSssd());
    EXPECT_FALSE(file("passwd: files\nservices: files sss\n# passwd: sss\n").usesSssd());
}

TEST(NsswitchFile, damagedText_isRefusedWithLineAndEvidence) {
    try {
        (void)file("passwd: files\ngroup files sss\nhosts: files\n");
        FAIL();
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.error().description, "/etc/nsswitch.conf is damaged and is left as it is.");
        EXPECT_NE(failure.error().reason.find("Line 2 "), std::string::npos) << failure.error().reason;
        EXPECT_NE(failure.error().reason.find("group files sss"), std::string::npos);
        EXPECT_FALSE(failure.error().recovery.empty());
    }
    EXPECT_THROW((void)file(std::string("passwd: files\n\0", 15)), Failure);
}
