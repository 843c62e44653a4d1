#include "haldend/files/SssdSnippets.h"

#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <functional>

#include "haldend/files/IniConfiguration.h"

namespace corvane::haldend {
namespace {

namespace fs = std::filesystem;

constexpr mode_t decidingModes = 07777U & ~static_cast<mode_t>(S_IWUSR | S_IXUSR);

std::vector<std::string> namesIn(const MachineFolder& folder) {
    std::vector<std::string> names;
    std::error_code code;
    for (const auto& entry : fs::directory_iterator(folder.resolved(machineFile::sssdSnippets), code))
        if (const auto name = entry.path().filename().string();
            !name.starts_with('.') && name.ends_with(".conf"))
            names.push_back(name);
    std::ranges::sort(names);
    return names;
}

std::string relativeTo(const std::string& name) {
    return std::string(machineFile::sssdSnippets) + "/" + name;
}

/// Why SSSD passes over the file; "" when it doesn't.
std::string obstacle(const MachineFolder& folder, const std::string& name) {
    struct stat own {
    }, parent{};
    if (::stat(folder.resolved(relativeTo(name)).c_str(), &own) != 0 || !S_ISREG(own.st_mode))
        return "it is not a plain file";
    if (folder.isLiveMachine() || ::stat(folder.resolved(machineFile::sssdSnippets).c_str(), &parent) != 0)
        parent.st_uid = 0;
    if (own.st_uid != parent.st_uid) return "it belongs to the wrong user";
    if ((own.st_mode & decidingModes) != S_IRUSR) return "others than its owner may read or change it";
    return {};
}

} // namespace

SssdSnippets SssdSnippets::of(const MachineFolder& folder) {
    SssdSnippets snippets;
    for (const auto& name : namesIn(folder)) {
        const auto path = folder.pathOf(relativeTo(name));
        auto why = obstacle(folder, name);
        if (why.empty()) {
            SssdSnippet snippet{path, folder.read(relativeTo(name)).value_or("")};
            try {
                (void)IniConfiguration(snippet.text);
                snippets.read.push_back(std::move(snippet));
                continue;
            } catch (const IniDamage& damage) {
                why = "line " + std::to_string(damage.line) + " is damaged";
            }
        }
        snippets.passedOver.push_back("SSSD passes over " + path + ": " + why + ".");
    }
    return snippets;
}

FileStamp SssdSnippets::stamp(const MachineFolder& folder) {
    auto stamp = folder.stamp(machineFile::sssdSnippets);
    for (const auto& name : namesIn(folder)) {
        const auto one = folder.stamp(relativeTo(name));
        stamp.inode = stamp.inode * 31 + one.inode;
        stamp.size = stamp.size * 31 + one.size;
        stamp.modifiedNanoseconds ^= one.modifiedNanoseconds + static_cast<std::int64_t>(stamp.inode);
        stamp.changedNanoseconds ^= one.changedNanoseconds + static_cast<std::int64_t>(stamp.inode);
    }
    return stamp;
}

} // namespace corvane::haldend
