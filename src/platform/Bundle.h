#pragma once

#include <memory>
#include <string>
#include <vector>

namespace corvane::platform {

/// A loadable module. Loaded code stays loaded for the life of the process.
class Bundle {
public:
    virtual ~Bundle() = default;
    /// Loads the module's executable code. False on failure; the loader logs why.
    [[nodiscard]] virtual bool load() = 0;
    /// The address of an exported symbol of the loaded module, null when it has none of that name.
    [[nodiscard]] virtual void* symbol(const std::string& name) const = 0;
};

class BundleLoader {
public:
    virtual ~BundleLoader() = default;
    /// Names of a folder's entries in the order in which the file system lists them; none when the folder
    /// isn't there or can't be read.
    [[nodiscard]] virtual std::vector<std::string> entriesOfFolder(const std::string& folder) = 0;
    /// Null when there is no module at `path`.
    [[nodiscard]] virtual std::unique_ptr<Bundle> bundleAtPath(const std::string& path) = 0;
    /// The folder of the plug-ins that come with the program, with its trailing slash.
    [[nodiscard]] virtual std::string builtInPlugInsPath() const = 0;
};

} // namespace corvane::platform
