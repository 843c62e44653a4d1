#include "haldend/files/NsswitchFile.h"

#include <gtest/gtest.h>

#include "haldend/storage/Failure.h"

using namespace corvane::haldend;

namespace {

NsswitchFile file(const std::string& text) { return {text, "/etc/nsswitch.conf"}; }
std::string with(const std::string& text) { return file(text).textUsingSssd(true); }
std::string without(const std::string& text) { return file(text).textUsingSssd(false); }

} // namespace

TEST(NsswitchFile, sssWanted_comesRightAfterFilesInTheFourDatabases) {
    EXPECT_EQ(
        with("passwd: files systemd\ngroup:\tfiles systemd\nshadow:   files\nnetgroup: nis\n"),
        "passwd: files sss systemd\ngroup:\tfiles sss systemd\nshadow:   files sss\nnetgroup: nis sss\n");
}

TEST(NsswitchFile, sssNotWanted_isRemovedFromTheFourDatabasesAlone) {
    EXPECT_EQ(
        without("passwd: files sss systemd\ngroup: sss files\nservices: db files sss\nautomount:  sss\n"),
        "passwd: files systemd\ngroup: files\nservices: db files sss\nautomount:  sss\n");
}

TEST(NsswitchFile, sssAlreadyThere_staysInItsPlace) {
    const std::string text = "passwd:         sss files # first\ngroup: files systemd sss\n";
    EXPECT_EQ(with(text), text);
}

TEST(NsswitchFile, commentsAndForeignLines_keepEveryByte) {
    const std::string text =
        "# /etc/nsswitch.conf\n#\n\n  # indented \t note\npasswd:   files  systemd   # people\n\ngroup: "
        "compat\n"
        "hosts:          files mdns4_minimal [NOTFOUND=return] dns\nnetgroup:       nis\n\n# end";
    const auto on = with(text);
    EXPECT_NE(on.find("passwd:   files  sss systemd   # people\n"), std::string::npos) << on;
    EXPECT_NE(on.find("hosts:          files mdns4_minimal [NOTFOUND=return] dns\n"), std::string::npos);
    EXPECT_EQ(without(on), text);
}

TEST(NsswitchFile, sssGone_takesItsOwnReactionsAlong) {
    EXPECT_EQ(without("passwd: files sss [SUCCESS=continue] winbind\n"), "passwd: files winbind\n");
    EXPECT_EQ(without("group: sss [SUCCESS=merge] files systemd\n"), "group: files systemd\n");
    EXPECT_EQ(without("passwd: files [NOTFOUND=continue] sss [UNAVAIL=return] nis\n"),
              "passwd: files [NOTFOUND=continue] nis\n");
    EXPECT_EQ(without("passwd: files sss[NOTFOUND=return]nis\n"), "passwd: files nis\n");
    EXPECT_EQ(without("passwd: files sss nis sss [NOTFOUND=return]\n"), "passwd: files nis\n");
}

TEST(NsswitchFile, sssWanted_comesAfterTheReactionsOfFiles) {
    EXPECT_EQ(with("passwd: files [!SUCCESS=continue] ldap\n"),
              "passwd: files [!SUCCESS=continue] sss ldap\ngroup: files sss\n");
    EXPECT_EQ(with("passwd: files\ngroup: files [SUCCESS=merge] systemd\n"),
              "passwd: files sss\ngroup: files [SUCCESS=merge] sss [SUCCESS=merge] systemd\n");
    EXPECT_EQ(with("passwd:files\ngroup:files[SUCCESS=merge]systemd\n"),
              "passwd:files sss\ngroup:files[SUCCESS=merge] sss [SUCCESS=merge] systemd\n");
}

TEST(NsswitchFile, sssThatWouldNeverBeAsked_isRefused) {
    for (const std::string line : {"files [NOTFOUND=return] ldap", "files [!SUCCESS=return] nis",
                                   "compat [notfound = Return] files", "files [NOTFOUND=return] sss"}) {
        try {
            (void)with("passwd: " + line + "\ngroup: files\n");
            ADD_FAILURE() << line;
        } catch (const Failure& failure) {
            EXPECT_NE(failure.error().reason.find("line 1, \"passwd: " + line), std::string::npos)
                << failure.error().reason;
        }
    }
    EXPECT_FALSE(file("passwd: files [NOTFOUND=return] sss\n").usesSssd());
}

