#pragma once

#include <optional>
#include <string>
#include <vector>

namespace corvane::desktop {

/// What the user asked for when starting the program.
struct CommandLine {
    std::string machineFolder; ///< "" for the user's private one
    std::string screenshot;    ///< picture to save, "" for an ordinary start
    std::string pane = "services";
    bool help = false;
    std::string problem; ///< why the words make no sense, "" when they do

    /// `words` without the program's name. Options of Qt's own (-platform, -style ...) are left alone.
    [[nodiscard]] static CommandLine parse(const std::vector<std::string>& words);
    [[nodiscard]] static std::string helpText();
};

/// A message with what to do when there is nowhere to show a window; none when there is a display, or a
/// picture is all that is wanted.
[[nodiscard]] std::optional<std::string> missingDisplay(const CommandLine& commandLine,
                                                        const std::vector<std::string>& words);

/// The user's private machine folder: corvane/machine in the user's state folder.
[[nodiscard]] std::string privateMachineFolder();

} // namespace corvane::desktop
