#pragma once

#include <optional>
#include <string>
#include <vector>

#include "haldend/files/NsswitchFile.h"
#include "haldend/files/SssdLines.h"

namespace corvane::haldend {

/// A line that this service has added to a server's section on its own account.
struct AddedOption {
    std::string section; ///< the server's name
    std::string key, value;
    friend bool operator==(const AddedOption&, const AddedOption&) = default;
};

/// What this service has added to a machine on its own account, remembered with the policy so that it is
/// removed again with the last directory and leaves the machine as it was found.
struct MachineAdditions {
    bool folder = false;   ///< the folder of sssd.conf
    bool file = false;     ///< sssd.conf itself
    bool section = false;  ///< its section `[sssd]`
    bool services = false; ///< the line `services` there
    bool domains = false;  ///< the line `domains` there
    /// That line as it was found, without a name that can be served.
    std::optional<std::string> emptyDomains;
    /// nsswitch.conf when the machine had no directory yet: some machines ask SSSD already then.
    std::optional<std::string> nsswitch;
    /// How lines of nsswitch.conf read with and without SSSD.
    NsswitchMemory lines;
    /// The names that were on the `domains` line, in their order, before this service took some off.
    std::vector<std::string> formerList;
    /// Lines in sections of servers that compute their numbers.
    std::vector<AddedOption> options;
    friend bool operator==(const MachineAdditions&, const MachineAdditions&) = default;
};

/// The text of sssd.conf with `names` on the `domains` line, which keeps its bytes where it lists just them
/// already. A line that is missing is added with `services`, which SSSD needs where nothing starts its
/// services on demand; what is added is noted in `added`. Without names what `added` notes is taken away
/// again, and so is a line that isn't ours: SSSD doesn't start with an empty one.
[[nodiscard]] std::string textWithDomainsLine(const std::string& text, const std::vector<std::string>& names,
                                              MachineAdditions& added);

/// The line `domains` as it is; none when there is none.
[[nodiscard]] std::optional<std::string> domainsLine(const std::string& text);

} // namespace corvane::haldend
