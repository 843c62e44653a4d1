#include "haldend/sssd/SssdOwner.h"

namespace corvane::haldend {

std::string sssdOwnerRemark(const std::string& path, const FileOwner& file, const FileOwner& folder) {
    const std::string end = ", so SSSD refuses to start.";
    if (file.user != 0 && file.user != folder.user) return path + " doesn't belong to root" + end;
    if (file.group != 0 && file.group != folder.group)
        return path + " doesn't belong to the group of root" + end;
    if ((file.mode & S_IRUSR) == 0) return path + " may not be read by its owner" + end;
    const mode_t allowed = S_IRWXU | (file.group == 0 ? 0U : S_IRGRP);
    if ((file.mode & (S_IRWXU | S_IRWXG | S_IRWXO) & ~allowed) != 0)
        return path + " may be read or changed by others than root" + end;
    return {};
}

} // namespace corvane::haldend
