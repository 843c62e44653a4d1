// corvane-oracle: works made-up machines through the directory service and has the real glibc and the real
// SSSD judge what it made of their files. Needs root, for namespaces of its own; tests/oracle/run looks for
// that.
//
//   corvane-oracle [--core] [--machine REGEX] [--scene REGEX] [--jobs N]     the table of machines and scenes
//   corvane-oracle --random SECONDS [--seed N] [--jobs N]                    made-up files, for that long
//   corvane-oracle --selfcheck      whether the readers say of known files what they have to
//   corvane-oracle --judge FOLDER   what the readers say of a machine folder
//   corvane-oracle --list           the machines and scenes
//   corvane-oracle --describe       what the readers say of each machine as it is, in a line
//
// A machine of a random run is printed when it fails, as it could stand in tests/oracle/machines; --seed N
// begins with that very one.
//
// --settle MILLISECONDS: how long SSSD has to have run before it is looked at (0: once it reports itself
// started).
// --keep: the files of scenes that fail stay, and their folder is named.
// The last line of a run is "N passed, N failed".
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <regex>
#include <string>

#include "oracle/Driver.h"
#include "oracle/Judge.h"
#include "oracle/MachineTexts.h"
#include "oracle/Namespaces.h"
#include "oracle/RandomMachines.h"
#include "oracle/Reports.h"
#include "oracle/Scenes.h"
#include "oracle/SelfCheck.h"

namespace {

using namespace corvane::oracle;
namespace fs = std::filesystem;

struct Options {
    bool core = false, list = false, describe = false, selfcheck = false, keep = false;
    std::string machine = ".*", scene = ".*", judge;
    int jobs = 10, settle = 0, random = 0;
    unsigned long seed = 0;
};

[[noreturn]] void usage(const std::string& what) {
    std::fprintf(stderr, "corvane-oracle: %s\n", what.c_str());
    std::exit(2);
}

Options optionsFrom(int count, char** arguments) {
    Options options;
    for (int i = 1; i < count; ++i) {
        const std::string word = arguments[i];
        const auto value = [&]() -> std::string {
            if (++i == count) usage(word + " requires a value after it");
            return arguments[i];
        };
        if (word == "--core")
            options.core = true;
        else if (word == "--list")
            options.list = true;
        else if (word == "--describe")
            options.describe = true;
        else if (word == "--selfcheck")
            options.selfcheck = true;
        else if (word == "--keep")
            options.keep = true;
        else if (word == "--machine")
            options.machine = value();
        else if (word == "--scene")
            options.scene = value();
        else if (word == "--judge")
            options.judge = value();
        else if (word == "--jobs")
            options.jobs = std::max(1, std::atoi(value().c_str()));
        else if (word == "--settle")
            options.settle = std::atoi(value().c_str());
        else if (word == "--random")
            options.random = std::atoi(value().c_str());
        else if (word == "--seed")
            options.seed = std::strtoul(value().c_str(), nullptr, 10);
        else
            usage("unexpected argument " + word);
    }
    return options;
}

std::string programFolder() { return fs::read_symlink("/proc/self/exe").parent_path().string(); }

void list(const std::vector<Machine>& machines) {
    for (const auto& machine : machines)
        std::printf("%s%s  %s\n", machine.name.c_str(), machine.isCore ? " (core)" : "",
                    machine.about.c_str());
    for (const auto& scene : scenes())
        std::printf("scene %s  %s\n", scene.name.c_str(), scene.about.c_str());
}

/// Who is asked and what is served, as the machine is found.
void describe(const Machine& machine, const Judge& judge) {
    const auto names = judge.names(machine.files);
    const auto sssd = judge.sssd(machine.files);
    const auto asks = [&](const char* database) {
        return asksSss(names, std::string(database) + " nobody-knows-it") ? " " + std::string(database) : "";
    };
    std::string served;
    for (const auto& domain : sssd.domains)
        served += " " + domain.name + "(" + domain.provider + ")";
    std::printf("%s: sss is asked for:%s%s%s%s%s; SSSD %s\n", machine.name.c_str(), asks("passwd").c_str(),
                asks("group").c_str(), asks("initgroups").c_str(), asks("shadow").c_str(),
                asks("netgroup").c_str(),
                sssd.starts ? ("serves" + served).c_str() : ("doesn't start: " + sssd.reason).c_str());
}

/// All scenes that were asked for, on one machine.
class Table {
public:
    Table(const Options& options, const Judge& judge, const std::string& folder)
        : options_(options), judge_(judge), folder_(folder) {}

