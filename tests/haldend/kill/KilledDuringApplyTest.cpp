#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <random>
#include <thread>

#include "haldend/LdapServersTest.h"
#include "haldend/TestMachine.h"
#include "haldend/storage/MachineTransaction.h"

// The program is killed at random moments while it applies changes, hundreds of times over on one folder.
// What it leaves is opened again, as at the program's next start, and must be whole each time.

using namespace corvane;
using namespace corvane::haldend::test;
namespace attribute = halden::attribute;

namespace {

constexpr int kills = 500;
constexpr int serverKills = 120;

/// Applies calls without end, in an order that depends on the seed. Reports each call before and after.
class Applier {
public:
    Applier(TestMachine& machine, unsigned seed, int pipe) : machine_(machine), random_(seed), pipe_(pipe) {}

    [[noreturn]] void run() {
        machine_.start();
        for (;;)
            step();
    }

private:
    void step() {
        const auto target = random_() % 3 == 0 ? machine_.contacts() : machine_.search();
        const auto choice = random_() % 6;
        note('<');
        if (choice == 0)
            (void)machine_.call(machine_.node(halden::NodeType::configNode),
                                random_() % 2 == 0 ? 1005 : 1006);
        else if (choice <= 3)
            (void)machine_.call(target, static_cast<int>(choice) * 111);
        else
            (void)machine_.setCustom(target, someNodes());
        note('>');
    }
    std::vector<std::string> someNodes() {
        std::vector<std::string> names{staffNode, guestsNode, corpNode, "/LDAP/planned.example.com"};
        std::shuffle(names.begin(), names.end(), random_);
        names.resize(random_() % (names.size() + 1));
        return names;
    }
    void note(char mark) const {
        if (::write(pipe_, &mark, 1) != 1) ::_exit(1);
    }

    TestMachine& machine_;
    std::mt19937 random_;
    int pipe_;
};

/// Runs an applier in a child process, kills it after a random time, and tells what it had reported.
std::string killedAfter(TestMachine& machine, unsigned seed, std::chrono::microseconds time) {
    int ends[2];
    EXPECT_EQ(::pipe(ends), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        ::close(ends[0]);
        Applier(machine, seed, ends[1]).run();
    }
    ::close(ends[1]);
    char first = 0;
    EXPECT_EQ(::read(ends[0], &first, 1), 1); // it has opened the folder and begins its first call
    std::this_thread::sleep_for(time);
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    std::string report(1, first);
    char buffer[65536];
    for (ssize_t count = 0; (count = ::read(ends[0], buffer, sizeof buffer)) > 0;)
        report.append(buffer, static_cast<std::size_t>(count));
    ::close(ends[0]);
    return report;
}

std::string withoutDomains(std::string sssd) {
    const auto start = sssd.find("domains = ");
    return start == std::string::npos ? sssd : sssd.erase(start, sssd.find('\n', start) - start);
}

/// Leftovers of an interrupted change anywhere in the folder.
std::vector<std::string> leftovers(const TestMachine& machine) {
    std::vector<std::string> found;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(machine.folder.path())) {
        const auto name = entry.path().filename().string();
        if (name.ends_with(".corvane-new") || name.starts_with("part-") || name.starts_with("check-") ||
            name == "journal")
            found.push_back(entry.path());
    }
    return found;
}

void expectWhole(TestMachine& machine) {
    const auto& snapshot = machine.engine->machine().snapshot();
    EXPECT_EQ(haldend::activeDirectories(snapshot.policy(), snapshot.inputs()),
              haldend::servedNodes(snapshot.inputs()));
    EXPECT_EQ(snapshot.inputs().nsswitch.textUsingSssd(false), plainNsswitch);
    EXPECT_EQ(withoutDomains(snapshot.inputs().sssd.text()), withoutDomains(twoDirectories));
    if (const auto wanted = haldend::domainsFor(snapshot.policy(), snapshot.inputs()); !wanted.empty()) {
        EXPECT_EQ(snapshot.inputs().sssd.listedDomains(), wanted);
    }
    EXPECT_EQ(leftovers(machine), std::vector<std::string>());
}

