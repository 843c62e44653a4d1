#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>

#include "plugins/PluginItem.h"
#include "searchpolicy/SearchPolicy.h"

namespace corvane::searchpolicy {

/// What concerns both policies at once: writing them, renaming on both, admission, and reading them again
/// when the directory service says that they have changed. Main thread.
class SearchPolicies {
public:
    struct Needs {
        virtual ~Needs() = default;
        [[nodiscard]] virtual bool isRemote() = 0;
        [[nodiscard]] virtual bool preflightDSRef() = 0;
        [[nodiscard]] virtual bool preflightAuthRights() = 0;
        [[nodiscard]] virtual std::int32_t makeAuthExternalForm(util::AuthorizationExternalForm& form) = 0;
        virtual void setSearchPolicyModified(bool modified) = 0;
        /// Reads the pane that is on screen, if it isn't loaded.
        virtual void loadCurrentTabIfNeeded() = 0;
        [[nodiscard]] virtual std::shared_ptr<plugins::PluginItem>
        pluginWithPrefix(const std::string& prefix) = 0;
    };

    SearchPolicies(SearchPolicy& authentication, SearchPolicy& contacts, Needs& needs);

    /// The authentication policy, then the contacts policy with the same external form. False, with nothing
    /// more attempted, without rights or when a search node can't be opened. A call that fails otherwise has
    /// shown its alert and doesn't count as a failure of the whole.
    [[nodiscard]] bool saveSearchPolicies();
    /// Both are read again: the one on screen now, the other one when it is next shown.
    void reloadSearchPolicies();
    /// The directory service has announced a change. A policy with unsaved edits is left alone.
    void searchPolicyChange();
    /// Nothing happens when a name is missing or both are equal. The modes stay.
    void nodeNameChanged(const std::optional<std::string>& oldName,
                         const std::optional<std::string>& newName);
    /// May this node stand on a policy? The plug-in of its connector decides; without one, all may but the
    /// hidden connectors. The name begins with "/" and names a connector, else `RangeException` is raised.
    [[nodiscard]] bool shouldAllowNodeNameOnSearchPolicy(const std::string& nodeName);

private:
    [[nodiscard]] const std::set<std::string, std::less<>>& prefixesToHide();

    SearchPolicy& authentication_;
    SearchPolicy& contacts_;
    Needs& needs_;
    std::optional<std::set<std::string, std::less<>>> pluginsPrefixesToHideForSearchPolicy_;
};

} // namespace corvane::searchpolicy
