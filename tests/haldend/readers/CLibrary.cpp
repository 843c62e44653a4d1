#include "haldend/readers/CLibrary.h"

#include <dlfcn.h>
#include <grp.h>
#include <nss.h>
#include <pwd.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <sstream>
#include <stdexcept>

#include "haldend/OwnMounts.h"

namespace corvane::haldend::test {
namespace {

constexpr const char* nameOfNobody = "corvane-made-up-name";
constexpr gid_t mainGroup = 3999;

std::vector<std::string> asked;
std::map<std::string, int*> answersOfStandIns;

void require(bool isDone, const std::string& what) {
    if (!isDone) throw std::runtime_error(what + ": " + std::strerror(errno));
}

void noteQuestion(const char* source) { asked.emplace_back(source); }

/// The C library looks for libnss_NAME.so.2 and takes one of that name that is loaded already.
void loadStandIn(const std::string& name) {
    const auto path = std::string(READERS_MODULES) + "/libnss_" + name + ".so.2";
    void* module = ::dlopen(path.c_str(), RTLD_NOW);
    if (!module) throw std::runtime_error(::dlerror());
    *static_cast<void (**)(const char*)>(::dlsym(module, "standin_note")) = noteQuestion;
    answersOfStandIns[name] = static_cast<int*>(::dlsym(module, "standin_answer"));
}

int asStatus(LookupStatus answer) {
    switch (answer) {
    case LookupStatus::success:
        return NSS_STATUS_SUCCESS;
    case LookupStatus::notFound:
        return NSS_STATUS_NOTFOUND;
    case LookupStatus::unavailable:
        return NSS_STATUS_UNAVAIL;
    case LookupStatus::tryAgain:
        return NSS_STATUS_TRYAGAIN;
    }
    throw std::logic_error("no such answer");
}

bool hasGroups() {
    std::array<gid_t, 64> groups{};
    int count = groups.size();
    return ::getgrouplist(nameOfNobody, mainGroup, groups.data(), &count) > 1;
}

CLibrary::Answer answerTo(const CLibrary::Question& question) {
    for (const auto& [name, answer] : question.answers)
        *answersOfStandIns.at(name) = asStatus(answer);
    asked.clear();
    const auto& database = question.database;
    const bool isFound = database == "passwd"  ? ::getpwnam(nameOfNobody) != nullptr
                         : database == "group" ? ::getgrnam(nameOfNobody) != nullptr
                                               : hasGroups();
    return {asked, isFound};
}

/// One line for each answer: 1 when something was found, and who was asked.
[[noreturn]] void answerAll(const std::vector<CLibrary::Question>& questions, int output) {
    for (const auto& question : questions) {
        const auto answer = answerTo(question);
        std::string line = answer.isFound ? "1" : "0";
        for (const auto& name : answer.asked)
            line += " " + name;
        line += "\n";
        if (::write(output, line.data(), line.size()) < 0) ::_exit(1);
    }
    ::_exit(0);
}

std::vector<CLibrary::Answer> answersIn(std::istream& report) {
    std::vector<CLibrary::Answer> answers;
    for (std::string line, name; std::getline(report, line);) {
        std::istringstream words(line);
        CLibrary::Answer answer;
        words >> answer.isFound;
        while (words >> name)
            answer.asked.push_back(name);
        answers.push_back(answer);
    }
    return answers;
}

} // namespace

CLibrary::CLibrary(const std::string& folder) : path_(folder + "/nsswitch.conf") {
    for (const auto* name : {"a", "b", "c", "sss"})
        loadStandIn(name);
    std::ofstream(path_).flush();
    require(ownMounts(), "a mount namespace");
    require(::mount(path_.c_str(), "/etc/nsswitch.conf", nullptr, MS_BIND, nullptr) == 0,
            "a mount over /etc/nsswitch.conf");
    // A caching daemon would answer instead of the sources.
    if (::access("/run/nscd", F_OK) == 0)
        require(::mount("none", "/run/nscd", "tmpfs", 0, nullptr) == 0, "a mount over /run/nscd");
}

std::vector<CLibrary::Answer> CLibrary::ask(const std::string& nsswitch,
                                            const std::vector<Question>& questions) const {
    std::ofstream(path_, std::ios::binary) << nsswitch; // in place: it is mounted
    std::array<int, 2> ends{};
    require(::pipe(ends.data()) == 0, "a pipe");
    const pid_t child = ::fork();
    require(child >= 0, "a process");
    if (child == 0) answerAll(questions, ends[1]);
    ::close(ends[1]);
    std::string report;
    std::array<char, 4096> part{};
    for (ssize_t size = 0; (size = ::read(ends[0], part.data(), part.size())) > 0;)
        report.append(part.data(), static_cast<std::size_t>(size));
    ::close(ends[0]);
    ::waitpid(child, nullptr, 0);
    std::istringstream lines(report);
    return answersIn(lines);
}

} // namespace corvane::haldend::test
