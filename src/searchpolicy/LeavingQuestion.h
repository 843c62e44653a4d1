#pragma once

#include <set>
#include <string>
#include <vector>

#include "plugins/PluginItem.h"
#include "searchpolicy/SearchPolicy.h"

namespace corvane::searchpolicy {

/// Asks before a save takes directories off the login policy, whichever edit does it: another mode, another
/// list, a connector that is switched off, a server that is deleted. Main thread.
class LeavingQuestion {
public:
    LeavingQuestion(SearchPolicy& loginPolicy, const plugins::PluginItems& items,
                    directory::Connection& connection, platform::Environment& environment,
                    toolkit::Toolkit& toolkit)
        : policy_(loginPolicy), items_(items), connection_(connection), environment_(environment),
          toolkit_(toolkit) {}

    /// False: the user wants nothing to be saved. True without a question where no directory leaves.
    [[nodiscard]] bool agreed();

private:
    /// What the connectors will do when they are saved.
    struct Connectors {
        std::set<std::string> off;   ///< not used now
        std::set<std::string> goOff; ///< used now, and no longer then
        std::set<std::string> removedNodes;
    };
    [[nodiscard]] Connectors lookAtConnectors();
    /// The directories that are asked now and no longer then, in their order.
    [[nodiscard]] std::vector<std::string> leaving(const Connectors& connectors);
    [[nodiscard]] bool ask(const std::vector<std::string>& leaving);
    [[nodiscard]] std::string whoLosesAccess();
    [[nodiscard]] std::string localized(std::string_view key) const;

    SearchPolicy& policy_;
    const plugins::PluginItems& items_;
    directory::Connection& connection_;
    platform::Environment& environment_;
    toolkit::Toolkit& toolkit_;
};

} // namespace corvane::searchpolicy
