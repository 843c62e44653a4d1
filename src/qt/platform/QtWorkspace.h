#pragma once

#include "platform/Workspace.h"

namespace corvane::qt {

class QtWorkspace final : public platform::Workspace {
public:
    [[nodiscard]] bool fileExists(const std::string& path) const override;
    /// A program, or a desktop entry, folder or document, which its own program opens.
    [[nodiscard]] bool launchApplication(const std::string& path) override;
    [[nodiscard]] bool openFile(const std::string& file, const std::string& application) override;
};

} // namespace corvane::qt
