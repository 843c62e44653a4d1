#include "haldend/TestMachine.h"
#include "haldend/storage/Failure.h"
#include "haldend/storage/MachineTransaction.h"

using namespace corvane;
using namespace corvane::haldend;
using namespace corvane::haldend::test;

namespace {

const char* const newNsswitch = "passwd: files sss\ngroup: files sss\n";

/// Each file is to become `newNsswitch`, in this order.
TransactionJournal journalOf(const TestMachine& machine, const std::vector<std::string>& files) {
    TransactionJournal journal;
    for (const auto& file : files)
        journal.entries.push_back(
            {file, Fingerprint::of(machine.folder.read(file)), Fingerprint::of(std::string(newNsswitch))});
    return journal;
}

/// A folder as a crash right after the journal was written leaves it.
void interrupt(const TestMachine& machine) {
    const auto journal = journalOf(machine, {machineFile::nsswitch});
    machine.folder.write("etc/.nsswitch.conf.corvane-new", newNsswitch);
    machine.folder.write("var/lib/corvane/journal", journal.text());
}

} // namespace

TEST(Recovery, crashAfterTheJournal_isFinishedAtTheNextStart) {
    TestMachine machine;
    interrupt(machine);
    machine.start();
    EXPECT_EQ(machine.folder.read("etc/nsswitch.conf"), newNsswitch);
    EXPECT_FALSE(machine.folder.has("var/lib/corvane/journal"));
    EXPECT_FALSE(machine.folder.has("etc/.nsswitch.conf.corvane-new"));
    EXPECT_FALSE(machine.log.lines.empty());
}

TEST(Recovery, crashBeforeTheJournal_isUndoneAtTheNextStart) {
    TestMachine machine;
    machine.folder.write("etc/.nsswitch.conf.corvane-new", newNsswitch);
    machine.folder.write("etc/sssd/.sssd.conf.corvane-new", "half");
    machine.folder.write("var/lib/corvane/generations/part-0000000001/sssd.conf", "copy");
    machine.folder.write("var/lib/corvane/check-abcdef/sssd.conf", "candidate");
    machine.start();
    EXPECT_EQ(machine.folder.read("etc/nsswitch.conf"), plainNsswitch);
    for (const auto* leftover :
         {"etc/.nsswitch.conf.corvane-new", "etc/sssd/.sssd.conf.corvane-new",
          "var/lib/corvane/generations/part-0000000001", "var/lib/corvane/check-abcdef"})
        EXPECT_FALSE(machine.folder.has(leftover)) << leftover;
}

TEST(Recovery, crashBeforeAllContentsWereStored_isUndoneAtTheNextStart) {
    TestMachine machine;
    const auto journal = journalOf(machine, {machineFile::nsswitch, machineFile::sssd});
    machine.folder.write("etc/.nsswitch.conf.corvane-new", newNsswitch);
    machine.folder.write("etc/sssd/.sssd.conf.corvane-new", "half");
    machine.folder.write("var/lib/corvane/journal", journal.text());
    machine.folder.write("var/lib/corvane/generations/part-0000000001/nsswitch.conf", plainNsswitch);
    machine.start();
    EXPECT_EQ(machine.folder.read("etc/nsswitch.conf"), plainNsswitch);
    EXPECT_EQ(machine.folder.read("etc/sssd/sssd.conf"), twoDirectories);
    for (const auto* leftover :
         {"var/lib/corvane/journal", "etc/.nsswitch.conf.corvane-new", "etc/sssd/.sssd.conf.corvane-new",
          "var/lib/corvane/generations/part-0000000001", "var/lib/corvane/generations/0000000001"})
        EXPECT_FALSE(machine.folder.has(leftover)) << leftover;
}

