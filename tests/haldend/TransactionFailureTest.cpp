#include <fcntl.h>
#include <sched.h>
#include <sys/file.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "haldend/Failure.h"
#include "haldend/FolderLock.h"
#include "haldend/TestMachine.h"

using namespace corvane;
using namespace corvane::haldend::test;

namespace {

/// What a change of the machine said, told across a process boundary.
struct Outcome {
    int code = -1;
    std::string text;
};

/// Runs `action` in a child process, because it gives up rights or limits for good.
Outcome inChild(const std::function<halden::Error()>& action) {
    int ends[2];
    if (::pipe(ends) != 0) return {};
    const pid_t child = ::fork();
    if (child == 0) {
        halden::Error error;
        try {
            error = action();
        } catch (const std::exception& exception) {
            error.description = exception.what();
        }
        const auto report = std::to_string(error.code) + "\n" + error.description + "\n" + error.reason + "\n" + error.recovery;
        ::_exit(::write(ends[1], report.data(), report.size()) == static_cast<ssize_t>(report.size()) ? 0 : 1);
    }
    ::close(ends[1]);
    std::string report;
    char buffer[4096];
    for (ssize_t count = 0; (count = ::read(ends[0], buffer, sizeof buffer)) > 0;)
        report.append(buffer, static_cast<std::size_t>(count));
    ::close(ends[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "the child ended with " << status;
    return {std::atoi(report.c_str()), report};
}

void expectOldState(const TestMachine& machine) {
    EXPECT_EQ(machine.folder.read("etc/nsswitch.conf"), plainNsswitch);
    EXPECT_EQ(machine.folder.read("etc/sssd/sssd.conf"), twoDirectories);
    EXPECT_FALSE(machine.folder.has("var/lib/corvane/policies.plist"));
    EXPECT_FALSE(machine.folder.has("var/lib/corvane/journal"));
    EXPECT_FALSE(machine.folder.has("etc/.nsswitch.conf.corvane-new"));
    EXPECT_FALSE(machine.folder.has("etc/sssd/.sssd.conf.corvane-new"));
}

void expectFailure(const Outcome& outcome, const std::string& cause, const std::string& nextStep) {
    EXPECT_GT(outcome.code, 0);
    EXPECT_NE(outcome.text.find(cause), std::string::npos) << outcome.text;
    EXPECT_NE(outcome.text.find(nextStep), std::string::npos) << outcome.text;
}

bool isRoot() { return ::geteuid() == 0; }

/// A mount namespace of the child's own; users other than root get one together with a user namespace.
bool ownMounts() {
    if (isRoot()) return ::unshare(CLONE_NEWNS) == 0;
    const auto user = std::to_string(::getuid());
    const auto group = std::to_string(::getgid());
    if (::unshare(CLONE_NEWNS | CLONE_NEWUSER) != 0) return false;
    std::ofstream("/proc/self/setgroups") << "deny";
    std::ofstream("/proc/self/uid_map") << user << " " << user << " 1";
    std::ofstream("/proc/self/gid_map") << group << " " << group << " 1";
    return true;
}

/// A file system over a folder, in the child alone.
bool mountOver(const std::string& folder, const char* type, unsigned long flags, const char* options) {
    return ownMounts() && ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           ::mount(type ? type : folder.c_str(), folder.c_str(), type, flags, options) == 0;
}

} // namespace

TEST(TransactionFailure, fileSizeLimit_leavesTheOldStateAndNamesTheLimit) {
    TestMachine machine;
    const auto outcome = inChild([&] {
        const rlimit limit{100, 100};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        return machine.call(machine.search(), 111);
    });
    expectFailure(outcome, "File too large", "ulimit -f");
    expectOldState(machine);
    EXPECT_EQ(machine.call(machine.search(), 111).code, 0);
}

TEST(TransactionFailure, userWithoutWriteAccess_isRefusedWithPathAndNextStep) {
    TestMachine machine;
    if (!isRoot()) std::filesystem::permissions(machine.folder.path() + "/etc", std::filesystem::perms(0555));
    std::filesystem::permissions(machine.folder.path(), std::filesystem::perms(0755));
    const auto outcome = inChild([&] {
        if (isRoot() && (::setgid(65534) != 0 || ::setuid(65534) != 0)) return halden::Error{};
        return machine.call(machine.search(), 111);
    });
    std::filesystem::permissions(machine.folder.path() + "/etc", std::filesystem::perms(0755));
    expectFailure(outcome, "Permission denied", "an administrator");
    expectOldState(machine);
}

TEST(TransactionFailure, userWithoutWriteAccess_isRefusedTheRight) {
    TestMachine machine;
    std::filesystem::permissions(machine.folder.path() + "/etc", std::filesystem::perms(0555));
    std::filesystem::permissions(machine.folder.path(), std::filesystem::perms(0755));
    const auto outcome = inChild([&] {
        if (isRoot() && (::setgid(65534) != 0 || ::setuid(65534) != 0)) return halden::Error{};
        const auto authorization = machine.service->createAuthorization();
        const bool granted = authorization->obtainRights({{std::string(haldend::configureRight), "", 0}}, 19);
        return halden::Error{granted ? 0 : 1, authorization->refusalReason(), "", ""};
    });
    expectFailure(outcome, "Permission denied", "an administrator");
}

TEST(TransactionFailure, readOnlyFileSystem_leavesTheOldState) {
    TestMachine machine;
    const auto outcome = inChild([&] {
        if (!mountOver(machine.folder.path(), nullptr, MS_BIND, nullptr) ||
            ::mount("none", machine.folder.path().c_str(), nullptr, MS_BIND | MS_REMOUNT | MS_RDONLY, nullptr) != 0)
            return halden::Error{};
        machine.start();
        EXPECT_FALSE(machine.authorization->refusalReason().empty());
        machine.engine->rights().grant(machine.authorization->authorizationRef(), {std::string(haldend::configureRight)});
        EXPECT_FALSE(machine.mode(machine.search()).empty()) << "reading still works";
        return machine.call(machine.search(), 111);
    });
    expectFailure(outcome, "Read-only file system", "for writing");
    expectOldState(machine);
}

TEST(TransactionFailure, fullDisk_leavesTheOldStateAndSaysWhichDisk) {
    TestMachine machine;
    const auto outcome = inChild([&] {
        const auto etc = machine.folder.path() + "/etc";
        if (!mountOver(etc, "tmpfs", 0, "size=64k")) return halden::Error{};
        machine.folder.write("etc/nsswitch.conf", plainNsswitch);
        machine.folder.write("etc/sssd/sssd.conf", twoDirectories);
        machine.folder.write("etc/filler", std::string(64 * 1024, 'x'));
        machine.start();
        const auto error = machine.call(machine.search(), 111);
        EXPECT_EQ(machine.folder.read("etc/nsswitch.conf"), plainNsswitch);
        EXPECT_EQ(machine.folder.read("etc/sssd/sssd.conf"), twoDirectories);
        EXPECT_FALSE(machine.folder.has("var/lib/corvane/policies.plist"));
        EXPECT_FALSE(machine.folder.has("etc/sssd/.sssd.conf.corvane-new"));
        std::filesystem::remove(etc + "/filler");
        EXPECT_EQ(machine.call(machine.search(), 222).code, 0) << "it works once there is space";
        return testing::Test::HasFailure() ? halden::Error{} : error;
    });
    expectFailure(outcome, "No space left on device", "Free some space");
}

TEST(TransactionFailure, renameThatFailsMidway_isUndone) {
    TestMachine machine;
    const auto outcome = inChild([&] {
        const auto file = machine.folder.path() + "/etc/nsswitch.conf"; // the second of three files
        if (!mountOver(file, nullptr, MS_BIND, nullptr)) return halden::Error{};
        const auto error = machine.call(machine.search(), 111);
        EXPECT_EQ(machine.folder.read("etc/sssd/sssd.conf"), twoDirectories) << "the first file is back";
        return testing::Test::HasFailure() ? halden::Error{} : error;
    });
    expectFailure(outcome, "Device or resource busy", "mount point");
    expectOldState(machine);
}

TEST(TransactionFailure, lockHeldByAnotherProgram_isWaitedForAndThenReported) {
    TestMachine machine;
    const haldend::MachineFolder folder(machine.folder.path());
    const haldend::FolderLock held(folder);
    try {
        const haldend::FolderLock second(folder, std::chrono::milliseconds(30));
        FAIL();
    } catch (const haldend::Failure& failure) {
        EXPECT_NE(failure.error().description.find("another program"), std::string::npos);
        EXPECT_NE(failure.error().reason.find("var/lib/corvane/lock"), std::string::npos);
    }
}