TEST(NsswitchFile, sssAlone_leavesTheMachinesOwnFiles) {
    EXPECT_EQ(without("passwd: sss\ngroup: sss [NOTFOUND=return]\nnetgroup:\tsss # ours\n"),
              "passwd: files\ngroup: files\nnetgroup:\tfiles # ours\n");
}

TEST(NsswitchFile, mergeWithNothingLeftToMergeWith_isDropped) {
    EXPECT_EQ(without("passwd: files [SUCCESS=merge] sss\n"), "passwd: files\n"); // root would be lost
}

TEST(NsswitchFile, thereAndBack_restoresTheBytes) {
    for (const std::string text :
         {"passwd: files systemd sss\ngroup: sss files\n",
          "passwd: files  sss\t[SUCCESS=continue]  winbind\ngroup: files sss\n",
          "group: sss [SUCCESS=merge] files\npasswd: sss\n", "passwd: sss files\r\ngroup: files sss\r\n",
          "passwd: files sss\n",
          "group: files [SUCCESS=merge] sss\npasswd: compat sss\ninitgroups: files sss\n"}) {
        NsswitchMemory memory;
        const auto local = file(text).textUsingSssd(false, memory);
        EXPECT_FALSE(file(local).usesSssd()) << local;
        EXPECT_EQ(file(local).textUsingSssd(true, memory), text);
    }
    for (const std::string text :
         {"passwd: files\n", "group: files", "passwd: files[SUCCESS=continue]nis\ngroup: nis\n"}) {
        NsswitchMemory memory;
        const auto on = file(text).textUsingSssd(true, memory);
        EXPECT_TRUE(file(on).usesSssd()) << on;
        EXPECT_EQ(file(on).textUsingSssd(false, memory), text);
    }
}

TEST(NsswitchFile, lineEditedSince_isNotReplacedByTheFormerOne) {
    NsswitchMemory memory;
    (void)file("passwd: sss files\ngroup: files sss\n").textUsingSssd(false, memory);
    EXPECT_EQ(file("passwd: files nis\ngroup: files\n").textUsingSssd(true, memory),
              "passwd: files sss nis\ngroup: files sss\n");
}

TEST(NsswitchFile, onlyOneOfPasswdAndGroup_isCompleted) {
    EXPECT_EQ(with("group: files\nhosts: dns\n"), "group: files sss\npasswd: files sss\nhosts: dns\n");
}

TEST(NsswitchFile, initgroups_isAskedTooWhereItIsThere) {
    EXPECT_EQ(with("passwd: files\ngroup: files\ninitgroups: files\n"),
              "passwd: files sss\ngroup: files sss\ninitgroups: files [SUCCESS=continue] sss\n");
    EXPECT_EQ(with("passwd: files\ngroup: files\ninitgroups: files nis\n"),
              "passwd: files sss\ngroup: files sss\ninitgroups: files sss [SUCCESS=continue] nis\n");
    EXPECT_EQ(without("passwd: files\ninitgroups: files sss\n"), "passwd: files\ninitgroups: files\n");
}

TEST(NsswitchFile, lastLineWithoutALineEnd_isIgnoredUntilItIsOurs) {
    EXPECT_FALSE(file("group: files sss\npasswd: files sss").usesSssd());
    EXPECT_EQ(with("group: files\npasswd: files"), "group: files sss\npasswd: files sss\n");
    EXPECT_EQ(with("passwd: nis\ngroup: files\npasswd: files"),
              "passwd: nis sss\ngroup: files sss\npasswd: files");
}

TEST(NsswitchFile, lastOfSeveralLinesOfOneDatabase_counts) {
    EXPECT_FALSE(file("passwd: files sss\npasswd: files\n").usesSssd());
    EXPECT_EQ(with("passwd: nis\npasswd: files\ngroup: files\n"),
              "passwd: nis\npasswd: files sss\ngroup: files sss\n");
}

