#include "searchpolicy/SearchPolicies.h"

#include <set>
#include <string_view>

#include "halden/ConnectorNames.h"
#include "searchpolicy/NodeName.h"

namespace corvane::searchpolicy {

namespace connector = halden::connector;

namespace {

/// Connectors whose nodes may never be on a search policy: file sharing, zeroconf and legacy service
/// location, and the two search nodes themselves.
bool isHidden(const std::string& connectorName) {
    static const std::set<std::string_view> names = {"SMB",
                                                     "NFS",
                                                     "WebDAV",
                                                     "WINS",
                                                     "SLP",
                                                     connector::zeroconf,
                                                     connector::formerZeroconf,
                                                     connector::search,
                                                     connector::contacts};
    return names.contains(connectorName);
}

} // namespace

void SearchPolicies::buildDSSearchPaneData() {
    authenticationPolicy().buildPaneData();
    parts_.notices.update();
}

void SearchPolicies::buildDSContactsPaneData() {
    contactsPolicy().buildPaneData();
    parts_.notices.update();
}

void SearchPolicies::loadAuthenticationPane() {
    buildDSSearchPaneData();
    parts_.authentication.adjustCustomBox();
}

void SearchPolicies::loadContactsPane() {
    buildDSContactsPaneData();
    parts_.contacts.adjustCustomBox();
}

void SearchPolicies::refreshTable() {
    parts_.authentication.reloadTable();
    parts_.contacts.reloadTable();
}

void SearchPolicies::invalidate() {
    authenticationPolicy().invalidate();
    contactsPolicy().invalidate();
}

void SearchPolicies::forgetDetails() {
    authenticationPolicy().forgetDetails();
    contactsPolicy().forgetDetails();
    parts_.notices.update();
}

void SearchPolicies::rereadEdited() {
    if (authenticationPolicy().hasUnsavedEdits()) loadAuthenticationPane();
    if (contactsPolicy().hasUnsavedEdits()) loadContactsPane();
}

// Where nothing else of the policies is unsaved, their mark is removed, too.
void SearchPolicies::showSavedPolicy(SearchPolicy& policy) {
    policy.dropEdits();
    parts_.authentication.adjustCustomBox();
    parts_.contacts.adjustCustomBox();
    if (!authenticationPolicy().hasUnsavedEdits() && !contactsPolicy().hasUnsavedEdits())
        needs_.setSearchPolicyModified(false);
    parts_.notices.update();
}

bool SearchPolicies::saveSearchPolicies() {
    const bool saved = saveBoth();
    parts_.notices.update();
    return saved;
}

bool SearchPolicies::saveBoth() {
    if (!parts_.authorizer.preflightAuthRights()) return false;
    util::AuthorizationExternalForm authForm;
    if (parts_.authorizer.makeAuthExternalForm(authForm) != 0) return false;
    if (!authenticationPolicy().save(authForm) || !contactsPolicy().save(authForm)) return false;
    needs_.setSearchPolicyModified(false);
    return true;
}

void SearchPolicies::reloadSearchPolicies() {
    invalidate();
    needs_.loadCurrentTabIfNeeded();
}

void SearchPolicies::searchPolicyChange() {
    if (parts_.connection.isRemote() || !parts_.authorizer.preflightDSRef()) return;
    for (auto* policy : {&authenticationPolicy(), &contactsPolicy()})
        if (!policy->hasUnsavedEdits()) policy->invalidate();
    needs_.loadCurrentTabIfNeeded();
}

void SearchPolicies::nodeNameChanged(const std::optional<std::string>& oldName,
                                     const std::optional<std::string>& newName) {
    if (!oldName || !newName || *oldName == *newName) return;
    authenticationPolicy().renameNode(*oldName, *newName);
    contactsPolicy().renameNode(*oldName, *newName);
}

bool SearchPolicies::shouldAllowNodeNameOnSearchPolicy(const std::string& nodeName) {
    const auto name = connectorOfNode(nodeName);
    const auto plugin = parts_.items.pluginWithPrefix(name);
    return plugin ? plugin->shouldAllowNodeNameOnSearchPolicy(nodeName) : !isHidden(name);
}

} // namespace corvane::searchpolicy
