#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include "haldend/ChangeInAChild.h"
#include "haldend/storage/DurableFile.h"
#include "haldend/storage/Failure.h"
#include "haldend/storage/FileDescriptor.h"

using namespace corvane;
using namespace corvane::haldend::test;

namespace {

/// Owner rw, user 12345 r, group r, mask r, others r, as the kernel stores it.
std::string accessList() {
    std::string list{'\2', 0, 0, 0};
    const auto entry = [&](char tag, char rights, unsigned id) {
        list += {tag, 0, rights, 0};
        for (int shift = 0; shift < 32; shift += 8)
            list += static_cast<char>(id >> shift & 0xFFU);
    };
    constexpr unsigned nobody = 0xFFFFFFFF;
    entry(1, 6, nobody);
    entry(2, 4, 12345);
    entry(4, 4, nobody);
    entry(16, 4, nobody);
    entry(32, 4, nobody);
    return list;
}

std::string attribute(const std::string& path, const char* name) {
    char value[256];
    const auto length = ::getxattr(path.c_str(), name, value, sizeof value);
    return length < 0 ? "" : std::string(value, static_cast<std::size_t>(length));
}

/// The mark that keeps even root from changing a file, for the life of the object.
class Immutable {
public:
    explicit Immutable(const std::string& path) : file_(::open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
        isSet_ = ::ioctl(file_.number(), FS_IOC_GETFLAGS, &flags_) == 0 && set(flags_ | FS_IMMUTABLE_FL);
    }
    Immutable(const Immutable&) = delete;
    Immutable& operator=(const Immutable&) = delete;
    ~Immutable() { (void)set(flags_); }
    [[nodiscard]] bool isSet() const { return isSet_; }

private:
    [[nodiscard]] bool set(int flags) const { return ::ioctl(file_.number(), FS_IOC_SETFLAGS, &flags) == 0; }
    haldend::FileDescriptor file_;
    int flags_ = 0;
    bool isSet_ = false;
};

} // namespace

TEST(FileAttributes, groupOfOthers_isNotInsistedOnForAnOrdinaryUser) {
    const TemporaryFolder folder;
    std::filesystem::permissions(folder.path(), std::filesystem::perms(0777));
    const auto path = folder.path() + "/new";
    const auto outcome = inChild([&] {
        if (isRoot() && (::setgid(65534) != 0 || ::setuid(65534) != 0))
            return halden::Error{1, "no other user", "", ""};
        struct stat model {};
        model.st_uid = ::geteuid();
        model.st_gid = 0;
        haldend::writeDurably(path, "text", 0640, haldend::FileModel{"", model});
        return halden::Error{};
    });
    EXPECT_EQ(outcome.code, 0) << outcome.text;
    EXPECT_EQ(folder.read("new"), "text");
}

TEST(FileAttributes, accessListAndExtendedAttributes_stayOnTheFile) {
    TestMachine machine;
    const auto path = machine.folder.path() + "/etc/nsswitch.conf";
    const auto list = accessList();
    ASSERT_EQ(::setxattr(path.c_str(), "system.posix_acl_access", list.data(), list.size(), 0), 0);
    const bool hasUsers = ::setxattr(path.c_str(), "user.note", "kept", 4, 0) == 0; // tmpfs has none
    ASSERT_EQ(machine.call(machine.search(), 111).code, 0);
    EXPECT_NE(machine.folder.read("etc/nsswitch.conf"), plainNsswitch);
    EXPECT_EQ(attribute(path, "system.posix_acl_access"), list);
    EXPECT_EQ(attribute(path, "user.note"), hasUsers ? "kept" : "");
}

TEST(FileAttributes, immutableFile_isCalledThat) {
    TestMachine machine;
    const auto path = machine.folder.path() + "/etc/nsswitch.conf";
    const Immutable mark(path);
    if (!mark.isSet()) GTEST_SKIP() << "this user or file system can't mark a file as immutable";
    const auto error = machine.call(machine.search(), 111);
    EXPECT_EQ(error.code, halden::ErrorCode::notPermitted);
    EXPECT_NE(error.reason.find(path + " is marked as immutable"), std::string::npos) << error.reason;
    EXPECT_NE(error.recovery.find("chattr -i"), std::string::npos) << error.recovery;
    expectOldState(machine);
}

TEST(FileAttributes, linksToFilesOfOneName_keepTheirOwnCopiesInAGeneration) {
    TestMachine machine;
    namespace fs = std::filesystem;
    const fs::path root = machine.folder.path();
    for (const auto& [link, target] : {std::pair{"etc/nsswitch.conf", "one/shared.conf"},
                                       std::pair{"etc/sssd/sssd.conf", "two/shared.conf"}}) {
        fs::create_directories((root / target).parent_path());
        fs::rename(root / link, root / target);
        fs::create_symlink("/" + std::string(target), root / link);
    }
    (void)machine.mode(machine.search());
    ASSERT_EQ(machine.call(machine.search(), 111).code, 0);
    EXPECT_EQ(machine.folder.read("var/lib/corvane/generations/0000000001/nsswitch.conf"), plainNsswitch);
    EXPECT_EQ(machine.folder.read("var/lib/corvane/generations/0000000001/sssd.conf"), twoDirectories);
    EXPECT_NE(machine.folder.read("one/shared.conf"), plainNsswitch);
}
