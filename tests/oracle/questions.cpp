// corvane-oracle-questions SOURCE...: asks the C library what it is asked at a log-in, with the stand-ins of
// tests/oracle/nss on LD_LIBRARY_PATH, and prints a line for each question:
//
//   DATABASE QUESTION TAB SOURCE SOURCE ... TAB ANSWER
//
// The sources are those that were asked, in their order ("files" is built into the C library and can't be
// seen; its part shows in the answer). SOURCE arguments are the stand-ins whose own names are asked for as
// well.
#include <fcntl.h>
#include <grp.h>
#include <gshadow.h>
#include <netdb.h>
#include <pwd.h>
#include <shadow.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

namespace {

using Texts = std::vector<std::string>;

std::string joined(Texts parts, bool sorted) {
    if (sorted) std::ranges::sort(parts);
    std::string text;
    for (const auto& part : parts)
        text += (text.empty() ? "" : " ") + part;
    return text;
}

/// Where the stand-ins note that they are asked.
class Log {
public:
    Log() {
        if (::pipe2(ends_.data(), O_NONBLOCK) != 0) std::abort();
        ::setenv("ORACLE_LOG", std::to_string(ends_[1]).c_str(), 1);
    }
    /// The sources that were asked since the last time, each on a line.
    std::string taken() {
        std::string text;
        std::array<char, 4096> part{};
        for (ssize_t length = 0; (length = ::read(ends_[0], part.data(), part.size())) > 0;)
            text.append(part.data(), static_cast<std::size_t>(length));
        std::ranges::replace(text, '\n', ' ');
        if (!text.empty()) text.pop_back();
        return text;
    }

private:
    std::array<int, 2> ends_{};
};

void ask(Log& log, const std::string& question, const std::function<std::string()>& answer) {
    (void)log.taken();
    const auto said = answer();
    std::printf("%s\t%s\t%s\n", question.c_str(), log.taken().c_str(), said.c_str());
}

std::string described(const passwd* user) {
    if (!user) return "nobody";
    return "number " + std::to_string(user->pw_uid) + ", group " + std::to_string(user->pw_gid) + ", \"" +
           user->pw_gecos + "\", " + user->pw_dir + ", " + user->pw_shell;
}

std::string described(const group* found) {
    if (!found) return "no group";
    Texts members;
    for (char** member = found->gr_mem; *member; ++member)
        members.emplace_back(*member);
    return "number " + std::to_string(found->gr_gid) + ", members " + joined(members, true);
}

std::string groupsOf(const std::string& user) {
    std::array<gid_t, 256> groups{};
    int count = groups.size();
    if (::getgrouplist(user.c_str(), 999, groups.data(), &count) < 0) return "too many groups";
    Texts numbers;
    for (int i = 0; i < count; ++i)
        numbers.push_back(std::to_string(groups.at(static_cast<std::size_t>(i))));
    std::erase(numbers, "999"); // the group that this question itself named
    return "groups " + joined(numbers, true);
}

std::string netgroup(const std::string& name) {
    if (::setnetgrent(name.c_str()) == 0) return "no netgroup";
    Texts users;
    std::array<char, 1024> buffer{};
    char *host = nullptr, *user = nullptr, *domain = nullptr;
    while (::getnetgrent_r(&host, &user, &domain, buffer.data(), buffer.size()) == 1)
        users.emplace_back(user ? user : "-");
    ::endnetgrent();
    return "users " + joined(users, true);
}

void askAboutUsers(Log& log, const Texts& names) {
    for (const auto& name : names) {
        ask(log, "passwd " + name, [&] { return described(::getpwnam(name.c_str())); });
        ask(log, "initgroups " + name, [&] { return groupsOf(name); });
        ask(log, "shadow " + name, [&] {
            const auto* entry = ::getspnam(name.c_str());
            return entry ? std::string("password ") + entry->sp_pwdp : std::string("no entry");
        });
    }
    for (const uid_t number : {0, 1000, 65000})
        ask(log, "passwd " + std::to_string(number), [&] { return described(::getpwuid(number)); });
}

void askAboutGroups(Log& log, const Texts& names) {
    for (const auto& name : names)
        ask(log, "group " + name, [&] { return described(::getgrnam(name.c_str())); });
    for (const gid_t number : {0, 27, 65000})
        ask(log, "group " + std::to_string(number), [&] { return described(::getgrgid(number)); });
    ask(log, "gshadow sudo", [] {
        const auto* entry = ::getsgnam("sudo");
        return entry ? std::string("password ") + entry->sg_passwd : std::string("no entry");
    });
}

/// In a process of its own: with some reactions the C library itself ends the program.
void askAboutNetgroups(Log& log, const Texts& names) {
    std::fflush(stdout);
    const auto child = ::fork();
    if (child < 0) std::abort();
    if (child == 0) {
        ::close(STDERR_FILENO);
        for (const auto& name : names) {
            ask(log, "netgroup " + name, [&] { return netgroup(name); });
            ask(log, "innetgr " + name, [&] {
                return ::innetgr(name.c_str(), nullptr, "alice", nullptr) ? "alice is in" : "alice isn't in";
            });
            std::fflush(stdout);
        }
        ::_exit(0);
    }
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    if (status != 0) ask(log, "netgroups", [] { return std::string("the C library ends the program"); });
}

} // namespace

int main(int count, char** arguments) {
    Log log;
    Texts users{"root", "alice", "nobody-knows-it"},
        groups{"root", "sudo", "wheel", "shared", "nobody-knows-it"};
    Texts netgroups{"local-crew", "nobody-knows-it"};
    for (int i = 1; i < count; ++i) {
        const std::string source = arguments[i];
        users.push_back(source + "-user");
        groups.push_back(source + "-group");
        netgroups.push_back(source + "-crew");
    }
    askAboutUsers(log, users);
    askAboutGroups(log, groups);
    askAboutNetgroups(log, netgroups);
    ask(log, "services nobody-knows-it",
        [] { return ::getservbyname("nobody-knows-it", "tcp") ? "a service" : "no service"; });
    return 0;
}
