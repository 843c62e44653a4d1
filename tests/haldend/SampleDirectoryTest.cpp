#include "haldend/trial/SampleDirectory.h"

#include "haldend/TestSlapd.h"
#include "haldend/storage/Failure.h"
#include "haldend/trial/MachineFolderMaker.h"

using namespace corvane;
using namespace corvane::haldend;
using namespace corvane::haldend::test;

namespace {

const char* const serverTemplate =
    "include /etc/ldap/schema/core.schema\ninclude /etc/ldap/schema/cosine.schema\ninclude "
    "/etc/ldap/schema/nis.schema\n"
    "include /etc/ldap/schema/inetorgperson.schema\nmodulepath /usr/lib/ldap\nmoduleload back_mdb\npidfile "
    "\"@DIR@/pid\"\n"
    "# port @PORT@\ndatabase mdb\nsuffix \"dc=acme,dc=example\"\ndirectory \"@DIR@/data\"\n";
const char* const serverEntries =
    "dn: dc=acme,dc=example\nobjectClass: dcObject\nobjectClass: organization\no: Acme\ndc: acme\n\n"
    "dn: uid=wile,dc=acme,dc=example\nobjectClass: inetOrgPerson\nobjectClass: posixAccount\nuid: wile\ncn: "
    "Wile\nsn: x\n"
    "uidNumber: 6000\ngidNumber: 6000\nhomeDirectory: /home/wile\n";

/// A machine to copy from, the templates, and a place for the copy.
struct Workshop {
    Workshop() {
        base.write("machine/etc/passwd", "root:x:0:0:root:/root:/bin/sh\n");
        base.write("machine/etc/nsswitch.conf", "passwd: files\ngroup: files\n");
        base.write("machine/etc/hostname", "box\n");
        base.write("share/slapd.conf.in", serverTemplate);
        base.write("share/company.ldif", serverEntries);
    }
    [[nodiscard]] bool make() {
        return MachineFolderMaker(base.path() + "/machine", share(), log).makeIfMissing(copy());
    }
    [[nodiscard]] std::string share() const { return base.path() + "/share"; }
    [[nodiscard]] std::string copy() const { return base.path() + "/new/copy"; }

    TemporaryFolder base;
    RecordedLog log;
};

std::string reasonOf(const std::function<void()>& action) {
    try {
        action();
        return "(none)";
    } catch (const halden::Exception& exception) {
        return exception.reason();
    }
}

} // namespace

TEST(MachineFolderMaker, firstUse_copiesWhatCanBeRead) {
    Workshop workshop;
    workshop.base.write("machine/etc/sssd/sssd.conf",
                        "[sssd]\ndomains = a\n[domain/a]\nid_provider = ldap\n");
    EXPECT_TRUE(workshop.make());
    EXPECT_EQ(workshop.base.read("new/copy/etc/hostname"), "box\n");
    EXPECT_EQ(workshop.base.read("new/copy/etc/sssd/sssd.conf"),
              workshop.base.read("machine/etc/sssd/sssd.conf"));
    EXPECT_FALSE(workshop.base.has("new/copy/etc/group"));
    EXPECT_EQ(SampleDirectory::start(workshop.copy(), workshop.share(), workshop.log), nullptr)
        << "it has a directory of its own";
}

TEST(MachineFolderMaker, secondUse_leavesTheFolderAlone) {
    Workshop workshop;
    EXPECT_TRUE(workshop.make());
    workshop.base.write("new/copy/etc/hostname", "mine\n");
    EXPECT_FALSE(workshop.make());
    EXPECT_EQ(workshop.base.read("new/copy/etc/hostname"), "mine\n");
}

TEST(MachineFolderMaker, placeThatCantBeWritten_isReportedAndLeavesNothing) {
    Workshop workshop;
    workshop.base.write("new", "a file in the way");
    const auto reason = reasonOf([&] { (void)workshop.make(); });
    EXPECT_NE(reason.find("The machine folder " + workshop.copy() + " could not be made."),
              std::string::npos);
    EXPECT_NE(reason.find("Not a directory"), std::string::npos) << reason;
}

TEST(MachineFolderMaker, emptyFolder_isFilled) {
    Workshop workshop;
    std::filesystem::create_directories(workshop.copy());
    EXPECT_TRUE(workshop.make());
    EXPECT_EQ(workshop.base.read("new/copy/etc/hostname"), "box\n");
}

