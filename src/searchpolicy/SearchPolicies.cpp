#include "searchpolicy/SearchPolicies.h"

#include "plugins/ConnectorNames.h"
#include "searchpolicy/NodeName.h"

namespace corvane::searchpolicy {

SearchPolicies::SearchPolicies(SearchPolicy& authentication, SearchPolicy& contacts, Needs& needs)
    : authentication_(authentication), contacts_(contacts), needs_(needs) {}

bool SearchPolicies::saveSearchPolicies() {
    if (!needs_.preflightAuthRights()) return false;
    util::AuthorizationExternalForm authForm;
    if (needs_.makeAuthExternalForm(authForm) != 0) return false;
    if (!authentication_.save(authForm) || !contacts_.save(authForm)) return false;
    needs_.setSearchPolicyModified(false);
    return true;
}

void SearchPolicies::reloadSearchPolicies() {
    authentication_.invalidate();
    contacts_.invalidate();
    needs_.loadCurrentTabIfNeeded();
}

void SearchPolicies::searchPolicyChange() {
    if (needs_.isRemote() || !needs_.preflightDSRef()) return;
    for (auto* policy : {&authentication_, &contacts_})
        if (!policy->hasUnsavedEdits()) policy->invalidate();
    needs_.loadCurrentTabIfNeeded();
}

void SearchPolicies::nodeNameChanged(const std::optional<std::string>& oldName,
                                     const std::optional<std::string>& newName) {
    if (!oldName || !newName || *oldName == *newName) return;
    authentication_.renameNode(*oldName, *newName);
    contacts_.renameNode(*oldName, *newName);
}

bool SearchPolicies::shouldAllowNodeNameOnSearchPolicy(const std::string& nodeName) {
    const auto& hidden = prefixesToHide();
    const auto connector = connectorOfNode(nodeName);
    if (const auto plugin = needs_.pluginWithPrefix(connector))
        return plugin->shouldAllowNodeNameOnSearchPolicy(nodeName);
    return !hidden.contains(connector);
}

const std::set<std::string, std::less<>>& SearchPolicies::prefixesToHide() {
    if (!pluginsPrefixesToHideForSearchPolicy_) {
        const auto& names = plugins::connector::hiddenFromSearchPolicy;
        pluginsPrefixesToHideForSearchPolicy_.emplace(names.begin(), names.end());
    }
    return *pluginsPrefixesToHideForSearchPolicy_;
}

} // namespace corvane::searchpolicy
