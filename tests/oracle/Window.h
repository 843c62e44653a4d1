#pragma once

#include <string>
#include <vector>

#include "halden/Error.h"

namespace corvane::oracle {

/// The real window on a machine folder, in a process of its own for each piece of work.
class Window {
public:
    /// `scratch` is an existing folder for the window's own settings.
    Window(std::string folder, std::string scratch)
        : folder_(std::move(folder)), scratch_(std::move(scratch)) {}

    /// Takes the steps (see window/main.cpp). The error is what the window said when the service refused the
    /// change. Throws `std::runtime_error` when the steps can't be taken at all.
    halden::Error take(const std::vector<std::string>& steps);
    /// The directories that it showed in the end.
    [[nodiscard]] const std::vector<std::string>& shown() const { return shown_; }

private:
    std::string folder_;
    std::string scratch_;
    std::vector<std::string> shown_;
};

} // namespace corvane::oracle
