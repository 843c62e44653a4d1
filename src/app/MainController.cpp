#include "app/MainController.h"

namespace corvane::app {

MainController& MainController::sharedInstance(Environment& environment) {
    // Lives until the process ends: at exit the window that it works on is gone before any static object.
    static auto* const shared = new MainController(environment);
    return *shared;
}

MainController::MainController(Environment& environment)
    : environment_(environment), c_(environment), setUp_(environment, c_) {}

// Window and navigation
void MainController::showWindow(MainControllerOwner& sender) { setUp_.showWindow(sender); }
void MainController::loadCurrentTabIfNeeded(const std::optional<std::string>& identifier) {
    c_.mainWindow.loadCurrentTabIfNeeded(identifier);
}
std::string MainController::selectedTabItemIdentifier() const {
    return c_.mainWindow.selectedTabItemIdentifier();
}
void MainController::showProgressBar() { c_.mainWindow.showProgressBar(); }
void MainController::hideProgressBar() { c_.mainWindow.hideProgressBar(); }
void MainController::adjustCustomBox() { c_.authenticationPane.adjustCustomBox(); }
void MainController::adjustCustomBoxContact() { c_.contactsPane.adjustCustomBox(); }
void MainController::showErrorSheetWithTitle(const std::string& title, const std::string& message) {
    c_.mainWindow.showErrorSheet(title, message);
}
void MainController::mainWindowHelpButtonHit() { c_.mainWindow.mainWindowHelpButtonHit(); }
void MainController::localNodeWindowHelpButtonHit() { c_.mainWindow.localNodeWindowHelpButtonHit(); }
void MainController::applicationDidBecomeActive() { c_.mainWindow.applicationDidBecomeActive(); }
void MainController::applicationDidResignActive() { c_.mainWindow.applicationDidResignActive(); }

// Services
void MainController::buildDSConfigPaneData() { c_.servicesList.buildDSConfigPaneData(); }
std::shared_ptr<plugins::PluginItem> MainController::pluginWithPrefix(const std::string& prefix) {
    return c_.servicesList.pluginWithPrefix(prefix);
}
std::shared_ptr<plugins::PluginItem> MainController::pluginWithName(const std::string& name) {
    return c_.servicesList.pluginWithName(name);
}
std::optional<std::string> MainController::pluginVersionWithPrefix(const std::string& prefix) {
    return c_.servicesList.pluginVersionWithPrefix(prefix);
}
bool MainController::isPluginEnabled(const std::string& prefix) {
    return c_.servicesList.isPluginEnabled(prefix);
}
void MainController::setPluginEnabled(const std::string& prefix, bool enabled) {
    c_.servicesList.setPluginEnabled(prefix, enabled);
}
void MainController::configPlugInAction(toolkit::Control* sender) {
    c_.servicesTable.configPlugInAction(sender);
}
void MainController::updateConfigEnable() { c_.servicesTable.updateConfigEnable(); }
void MainController::reloadPluginTable() { c_.servicesTable.reloadPluginTable(); }
void MainController::refreshTable() { c_.policies.refreshTable(); }
void MainController::enableButtons(const std::vector<toolkit::Control*>& controls) {
    for (auto* control : controls)
        control->setEnabled(true);
}
void MainController::loadConfigWithSheet() { c_.modifiedState.loadConfigWithSheet(); }

// Modified state, save and revert
void MainController::setPluginModified(bool modified) { c_.modifiedState.setPluginModified(modified); }
void MainController::setSearchPolicyModified(bool modified) {
    c_.modifiedState.setSearchPolicyModified(modified);
}
void MainController::updateModifiedState() { c_.modifiedState.updateModifiedState(); }
bool MainController::isDirty() { return c_.modifiedState.isDirty(); }
bool MainController::save() { return c_.modifiedState.save(); }
void MainController::applyAction() { (void)c_.modifiedState.save(); }
void MainController::revertAction() { c_.modifiedState.revertAction(); }
bool MainController::mayLeaveUnsaved(bool quitting) { return c_.modifiedState.mayLeaveUnsaved(quitting); }
bool MainController::applicationWillQuitSavingChanges(bool save) {
    return c_.modifiedState.applicationWillQuitSavingChanges(save);
}
bool MainController::applicationWillLockSavingChanges(bool save) {
    return c_.modifiedState.applicationWillLockSavingChanges(save);
}

// Search policies
void MainController::buildDSSearchPaneData() { c_.policies.buildDSSearchPaneData(); }
void MainController::buildDSContactsPaneData() { c_.policies.buildDSContactsPaneData(); }
bool MainController::saveSearchPolicies() { return c_.policies.saveSearchPolicies(); }
void MainController::reloadSearchPolicies() { c_.policies.reloadSearchPolicies(); }
void MainController::searchPolicyChange() { setUp_.searchPolicyChange(); }
bool MainController::isNodeOnAuthSearchPolicy(const std::string& nodeName) {
    return c_.authenticationPolicy.isNodeOnSearchPolicy(nodeName);
}
bool MainController::isNodeOnContactsSearchPolicy(const std::string& nodeName) {
    return c_.contactsPolicy.isNodeOnSearchPolicy(nodeName);
}
void MainController::addNodeToAuthSearchPolicy(const std::string& nodeName) {
    c_.authenticationPolicy.addNode(nodeName);
}
void MainController::addNodeToContactsSearchPolicy(const std::string& nodeName) {
    c_.contactsPolicy.addNode(nodeName);
}
void MainController::deleteNodeFromAuthSearchPolicy(const std::string& nodeName) {
    c_.authenticationPolicy.deleteNode(nodeName);
}
void MainController::deleteNodeFromContactsSearchPolicy(const std::string& nodeName) {
    c_.contactsPolicy.deleteNode(nodeName);
}
void MainController::deleteNodesFromAuthSearchPolicyWithPrefix(const std::string& prefix) {
    c_.authenticationPolicy.deleteNodesWithPrefix(prefix);
}
void MainController::deleteNodesFromContactsSearchPolicyWithPrefix(const std::string& prefix) {
    c_.contactsPolicy.deleteNodesWithPrefix(prefix);
}
void MainController::nodeNameChanged(const std::optional<std::string>& from,
                                     const std::optional<std::string>& to) {
    c_.policies.nodeNameChanged(from, to);
}
bool MainController::shouldAllowNodeNameOnSearchPolicy(const std::string& nodeName) {
    return c_.policies.shouldAllowNodeNameOnSearchPolicy(nodeName);
}
void MainController::selectSearchPolicyAction() { c_.authenticationPane.selectModeAction(); }
void MainController::selectContactPolicyAction() { c_.contactsPane.selectModeAction(); }
void MainController::addNodeAction() { c_.authenticationPane.addNodeAction(); }
void MainController::addNodeContactAction() { c_.contactsPane.addNodeAction(); }
void MainController::deleteNodeAction(toolkit::Control& sender) {
    c_.authenticationPane.deleteNodeAction(sender);
}
void MainController::deleteNodeContactAction(toolkit::Control& sender) {
    c_.contactsPane.deleteNodeAction(sender);
}
searchpolicy::NodePaneController& MainController::sharedNodePaneController() {
    return c_.nodePane.sharedNodePaneController();
}
void MainController::updateDeleteEnable() { c_.authenticationPane.updateDeleteEnable(); }
void MainController::updateDeleteContactEnable() { c_.contactsPane.updateDeleteEnable(); }

// Authorization
bool MainController::unlocked() { return c_.authorization.unlocked(); }
bool MainController::isAuthed() { return c_.authorization.isAuthed(); }
std::shared_ptr<platform::Authorization> MainController::authorization() {
    return c_.authorization.authorization();
}
platform::AuthorizationRef MainController::authorizationRef() { return c_.authorization.authorizationRef(); }
bool MainController::haveAuthRights() { return c_.authorization.haveAuthRights(); }
bool MainController::preflightAuthRights() { return c_.authorization.preflightAuthRights(); }
bool MainController::preflightDSRef() { return c_.authorization.preflightDSRef(); }
std::int32_t MainController::makeAuthExternalForm(util::AuthorizationExternalForm& form) {
    return c_.authorization.makeAuthExternalForm(form);
}
void MainController::authToLocalNode() { c_.authorization.authToLocalNode(); }
void MainController::deauthToLocalNode() { c_.authorization.deauthToLocalNode(); }
void MainController::setUnlocked(bool unlocked) { c_.authorization.setUnlocked(unlocked); }
void MainController::udpateAuthStatus() { c_.authorization.udpateAuthStatus(); }
void MainController::didAuthenticate() { c_.authorization.didAuthenticate(); }
void MainController::didDeauthenticate() { c_.authorization.didDeauthenticate(); }

// Session
bool MainController::isRemote() { return c_.connection.isRemote(); }
std::shared_ptr<halden::Session> MainController::haldenSession() { return c_.connection.haldenSession(); }
void MainController::setHaldenSession(std::shared_ptr<halden::Session> session) {
    c_.connection.setHaldenSession(std::move(session));
}
std::shared_ptr<halden::Node> MainController::localHaldenNode() { return c_.connection.localHaldenNode(); }
std::shared_ptr<directory::HaldenNodeConfig> MainController::haldenConfigNode() {
    return c_.connection.haldenConfigNode();
}
void MainController::setRemoteAuth(std::shared_ptr<auth::RemoteAuthorization> authorization) {
    c_.connection.setRemoteAuth(std::move(authorization));
}
void MainController::setIPAddress(const std::string& address) { c_.connection.setIPAddress(address); }
void MainController::disconnect() { c_.connection.disconnect(); }
void MainController::destroyPlugins() { c_.destroyPlugins(); }

// The machine
util::Array MainController::networkSets() { return c_.networkLocations.networkSets(); }
util::Dictionary MainController::currentNetworkSet() { return c_.networkLocations.currentNetworkSet(); }
std::string MainController::hostName() { return c_.networkLocations.hostName(); }
std::optional<std::string> MainController::osVersion() { return c_.networkLocations.osVersion(); }
bool MainController::legacyDS() { return c_.networkLocations.legacyDS(); }

// Root user
bool MainController::rootUserIsEnabled(bool* hasNoPassword) {
    return c_.rootUser.rootUserIsEnabled(hasNoPassword);
}

void MainController::enableRootUser() { c_.mainWindow.explainRootUser(); }
void MainController::changeRootPassword() { c_.mainWindow.explainRootUser(); }

// Diagnostics
void MainController::toggleDebugMenu() { environment_.platform.log.log("This version has no debug menu."); }

} // namespace corvane::app
