// How long the people of a large LDAP server take to become records, and how much memory that needs:
//
//   corvane-benchmark-reading [PEOPLE [ROUNDS]]     100 000 people and a tenth of them; 7 rounds, medians
//   count
//
// - everybody with all attributes, beside `ldapsearch` with the same filter, attributes and page size;
// - everybody's name alone, and the first hundred people;
// - how the time grows from the tenth to the whole.
//
// Each measurement is a process of its own, from its start to its end; they take turns.
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <stdexcept>

#include "haldend/TestMachine.h"
#include "haldend/TestSlapd.h"

using namespace corvane;
using namespace corvane::haldend::test;

namespace {

using Clock = std::chrono::steady_clock;
using Command = std::vector<std::string>;

constexpr const char* base = "dc=example,dc=com";
constexpr const char* allAttributes[] = {"uid",           "cn",         "uidNumber", "gidNumber",
                                         "homeDirectory", "loginShell", "mail",      "telephoneNumber"};
constexpr std::size_t firstPage = 100;

/// What a reading process reports about itself.
struct Report {
    double records = 0;
    double kilobytes = 0;    ///< the most memory that it ever had
    double milliseconds = 0; ///< of the query alone
};

struct Sample {
    double milliseconds = 0; ///< from the start of the process to its end
    Report report;
};

double peakKilobytes() {
    std::ifstream lines("/proc/self/status");
    for (std::string word; lines >> word;) {
        double value = 0;
        if (word == "VmHWM:" && lines >> value) return value;
    }
    throw std::runtime_error("the system doesn't say how much memory a process has");
}

halden::QueryParameters queryFor(const std::string& kind) {
    const std::string wanted(kind == "names" ? halden::attribute::recordName : halden::attribute::all);
    return {{std::string(halden::recordType::users)},
            "",
            halden::MatchType::any,
            {},
            {wanted},
            kind == "page" ? firstPage : 0};
}

/// The child's part: an engine on the machine folder, one query, and a report to standard output.
int read(const std::string& kind, const std::string& folder) {
    plist::PropertyListCodec codec;
    RecordedLog log;
    const auto engine = std::make_shared<haldend::Engine>(folder, codec, log);
    haldend::EmbeddedFramework framework(engine);
    const auto session = framework.defaultSession();
    const auto node = session->nodeWithName(session->nodeNames(nullptr).textAt(2), nullptr);
    Report report;
    if (kind != "nothing") {
        halden::Error error;
        const auto start = Clock::now();
        const auto records = node->query(queryFor(kind), nullptr)->results(false, &error);
        report.milliseconds = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
        if (!records) throw std::runtime_error(error.reason);
        report.records = double(records->size());
        report.kilobytes = peakKilobytes();
    } else {
        report.kilobytes = peakKilobytes();
    }
    const bool isWritten = ::write(STDOUT_FILENO, &report, sizeof report) == sizeof report;
    ::_exit(isWritten ? EXIT_SUCCESS : EXIT_FAILURE); // the records go with the process, as with any reader
}

/// Runs a program to its end; its standard output goes to `output`, which is closed.
void run(const Command& command, int output) {
    std::vector<char*> arguments;
    for (const auto& word : command)
        arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    const pid_t child = ::fork();
    if (child == 0) {
        ::dup2(output, STDOUT_FILENO);
        ::execvp(arguments[0], arguments.data());
        ::_exit(EXIT_FAILURE);
    }
    ::close(output);
    int status = 0;
    ::waitpid(child, &status, 0);
    if (status != 0) throw std::runtime_error(command.front() + " failed");
}

Sample ours(const std::string& kind, const std::string& folder) {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    Sample sample;
    const auto start = Clock::now();
    run({"/proc/self/exe", "--read", kind, folder}, ends[1]);
    sample.milliseconds = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
    const bool isRead = ::read(ends[0], &sample.report, sizeof sample.report) == sizeof sample.report;
    ::close(ends[0]);
    if (!isRead) throw std::runtime_error("no report about " + kind);
    return sample;
}

Sample ldapsearch(const std::string& kind, const std::string& uri) {
    Command command{"ldapsearch", "-x", "-LLL", "-o", "ldif-wrap=no", "-H", uri, "-b", base};
    if (kind == "nothing") {
        command.insert(command.end(), {"-s", "base", "(objectClass=*)", "1.1"});
    } else {
        command.insert(command.end(), {"-E", "pr=1000/noprompt", "(&(objectClass=posixAccount))", "uid"});
        if (kind == "all")
            command.insert(command.end(), std::begin(allAttributes) + 1, std::end(allAttributes));
    }
    Sample sample;
    const auto start = Clock::now();
    run(command, ::open("/dev/null", O_WRONLY | O_CLOEXEC));
    sample.milliseconds = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
    return sample;
}

/// The measurements of one server, by their names.
struct Server {
    explicit Server(int people)
        : count(people), slapd(people - 2), // it has two people anyway
          machine("[sssd]\ndomains = d\n[domain/d]\nid_provider = ldap\nldap_uri = " + slapd.uri() +
                  "\nldap_search_base = " + base + "\n") {}

