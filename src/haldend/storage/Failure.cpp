#include "haldend/storage/Failure.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace corvane::haldend {
namespace {

std::string nextStep(const std::string& what, const std::string& path, int number) {
    const bool isRead = what == "read";
    switch (number) {
    case ENOSPC:
    case EDQUOT:
        return "Free some space on the file system that holds " + path + " and try again.";
    case EROFS:
        return "Mount the file system that holds " + path + " for writing and try again.";
    case EACCES:
    case EPERM:
        return std::string("Run the program as a user who may ") + (isRead ? "read" : "write") +
               " there, or have an administrator change the rights of " + path + ".";
    case EFBIG:
        if (isRead) return "See what has filled the file; such files are a few hundred lines long.";
        return "Raise the limit on file sizes that this program was started with (ulimit -f) and try again.";
    case EMFILE:
    case ENFILE:
        return "Close some programs, or raise the limit on open files, and try again.";
    case EBUSY:
        return "The file is in use as a mount point; take the mount away and try again.";
    case ENOENT:
        return "Check whether the machine folder is still there and complete.";
    case ENOTDIR:
    case EEXIST:
        return "A file is in the way of a folder. Move it aside and try again.";
    case EIO:
        return "See the system's log for disk errors before you go on.";
    default:
        return "Put this right and try again.";
    }
}

/// The path, or the folder that holds it, when it carries the mark that keeps even root from changing it.
std::string immutablePart(const std::string& path) {
    for (const auto& part : {path, path.substr(0, std::max<std::size_t>(path.rfind('/'), 1))}) {
        struct statx status {};
        constexpr auto marks = STATX_ATTR_IMMUTABLE | STATX_ATTR_APPEND;
        if (::statx(AT_FDCWD, part.c_str(), 0, STATX_TYPE, &status) == 0 &&
            (status.stx_attributes & marks) != 0)
            return part;
    }
    return {};
}

} // namespace

Failure storageFailure(const std::string& what, const std::string& path, int number) {
    if (const auto part = number == EPERM ? immutablePart(path) : std::string(); !part.empty())
        return {halden::ErrorCode::notPermitted, "The machine's settings could not be changed.",
                part + " is marked as immutable, so not even root can " + what + " it.",
                "If the mark isn't meant to protect this file, take it off with \"chattr -i -a " + part +
                    "\" as root, and try again."};
    const bool isRights = number == EACCES || number == EPERM;
    return {isRights ? halden::ErrorCode::notPermitted : halden::ErrorCode::storage,
            "The machine's settings could not be " + std::string(what == "read" ? "read." : "changed."),
            "Trying to " + what + " " + path + " failed: " + std::strerror(number) + ".",
            nextStep(what, path, number)};
}

} // namespace corvane::haldend
