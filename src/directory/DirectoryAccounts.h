#pragma once

#include <string>
#include <vector>

#include "halden/Session.h"

namespace corvane::directory {

/// A member of the machine's own groups who has no account of the machine's own, and so comes from a
/// directory.
struct DirectoryMember {
    std::string name;
    std::vector<std::string> groups; ///< in the machine's order
    bool operator==(const DirectoryMember&) const = default;
};

/// In the order in which the groups name them. Asks for the machine's own accounts alone, so no server keeps
/// it waiting. None, too, when they can't be read.
[[nodiscard]] std::vector<DirectoryMember> membersFromDirectories(halden::Session& session);

} // namespace corvane::directory
