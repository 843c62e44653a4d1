#pragma once

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <fstream>
#include <string>

namespace corvane::haldend::test {

/// A mount namespace of this process's own, where what it mounts is seen by nobody else. Users other than
/// root get one together with a user namespace. For a child process: there is no way back.
inline bool ownMounts() {
    if (::geteuid() == 0) {
        if (::unshare(CLONE_NEWNS) != 0) return false;
    } else {
        const auto user = std::to_string(::getuid());
        const auto group = std::to_string(::getgid());
        if (::unshare(CLONE_NEWNS | CLONE_NEWUSER) != 0) return false;
        std::ofstream("/proc/self/setgroups") << "deny";
        std::ofstream("/proc/self/uid_map") << user << " " << user << " 1";
        std::ofstream("/proc/self/gid_map") << group << " " << group << " 1";
    }
    return ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

} // namespace corvane::haldend::test
