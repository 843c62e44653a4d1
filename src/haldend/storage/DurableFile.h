#pragma once

#include <sys/stat.h>

#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "haldend/storage/FileDescriptor.h"

namespace corvane::haldend {

/// A file whose owner, group, access control list and extended attributes a new one takes over.
struct FileModel {
    std::string path; ///< "" for owner and group alone
    struct stat status;
};

/// Writes a new file and lets the system begin to store it; an older one of that name is removed first. A
/// group that an ordinary user isn't a member of is left out of what `model` says: only root could give
/// it. Throws `Failure` and leaves no file behind.
[[nodiscard]] FileDescriptor writeFile(const std::string& path, std::string_view content, mode_t mode,
                                       const std::optional<FileModel>& model = std::nullopt);
/// Waits until the file is stored. Throws `Failure`. Several files are faster written all before the first is
/// waited for.
void syncFile(const FileDescriptor& file, const std::string& path);
/// Both of them for one file; one that can't be stored is removed.
void writeDurably(const std::string& path, std::string_view content, mode_t mode,
                  const std::optional<FileModel>& model = std::nullopt);
/// Syncs the folder that holds `path`, so that a rename or removal in it lasts. Throws `Failure`.
void syncParent(const std::string& path);
/// Syncs each folder. Throws `Failure`.
void syncFolders(const std::set<std::string>& folders);
/// Renames within one file system. Throws `Failure`.
void renameFile(const std::string& from, const std::string& to);
[[nodiscard]] std::string parentOf(const std::string& path);
[[nodiscard]] std::string baseNameOf(const std::string& path);

} // namespace corvane::haldend