    void measure() {
        for (const auto* kind : {"all", "names", "page", "nothing"}) {
            corvane[kind].push_back(ours(kind, machine.folder.path()));
            if (kind != std::string("page")) theirs[kind].push_back(ldapsearch(kind, slapd.uri()));
        }
        const auto isRight = [&](const char* kind, double records) {
            return corvane[kind].back().report.records == records;
        };
        if (!isRight("all", count) || !isRight("names", count) || !isRight("page", firstPage))
            throw std::runtime_error("not all records were read");
    }

    int count;
    TestSlapd slapd;
    TestMachine machine;
    std::map<std::string, std::vector<Sample>> corvane, theirs;
};

template <typename Value>
double median(std::vector<Sample> samples, const Value& value) {
    const auto middle = samples.begin() + long(samples.size() / 2);
    std::nth_element(samples.begin(), middle, samples.end(),
                     [&](const auto& a, const auto& b) { return value(a) < value(b); });
    return value(*middle);
}

double time(const std::vector<Sample>& samples) {
    return median(samples, [](const auto& sample) { return sample.milliseconds; });
}
double queryTime(const std::vector<Sample>& samples) {
    return median(samples, [](const auto& sample) { return sample.report.milliseconds; });
}
double memory(const std::vector<Sample>& samples) {
    return median(samples, [](const auto& sample) { return sample.report.kilobytes; }) / 1024;
}

void print(Server& server) {
    auto& corvane = server.corvane;
    auto& theirs = server.theirs;
    const double whole = time(theirs["all"]);
    const double empty = memory(corvane["nothing"]);
    std::printf("%d people %36s %10s %10s %12s\n", server.count, "ldapsearch", "Corvane", "query", "MiB");
    for (const auto* kind : {"nothing", "page", "names", "all"})
        std::printf("    %-30s %10.1f %10.1f %10.1f %12.1f\n", kind,
                    theirs.contains(kind) ? time(theirs[kind]) : 0.0, time(corvane[kind]),
                    queryTime(corvane[kind]), memory(corvane[kind]));
    std::printf("    all / ldapsearch's all         %10.2f\n", time(corvane["all"]) / whole);
    std::printf("    names / all                    %10.2f   (ldapsearch's own: %.2f)\n",
                time(corvane["names"]) / time(corvane["all"]), time(theirs["names"]) / whole);
    std::printf("    names / ldapsearch's all       %10.2f\n", time(corvane["names"]) / whole);
    std::printf("    first %zu / ldapsearch's all   %10.2f\n", firstPage, time(corvane["page"]) / whole);
    std::printf("    bytes a record: all %.0f, names %.0f\n\n",
                (memory(corvane["all"]) - empty) * 1048576 / server.count,
                (memory(corvane["names"]) - empty) * 1048576 / server.count);
}

void compare(int people, int rounds) {
    Server small(people / 10), large(people);
    for (int i = 0; i < rounds; ++i) {
        small.measure();
        large.measure();
    }
    std::printf("milliseconds\n");
    print(small);
    print(large);
    std::printf("ten times the people: all %.1f times the time, names %.1f (ldapsearch %.1f and %.1f)\n",
                queryTime(large.corvane["all"]) / queryTime(small.corvane["all"]),
                queryTime(large.corvane["names"]) / queryTime(small.corvane["names"]),
                time(large.theirs["all"]) / time(small.theirs["all"]),
                time(large.theirs["names"]) / time(small.theirs["names"]));
}

} // namespace

int main(int count, char** arguments) {
    try {
        if (count == 4 && arguments[1] == std::string("--read")) return read(arguments[2], arguments[3]);
        compare(count > 1 ? std::stoi(arguments[1]) : 100'000, count > 2 ? std::stoi(arguments[2]) : 7);
        return EXIT_SUCCESS;
    } catch (const std::exception& problem) {
        std::cerr << problem.what() << "\n";
        return EXIT_FAILURE;
    }
}
