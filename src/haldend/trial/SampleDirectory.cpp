#include "haldend/trial/SampleDirectory.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netdb.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <thread>

#include "haldend/files/SssdFile.h"
#include "haldend/ldap/LdapDirectory.h"
#include "haldend/storage/ChildProcess.h"
#include "haldend/storage/DurableFile.h"
#include "haldend/storage/Failure.h"
#include "haldend/storage/FileDescriptor.h"

namespace corvane::haldend {
namespace {

using namespace std::chrono_literals;

constexpr const char* slapd = "/usr/sbin/slapd";
constexpr const char* slapadd = "/usr/sbin/slapadd";
constexpr const char* templateName = "slapd.conf.in";
constexpr const char* dataFolder = "var/lib/corvane/sample-directory";
constexpr auto pollInterval = 20ms;

Failure trouble(const std::string& reason, const std::string& recovery) {
    return {halden::ErrorCode::nodeUnreachable, "The sample directory can't be started.", reason, recovery};
}

std::string requiredText(const std::string& path) {
    if (auto text = readFile(path)) return *text;
    throw trouble(path + " is missing.", "Install the program again, or start it from its source folder.");
}

/// The one LDIF file of the folder.
std::string entriesIn(const std::string& shareFolder) {
    std::error_code code;
    for (const auto& entry : std::filesystem::directory_iterator(shareFolder, code))
        if (entry.path().extension() == ".ldif") return entry.path();
    throw trouble(shareFolder + " holds no file that ends in .ldif.",
                  "Install the program again, or start it from its source folder.");
}

void replaceAll(std::string& text, const std::string& from, const std::string& to) {
    for (auto at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
}

/// The value of `suffix "dc=…"` in a server configuration.
std::string suffixIn(const std::string& configuration) {
    const auto line = ("\n" + configuration).find("\nsuffix");
    if (line == std::string::npos) return {};
    const auto open = configuration.find('"', line);
    const auto close = configuration.find('"', open + 1);
    return close == std::string::npos ? std::string() : configuration.substr(open + 1, close - open - 1);
}

int freePort() {
    const FileDescriptor socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    if (::bind(socket.number(), reinterpret_cast<sockaddr*>(&address), length) != 0 ||
        ::getsockname(socket.number(), reinterpret_cast<sockaddr*>(&address), &length) != 0)
        throw trouble(std::string("No free port was found on loopback: ") + std::strerror(errno) + ".",
                      "Try again.");
    return ntohs(address.sin_port);
}

/// The name of the loopback address, for people to read; the address itself where this machine doesn't know
/// it.
std::string loopbackHost() {
    addrinfo wanted{};
    wanted.ai_family = AF_INET;
    addrinfo* found = nullptr;
    if (::getaddrinfo("localhost", nullptr, &wanted, &found) != 0) return "127.0.0.1";
    const auto address = reinterpret_cast<const sockaddr_in*>(found->ai_addr)->sin_addr.s_addr;
    ::freeaddrinfo(found);
    return address == htonl(INADDR_LOOPBACK) ? "localhost" : "127.0.0.1";
}

std::string readableText(const MachineFolder& folder, const char* file) {
    try {
        return folder.read(file).value_or("");
    } catch (const Failure&) {
        return {};
    }
}

/// The server's address in the folder's own sssd.conf; "" when it has no sample directory. The grammar isn't
/// needed for that: a file that is damaged or can't be read is reported where it matters.
std::string uriIn(const MachineFolder& folder) {
    const auto text = readableText(folder, machineFile::sssd);
    const auto section = text.find(std::string("[domain/") + SampleDirectory::sectionName + "]");
    if (section == std::string::npos) return {};
    const auto next = text.find("\n[", section);
    for (const auto* loopback : {"ldap://localhost:", "ldap://127.0.0.1:"})
        if (const auto at = text.find(loopback, section); at < next)
            return text.substr(at, text.find_first_of(" \t\r\n,/", at + std::strlen("ldap://")) - at);
    return {};
}

std::string portIn(const std::string& uri) { return uri.substr(uri.rfind(':') + 1); }

bool answers(const std::string& uri) {
    try {
        LdapSection section;
        section.uris = {uri};
        section.connectTimeout = section.searchTimeout = 1;
        return !LdapDirectory(section).defaultBase().empty();
    } catch (const Failure&) {
        return false;
    }
}

template <typename Action>
auto asException(const Action& action) {
    try {
        return action();
    } catch (const Failure& failure) {
        auto error = failure.error(); // whatever file it was about, this is what doesn't work now
        error.description = "The sample directory can't be started.";
        throw halden::Exception(error);
    }
}

} // namespace

std::unique_ptr<SampleDirectory> SampleDirectory::start(const std::string& machineFolder,
                                                        const std::string& shareFolder,
                                                        util::ProcessLog& log) {
    auto directory = begin(machineFolder, shareFolder, log);
    while (directory && !directory->proceed())
        directory->step_.wait_for(pollInterval);
    return directory;
}

std::unique_ptr<SampleDirectory> SampleDirectory::begin(const std::string& machineFolder,
                                                        const std::string& shareFolder,
                                                        util::ProcessLog& log) {
    return asException([&]() -> std::unique_ptr<SampleDirectory> {
        const MachineFolder folder(machineFolder);
        const auto uri = uriIn(folder);
        if (uri.empty()) return nullptr;
        std::unique_ptr<SampleDirectory> directory(new SampleDirectory(folder, shareFolder, uri, log));
        directory->inTheBackground(&SampleDirectory::look);
        return directory;
    });
}

void SampleDirectory::inTheBackground(Next (SampleDirectory::*step)()) {
    step_ = std::async(std::launch::async, [this, step] { return (this->*step)(); });
}

bool SampleDirectory::isStepOver() const { return step_.wait_for(0s) == std::future_status::ready; }

bool SampleDirectory::proceed() {
    if (!step_.valid()) return true;
    if (!isStepOver()) return false;
    return asException([this] {
        const auto next = step_.get();
        if (runsElsewhere_) log_.log("the sample directory at " + uri_ + " runs already");
        if (next == Next::nothing) return true;
        launch(); // here, for the server ends with the thread that started it
        inTheBackground(&SampleDirectory::waitUntilItAnswers);
        return false;
    });
}

SampleDirectory::Next SampleDirectory::look() {
    runsElsewhere_ = answers(uri_); // another program runs on the same folder
    if (runsElsewhere_) return Next::nothing;
    prepare();
    return Next::launch;
}

std::string SampleDirectory::sssdText(const std::string& shareFolder) {
    return asException([&] {
        const auto suffix = suffixIn(requiredText(shareFolder + "/" + templateName));
        const std::string name = sectionName;
        return "# This machine had no directory, so here is a made-up one to try things out with.\n[sssd]\n"
               "services = nss, pam\ndomains = " +
               name + "\n\n[domain/" + name +
               "]\nid_provider = ldap\n"
               "auth_provider = ldap\nldap_uri = ldap://" +
               loopbackHost() + ":" + std::to_string(freePort()) + "\nldap_search_base = " + suffix + "\n";
    });
}

SampleDirectory::SampleDirectory(const MachineFolder& folder, std::string shareFolder, std::string uri,
                                 util::ProcessLog& log)
    : folder_(folder.resolved(dataFolder)), shareFolder_(std::move(shareFolder)), uri_(std::move(uri)),
      log_(log) {}

SampleDirectory::~SampleDirectory() {
    isUnwanted_ = true;
    if (step_.valid()) step_.wait();
    if (server_ <= 0) return;
    ::kill(server_, SIGTERM);
    for (int i = 0; i < 500; ++i) {
        if (::waitpid(server_, nullptr, WNOHANG) != 0) return;
        std::this_thread::sleep_for(10ms);
    }
    ::kill(server_, SIGKILL);
    ::waitpid(server_, nullptr, 0);
}

void SampleDirectory::prepare() {
    if (::access(slapd, X_OK) != 0)
        throw trouble(std::string(slapd) + " is not installed.",
                      "Install the package slapd, or use a machine folder with a directory of its own.");
    const auto marker = folder_ + "/loaded";
    const bool isLoaded = ::access(marker.c_str(), F_OK) == 0;
    std::error_code code;
    if (!isLoaded) std::filesystem::remove_all(folder_ + "/data", code);
    std::filesystem::create_directories(folder_ + "/data", code);
    if (code) throw storageFailure("make", folder_ + "/data", code.value());
    writeConfiguration();
    if (isLoaded) return;
    load();
    writeDurably(marker, "", 0600);
}

void SampleDirectory::writeConfiguration() const {
    auto text = requiredText(shareFolder_ + "/" + templateName);
    replaceAll(text, "@DIR@", folder_);
    replaceAll(text, "@PORT@", portIn(uri_));
    writeDurably(folder_ + "/slapd.conf", text, 0600);
}

void SampleDirectory::load() const {
    const auto entries = entriesIn(shareFolder_);
    const auto outcome = runProcess({slapadd, "-q", "-f", folder_ + "/slapd.conf", "-l", entries}, 60s);
    if (outcome.status != 0)
        throw trouble("Filling it from " + entries + " failed: " + outcome.output,
                      "Correct that file and start again.");
}

void SampleDirectory::launch() {
    const auto configuration = folder_ + "/slapd.conf";
    const auto listener = "ldap://127.0.0.1:" + portIn(uri_) + "/"; // a name could mean more than loopback
    const auto messages = folder_ + "/messages";
    const char* const arguments[] = {slapd, "-f",   configuration.c_str(), "-h", listener.c_str(), "-d",
                                     "0",   nullptr};
    const pid_t parent = ::getpid();
    server_ = ::fork();
    if (server_ < 0)
        throw trouble(std::string("No process could be made: ") + std::strerror(errno) + ".",
                      "Close some programs and try again.");
    if (server_ > 0) return;
    // In the child: nothing but system calls until exec.
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (::getppid() != parent) ::_exit(1);
    const int null = ::open("/dev/null", O_RDWR);
    const int output = ::open(messages.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    ::dup2(null, STDIN_FILENO);
    ::dup2(output >= 0 ? output : null, STDOUT_FILENO);
    ::dup2(output >= 0 ? output : null, STDERR_FILENO);
    ::execv(slapd, const_cast<char* const*>(arguments));
    ::_exit(127);
}

SampleDirectory::Next SampleDirectory::waitUntilItAnswers() {
    const auto deadline = std::chrono::steady_clock::now() + 15s;
    while (std::chrono::steady_clock::now() < deadline && !isUnwanted_) {
        if (::waitpid(server_, nullptr, WNOHANG) == server_) {
            server_ = -1;
            throw trouble("The server at " + uri_ + " ended at once. " + complaint(),
                          "Check whether another program uses that port; change it in the section "
                          "[domain/sample] of sssd.conf if so.");
        }
        if (answers(uri_)) return Next::nothing;
        std::this_thread::sleep_for(pollInterval);
    }
    if (isUnwanted_) return Next::nothing;
    throw trouble("The server at " + uri_ + " did not answer within 15 seconds. " + complaint(),
                  "Start the program again.");
}

std::string SampleDirectory::complaint() const {
    const auto messages = readFile(folder_ + "/messages").value_or("");
    return messages.empty() ? "It said nothing." : "It said: " + messages.substr(0, 500);
}

} // namespace corvane::haldend