TEST(NsswitchFile, whatTheLibraryReads_isRead) {
    for (const std::string line :
         {"  passwd: files sss", "passwd : files sss", "passwd:files sss", "passwd\tfiles sss",
          "passwd:: files sss", "passwd: files[NOTFOUND=continue]sss", "passwd: files sss\r",
          "passwd: files ]odd sss", "passwd: files # and sss"})
        EXPECT_TRUE(file("# Latin-1 \xE9\n" + line + "\n").usesSssd()) << line;
    for (const std::string line :
         {"\xEF\xBB\xBFpasswd: sss", "Passwd: sss", "#passwd: sss", "passwd: files [NOTFOUND=return] sss",
          "passwd: [NOTFOUND=continue] sss", "passwd: files [A] sss", "passwd: SSS"})
        EXPECT_FALSE(line.find("[A]") == std::string::npos && file(line + "\n").usesSssd()) << line;
}

TEST(NsswitchFile, sssInAComment_isTakenOutBecauseSomeLibrariesReadIt) {
    EXPECT_EQ(without("passwd: files # was sss here\n"), "passwd: files # was here\n");
    EXPECT_EQ(with("passwd: files # was sss here\ngroup: files\n"),
              "passwd: files sss # was sss here\ngroup: files sss\n");
}

TEST(NsswitchFile, generatedByAuthselect_isRecognised) {
    EXPECT_TRUE(
        file("# Generated by authselect on Sun Mar  1\n# Do not modify this file manually.\npasswd: files\n")
            .isGenerated());
    EXPECT_FALSE(file("# not by authselect\npasswd: files\n").isGenerated());
}

TEST(NsswitchFile, missingDatabases_stayMissing) {
    EXPECT_EQ(with("passwd: files\ngroup: files\n"), "passwd: files sss\ngroup: files sss\n");
}

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

TEST(NsswitchFile, usesSssd_looksAtUsers) {
    EXPECT_TRUE(file("passwd: files sss\n").usesSssd());
    EXPECT_FALSE(file("group: files sss\n").usesSssd());
    EXPECT_FALSE(file("passwd: files\nservices: files sss\n# passwd: sss\n").usesSssd());
}

TEST(NsswitchFile, reactionThatTheLibraryDoesntKnow_isRefusedWithLineAndReason) {
    EXPECT_NO_THROW((void)file("passwd: files\nsudoers: files [FOO=return]\nhosts: dns [FOO=return]"));
    try {
        (void)file("passwd: files\nhosts: dns [FOO=return] nis\n");
        FAIL();
    } catch (const Failure& failure) {
        EXPECT_NE(failure.error().reason.find("line 2, \"hosts: dns [FOO=return] nis\""), std::string::npos)
            << failure.error().reason;
    }
}

TEST(NsswitchFile, hundredThousandLines_areEditedInPlace) {
    std::string text;
    for (int i = 0; i < 100'000; ++i)
        text += "# passwd and group are below\n";
    EXPECT_EQ(with(text + "passwd: files\ngroup: files\n"), text + "passwd: files sss\ngroup: files sss\n");
}

TEST(NsswitchLine, groupThatIsKept_isGivenBackByEverySourceThatHasNone) {
    using enum LookupStatus;
    const auto line = NsswitchLine::parse("group: a [SUCCESS=merge] b [SUCCESS=continue] c d\n");
    const auto search = line->search({success, unavailable, notFound, success});
    EXPECT_TRUE(search.isFound);
    EXPECT_EQ(search.asked.size(), 3U);
}

TEST(NsswitchLine, mergeOfUsers_isAnErrorThatCountsAsUnavailable) {
    using enum LookupStatus;
    const auto ends = NsswitchLine::parse("passwd: a [SUCCESS=merge UNAVAIL=return] b\n");
    EXPECT_EQ(ends->search({success, success}).asked.size(), 1U);
    EXPECT_FALSE(ends->search({success, success}).isFound);
    const auto goesOn = NsswitchLine::parse("passwd: a [SUCCESS=merge] b [SUCCESS=continue] c d\n");
    EXPECT_EQ(goesOn->search({success, notFound, success, notFound}).asked.size(), 4U);
    EXPECT_FALSE(goesOn->search({success, notFound, success, notFound}).isFound);
}
