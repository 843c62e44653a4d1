#include "haldend/ChangeInAChild.h"
#include "haldend/OwnMounts.h"

// Disks that are full, read-only or in the way. They are made by mounts that only a child process sees, so
// these tests need mount namespaces; where there are none they are left out by their label, and counted as
// skipped.

using namespace corvane;
using namespace corvane::haldend::test;

namespace {

/// A file system over a folder, in the child alone.
bool mountOver(const std::string& folder, const char* type, unsigned long flags, const char* options) {
    return ownMounts() && ::mount(type ? type : folder.c_str(), folder.c_str(), type, flags, options) == 0;
}

} // namespace

TEST(FailingDisk, readOnlyFileSystem_leavesTheOldState) {
    TestMachine machine;
    const auto outcome = inChild([&] {
        if (!mountOver(machine.folder.path(), nullptr, MS_BIND, nullptr) ||
            ::mount("none", machine.folder.path().c_str(), nullptr, MS_BIND | MS_REMOUNT | MS_RDONLY,
                    nullptr) != 0)
            return halden::Error{};
        machine.start();
        EXPECT_FALSE(machine.authorization->refusalReason().empty());
        machine.engine->rights().grant(machine.authorization->authorizationRef(),
                                       {std::string(haldend::configureRight)});
        EXPECT_FALSE(machine.mode(machine.search()).empty()) << "reading still works";
        return machine.call(machine.search(), 111);
    });
    expectFailure(outcome, "Read-only file system", "for writing");
    expectOldState(machine);
}

TEST(FailingDisk, fullDisk_leavesTheOldStateAndSaysWhichDisk) {
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

TEST(FailingDisk, renameThatFailsMidway_isUndone) {
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
