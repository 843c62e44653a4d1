#include "linux/NetworkFiles.h"

#include <limits.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>

namespace corvane::linux_ {
namespace {

namespace fs = std::filesystem;

// Where profiles lie; a profile in an earlier folder hides one of the same name in a later one.
constexpr std::array profileFolders = {"etc/NetworkManager/system-connections",
                                       "run/NetworkManager/system-connections",
                                       "usr/lib/NetworkManager/system-connections"};
constexpr const char* deviceFolder = "run/NetworkManager/devices";
/// A line longer than this is no setting of ours.
constexpr std::size_t longestLine = 4096;

/// The value of a key in a section of a keyfile; none where it is absent.
std::optional<std::string> keyfileValue(const fs::path& file, std::string_view section,
                                        std::string_view key) {
    std::ifstream stream(file);
    const std::string heading = "[" + std::string(section) + "]";
    const std::string beginning = std::string(key) + "=";
    bool inside = false;
    for (std::string line; std::getline(stream, line);) {
        if (line.size() > longestLine) continue;
        if (line.starts_with("[")) inside = line == heading;
        if (inside && line.starts_with(beginning)) return line.substr(beginning.size());
    }
    return std::nullopt;
}

/// The files of a folder by name; none when it can't be read.
std::vector<fs::path> filesIn(const fs::path& folder) {
    std::vector<fs::path> files;
    std::error_code problem;
    for (fs::directory_iterator at(folder, problem), end; !problem && at != end; at.increment(problem))
        files.push_back(at->path());
    std::ranges::sort(files);
    return files;
}

class Preferences final : public platform::NetworkPreferences {
public:
    explicit Preferences(fs::path root) : root_(std::move(root)) {}

    [[nodiscard]] std::vector<platform::NetworkSet> allSets() override {
        std::vector<platform::NetworkSet> sets;
        std::vector<fs::path> seen;
        for (const auto* folder : profileFolders)
            for (const auto& file : filesIn(root_ / folder))
                if (std::ranges::find(seen, file.filename()) == seen.end()) {
                    seen.push_back(file.filename());
                    sets.push_back(
                        {keyfileValue(file, "connection", "id"), keyfileValue(file, "connection", "uuid")});
                }
        return sets;
    }

    [[nodiscard]] std::optional<platform::NetworkSet> currentSet() override {
        const auto sets = allSets();
        for (const auto& device : filesIn(root_ / deviceFolder)) {
            const auto uuid = keyfileValue(device, "device", "connection-uuid");
            const auto found = std::ranges::find(sets, uuid, &platform::NetworkSet::identifier);
            if (uuid && found != sets.end()) return *found;
        }
        return std::nullopt;
    }

private:
    fs::path root_;
};

} // namespace

std::unique_ptr<platform::NetworkPreferences> NetworkFiles::create(const std::string& /*clientName*/) {
    return std::make_unique<Preferences>(root_);
}

std::string NetworkFiles::hostName() {
    std::array<char, HOST_NAME_MAX + 1> name{};
    return ::gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "localhost";
}

} // namespace corvane::linux_
