#include "oracle/Namespaces.h"

#include <fcntl.h>
#include <net/if.h>
#include <poll.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <stdexcept>

#include "oracle/Keytab.h"

namespace corvane::oracle {
namespace {

using Clock = std::chrono::steady_clock;

constexpr const char* hostName = "machine.example.com";

void require(bool done, const std::string& what) {
    if (!done) throw std::runtime_error(what + ": " + std::strerror(errno));
}

void mountMemory(const std::string& folder) {
    require(::mount("oracle", folder.c_str(), "tmpfs", MS_NOSUID, "mode=0755") == 0, "a tmpfs on " + folder);
}

void keepMountsToOurselves() {
    require(::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0, "private mounts");
}

/// In this namespace alone. Works where the folder is a mount, which the root of a chroot isn't; there it is
/// a precaution missing.
void makeReadOnly(const char* folder) {
    (void)::mount(nullptr, folder, nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY, nullptr);
}

void raiseLoopback() {
    const int socket = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    ifreq request{};
    std::strcpy(request.ifr_name, "lo");
    request.ifr_flags = IFF_UP | IFF_RUNNING;
    require(socket >= 0 && ::ioctl(socket, SIOCSIFFLAGS, &request) == 0, "the loopback interface");
    ::close(socket);
}

/// What programs expect on every machine and no candidate brings along.
Files withUsualFiles(const Files& files) {
    Files all{{"etc/hosts", {"127.0.0.1 localhost\n127.0.1.1 machine.example.com machine\n"}},
              {"etc/krb5.conf", {"[libdefaults]\ndefault_realm = EXAMPLE.COM\n"}},
              {"etc/krb5.keytab", {keytabFor(hostName, "EXAMPLE.COM"), 0600}},
              {"etc/machine-id", {"0123456789abcdef0123456789abcdef\n"}}};
    for (const auto& [path, file] : files)
        if (path.starts_with("etc/")) all[path] = file;
    return all;
}

void furnish(const Files& files) {
    keepMountsToOurselves();
    for (const auto* folder : {"/etc", "/run", "/var/log", "/var/tmp"})
        mountMemory(folder);
    writeFiles(withUsualFiles(files), "");
    namespace fs = std::filesystem;
    fs::create_directory("/var/log/sssd");
    if (fs::is_directory("/var/lib/sss")) mountMemory("/var/lib/sss");
    if (fs::is_directory("/var/lib/sss"))
        for (const auto* folder : {"db", "pipes/private", "mc", "pubconf/krb5.include.d", "gpo_cache",
                                   "keytabs", "secrets", "deskprofile"})
            fs::create_directories(std::string("/var/lib/sss/") + folder);
    makeReadOnly("/");
    makeReadOnly("/dev");
    require(::mount("proc", "/proc", "proc", MS_NOSUID | MS_NODEV | MS_NOEXEC, nullptr) == 0, "/proc");
    raiseLoopback();
    require(::sethostname(hostName, std::strlen(hostName)) == 0, "the host's name");
}

void report(int descriptor, const std::string& text) {
    if (::write(descriptor, text.data(), text.size()) < 0) ::_exit(126);
}

/// Ends the process: status 0, or 1 with the reason as output.
[[noreturn]] void live(const Files& files, const std::function<void(int)>& body, int output) {
    try {
        furnish(files);
        body(output);
        ::_exit(0);
    } catch (const std::exception& failure) {
        report(output, failure.what());
        ::_exit(1);
    }
}

/// Waits for the first process of the namespaces and ends as it does.
[[noreturn]] void holdNamespaces(const Files& files, const std::function<void(int)>& body, int output) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::unshare(CLONE_NEWNS | CLONE_NEWPID | CLONE_NEWNET | CLONE_NEWUTS | CLONE_NEWIPC) != 0) {
        report(output, std::string("namespaces: ") + std::strerror(errno));
        ::_exit(1);
    }
    const pid_t first = ::fork();
    if (first == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        live(files, body, output);
    }
    ::close(output);
    int status = 1;
    if (first > 0) ::waitpid(first, &status, 0);
    ::_exit(WIFEXITED(status) ? WEXITSTATUS(status) : 1);
}

/// Reads until the other end is closed; none is left after `limit`.
std::string readWithin(int descriptor, std::chrono::milliseconds limit, bool& isComplete) {
    const auto end = Clock::now() + limit;
    std::string text;
    std::array<char, 65536> part{};
    while (true) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
        pollfd waiting{descriptor, POLLIN, 0};
        isComplete = left > 0 && ::poll(&waiting, 1, static_cast<int>(left)) > 0;
        if (!isComplete) return text;
        const auto length = ::read(descriptor, part.data(), part.size());
        if (length <= 0) return text;
        text.append(part.data(), static_cast<std::size_t>(length));
    }
}

std::vector<char*> pointersTo(const std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (const auto& text : texts)
        pointers.push_back(const_cast<char*>(text.c_str()));
    pointers.push_back(nullptr);
    return pointers;
}

} // namespace

std::string runApart(const Files& files, std::chrono::milliseconds limit,
                     const std::function<void(int output)>& body) {
    std::array<int, 2> ends{};
    require(::pipe2(ends.data(), O_CLOEXEC) == 0, "a pipe");
    const pid_t holder = ::fork();
    require(holder >= 0, "a process");
    if (holder == 0) {
        ::close(ends[0]);
        holdNamespaces(files, body, ends[1]);
    }
    ::close(ends[1]);
    bool isComplete = false;
    auto text = readWithin(ends[0], limit, isComplete);
    if (!isComplete) ::kill(holder, SIGKILL);
    ::close(ends[0]);
    int status = 0;
    ::waitpid(holder, &status, 0);
    if (!isComplete) throw std::runtime_error("no verdict within " + std::to_string(limit.count()) + " ms");
    if (status != 0) throw std::runtime_error("no verdict: " + text);
    return text;
}

void protectMachine(const std::string& writable) {
    require(::unshare(CLONE_NEWNS) == 0, "a mount namespace");
    keepMountsToOurselves();
    require(::mount(writable.c_str(), writable.c_str(), nullptr, MS_BIND, nullptr) == 0, writable);
    for (const auto* folder : {"/run", "/var/log", "/var/tmp"})
        mountMemory(folder);
    std::filesystem::create_directory("/var/log/sssd");
    makeReadOnly("/");
    makeReadOnly("/dev");
}

pid_t start(const std::vector<std::string>& arguments, const std::vector<std::string>& environment,
            int output, int errors) {
    const auto words = pointersTo(arguments), variables = pointersTo(environment);
    const pid_t child = ::fork();
    require(child >= 0, arguments.front());
    if (child > 0) return child;
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    const int nothing = ::open("/dev/null", O_RDWR);
    ::dup2(nothing, STDIN_FILENO);
    ::dup2(output < 0 ? nothing : output, STDOUT_FILENO);
    ::dup2(errors < 0 ? nothing : errors, STDERR_FILENO);
    ::execve(words.front(), words.data(), variables.data());
    ::_exit(127);
}

std::string readAll(int descriptor) {
    std::string text;
    std::array<char, 65536> part{};
    for (ssize_t length = 0; (length = ::read(descriptor, part.data(), part.size())) > 0;)
        text.append(part.data(), static_cast<std::size_t>(length));
    return text;
}

} // namespace corvane::oracle
