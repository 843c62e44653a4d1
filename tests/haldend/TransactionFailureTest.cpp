#include <sys/resource.h>
#include <unistd.h>

#include "haldend/ChangeInAChild.h"
#include "haldend/storage/Failure.h"
#include "haldend/storage/FolderLock.h"

using namespace corvane;
using namespace corvane::haldend::test;

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
