#include "oracle/Judge.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <thread>

#include "oracle/Namespaces.h"
#include "oracle/Reports.h"

namespace corvane::oracle {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

/// One run of SSSD, seen from the first process of its namespaces.
class SssdRun {
public:
    SssdRun() {
        const int errors = ::open(log, O_CREAT | O_WRONLY | O_APPEND | O_CLOEXEC, 0600);
        child_ = start({"/usr/sbin/sssd", "-i", "--logger=stderr", "-d", "0x01f0"},
                       {"PATH=/usr/sbin:/usr/bin:/sbin:/bin", "LC_ALL=C"}, errors, errors);
        ::close(errors);
    }
    /// Waits until SSSD reports itself started, by its file with the process number, which it writes when
    /// every back end and service has answered. False when it has ended.
    bool hasStarted() {
        while (runs()) {
            if (::access("/run/sssd.pid", F_OK) == 0) return true;
            std::this_thread::sleep_for(10ms);
        }
        return false;
    }
    bool runsFor(int milliseconds) {
        const auto end = Clock::now() + std::chrono::milliseconds(milliseconds);
        while (runs() && Clock::now() < end)
            std::this_thread::sleep_for(10ms);
        return runs();
    }
    /// Names of the domains with a back end that runs, in SSSD's order: one that was started again is younger
    /// than those after it.
    static std::vector<std::string> backEnds() {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator("/proc")) {
            const int number = std::atoi(entry.path().filename().c_str());
            const auto words = number > 0 ? wordsOf(number) : std::vector<std::string>();
            if (words.size() > 2 && words[0].ends_with("/sssd_be") && words[1] == "--domain")
                names.push_back(words[2]);
        }
        const auto printed = said();
        std::ranges::sort(
            names, {}, [&](const auto& name) { return printed.find("Queueing service " + name + " for"); });
        return names;
    }
    /// The configuration as SSSD has taken it in, which it prints at its start.
    static std::string said() {
        std::ifstream stream(log, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

private:
    bool runs() {
        for (int status = 0; !ended_;) { // every orphan of the namespace is ours
            const pid_t gone = ::waitpid(-1, &status, WNOHANG);
            if (gone == child_) ended_ = true;
            if (gone <= 0) break;
        }
        return !ended_;
    }
    static std::vector<std::string> wordsOf(int number) {
        std::ifstream stream("/proc/" + std::to_string(number) + "/cmdline", std::ios::binary);
        return parts({std::istreambuf_iterator<char>(stream), {}}, '\0');
    }

    static constexpr const char* log = "/run/oracle-sssd.log";
    pid_t child_ = -1;
    bool ended_ = false;
};

bool sameWithoutCase(const std::string& a, const std::string& b) {
    return std::ranges::equal(
        a, b, [](unsigned char x, unsigned char y) { return std::tolower(x) == std::tolower(y); });
}

/// The value of an attribute of the domain's entry in the configuration that SSSD printed.
std::string optionOf(const std::string& said, const std::string& domain, const std::string& key) {
    bool isInside = false;
    for (const auto& line : parts(said, '\n')) {
        if (line.starts_with("dn: "))
            isInside = sameWithoutCase(line, "dn: cn=" + domain + ",cn=domain,cn=config");
        else if (line.starts_with("["))
            isInside = false;
        else if (isInside && sameWithoutCase(line.substr(0, key.size() + 2), key + ": "))
            return line.substr(key.size() + 2);
    }
    return {};
}

std::string described(const std::string& domain, const std::string& said) {
    const auto uris = optionOf(said, domain, "ldap_uri");
    return "domain\t" + domain + "\t" + optionOf(said, domain, "id_provider") + "\t" +
           uris.substr(0, uris.find(','));
}

/// The last of what SSSD and its back ends reported as failures.
std::string lastWords(const std::string& said) {
    std::vector<std::string> failures;
    for (const auto& line : parts(said, '\n'))
        if (line.find("(0x0010)") != std::string::npos || line.find("(0x0020)") != std::string::npos)
            if (line.find("pidfile") == std::string::npos) failures.push_back(line.substr(line.find('[')));
    std::string words;
    for (std::size_t i = failures.size() > 3 ? failures.size() - 3 : 0; i < failures.size(); ++i)
        words += (words.empty() ? "" : " / ") + failures[i];
    std::ranges::replace(words, '\t', ' ');
    return words;
}

std::string reportOfRun(int settle) {
    SssdRun run;
    if (!run.hasStarted() || !run.runsFor(settle)) return "stopped\t" + lastWords(SssdRun::said()) + "\n";
    std::string report = "started\n";
    for (const auto& domain : SssdRun::backEnds())
        report += described(domain, SssdRun::said()) + "\n";
    return report;
}

} // namespace

Files filesOfSssd(const Files& machine) {
    auto files = filesUnder(machine, "etc/sssd/");
    files["etc/nsswitch.conf"] = {"passwd: files\ngroup: files\nhosts: files\n"};
    files["etc/passwd"] = {"root:x:0:0:root:/root:/bin/sh\nnobody:x:65534:65534::/:/bin/false\n"};
    files["etc/group"] = {"root:x:0:\nnogroup:x:65534:\n"};
    return files;
}

std::string sssdReport(const Files& files, int settle) {
    if (filesUnder(files, "etc/sssd/").empty()) return "stopped\tthere is no configuration\n";
    const auto run = [&] {
        return runApart(files, 60s, [&](int output) {
            const auto report = reportOfRun(settle);
            if (::write(output, report.data(), report.size()) < 0) throw std::runtime_error("no report");
        });
    };
    const auto report = run();
    // On a busy machine a start fails now and then; what the configuration prevents fails again.
    return report.starts_with("stopped") ? run() : report;
}

SssdVerdict sssdFrom(const std::string& report) {
    SssdVerdict verdict;
    for (const auto& line : parts(report, '\n')) {
        auto fields = parts(line, '\t');
        fields.resize(4);
        if (fields[0] == "started") verdict.starts = true;
        if (fields[0] == "stopped") verdict.reason = fields[1];
        if (fields[0] == "domain") verdict.domains.push_back({fields[1], fields[2], fields[3]});
    }
    return verdict;
}

} // namespace corvane::oracle