/// The stored policy belongs to exactly these two files, so a call can't have been done by half.
void expectStoredWithTheseFiles(const TestMachine& machine) {
    const auto stored = machine.folder.read("var/lib/corvane/policies.plist");
    if (stored.empty()) return; // killed before the first call was done
    const haldend::MachineFolder folder(machine.folder.path());
    for (const auto* file : {"etc/nsswitch.conf", "etc/sssd/sssd.conf"})
        EXPECT_NE(stored.find(haldend::Fingerprint::of(folder.read(file)).text()), std::string::npos) << file;
}

} // namespace

namespace {

/// Adds servers to a machine that had none, puts them on the policy and removes them, without end.
[[noreturn]] void addAndRemove(ServerMachine& machine, int pipe) {
    const auto note = [pipe](char mark) {
        if (::write(pipe, &mark, 1) != 1) ::_exit(1);
    };
    machine.start();
    for (;;) {
        note('<');
        (void)machine.write({newServer("one", "a.example.com"), newServer("two", "b.example.com")});
        (void)machine.call(machine.search(), 111);
        (void)machine.write({}, {"one", "two"});
        note('>');
    }
}

/// Runs that in a child process and kills it after a random time.
void addAndRemoveUntilKilled(ServerMachine& machine, std::chrono::microseconds time) {
    int ends[2];
    EXPECT_EQ(::pipe(ends), 0);
    const pid_t child = ::fork();
    if (child == 0) addAndRemove(machine, ends[1]);
    ::close(ends[1]);
    char first = 0;
    EXPECT_EQ(::read(ends[0], &first, 1), 1);
    std::this_thread::sleep_for(time);
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    ::close(ends[0]);
}

void removeAllServers(const ServerMachine& machine) {
    std::vector<std::string> names;
    for (const auto* name : {"one", "two"})
        if (!machine.described(name).isNull()) names.emplace_back(name);
    EXPECT_EQ(machine.write({}, names).error.code, 0);
}

} // namespace

TEST(KilledDuringApply, whileServersComeAndGo_leavesAMachineThatCanBeTakenBackToHowItWasFound) {
    ServerMachine machine("");
    const auto found = everythingBelowEtc(machine);
    std::mt19937 random(20260807);
    std::map<std::size_t, int> seen;
    for (int i = 0; i < serverKills && !testing::Test::HasFailure(); ++i) {
        addAndRemoveUntilKilled(machine, std::chrono::microseconds(random() % 60000));
        machine.start();
        const auto servers = machine.list().values.valueForKey("servers").as<util::Array>();
        ++seen[servers.count()];
        EXPECT_NE(servers.count(), 1U) << "both servers or none";
        EXPECT_EQ(leftovers(machine), std::vector<std::string>());
        expectStoredWithTheseFiles(machine);
        EXPECT_EQ(machine.folder.has("etc/sssd/sssd.conf"), !servers.isEmpty());
        if (i % 4 == 0) removeAllServers(machine);
        if (i % 4 != 0) continue;
        auto now = everythingBelowEtc(machine);
        now.erase("etc/sssd"); // a kill just after the last file went leaves the empty folder
        EXPECT_EQ(now, found);
    }
    EXPECT_GT(seen[0], 0);
    EXPECT_GT(seen[2], 0);
}

TEST(KilledDuringApply, fiveHundredTimes_leavesBothFilesAndThePolicyWholeAndAgreeing) {
    TestMachine machine;
    std::mt19937 random(20260731);
    int interrupted = 0;
    int repaired = 0;
    for (int i = 0; i < kills && !testing::Test::HasFailure(); ++i) {
        const auto report = killedAfter(machine, random(), std::chrono::microseconds(random() % 30000));
        interrupted += report.back() == '<' ? 1 : 0;
        repaired +=
            haldend::MachineTransaction::needsRecovery(haldend::MachineFolder(machine.folder.path())) ? 1 : 0;
        machine.start();
        expectStoredWithTheseFiles(machine);
        expectWhole(machine);
        EXPECT_EQ(machine.call(machine.search(), i % 2 == 0 ? 111 : 222).code, 0)
            << "the folder is usable after kill " << i;
    }
    std::printf("%d kills: %d hit a call, %d left something to repair\n", kills, interrupted, repaired);
    EXPECT_GT(interrupted, kills / 4) << "the kills must hit calls, or nothing was shown";
    EXPECT_GT(repaired, kills / 20);
}
