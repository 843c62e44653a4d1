#pragma once

#include <sys/stat.h>

#include <string>
#include <string_view>

namespace corvane::haldend {

/// Writes a new file and syncs it; an older one of that name goes first. `model`, when given, is the file
/// whose owner is taken over. Throws `Failure` and leaves no file behind.
void writeDurably(const std::string& path, std::string_view content, mode_t mode, const struct stat* model);
/// Syncs the folder that holds `path`, so that a rename or removal in it lasts. Throws `Failure`.
void syncParent(const std::string& path);
/// Renames within one file system. Throws `Failure`.
void renameFile(const std::string& from, const std::string& to);
[[nodiscard]] std::string parentOf(const std::string& path);
[[nodiscard]] std::string baseNameOf(const std::string& path);

} // namespace corvane::haldend
