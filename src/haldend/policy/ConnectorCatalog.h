#pragma once

#include <deque>
#include <string>
#include <vector>

#include "haldend/policy/Connectors.h"

namespace corvane::haldend {

/// The connectors that the service knows: its own, and one for each plug-in that an administrator has put
/// into a folder. Such a guest has no nodes; the service lists it and keeps whether it is used. Main thread.
class ConnectorCatalog {
public:
    /// Every NAME.cvplug in the folder is a guest from the next question on. A folder that isn't there has
    /// none.
    void addGuestsFrom(std::string folder) { folders_.push_back(std::move(folder)); }
    /// The service's own in their order, then the guests. Borrowed texts live as long as this object. A guest
    /// keeps its version text, and so its call, for the life of this object, whatever is added or removed
    /// beside it.
    [[nodiscard]] std::vector<Connector> all();

private:
    struct Guest {
        std::string name;
        std::string version;
    };
    [[nodiscard]] const Guest* guestNamed(const std::string& name);

    std::vector<std::string> folders_;
    std::deque<Guest> guests_; ///< every one that was ever seen; its elements stay where they are
};

} // namespace corvane::haldend
