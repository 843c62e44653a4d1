#include <sys/stat.h>
#include <sys/wait.h>

#include "haldend/OwnMounts.h"
#include "haldend/TestMachine.h"
#include "haldend/machine/MachineSnapshot.h"

// The machine itself, with a folder of SSSD's that only a child process sees. It is only read.

using namespace corvane;
using namespace corvane::haldend::test;

namespace {

/// The remarks on the machine itself while its sssd.conf is the folder's; none where there are no namespaces.
std::optional<std::string> remarksWith(const TemporaryFolder& folder) {
    const auto report = folder.path() + "/remarks";
    const auto child = ::fork();
    if (child == 0) {
        if (!ownMounts() || ::mount(folder.path().c_str(), "/etc/sssd", nullptr, MS_BIND, nullptr) != 0)
            ::_exit(1);
        const plist::PropertyListCodec codec;
        haldend::SssdFileReader reader;
        const auto snapshot = haldend::MachineSnapshot::read(haldend::MachineFolder("/"), codec, reader);
        std::string all;
        for (const auto& remark : snapshot.remarks())
            all += remark + "\n";
        std::ofstream("/etc/sssd/remarks") << all;
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) return std::nullopt;
    return folder.read("remarks");
}

} // namespace

TEST(LiveMachine, sssdConfThatOthersMayRead_isPointedOut) {
    if (::geteuid() != 0) GTEST_SKIP() << "files of root's are made by root alone";
    const TemporaryFolder folder;
    folder.write("sssd.conf", twoDirectories);
    const auto path = folder.path() + "/sssd.conf";
    ASSERT_EQ(::chmod(path.c_str(), 0600), 0);
    const auto right = remarksWith(folder);
    ASSERT_TRUE(right) << "root has mount namespaces, and ./test has installed SSSD with its folder";
    EXPECT_EQ(*right, "");
    ASSERT_EQ(::chmod(path.c_str(), 0644), 0);
    EXPECT_EQ(remarksWith(folder), "/etc/sssd/sssd.conf may be read or changed by others than root, so SSSD "
                                   "refuses to start.\n");
    ASSERT_EQ(::chmod(path.c_str(), 0600), 0);
    ASSERT_EQ(::chown(path.c_str(), 1, 0), 0);
    EXPECT_EQ(remarksWith(folder), "/etc/sssd/sssd.conf doesn't belong to root, so SSSD refuses to start.\n");
}