TEST(MachineFolderMaker, fileInsteadOfAFolder_isRefusedAndKept) {
    Workshop workshop;
    workshop.base.write("new/copy", "my notes");
    const auto reason = reasonOf([&] { (void)workshop.make(); });
    EXPECT_NE(reason.find(workshop.copy() + " isn't a machine folder"), std::string::npos) << reason;
    EXPECT_NE(reason.find("--machine"), std::string::npos) << reason;
    EXPECT_EQ(workshop.base.read("new/copy"), "my notes");
}

TEST(MachineFolderMaker, missingTemplates_areReportedAndLeaveNothing) {
    Workshop workshop;
    std::filesystem::remove(workshop.share() + "/slapd.conf.in");
    EXPECT_NE(reasonOf([&] { (void)workshop.make(); }).find("slapd.conf.in is missing"), std::string::npos);
    EXPECT_TRUE(std::filesystem::is_empty(workshop.base.path() + "/new"));
}

TEST(MachineFolderMaker, folderWithOtherThings_isRefusedAndLeftAlone) {
    Workshop workshop;
    workshop.base.write("new/copy/notes.txt", "my notes");
    const auto reason = reasonOf([&] { (void)workshop.make(); });
    EXPECT_NE(reason.find(workshop.copy() + " isn't a machine folder"), std::string::npos) << reason;
    EXPECT_FALSE(workshop.base.has("new/copy/etc"));
}

TEST(SampleDirectory, machineWithoutADirectory_getsOneThatAnswers) {
    Workshop workshop;
    EXPECT_TRUE(workshop.make());
    const auto sample = SampleDirectory::start(workshop.copy(), workshop.share(), workshop.log);
    ASSERT_NE(sample, nullptr);
    const plist::PropertyListCodec codec;
    const auto engine = std::make_shared<Engine>(workshop.copy(), codec, workshop.log);
    EmbeddedFramework framework(engine);
    const auto node = framework.defaultSession()->nodeWithName("/LDAP/" + sample->uri().substr(7), nullptr);
    ASSERT_NE(node, nullptr);
    const auto people =
        node->query({{std::string(halden::recordType::users)}, "", halden::MatchType::any, {}, {}, 0},
                    nullptr)
            ->results(false, nullptr);
    ASSERT_TRUE(people.has_value());
    ASSERT_EQ(people->size(), 1U);
    EXPECT_EQ(people->front()->recordName(), "wile");
}

TEST(SampleDirectory, begin_doesNotWaitForTheServer) {
    Workshop workshop;
    EXPECT_TRUE(workshop.make());
    const auto sample = SampleDirectory::begin(workshop.copy(), workshop.share(), workshop.log);
    ASSERT_NE(sample, nullptr);
    EXPECT_FALSE(workshop.base.has("new/copy/var/lib/corvane/sample-directory/messages")) << "no server yet";
    int calls = 1;
    for (; !sample->proceed() && calls < 1000; ++calls)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_GT(calls, 2) << "its data is loaded and the server started beside this thread";
    LdapSection section;
    section.uris = {sample->uri()};
    EXPECT_FALSE(LdapDirectory(section).defaultBase().empty());
    EXPECT_TRUE(sample->proceed()) << "once more is harmless";
}

TEST(SampleDirectory, endInTheMiddleOfTheStart_leavesNoServerBehind) {
    Workshop workshop;
    EXPECT_TRUE(workshop.make());
    auto sample = SampleDirectory::begin(workshop.copy(), workshop.share(), workshop.log);
    LdapSection section;
    section.uris = {sample->uri()};
    const auto messages = "new/copy/var/lib/corvane/sample-directory/messages";
    while (!workshop.base.has(messages) && !sample->proceed())
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    sample.reset();
    EXPECT_THROW(LdapDirectory{section}, Failure);
    EXPECT_NE(SampleDirectory::start(workshop.copy(), workshop.share(), workshop.log), nullptr)
        << "and the next start finds all in order";
}

TEST(SampleDirectory, folderThatNamesTheAddress_isServedAsWell) {
    Workshop workshop;
    EXPECT_TRUE(workshop.make());
    auto sssd = workshop.base.read("new/copy/etc/sssd/sssd.conf");
    const auto host = sssd.find("ldap://") + 7;
    ASSERT_EQ(sssd.substr(host, 10), "localhost:") << "a name that people can read";
    sssd.replace(host, 9, "127.0.0.1");
    workshop.base.write("new/copy/etc/sssd/sssd.conf", sssd);
    const auto sample = SampleDirectory::start(workshop.copy(), workshop.share(), workshop.log);
    ASSERT_NE(sample, nullptr);
    EXPECT_EQ(sample->uri().substr(0, 17), "ldap://127.0.0.1:");
}

