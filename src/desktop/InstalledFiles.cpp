#include "desktop/InstalledFiles.h"

#include <filesystem>
#include <initializer_list>
#include <system_error>

namespace corvane::desktop {
namespace {

namespace fs = std::filesystem;

/// The first of the places, relative to `base`, that is there; else the first.
std::string firstThere(const fs::path& base, std::initializer_list<const char*> places) {
    std::error_code problem;
    for (const auto* place : places)
        if (fs::exists(base / place, problem)) return (base / place).lexically_normal();
    return (base / *places.begin()).lexically_normal();
}

} // namespace

InstalledFiles InstalledFiles::find(const std::string& executable) {
    std::error_code problem;
    const auto real = fs::canonical(executable, problem);
    const auto folder = (problem ? fs::path(executable) : real).parent_path();
    return {firstThere(folder, {"../share/corvane/sample-directory", "../../../share/sample-directory"}),
            firstThere(folder, {"../lib/corvane/PlugIns/", "../PlugIns/"})};
}

} // namespace corvane::desktop
