#include "app/MainController.h"

#include "app/MainControllerLinks.h"
#include "halden/Calls.h"
#include "util/TextFormat.h"

namespace corvane::app {
namespace {

constexpr const char* listenerName = "com.velmora.dsSearchPolicyListener";
constexpr const char* searchPathNodeChange = "DSSearchPathNodeChange";
constexpr const char* servicesPage = "1";

plugins::PluginItem::Context itemContext(Environment& environment) {
    return {plugins::PluginController::sharedInstance(environment.platform), environment.toolkit,
            environment.platform};
}

searchpolicy::SearchPolicy::Outlets authenticationOutlets(const MainWindowOutlets& o) {
    return {o.selectSearchPolicy, o.selectNode, o.remarks};
}
searchpolicy::SearchPolicy::Outlets contactsOutlets(const MainWindowOutlets& o) {
    return {o.selectContactPolicy, o.selectNodeContact, o.remarksContact};
}

} // namespace

MainController& MainController::sharedInstance(Environment& environment) {
    // Lives until the process ends: at exit the window that it works on is gone before any static object.
    static auto* const shared = new MainController(environment);
    return *shared;
}

MainController::MainController(Environment& environment)
    : environment_(environment), outlets_(environment.interfaces.loadMainWindow()),
      links_(std::make_unique<Links>(*this)),
      apiImplementor_(std::make_shared<plugins::PluginAPIImplementor>(*links_)),
      connection_(environment.halden, *links_),
      authorization_(environment.platform, connection_, outlets_.authorizationView,
                     outlets_.directoryEditorView, *links_),
      networkLocations_(environment.platform, *links_), rootUser_(*links_),
      servicesList_(itemContext(environment), *links_),
      servicesTable_(servicesList_, environment.platform.strings,
                     {outlets_.selectPlugIn, outlets_.configPlugIn, outlets_.serviceState}, *links_),
      modifiedState_(
          servicesList_, environment.platform, environment.toolkit,
          {outlets_.window, outlets_.applyButton, outlets_.progressBar, outlets_.selectPlugIn, outlets_.busy},
          *links_),
      authenticationPolicy_(searchpolicy::authenticationTraits, environment.platform, environment.toolkit,
                            authenticationOutlets(outlets_), *links_),
      contactsPolicy_(searchpolicy::contactsTraits, environment.platform, environment.toolkit,
                      contactsOutlets(outlets_), *links_),
      policies_(authenticationPolicy_, contactsPolicy_, *links_),
      authenticationPane_(authenticationPolicy_, environment.platform, environment.toolkit,
                          {outlets_.selectSearchPolicy, outlets_.selectNode, outlets_.addNode,
                           outlets_.deleteNode, outlets_.dragMessage},
                          *links_),
      contactsPane_(contactsPolicy_, environment.platform, environment.toolkit,
                    {outlets_.selectContactPolicy, outlets_.selectNodeContact, outlets_.addNodeContact,
                     outlets_.deleteNodeContact, outlets_.dragMessageContact},
                    *links_),
      unsavedNotices_(authenticationPolicy_, outlets_.unsaved, contactsPolicy_, outlets_.unsavedContact,
                      environment.platform, environment.toolkit, *links_),
      leavingQuestion_(authenticationPolicy_, environment.platform, environment.toolkit, *links_),
      lockEffect_(outlets_, *links_), mainWindow_(environment, outlets_, *links_) {
    connectActions();
    (void)listenForSearchPolicyChanges(); // without it the panes just don't follow changes made elsewhere
}

MainController::~MainController() {
    searchPathChanges_.reset();
    disconnect();
}

// What an interface file can't say for itself: which object answers which control.
void MainController::connectActions() {
    outlets_.selectPlugIn.setDataSource(&servicesTable_);
    outlets_.selectPlugIn.setDelegate(&servicesTable_);
    outlets_.selectNode.setDataSource(&authenticationPane_);
    outlets_.selectNode.setDelegate(&authenticationPane_);
    outlets_.selectNodeContact.setDataSource(&contactsPane_);
    outlets_.selectNodeContact.setDelegate(&contactsPane_);
    outlets_.selectNode.setDragHandler(&authenticationPane_);
    outlets_.selectNodeContact.setDragHandler(&contactsPane_);
    outlets_.addNode.setAction([this](toolkit::Control&) { addNodeAction(); });
    outlets_.addNodeContact.setAction([this](toolkit::Control&) { addNodeContactAction(); });
    outlets_.deleteNode.setAction([this](toolkit::Control& sender) { deleteNodeAction(sender); });
    outlets_.deleteNodeContact.setAction(
        [this](toolkit::Control& sender) { deleteNodeContactAction(sender); });
    outlets_.selectNode.setDeleteAction(
        [this](toolkit::Control&) { authenticationPane_.deleteKeyPressed(); });
    outlets_.selectNodeContact.setDeleteAction(
        [this](toolkit::Control&) { contactsPane_.deleteKeyPressed(); });
    outlets_.applyButton.setAction([this](toolkit::Control&) { applyAction(); });
    outlets_.helpButton.setAction([this](toolkit::Control&) { mainWindowHelpButtonHit(); });
    outlets_.configPlugIn.setAction([this](toolkit::Control& sender) { configPlugInAction(&sender); });
    outlets_.selectSearchPolicy.setAction([this](toolkit::Control&) { selectSearchPolicyAction(); });
    outlets_.selectContactPolicy.setAction([this](toolkit::Control&) { selectContactPolicyAction(); });
}

bool MainController::listenForSearchPolicyChanges() {
    // The callback outlives this controller, so it knows the notification centre alone.
    auto& notifications = environment_.platform.notifications;
    const auto listener = environment_.platform.dynamicStore.create(
        listenerName, [&notifications] { notifications.post(searchPathNodeChange); });
    if (!listener || !listener->setNotificationKeys({std::string(halden::searchPolicyChangedKey)}))
        return false;
    listener->addToRunLoop();
    return true;
}

void MainController::showWindow(MainControllerOwner& sender) {
    owner_ = &sender;
    if (windowLoaded_) loadCurrentTabIfNeeded(selectedTabItemIdentifier());
    if (!windowLoaded_) {
        windowLoaded_ = true;
        awakeFromNib();
        mainWindow_.windowDidLoad();
    }
    mainWindow_.showWindow();
}

// Says from the first moment on which machine is worked on.
void MainController::showMachine() {
    const auto& strings = environment_.platform.strings;
    if (const auto host = hostName(); !host.empty())
        outlets_.window.setTitle(util::formatted(strings.localized("Corvane: %@"), {host}));
    if (environment_.worksOnTrialFolder)
        outlets_.trialNotice.setMessageText(
            strings.localized("Trial folder: nothing on this machine changes"));
    outlets_.trialNotice.setHidden(!environment_.worksOnTrialFolder);
}

void MainController::awakeFromNib() {
    showMachine();
    servicesTable_.setUpTable();
    outlets_.selectNode.registerForDraggedTypes({searchpolicy::SearchPolicyPane::draggedType});
    outlets_.selectNodeContact.registerForDraggedTypes({searchpolicy::SearchPolicyPane::draggedType});
    authorization_.setUpLockControl();
    authenticationPolicy_.selectModeInChooser();
    outlets_.selectNode.setAllowsMultipleSelection(true);
    contactsPolicy_.selectModeInChooser();
    outlets_.selectNodeContact.setAllowsMultipleSelection(true);
    setSearchPolicyModified(false);
    setPluginModified(false);
    outlets_.progressBar.setUsesThreadedAnimation(true);
    searchPathChanges_ =
        environment_.platform.notifications.observe(searchPathNodeChange, [this] { searchPolicyChange(); });
    mainWindow_.setUpNavigation();
    mainWindow_.startAuthStatusTimerIfActive();
}

void MainController::enableButtons(const std::vector<toolkit::Control*>& controls) {
    for (auto* control : controls)
        control->setEnabled(true);
}

void MainController::refreshTable() {
    outlets_.selectNode.reloadData();
    outlets_.selectNodeContact.reloadData();
}

// Window and navigation
void MainController::loadCurrentTabIfNeeded(const std::optional<std::string>& identifier) {
    mainWindow_.loadCurrentTabIfNeeded(identifier);
}
std::string MainController::selectedTabItemIdentifier() const {
    return mainWindow_.selectedTabItemIdentifier();
}
void MainController::showProgressBar() { mainWindow_.showProgressBar(); }
void MainController::hideProgressBar() { mainWindow_.hideProgressBar(); }
void MainController::adjustCustomBox() { authenticationPane_.adjustCustomBox(); }
void MainController::adjustCustomBoxContact() { contactsPane_.adjustCustomBox(); }
void MainController::showErrorSheetWithTitle(const std::string& title, const std::string& message) {
    mainWindow_.showErrorSheet(title, message);
}
void MainController::mainWindowHelpButtonHit() { mainWindow_.mainWindowHelpButtonHit(); }
void MainController::localNodeWindowHelpButtonHit() { mainWindow_.localNodeWindowHelpButtonHit(); }
void MainController::applicationDidBecomeActive() { mainWindow_.applicationDidBecomeActive(); }
void MainController::applicationDidResignActive() { mainWindow_.applicationDidResignActive(); }

// Services
void MainController::buildDSConfigPaneData() { servicesList_.buildDSConfigPaneData(); }
std::shared_ptr<plugins::PluginItem> MainController::pluginWithPrefix(const std::string& prefix) {
    return servicesList_.pluginWithPrefix(prefix);
}
std::shared_ptr<plugins::PluginItem> MainController::pluginWithName(const std::string& name) {
    return servicesList_.pluginWithName(name);
}
std::optional<std::string> MainController::pluginVersionWithPrefix(const std::string& prefix) {
    return servicesList_.pluginVersionWithPrefix(prefix);
}
bool MainController::isPluginEnabled(const std::string& prefix) {
    return servicesList_.isPluginEnabled(prefix);
}
void MainController::setPluginEnabled(const std::string& prefix, bool enabled) {
    servicesList_.setPluginEnabled(prefix, enabled);
}
void MainController::configPlugInAction(toolkit::Control* sender) {
    servicesTable_.configPlugInAction(sender);
}
void MainController::updateConfigEnable() { servicesTable_.updateConfigEnable(); }
void MainController::reloadPluginTable() { servicesTable_.reloadPluginTable(); }
void MainController::loadConfigWithSheet() { modifiedState_.loadConfigWithSheet(); }

// Modified state, save and revert
void MainController::setPluginModified(bool modified) {
    modifiedState_.setPluginModified(modified);
    // The panel of nodes calls this for each row that it adds, and the line isn't seen there.
    if (selectedTabItemIdentifier() == servicesPage) servicesTable_.showState();
}
void MainController::setSearchPolicyModified(bool modified) {
    modifiedState_.setSearchPolicyModified(modified);
    unsavedNotices_.update();
}
void MainController::updateModifiedState() { modifiedState_.updateModifiedState(); }
bool MainController::isDirty() { return modifiedState_.isDirty(); }
bool MainController::save() {
    const bool saved = modifiedState_.save();
    servicesTable_.showState();
    return saved;
}
void MainController::applyAction() { (void)save(); }
void MainController::revertAction() { modifiedState_.revertAction(); }
bool MainController::mayLeaveUnsaved(bool quitting) {
    return modifiedState_.isQuitting() || unsavedNotices_.mayLeave(quitting);
}
bool MainController::applicationWillQuitSavingChanges(bool save) {
    return modifiedState_.applicationWillQuitSavingChanges(save);
}
bool MainController::applicationWillLockSavingChanges(bool save) {
    return modifiedState_.applicationWillLockSavingChanges(save);
}

// Search policies
void MainController::buildDSSearchPaneData() {
    authenticationPolicy_.buildPaneData();
    unsavedNotices_.update();
}
void MainController::buildDSContactsPaneData() {
    contactsPolicy_.buildPaneData();
    unsavedNotices_.update();
}
bool MainController::saveSearchPolicies() {
    const bool saved = policies_.saveSearchPolicies();
    unsavedNotices_.update();
    return saved;
}
void MainController::reloadSearchPolicies() { policies_.reloadSearchPolicies(); }
void MainController::searchPolicyChange() {
    policies_.searchPolicyChange();
    servicesTable_.showState();
}
bool MainController::isNodeOnAuthSearchPolicy(const std::string& nodeName) {
    return authenticationPolicy_.isNodeOnSearchPolicy(nodeName);
}
bool MainController::isNodeOnContactsSearchPolicy(const std::string& nodeName) {
    return contactsPolicy_.isNodeOnSearchPolicy(nodeName);
}
void MainController::addNodeToAuthSearchPolicy(const std::string& nodeName) {
    authenticationPolicy_.addNode(nodeName);
}
void MainController::addNodeToContactsSearchPolicy(const std::string& nodeName) {
    contactsPolicy_.addNode(nodeName);
}
void MainController::deleteNodeFromAuthSearchPolicy(const std::string& nodeName) {
    authenticationPolicy_.deleteNode(nodeName);
}
void MainController::deleteNodeFromContactsSearchPolicy(const std::string& nodeName) {
    contactsPolicy_.deleteNode(nodeName);
}
void MainController::deleteNodesFromAuthSearchPolicyWithPrefix(const std::string& prefix) {
    authenticationPolicy_.deleteNodesWithPrefix(prefix);
}
void MainController::deleteNodesFromContactsSearchPolicyWithPrefix(const std::string& prefix) {
    contactsPolicy_.deleteNodesWithPrefix(prefix);
}
void MainController::nodeNameChanged(const std::optional<std::string>& from,
                                     const std::optional<std::string>& to) {
    policies_.nodeNameChanged(from, to);
}
bool MainController::shouldAllowNodeNameOnSearchPolicy(const std::string& nodeName) {
    return policies_.shouldAllowNodeNameOnSearchPolicy(nodeName);
}
void MainController::selectSearchPolicyAction() { authenticationPane_.selectModeAction(); }
void MainController::selectContactPolicyAction() { contactsPane_.selectModeAction(); }
void MainController::addNodeAction() { authenticationPane_.addNodeAction(); }
void MainController::addNodeContactAction() { contactsPane_.addNodeAction(); }
void MainController::deleteNodeAction(toolkit::Control& sender) {
    authenticationPane_.deleteNodeAction(sender);
}
void MainController::deleteNodeContactAction(toolkit::Control& sender) {
    contactsPane_.deleteNodeAction(sender);
}
searchpolicy::NodePaneController& MainController::sharedNodePaneController() {
    if (!nodePaneController_)
        nodePaneController_ = std::make_unique<searchpolicy::NodePaneController>(
            environment_.platform, environment_.toolkit, environment_.interfaces.loadAddNodes());
    return *nodePaneController_;
}
void MainController::updateDeleteEnable() { authenticationPane_.updateDeleteEnable(); }
void MainController::updateDeleteContactEnable() { contactsPane_.updateDeleteEnable(); }

// Authorization
bool MainController::unlocked() { return authorization_.unlocked(); }
bool MainController::isAuthed() { return authorization_.isAuthed(); }
std::shared_ptr<platform::Authorization> MainController::authorization() {
    return authorization_.authorization();
}
platform::AuthorizationRef MainController::authorizationRef() { return authorization_.authorizationRef(); }
bool MainController::haveAuthRights() { return authorization_.haveAuthRights(); }
bool MainController::preflightAuthRights() { return authorization_.preflightAuthRights(); }
bool MainController::preflightDSRef() { return authorization_.preflightDSRef(); }
std::int32_t MainController::makeAuthExternalForm(util::AuthorizationExternalForm& form) {
    return authorization_.makeAuthExternalForm(form);
}
void MainController::authToLocalNode() { authorization_.authToLocalNode(); }
void MainController::deauthToLocalNode() { authorization_.deauthToLocalNode(); }
void MainController::setUnlocked(bool unlocked) { authorization_.setUnlocked(unlocked); }
void MainController::udpateAuthStatus() { authorization_.udpateAuthStatus(); }
void MainController::didAuthenticate() { authorization_.didAuthenticate(); }
void MainController::didDeauthenticate() { authorization_.didDeauthenticate(); }

// Session
bool MainController::isRemote() { return connection_.isRemote(); }
std::shared_ptr<halden::Session> MainController::haldenSession() { return connection_.haldenSession(); }
void MainController::setHaldenSession(std::shared_ptr<halden::Session> session) {
    connection_.setHaldenSession(std::move(session));
}
std::shared_ptr<halden::Node> MainController::localHaldenNode() { return connection_.localHaldenNode(); }
std::shared_ptr<directory::HaldenNodeConfig> MainController::haldenConfigNode() {
    return connection_.haldenConfigNode();
}
void MainController::setRemoteAuth(std::shared_ptr<auth::RemoteAuthorization> authorization) {
    connection_.setRemoteAuth(std::move(authorization));
}
void MainController::setIPAddress(const std::string& address) { connection_.setIPAddress(address); }
void MainController::disconnect() { connection_.disconnect(); }

// The machine
util::Array MainController::networkSets() { return networkLocations_.networkSets(); }
util::Dictionary MainController::currentNetworkSet() { return networkLocations_.currentNetworkSet(); }
std::string MainController::hostName() { return networkLocations_.hostName(); }
std::optional<std::string> MainController::osVersion() { return networkLocations_.osVersion(); }
bool MainController::legacyDS() { return networkLocations_.legacyDS(); }

// Root user
bool MainController::rootUserIsEnabled(bool* hasNoPassword) {
    return rootUser_.rootUserIsEnabled(hasNoPassword);
}

void MainController::enableRootUser() {
    const auto& strings = environment_.platform.strings;
    showErrorSheetWithTitle(
        strings.localized("The root user can’t be changed here yet."),
        strings.localized("This version shows whether root may log in, and changes nothing. Use "
                          "“passwd root” in a terminal to set its password, and “passwd --lock "
                          "root” to lock it."));
}
void MainController::changeRootPassword() { enableRootUser(); }

// Diagnostics
void MainController::toggleDebugMenu() { environment_.platform.log.log("This version has no debug menu."); }

} // namespace corvane::app
