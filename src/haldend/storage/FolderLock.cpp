#include "haldend/storage/FolderLock.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <thread>

#include "haldend/storage/Failure.h"

namespace corvane::haldend {

FolderLock::FolderLock(const MachineFolder& folder, std::chrono::milliseconds timeout) {
    folder.makeStateFolder();
    const auto path = folder.resolved(machineFile::lock);
    file_ = FileDescriptor(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (!file_.isOpen()) throw storageFailure("open", path, errno);
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    while (::flock(file_.number(), LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK && errno != EINTR) throw storageFailure("lock", path, errno);
        if (std::chrono::steady_clock::now() >= deadline)
            throw Failure(halden::ErrorCode::storage,
                          "The machine's settings are being changed by another program.",
                          "The lock file " + path + " is still held after " +
                              std::to_string(timeout.count() / 1000) + " seconds.",
                          "Wait until the other program has finished and try again.");
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
}

} // namespace corvane::haldend
