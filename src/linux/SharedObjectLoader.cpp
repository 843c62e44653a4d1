#include "linux/SharedObjectLoader.h"

#include <dlfcn.h>

#include <filesystem>
#include <system_error>

namespace corvane::linux_ {
namespace {

namespace fs = std::filesystem;

class SharedObject final : public platform::Bundle {
public:
    SharedObject(std::string path, util::ProcessLog& log) : path_(std::move(path)), log_(log) {}

    // Bound now, so that a missing symbol is told here and not in the middle of a call; kept to itself, so
    // that two plug-ins may use the same names.
    [[nodiscard]] bool load() override {
        handle_ = dlopen(path_.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (handle_ == nullptr) {
            const char* reason = dlerror();
            log_.log("Plug-in " + path_ +
                     " was not loaded: " + (reason != nullptr ? reason : "unknown cause") +
                     ". Install a build of it for this system.");
        }
        return handle_ != nullptr;
    }
    [[nodiscard]] void* symbol(const std::string& name) const override {
        return handle_ == nullptr ? nullptr : dlsym(handle_, name.c_str());
    }

private:
    std::string path_;
    util::ProcessLog& log_;
    void* handle_ = nullptr; // never closed: loaded code stays for the life of the process
};

} // namespace

SharedObjectLoader::SharedObjectLoader(std::string builtInPlugInsPath, util::ProcessLog& log)
    : builtInPlugInsPath_(std::move(builtInPlugInsPath)), log_(log) {}

std::vector<std::string> SharedObjectLoader::entriesOfFolder(const std::string& folder) {
    std::vector<std::string> names;
    std::error_code problem;
    for (fs::directory_iterator entry(folder, problem), end; !problem && entry != end;
         entry.increment(problem))
        names.push_back(entry->path().filename());
    return names;
}

std::unique_ptr<platform::Bundle> SharedObjectLoader::bundleAtPath(const std::string& path) {
    std::error_code problem;
    fs::path object = path;
    if (fs::is_directory(object, problem)) object /= fs::path(path).stem().concat(".so");
    if (!fs::is_regular_file(object, problem)) {
        log_.log("Plug-in " + path + " was not loaded: there is no file " + object.string() +
                 ". Install the plug-in again, or remove what is left of it.");
        return nullptr;
    }
    return std::make_unique<SharedObject>(object, log_);
}

} // namespace corvane::linux_
