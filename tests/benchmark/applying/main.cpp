// How long an Apply takes:
//
//   corvane-benchmark-applying [TEXT]     only the lines whose first words contain TEXT
//
// - beside the least that replaces the same files for good: each written under another name, synced and
// renamed;
// - on a machine whose files are large, and how that grows: each file is made in two sizes, one ten times the
//   other. Where time grows with the size, the last column says ten or less; a hundred would be its square.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <stdexcept>

#include "haldend/TestMachine.h"

using namespace corvane::haldend::test;

namespace {

constexpr int repetitions = 3;
constexpr int automatic = 111, localOnly = 222;

struct Files {
    std::string sssd, nsswitch;
};

struct Case {
    const char* what;
    Files (*make)(std::size_t size);
    std::size_t size; ///< of the larger one
};

std::string repeated(const std::string& text, std::size_t count) {
    std::string all;
    all.reserve(text.size() * count);
    for (std::size_t i = 0; i < count; ++i)
        all += text;
    return all;
}

Files comments(std::size_t megabytesTimesTen) {
    const std::string line = "# people, and where they are looked up by this machine, as agreed in spring\n";
    return {twoDirectories + repeated(line, megabytesTimesTen * 100'000 / line.size()), plainNsswitch};
}

Files blockComment(std::size_t megabytesTimesTen) {
    const std::string line = " * people, and where they are looked up by this machine, as agreed in spring\n";
    return {std::string(twoDirectories) + "/*\n" + repeated(line, megabytesTimesTen * 100'000 / line.size()) +
                " */\n",
            plainNsswitch};
}

Files options(std::size_t count) {
    std::string text = twoDirectories;
    for (std::size_t i = 0; i < count; ++i)
        text += "ldap_user_extra_attrs_" + std::to_string(i) + " = phone, mail\n";
    return {text, plainNsswitch};
}

Files directories(std::size_t count) {
    std::string text = twoDirectories;
    for (std::size_t i = 0; i < count; ++i)
        text += "[domain/site" + std::to_string(i) + "]\nid_provider = ldap\nldap_uri = ldap://ldap" +
                std::to_string(i) + ".example.com\n";
    return {text, plainNsswitch};
}

Files nsswitchComments(std::size_t lines) {
    return {twoDirectories, plainNsswitch + repeated("# passwd: files sss\n", lines)};
}

Files nsswitchForeign(std::size_t lines) {
    return {twoDirectories, plainNsswitch + repeated("hosts: files mdns4 [NOTFOUND=return] dns\n", lines)};
}

Files nsswitchRepeated(std::size_t lines) {
    return {twoDirectories, plainNsswitch + repeated("passwd: files [SUCCESS=return] systemd\n", lines)};
}

constexpr Case cases[] = {
    {"sssd.conf, 0.5 and 5 MB of comments", comments, 50},
    {"sssd.conf, 0.5 and 5 MB in one comment", blockComment, 50},
    {"sssd.conf, 1 000 and 10 000 options", options, 10'000},
    {"sssd.conf, 100 and 1 000 directories", directories, 1'000},
    {"nsswitch.conf, 10 000 and 100 000 comments", nsswitchComments, 100'000},
    {"nsswitch.conf, 10 000 and 100 000 foreign lines", nsswitchForeign, 100'000},
    {"nsswitch.conf, 10 000 and 100 000 times passwd", nsswitchRepeated, 100'000},
};

double secondsOf(const TestMachine& machine, int call) {
    const auto start = std::chrono::steady_clock::now();
    if (const auto error = machine.call(machine.search(), call)) throw std::runtime_error(error.reason);
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

struct Seconds {
    double toLocal = 1e9, toAutomatic = 1e9;
};

/// The best of some, which other work on the machine has disturbed least.
Seconds measured(const Files& files) {
    TestMachine machine(files.sssd, files.nsswitch);
    Seconds best;
    (void)secondsOf(machine, automatic);
    for (int i = 0; i < repetitions; ++i) {
        machine.folder.write("etc/sssd/sssd.conf", files.sssd + "# " + std::to_string(i) + "\n");
        (void)machine.mode(machine.search()); // so that it is read, and written, anew
        best.toLocal = std::min(best.toLocal, secondsOf(machine, localOnly));
        best.toAutomatic = std::min(best.toAutomatic, secondsOf(machine, automatic));
    }
    return best;
}

double median(std::vector<double> values) {
    const auto middle = values.begin() + long(values.size() / 2);
    std::ranges::nth_element(values, middle);
    return *middle;
}

void replaceBare(const std::string& path, const std::string& content) {
    const auto staged = path + ".bare";
    const int file = ::open(staged.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    const bool isWritten =
        file >= 0 && ::write(file, content.data(), content.size()) == ssize_t(content.size());
    const bool isSynced = isWritten && ::fsync(file) == 0;
    ::close(file);
    if (!isSynced || std::rename(staged.c_str(), path.c_str()) != 0) throw std::runtime_error(path);
}

/// The files that the two policies' changes below replace: nsswitch.conf and the stored policy.
double secondsOfBare(const TestMachine& machine) {
    const auto& folder = machine.folder;
    const char* const names[] = {"etc/nsswitch.conf", "var/lib/corvane/policies.plist"};
    std::vector<std::string> contents;
    for (const auto* name : names)
        contents.push_back(folder.read(name));
    const auto start = std::chrono::steady_clock::now();
    for (std::size_t i = 0; i < contents.size(); ++i)
        replaceBare(folder.path() + "/" + names[i], contents[i]);
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void compareWithBare() {
    constexpr int rounds = 60;
    TestMachine machine(twoDirectories, plainNsswitch), bare(twoDirectories, plainNsswitch);
    (void)secondsOf(machine, automatic);
    (void)secondsOf(bare, automatic);
    std::vector<double> ours, least;
    for (int i = 0; i < rounds; ++i) {
        ours.push_back(secondsOf(machine, i % 2 == 0 ? localOnly : automatic));
        least.push_back(secondsOfBare(bare));
    }
    std::printf("%-50s %9s %9s %7s\n", "milliseconds of an Apply", "bare", "Corvane", "times");
    std::printf("%-50s %9.2f %9.2f %7.2f\n\n", "    nsswitch.conf and the stored policy",
                median(least) * 1000, median(ours) * 1000, median(ours) / median(least));
}

} // namespace

int main(int count, char** arguments) {
    if (count == 1 || std::string("bare").find(arguments[1]) != std::string::npos) compareWithBare();
    std::printf("%-50s %9s %9s %7s\n", "seconds of an Apply", "small", "large", "times");
    for (const auto& one : cases) {
        if (count > 1 && std::string(one.what).find(arguments[1]) == std::string::npos) continue;
        const auto small = measured(one.make(one.size / 10)), large = measured(one.make(one.size));
        std::printf("%-50s\n", one.what);
        std::printf("%-50s %9.3f %9.3f %7.1f\n", "    Automatic to Local", small.toLocal, large.toLocal,
                    large.toLocal / small.toLocal);
        std::printf("%-50s %9.3f %9.3f %7.1f\n", "    Local to Automatic", small.toAutomatic,
                    large.toAutomatic, large.toAutomatic / small.toAutomatic);
    }
    return 0;
}
