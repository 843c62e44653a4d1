#include "haldend/storage/MachineFolder.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <climits>
#include <cstdlib>
#include <deque>
#include <filesystem>

#include "haldend/storage/Failure.h"
#include "haldend/storage/FileDescriptor.h"

namespace corvane::haldend {
namespace {

constexpr std::size_t maximumFileSize = 16U * 1024U * 1024U;
constexpr int maximumLinks = 40;

std::int64_t nanoseconds(const timespec& time) { return time.tv_sec * 1'000'000'000LL + time.tv_nsec; }

void prependComponents(std::deque<std::string>& components, std::string_view path) {
    std::deque<std::string> parts;
    while (!path.empty()) {
        const auto slash = path.find('/');
        const auto part = path.substr(0, slash);
        if (!part.empty() && part != ".") parts.emplace_back(part);
        path = slash == std::string_view::npos ? std::string_view() : path.substr(slash + 1);
    }
    components.insert(components.begin(), parts.begin(), parts.end());
}

std::optional<std::string> linkTarget(const std::string& path) {
    char buffer[PATH_MAX];
    const auto length = ::readlink(path.c_str(), buffer, sizeof buffer);
    if (length < 0) return std::nullopt;
    return std::string(buffer, static_cast<std::size_t>(length));
}

std::string normalized(std::string root) {
    char buffer[PATH_MAX];
    if (::realpath(root.c_str(), buffer)) return buffer;
    while (root.size() > 1 && root.ends_with('/'))
        root.pop_back();
    return root;
}

std::string readOpened(const FileDescriptor& file, const std::string& path) {
    std::string content;
    char buffer[65536];
    for (;;) {
        const auto count = ::read(file.number(), buffer, sizeof buffer);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) throw storageFailure("read", path, errno);
        if (count == 0) return content;
        content.append(buffer, static_cast<std::size_t>(count));
        if (content.size() > maximumFileSize) throw storageFailure("read", path, EFBIG);
    }
}

} // namespace

Fingerprint Fingerprint::of(const std::optional<std::string>& content) {
    if (!content) return {};
    std::uint64_t hash = 0xCBF29CE484222325U; // FNV-1a: notices edits, and is no protection against forging
    for (const char c : *content)
        hash = (hash ^ static_cast<std::uint8_t>(c)) * 0x100000001B3U;
    return {true, content->size(), hash};
}

std::string Fingerprint::text() const {
    return present ? std::to_string(length) + "-" + std::to_string(hash) : std::string("absent");
}

std::optional<Fingerprint> Fingerprint::fromText(std::string_view text) {
    if (text == "absent") return Fingerprint{};
    Fingerprint result{true, 0, 0};
    const auto* end = text.data() + text.size();
    const auto length = std::from_chars(text.data(), end, result.length);
    if (length.ec != std::errc() || length.ptr == end || *length.ptr != '-') return std::nullopt;
    const auto hash = std::from_chars(length.ptr + 1, end, result.hash);
    if (hash.ec != std::errc() || hash.ptr != end) return std::nullopt;
    return result;
}

MachineFolder::MachineFolder(std::string root) : root_(normalized(std::move(root))) {}

std::string MachineFolder::pathOf(std::string_view relative) const {
    return (root_ == "/" ? std::string("/") : root_ + "/").append(relative);
}

std::string MachineFolder::resolved(std::string_view relative) const {
    std::deque<std::string> pending;
    prependComponents(pending, relative);
    std::deque<std::string> done;
    int links = 0;
    const auto current = [&] {
        std::string path = root_ == "/" ? "" : root_;
        for (const auto& component : done)
            path += "/" + component;
        return path.empty() ? std::string("/") : path;
    };
    while (!pending.empty()) {
        const auto component = pending.front();
        pending.pop_front();
        if (component == "..") {
            if (!done.empty()) done.pop_back();
            continue;
        }
        done.push_back(component);
        const auto target = linkTarget(current());
        if (!target) continue;
        if (++links > maximumLinks) throw storageFailure("read", pathOf(relative), ELOOP);
        if (target->starts_with('/'))
            done.clear();
        else
            done.pop_back();
        prependComponents(pending, *target);
    }
    return current();
}

std::optional<std::string> readFile(const std::string& path) {
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!file.isOpen() && (errno == ENOENT || errno == ENOTDIR)) return std::nullopt;
    if (!file.isOpen()) throw storageFailure("read", path, errno);
    struct stat status {};
    if (::fstat(file.number(), &status) != 0) throw storageFailure("read", path, errno);
    if (S_ISDIR(status.st_mode)) throw storageFailure("read", path, EISDIR);
    if (!S_ISREG(status.st_mode)) throw storageFailure("read", path, EINVAL);
    return readOpened(file, path);
}

std::optional<std::string> MachineFolder::read(std::string_view relative) const {
    if (::access(root_.c_str(), F_OK) != 0) throw storageFailure("read", root_, errno);
    return readFile(resolved(relative));
}

FileStamp MachineFolder::stamp(std::string_view relative) const {
    struct stat status {};
    if (::stat(resolved(relative).c_str(), &status) != 0) return {};
    return {status.st_dev, status.st_ino, static_cast<std::uint64_t>(status.st_size),
            nanoseconds(status.st_mtim), nanoseconds(status.st_ctim)};
}

void MachineFolder::makeStateFolder() const {
    if (::access(root_.c_str(), F_OK) != 0) throw storageFailure("open", root_, errno);
    std::error_code code;
    const auto path = resolved(machineFile::state);
    std::filesystem::create_directories(path, code);
    if (code) throw storageFailure("make", path, code.value());
}

} // namespace corvane::haldend
