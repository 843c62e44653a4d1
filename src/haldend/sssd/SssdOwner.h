#pragma once

#include <sys/stat.h>

#include <string>

namespace corvane::haldend {

/// A file's owner, group and mode.
struct FileOwner {
    uid_t user = 0;
    gid_t group = 0;
    mode_t mode = 0;
    [[nodiscard]] static FileOwner of(const struct stat& status) {
        return {status.st_uid, status.st_gid, status.st_mode & 07777U};
    }
};

/// Why SSSD refuses to start with its configuration on the machine itself, a sentence; "" when it doesn't.
/// The file belongs to root and may be read by root alone; where the folder around it belongs to an account
/// of SSSD's own, the file may belong to that one as well.
[[nodiscard]] std::string sssdOwnerRemark(const std::string& path, const FileOwner& file,
                                          const FileOwner& folder);

} // namespace corvane::haldend
