#pragma once

#include "platform/Bundle.h"
#include "util/ProcessLog.h"

namespace corvane::linux_ {

/// Plug-in modules as shared objects: a file NAME.cvplug, or a folder NAME.cvplug that holds the shared
/// object NAME.so. Main thread.
class SharedObjectLoader final : public platform::BundleLoader {
public:
    /// `builtInPlugInsPath` ends with a slash. `log` outlives the loader.
    SharedObjectLoader(std::string builtInPlugInsPath, util::ProcessLog& log);

    [[nodiscard]] std::vector<std::string> entriesOfFolder(const std::string& folder) override;
    /// Null, with a line in the log, unless there is a regular file, or a folder with its shared object.
    [[nodiscard]] std::unique_ptr<platform::Bundle> bundleAtPath(const std::string& path) override;
    [[nodiscard]] std::string builtInPlugInsPath() const override { return builtInPlugInsPath_; }

private:
    std::string builtInPlugInsPath_;
    util::ProcessLog& log_;
};

} // namespace corvane::linux_
