#pragma once

#include <string>

namespace corvane::platform {

/// The desktop around the program: other programs and files. Main thread.
class Workspace {
public:
    virtual ~Workspace() = default;
    [[nodiscard]] virtual bool fileExists(const std::string& path) const = 0;
    /// Starts a program as a process of its own. True when it was started.
    [[nodiscard]] virtual bool launchApplication(const std::string& path) = 0;
    /// Starts the program at `application` with the file as its one argument. True when it was started.
    [[nodiscard]] virtual bool openFile(const std::string& file, const std::string& application) = 0;
};

} // namespace corvane::platform
