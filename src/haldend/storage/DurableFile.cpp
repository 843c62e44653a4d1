#include "haldend/storage/DurableFile.h"

#include <fcntl.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <vector>

#include "haldend/storage/Failure.h"

namespace corvane::haldend {
namespace {

/// A file beyond the size limit raises a signal that ends the process; as an error it can be reported.
class FileSizeSignalBlocked {
public:
    FileSizeSignalBlocked() {
        sigset_t set;
        sigemptyset(&set);
        sigaddset(&set, SIGXFSZ);
        pthread_sigmask(SIG_BLOCK, &set, &before_);
    }
    FileSizeSignalBlocked(const FileSizeSignalBlocked&) = delete;
    FileSizeSignalBlocked& operator=(const FileSizeSignalBlocked&) = delete;
    ~FileSizeSignalBlocked() {
        sigset_t set;
        sigemptyset(&set);
        sigaddset(&set, SIGXFSZ);
        const timespec atOnce{};
        while (sigtimedwait(&set, nullptr, &atOnce) == SIGXFSZ) {
        }
        pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    }

private:
    sigset_t before_{};
};

void writeAll(const FileDescriptor& file, const std::string& path, std::string_view content) {
    while (!content.empty()) {
        const auto count = ::write(file.number(), content.data(), content.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) throw storageFailure("write", path, errno);
        content.remove_prefix(static_cast<std::size_t>(count));
    }
}

void giveOwner(const FileDescriptor& file, const std::string& path, const struct stat& model) {
    struct stat status {};
    if (::fstat(file.number(), &status) != 0) throw storageFailure("write", path, errno);
    const bool isOwnersOwn = status.st_uid == model.st_uid;
    if (isOwnersOwn && status.st_gid == model.st_gid) return;
    if (::fchown(file.number(), isOwnersOwn ? static_cast<uid_t>(-1) : model.st_uid, model.st_gid) == 0)
        return;
    if (errno != EPERM || ::geteuid() == 0 || !isOwnersOwn)
        throw storageFailure("give an owner to", path, errno);
}

/// Names of the extended attributes, an access control list among them.
std::vector<std::string> attributeNames(const std::string& path) {
    std::vector<char> names(65536);
    const auto length = ::listxattr(path.c_str(), names.data(), names.size());
    std::vector<std::string> result;
    for (ssize_t at = 0; at < length; at += static_cast<ssize_t>(result.back().size()) + 1)
        result.emplace_back(names.data() + at);
    return result;
}

/// What only the kernel or root may set, such as a security label, is set where it can be.
void giveAttributes(const FileDescriptor& file, const std::string& path, const std::string& model) {
    for (const auto& name : attributeNames(model)) {
        std::vector<char> value(65536);
        const auto length = ::getxattr(model.c_str(), name.c_str(), value.data(), value.size());
        if (length < 0) continue;
        const bool isDone =
            ::fsetxattr(file.number(), name.c_str(), value.data(), static_cast<std::size_t>(length), 0) == 0;
        const bool isOurs = name.starts_with("user.") || name.starts_with("system.posix_acl");
        if (!isDone && isOurs) throw storageFailure("keep the attributes of", path, errno);
    }
}

} // namespace

std::string parentOf(const std::string& path) {
    const auto slash = path.rfind('/');
    return slash == 0 ? "/" : path.substr(0, slash);
}

std::string baseNameOf(const std::string& path) { return path.substr(path.rfind('/') + 1); }

FileDescriptor writeFile(const std::string& path, std::string_view content, mode_t mode,
                         const std::optional<FileModel>& model) {
    const FileSizeSignalBlocked blocked;
    ::unlink(path.c_str());
    FileDescriptor file(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (!file.isOpen()) throw storageFailure("write", path, errno);
    try {
        if (model) giveOwner(file, path, model->status);
        writeAll(file, path, content);
        if (::fchmod(file.number(), mode) != 0) throw storageFailure("set the mode of", path, errno);
        if (model && !model->path.empty()) giveAttributes(file, path, model->path);
        (void)::sync_file_range(file.number(), 0, 0, SYNC_FILE_RANGE_WRITE); // `syncFile` reports what fails
    } catch (...) {
        ::unlink(path.c_str());
        throw;
    }
    return file;
}

void syncFile(const FileDescriptor& file, const std::string& path) {
    if (::fsync(file.number()) != 0) throw storageFailure("write", path, errno);
}

void writeDurably(const std::string& path, std::string_view content, mode_t mode,
                  const std::optional<FileModel>& model) {
    const auto file = writeFile(path, content, mode, model);
    try {
        syncFile(file, path);
    } catch (...) {
        ::unlink(path.c_str());
        throw;
    }
}

void syncParent(const std::string& path) { syncFolders({parentOf(path)}); }

void syncFolders(const std::set<std::string>& folders) {
    for (const auto& path : folders) {
        const FileDescriptor folder(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (!folder.isOpen() || ::fsync(folder.number()) != 0) throw storageFailure("sync", path, errno);
    }
}

void renameFile(const std::string& from, const std::string& to) {
    if (std::rename(from.c_str(), to.c_str()) != 0) throw storageFailure("replace", to, errno);
}

} // namespace corvane::haldend