TEST(Recovery, crashAmongTheRenamings_isFinishedThoughTheFirstFileWasEditedSince) {
    TestMachine machine;
    const auto journal = journalOf(machine, {machineFile::sssd, machineFile::nsswitch});
    machine.folder.write("etc/sssd/sssd.conf", "# edited after the crash\n");
    machine.folder.write("etc/.nsswitch.conf.corvane-new", newNsswitch);
    machine.folder.write("var/lib/corvane/journal", journal.text());
    machine.start();
    EXPECT_EQ(machine.folder.read("etc/nsswitch.conf"), newNsswitch);
    EXPECT_EQ(machine.folder.read("etc/sssd/sssd.conf"), "# edited after the crash\n");
}

TEST(Recovery, generationThatACrashCutOff_isFinishedWithTheChange) {
    TestMachine machine;
    interrupt(machine);
    const std::string generations = "var/lib/corvane/generations/";
    machine.folder.write(generations + "part-0000000007/nsswitch.conf", plainNsswitch);
    machine.start();
    EXPECT_EQ(machine.folder.read(generations + "0000000007/nsswitch.conf"), plainNsswitch);
    EXPECT_EQ(std::filesystem::status(machine.folder.path() + "/" + generations + "0000000007/nsswitch.conf")
                  .permissions(),
              std::filesystem::perms(0600));
}

TEST(Generations, fileThatIsLinkedElsewhere_isCopied) {
    TestMachine machine;
    const auto file = machine.folder.path() + "/etc/nsswitch.conf", link = file + ".saved";
    std::filesystem::create_hard_link(file, link);
    const auto mode = std::filesystem::status(file).permissions();
    ASSERT_EQ(machine.call(machine.search(), 111).code, 0);
    const auto kept = machine.folder.path() + "/var/lib/corvane/generations/0000000001/nsswitch.conf";
    EXPECT_FALSE(std::filesystem::equivalent(kept, link));
    EXPECT_EQ(std::filesystem::status(link).permissions(), mode);
    EXPECT_EQ(std::filesystem::status(kept).permissions(), std::filesystem::perms(0600));
}

TEST(Generations, changeThatFailed_leavesNone) {
    const TestMachine machine;
    const MachineFolder folder(machine.folder.path());
    const FolderLock lock(folder);
    MachineTransaction transaction(folder, lock);
    transaction.replace(machineFile::nsswitch, newNsswitch, 0644);
    std::filesystem::create_directories(machine.folder.path() + "/var/lib/corvane/journal/in the way");
    EXPECT_THROW(transaction.commit(), Failure);
    EXPECT_EQ(machine.folder.read("etc/nsswitch.conf"), plainNsswitch);
    EXPECT_EQ(std::filesystem::hard_link_count(machine.folder.path() + "/etc/nsswitch.conf"), 1U);
    EXPECT_TRUE(std::filesystem::is_empty(machine.folder.path() + "/var/lib/corvane/generations"));
}

TEST(Recovery, crashInARunningProgram_isFinishedBeforeItsNextCall) {
    TestMachine machine;
    interrupt(machine);
    EXPECT_EQ(machine.call(machine.search(), 222).code, halden::ErrorCode::changedElsewhere);
    (void)machine.mode(machine.search());
    EXPECT_EQ(machine.call(machine.search(), 222).code, 0);
    EXPECT_EQ(machine.folder.read("etc/nsswitch.conf"), "passwd: files\ngroup: files\n");
}

namespace {

/// A folder as a crash leaves it right after it was decided that sssd.conf is to go.
void interruptRemoval(const TestMachine& machine) {
    TransactionJournal journal;
    journal.entries.push_back(
        {machineFile::sssd, Fingerprint::of(machine.folder.read("etc/sssd/sssd.conf")), Fingerprint{}});
    machine.folder.write("var/lib/corvane/journal", journal.text());
}

} // namespace

TEST(Recovery, crashBeforeAFileWasRemoved_isFinishedAtTheNextStart) {
    TestMachine machine;
    interruptRemoval(machine);
    machine.start();
    EXPECT_FALSE(machine.folder.has("etc/sssd/sssd.conf"));
    EXPECT_FALSE(machine.folder.has("var/lib/corvane/journal"));
}