TEST(SampleDirectory, configurationThatCantBeRead_isNoTroubleOfTheSample) {
    Workshop workshop;
    workshop.base.write("new/copy/etc/hostname", "box\n");
    std::filesystem::create_directories(workshop.copy() +
                                        "/etc/sssd/sssd.conf"); // unreadable for root as well
    EXPECT_EQ(SampleDirectory::start(workshop.copy(), workshop.share(), workshop.log), nullptr);
}

TEST(SampleDirectory, secondStart_usesTheSamePortAndData) {
    Workshop workshop;
    EXPECT_TRUE(workshop.make());
    const auto first = SampleDirectory::start(workshop.copy(), workshop.share(), workshop.log)->uri();
    std::filesystem::remove(workshop.share() + "/company.ldif");
    EXPECT_EQ(SampleDirectory::start(workshop.copy(), workshop.share(), workshop.log)->uri(), first);
}

TEST(SampleDirectory, end_stopsTheServer) {
    Workshop workshop;
    EXPECT_TRUE(workshop.make());
    auto sample = SampleDirectory::start(workshop.copy(), workshop.share(), workshop.log);
    LdapSection section;
    section.uris = {sample->uri()};
    EXPECT_FALSE(LdapDirectory(section).defaultBase().empty());
    sample.reset();
    EXPECT_THROW(LdapDirectory{section}, Failure);
}

TEST(SampleDirectory, killedProgram_leavesNoServerBehind) {
    Workshop workshop;
    EXPECT_TRUE(workshop.make());
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        const auto sample = SampleDirectory::start(workshop.copy(), workshop.share(), workshop.log);
        const auto uri = sample->uri() + "\n";
        if (::write(ends[1], uri.data(), uri.size()) < 0) ::_exit(1);
        for (;;)
            ::pause();
    }
    char buffer[200];
    const auto length = ::read(ends[0], buffer, sizeof buffer);
    ASSERT_GT(length, 1);
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    LdapSection section;
    section.uris = {std::string(buffer, static_cast<std::size_t>(length) - 1)};
    bool isGone = false;
    for (int i = 0; i < 250 && !isGone; ++i) {
        try {
            const LdapDirectory directory(section);
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        } catch (const Failure&) {
            isGone = true;
        }
    }
    EXPECT_TRUE(isGone);
}

TEST(SampleDirectory, portInUse_isReported) {
    Workshop workshop;
    EXPECT_TRUE(workshop.make());
    const SilentServer squatter;
    auto sssd = workshop.base.read("new/copy/etc/sssd/sssd.conf");
    const auto at = sssd.find(':', sssd.find("ldap://") + 7) + 1;
    sssd.replace(at, sssd.find('\n', at) - at, std::to_string(squatter.port()));
    workshop.base.write("new/copy/etc/sssd/sssd.conf", sssd);
    const auto reason =
        reasonOf([&] { (void)SampleDirectory::start(workshop.copy(), workshop.share(), workshop.log); });
    EXPECT_NE(reason.find("ended at once"), std::string::npos) << reason;
    EXPECT_NE(reason.find("uses that port"), std::string::npos) << reason;
}

TEST(SampleDirectory, fileInTheWay_isReportedAsTheSampleDirectorysTrouble) {
    Workshop workshop;
    EXPECT_TRUE(workshop.make());
    workshop.base.write("new/copy/var/lib/corvane/sample-directory", "a file in the way");
    const auto reason =
        reasonOf([&] { (void)SampleDirectory::start(workshop.copy(), workshop.share(), workshop.log); });
    EXPECT_TRUE(reason.starts_with("The sample directory can't be started.\n\n")) << reason;
    EXPECT_NE(reason.find("sample-directory"), std::string::npos) << reason;
    EXPECT_NE(reason.find("Move it aside"), std::string::npos) << reason;
}

TEST(SampleDirectory, entriesThatDontLoad_areReported) {
    Workshop workshop;
    workshop.base.write("share/company.ldif", "dn: nonsense\n");
    EXPECT_TRUE(workshop.make());
    const auto reason =
        reasonOf([&] { (void)SampleDirectory::start(workshop.copy(), workshop.share(), workshop.log); });
    EXPECT_NE(reason.find("company.ldif failed"), std::string::npos) << reason;
}
