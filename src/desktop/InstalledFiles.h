#pragma once

#include <string>

namespace corvane::desktop {

/// Where the program's own files are: beside the executable, be it installed or in its build folder.
struct InstalledFiles {
    std::string sampleDirectory; ///< templates of the sample directory
    std::string plugIns;         ///< built-in plug-ins, with a trailing slash

    /// `executable` is the program's own path. What isn't found is named where it would be installed.
    [[nodiscard]] static InstalledFiles find(const std::string& executable);
};

} // namespace corvane::desktop
