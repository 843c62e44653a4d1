#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "oracle/Files.h"

namespace corvane::oracle {

/// Scenes in which a machine's settings must not, or need not, be changed, and what the refusal has to say.
struct Refusal {
    std::vector<std::string> scenes;
    std::string reason; ///< a regular expression, found in the words of the error
    bool isRequired;    ///< otherwise the scene may also go through, and every invariant then holds
};

/// A made-up machine: its files, and what is special about it.
struct Machine {
    std::string name;
    std::string about;
    bool isCore = false;
    bool isForWindow = false;
    bool isBroken = false; ///< SSSD doesn't start on it whatever its domains are
    std::vector<Refusal> refusals;
    Files files;
    /// For the self-check: lines that the readers' verdict must have and must not have, as regular
    /// expressions.
    std::vector<std::string> verdict, never;
    /// Also for the self-check: the files after a change, what the window then shows, and what has to be
    /// wrong.
    Files after;
    std::vector<std::string> path, complaints;

    /// What is said about the scene; none when nothing is.
    [[nodiscard]] const Refusal* refusalOf(std::string_view scene) const;
};

/// The machines of all files in the folder whose names end in ".machine", in the files' order. Throws
/// `std::runtime_error` with file and line where one can't be understood. The format is described in
/// machines/README.md.
[[nodiscard]] std::vector<Machine> machinesIn(const std::string& folder);

/// The accounts, groups and names that every machine has unless it says otherwise.
[[nodiscard]] Files usualAccounts();

} // namespace corvane::oracle