    [[nodiscard]] MachineReport work(const Machine& machine) const {
        MachineReport report;
        for (const auto& scene : scenes()) {
            if (!std::regex_search(scene.name, std::regex(options_.scene))) continue;
            const auto place = folder_ + "/" + machine.name + "/" + scene.name;
            count(report, machine, scene.name, outcomeOf(scene.name, machine, place));
        }
        return report;
    }

private:
    [[nodiscard]] Outcome outcomeOf(const std::string& scene, const Machine& machine,
                                    const std::string& place) const {
        try {
            return play(scene, machine, judge_, place, options_.random > 0);
        } catch (const std::exception& failure) {
            return {Outcome::Kind::failed, std::string("  ") + failure.what() + "\n"};
        }
    }

    void count(MachineReport& report, const Machine& machine, const std::string& scene,
               const Outcome& outcome) const {
        if (outcome.kind == Outcome::Kind::passed) ++report.passed;
        if (outcome.kind != Outcome::Kind::failed) return;
        ++report.failed;
        report.text += "FAIL " + machine.name + " " + scene + "\n" + outcome.text;
    }

    const Options& options_;
    const Judge& judge_;
    std::string folder_;
};

int runSelfCheck(const std::vector<Machine>& machines, const Judge& judge) {
    const auto check = selfCheck(machines, judge);
    std::printf("%s%d passed, %d failed\n", check.text.c_str(), check.passed, check.failed);
    return check.failed == 0 && check.passed > 0 ? 0 : 1;
}

/// Counts what comes back, and prints what failed as it comes.
class Tally {
public:
    void add(const MachineReport& report) {
        passed_ += report.passed;
        failed_ += report.failed;
        ++machines_;
        std::printf("%s", report.text.c_str());
        std::fflush(stdout);
    }
    int finish() const {
        std::printf("%d machines\n%d passed, %d failed\n", machines_, passed_, failed_);
        return failed_ == 0 && passed_ > 0 ? 0 : 1;
    }
    [[nodiscard]] bool hasFailures() const { return failed_ > 0; }

private:
    int passed_ = 0, failed_ = 0, machines_ = 0;
};

void runTable(const Options& options, const std::vector<Machine>& machines, Pool& pool) {
    for (const auto& machine : machines)
        if ((machine.isCore || !options.core) && std::regex_search(machine.name, std::regex(options.machine)))
            pool.start(machine);
}

void runRandom(const Options& options, Pool& pool) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(options.random);
    auto seed = options.seed ? options.seed : std::random_device()() % 1000000000UL;
    std::printf("The first machine is random-%lu (--seed %lu)\n", seed, seed);
    while (std::chrono::steady_clock::now() < end)
        pool.start(randomMachine(seed++));
}

int work(const Options& options, const std::vector<Machine>& machines, const Judge& judge,
         RunFolder& folder) {
    const Table table(options, judge, folder.path());
    Tally tally;
    Pool pool(
        options.jobs,
        [&](const Machine& machine) {
            protectMachine(folder.path());
            return table.work(machine);
        },
        [&](const Machine& machine, const MachineReport& report) {
            tally.add(report);
            if (report.failed > 0 && options.random > 0)
                std::printf("The machine was:\n%s\n", machineText(machine).c_str());
        });
    if (options.random > 0)
        runRandom(options, pool);
    else
        runTable(options, machines, pool);
    pool.finish();
    if (options.keep && tally.hasFailures()) {
        folder.keep();
        std::printf("The files of the scenes that failed are in %s\n", folder.path().c_str());
    }
    return tally.finish();
}

int run(const Options& options) {
    const std::string machinesFolder = ORACLE_FOLDER;
    const auto machines = machinesIn(machinesFolder + "/machines");
    if (options.list) return list(machines), 0;
    RunFolder folder;
    fs::create_directory(folder.path() + "/verdicts");
    const Judge judge(programFolder(), folder.path() + "/verdicts", options.settle);
    if (!options.judge.empty()) {
        const auto files = filesBelow(options.judge);
        std::printf("%s%s", text(judge.names(files)).c_str(), text(judge.sssd(files)).c_str());
        return 0;
    }
    if (options.describe) {
        for (const auto& machine : machines)
            if (std::regex_search(machine.name, std::regex(options.machine))) describe(machine, judge);
        return 0;
    }
    if (options.selfcheck) return runSelfCheck(machinesIn(machinesFolder + "/known"), judge);
    return work(options, machines, judge, folder);
}

} // namespace

int main(int count, char** arguments) {
    try {
        return run(optionsFrom(count, arguments));
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "corvane-oracle: %s\n", failure.what());
        return 1;
    }
}
