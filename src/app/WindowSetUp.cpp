#include "app/WindowSetUp.h"

#include "halden/Calls.h"

namespace corvane::app {
namespace {

constexpr const char* listenerName = "com.velmora.dsSearchPolicyListener";
constexpr const char* searchPathNodeChange = "DSSearchPathNodeChange";

} // namespace

WindowSetUp::WindowSetUp(Environment& environment, Collaborators& collaborators)
    : environment_(environment), c_(collaborators) {
    connectTables();
    connectButtons();
    (void)listenForSearchPolicyChanges(); // without it the panes just don't follow changes made elsewhere
}

void WindowSetUp::connectTables() {
    const auto& outlets = c_.outlets;
    outlets.selectPlugIn.setDataSource(&c_.servicesTable);
    outlets.selectPlugIn.setDelegate(&c_.servicesTable);
    outlets.selectNode.setDataSource(&c_.authenticationPane);
    outlets.selectNode.setDelegate(&c_.authenticationPane);
    outlets.selectNodeContact.setDataSource(&c_.contactsPane);
    outlets.selectNodeContact.setDelegate(&c_.contactsPane);
    outlets.selectNode.setDragHandler(&c_.authenticationPane);
    outlets.selectNodeContact.setDragHandler(&c_.contactsPane);
    outlets.selectNode.setDeleteAction(
        [this](toolkit::Control&) { c_.authenticationPane.deleteKeyPressed(); });
    outlets.selectNodeContact.setDeleteAction(
        [this](toolkit::Control&) { c_.contactsPane.deleteKeyPressed(); });
}

void WindowSetUp::connectButtons() {
    const auto& outlets = c_.outlets;
    outlets.addNode.setAction([this](toolkit::Control&) { c_.authenticationPane.addNodeAction(); });
    outlets.addNodeContact.setAction([this](toolkit::Control&) { c_.contactsPane.addNodeAction(); });
    outlets.deleteNode.setAction(
        [this](toolkit::Control& sender) { c_.authenticationPane.deleteNodeAction(sender); });
    outlets.deleteNodeContact.setAction(
        [this](toolkit::Control& sender) { c_.contactsPane.deleteNodeAction(sender); });
    outlets.applyButton.setAction([this](toolkit::Control&) { (void)c_.modifiedState.save(); });
    outlets.helpButton.setAction([this](toolkit::Control&) { c_.mainWindow.mainWindowHelpButtonHit(); });
    outlets.configPlugIn.setAction(
        [this](toolkit::Control& sender) { c_.servicesTable.configPlugInAction(&sender); });
    outlets.selectSearchPolicy.setAction(
        [this](toolkit::Control&) { c_.authenticationPane.selectModeAction(); });
    outlets.selectContactPolicy.setAction([this](toolkit::Control&) { c_.contactsPane.selectModeAction(); });
}

bool WindowSetUp::listenForSearchPolicyChanges() {
    // The callback outlives this object, so it knows the notification centre alone.
    auto& notifications = environment_.platform.notifications;
    const auto listener = environment_.platform.dynamicStore.create(
        listenerName, [&notifications] { notifications.post(searchPathNodeChange); });
    if (!listener || !listener->setNotificationKeys({std::string(halden::searchPolicyChangedKey)}))
        return false;
    listener->addToRunLoop();
    return true;
}

void WindowSetUp::showWindow(MainControllerOwner& sender) {
    c_.owner.set(sender);
    if (windowLoaded_) c_.mainWindow.loadCurrentTabIfNeeded(c_.mainWindow.selectedTabItemIdentifier());
    if (!windowLoaded_) {
        windowLoaded_ = true;
        awakeFromNib();
        c_.mainWindow.windowDidLoad();
    }
    c_.mainWindow.showWindow();
}

// Says from the first moment on which machine is worked on.
void WindowSetUp::showMachine() {
    if (const auto host = c_.networkLocations.hostName(); !host.empty())
        c_.mainWindow.showMachineInTitle(host);
    if (environment_.worksOnTrialFolder)
        c_.outlets.trialNotice.setMessageText(
            environment_.platform.strings.localized("Trial folder: nothing on this machine changes"));
    c_.outlets.trialNotice.setHidden(!environment_.worksOnTrialFolder);
}

void WindowSetUp::awakeFromNib() {
    showMachine();
    c_.servicesTable.setUpTable();
    c_.outlets.selectNode.registerForDraggedTypes({searchpolicy::SearchPolicyPane::draggedType});
    c_.outlets.selectNodeContact.registerForDraggedTypes({searchpolicy::SearchPolicyPane::draggedType});
    c_.authorization.setUpLockControl();
    c_.authenticationPolicy.selectModeInChooser();
    c_.outlets.selectNode.setAllowsMultipleSelection(true);
    c_.contactsPolicy.selectModeInChooser();
    c_.outlets.selectNodeContact.setAllowsMultipleSelection(true);
    c_.modifiedState.setSearchPolicyModified(false);
    c_.modifiedState.setPluginModified(false);
    c_.outlets.progressBar.setUsesThreadedAnimation(true);
    searchPathChanges_ =
        environment_.platform.notifications.observe(searchPathNodeChange, [this] { searchPolicyChange(); });
    c_.mainWindow.setUpNavigation();
    c_.mainWindow.startAuthStatusTimerIfActive();
}

// The services table says how many directories each connector has.
void WindowSetUp::searchPolicyChange() {
    c_.policies.searchPolicyChange();
    c_.servicesTable.showState();
}

} // namespace corvane::app
