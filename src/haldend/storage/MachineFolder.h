#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace corvane::haldend {

/// The files of a machine that the service knows, relative to the machine's root.
namespace machineFile {
inline constexpr const char* passwd = "etc/passwd";
inline constexpr const char* group = "etc/group";
inline constexpr const char* nsswitch = "etc/nsswitch.conf";
inline constexpr const char* sssd = "etc/sssd/sssd.conf";
inline constexpr const char* sssdSnippets = "etc/sssd/conf.d";
inline constexpr const char* hostname = "etc/hostname";
inline constexpr const char* osRelease = "etc/os-release";
inline constexpr const char* policies = "var/lib/corvane/policies.plist";
inline constexpr const char* journal = "var/lib/corvane/journal";
inline constexpr const char* lock = "var/lib/corvane/lock";
inline constexpr const char* generations = "var/lib/corvane/generations";
inline constexpr const char* state = "var/lib/corvane";
/// How the folders begin, inside the state folder, in which a candidate is checked.
inline constexpr const char* checkPrefix = "check-";
} // namespace machineFile

/// Distinguishes one version of a file from another without reading it. All zero for a file that isn't there.
struct FileStamp {
    std::uint64_t device = 0, inode = 0, size = 0;
    std::int64_t modifiedNanoseconds = 0, changedNanoseconds = 0;
    friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

/// Distinguishes one content of a file from another.
struct Fingerprint {
    bool present = false;
    std::uint64_t length = 0;
    std::uint64_t hash = 0;
    friend bool operator==(const Fingerprint&, const Fingerprint&) = default;

    [[nodiscard]] static Fingerprint of(const std::optional<std::string>& content);
    /// "absent" or "LENGTH-HASH", and back; none when the text is neither.
    [[nodiscard]] std::string text() const;
    [[nodiscard]] static std::optional<Fingerprint> fromText(std::string_view text);
};

/// One machine as a tree of files: "/" for the machine itself, or a private folder laid out like one.
/// Symbolic links are followed inside the folder; an absolute link starts again at the folder's root, so
/// that a private folder never leads out of itself. Paths are relative to the root, as in "etc/passwd".
class MachineFolder {
public:
    explicit MachineFolder(std::string root);

    [[nodiscard]] const std::string& root() const { return root_; }
    /// True for "/": the running machine, whose services must be notified of changes.
    [[nodiscard]] bool isLiveMachine() const { return root_ == "/"; }
    [[nodiscard]] std::string pathOf(std::string_view relative) const;
    /// The path of the file that `relative` leads to after all links. The last component need not exist.
    /// Throws `Failure` on a loop of links.
    [[nodiscard]] std::string resolved(std::string_view relative) const;
    /// The whole file, none when it isn't there. Throws `Failure` when it can't be read, isn't a plain file
    /// or is larger than 16 MiB.
    [[nodiscard]] std::optional<std::string> read(std::string_view relative) const;
    [[nodiscard]] FileStamp stamp(std::string_view relative) const;
    /// Makes the folder for this service's own state where it is missing. Throws `Failure`.
    void makeStateFolder() const;

private:
    std::string root_;
};

/// Reads an open or named plain file whole; as `MachineFolder::read`, for an absolute path.
[[nodiscard]] std::optional<std::string> readFile(const std::string& path);

} // namespace corvane::haldend
