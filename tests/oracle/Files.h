#pragma once

#include <sys/types.h>

#include <map>
#include <string>

namespace corvane::oracle {

struct File {
    std::string content;
    mode_t mode = 0644;
    friend bool operator==(const File&, const File&) = default;
};

/// The plain files below a folder, by their paths relative to it ("etc/nsswitch.conf").
using Files = std::map<std::string, File, std::less<>>;

/// Reads them; symbolic links are read as what they lead to. Throws `std::runtime_error`.
[[nodiscard]] Files filesBelow(const std::string& folder);
/// Makes the folder and everything in it. Throws `std::runtime_error`.
void writeFiles(const Files& files, const std::string& folder);
/// Those whose paths begin with `prefix`.
[[nodiscard]] Files filesUnder(const Files& files, const std::string& prefix);
/// Names the files that differ, with their lines; "" when they are the same.
[[nodiscard]] std::string difference(const Files& before, const Files& after);

/// The content, "" when it isn't there.
[[nodiscard]] std::string contentOf(const Files& files, const std::string& path);
/// Equal for equal files, and for others only by a miracle.
[[nodiscard]] std::string keyOf(const Files& files);

} // namespace corvane::oracle