TEST(Recovery, fileEditedAfterTheCrashThatWasToGo_isLeftAsItIs) {
    TestMachine machine;
    interruptRemoval(machine);
    machine.folder.write("etc/sssd/sssd.conf", "# mine\n");
    machine.start();
    EXPECT_EQ(machine.folder.read("etc/sssd/sssd.conf"), "# mine\n");
    EXPECT_FALSE(machine.folder.has("var/lib/corvane/journal"));
}

TEST(Recovery, removalThatCanNotBeFollowedByTheRest_isTakenBackWithModeAndContent) {
    const TestMachine machine;
    const MachineFolder folder(machine.folder.path());
    std::filesystem::permissions(machine.folder.path() + "/etc/sssd/sssd.conf", std::filesystem::perms(0640));
    const FolderLock lock(folder);
    MachineTransaction transaction(folder, lock);
    transaction.remove(machineFile::sssd, true);
    transaction.replace(machineFile::nsswitch, newNsswitch, 0644);
    std::filesystem::remove(machine.folder.path() + "/etc/nsswitch.conf");
    std::filesystem::create_directory(machine.folder.path() + "/etc/nsswitch.conf"); // can't be renamed onto
    EXPECT_THROW(transaction.commit(), Failure);
    EXPECT_EQ(machine.folder.read("etc/sssd/sssd.conf"), twoDirectories);
    EXPECT_EQ(std::filesystem::status(machine.folder.path() + "/etc/sssd/sssd.conf").permissions(),
              std::filesystem::perms(0640));
    EXPECT_FALSE(machine.folder.has("var/lib/corvane/journal"));
}

TEST(Recovery, fileEditedAfterTheCrash_isLeftAsItIs) {
    TestMachine machine;
    interrupt(machine);
    machine.folder.write("etc/nsswitch.conf", "passwd: files # mine\n");
    machine.start();
    EXPECT_EQ(machine.folder.read("etc/nsswitch.conf"), "passwd: files # mine\n");
    EXPECT_FALSE(machine.folder.has("etc/.nsswitch.conf.corvane-new"));
}

TEST(Recovery, journalThatIsNone_isKeptAsideAndChangesNothing) {
    for (const std::string text :
         {"", "corvane journal 1\netc/nsswitch.conf\tx\ty\nend\n", "corvane journal 1\n",
          "corvane journal 1\netc/passwd\tabsent\tabsent\nend\n",
          "corvane journal 1\n../../etc/passwd\tabsent\t1-2\nend\n"}) {
        TestMachine machine;
        machine.folder.write("var/lib/corvane/journal", text);
        machine.start();
        EXPECT_EQ(machine.folder.read("etc/nsswitch.conf"), plainNsswitch);
        EXPECT_EQ(machine.folder.read("var/lib/corvane/journal.damaged"), text);
        EXPECT_FALSE(machine.folder.has("var/lib/corvane/journal"));
    }
}

TEST(Recovery, journalText_isReadBackAsWritten) {
    TransactionJournal journal;
    journal.entries = {
        {"etc/nsswitch.conf", {}, Fingerprint::of(std::string("a"))},
        {"etc/sssd/sssd.conf", Fingerprint::of(std::string("")), Fingerprint::of(std::string("b"))}};
    EXPECT_EQ(TransactionJournal::fromText(journal.text())->entries, journal.entries);
    for (std::size_t length = 0; length + 1 < journal.text().size(); ++length)
        EXPECT_FALSE(TransactionJournal::fromText(journal.text().substr(0, length))) << length;
}

TEST(MachineFolder, absoluteLink_staysInsideThePrivateFolder) {
    TemporaryFolder folder;
    folder.write("etc/x", "");
    std::filesystem::create_symlink("/usr/lib/os-release", folder.path() + "/etc/os-release");
    std::filesystem::create_symlink("../../../../etc", folder.path() + "/up");
    const MachineFolder machine(folder.path());
    EXPECT_EQ(machine.resolved("etc/os-release"), machine.root() + "/usr/lib/os-release");
    EXPECT_EQ(machine.resolved("up/x"), machine.root() + "/etc/x");
}
