#include "app/AppDelegate.h"

#include <map>

namespace corvane::app {
namespace {

constexpr const char* noticeStartYear = "2026";
constexpr const char* noticeEndYear = "2026";

/// Numbers of the save prompt's buttons, in the order in which they are added.
constexpr int saveButton = 1;
constexpr int discardButton = 2;

} // namespace

AppDelegate::AppDelegate(Environment& environment, MainControllerProvider mainController)
    : environment_(environment), provideMainController_(std::move(mainController)) {}

void AppDelegate::applicationDidFinishLaunching() {
    plugins::PluginController::sharedInstance(environment_.platform).loadPlugins();
    showMainWindowAction();
}

void AppDelegate::showMainWindowAction() {
    if (mMainWindow == nullptr) {
        mMainWindow = &provideMainController_();
        mMainWindow->buildDSConfigPaneData();
        mMainWindow->buildDebugMenu();
    } else {
        handOverConnection();
    }
    mMainWindow->showWindow(*this);
}

void AppDelegate::handOverConnection() {
    auto& dialog = authDialog();
    mMainWindow->setRemoteAuth(dialog.remoteAuth());
    mMainWindow->setHaldenSession(dialog.haldenSession());
    mMainWindow->setIPAddress(dialog.ipAddress());
    mMainWindow->authToLocalNode();
    mMainWindow->setUnlocked(true);
    dialog.reset();
    mConnected = true;
    mDisconnected = false;
}

bool AppDelegate::applicationShouldTerminate() { return applicationShouldSaveChanges(true); }

void AppDelegate::applicationWillTerminate() {
    if (mMainWindow == nullptr) return;
    mMainWindow->destroyPlugins();
    mMainWindow->disconnect();
}

// What the service refused to save is asked about last: saving and reverting may have settled it.
bool AppDelegate::applicationShouldSaveChanges(bool quitting) {
    if (mMainWindow == nullptr) return true;
    return savePromptAllows(quitting) && mMainWindow->mayLeaveUnsaved(quitting);
}

bool AppDelegate::savePromptAllows(bool quitting) {
    if (!mMainWindow->isDirty()) return true;
    switch (runSavePrompt(quitting)) {
    case saveButton:
        return saveBefore(quitting);
    case discardButton:
        return discardBefore(quitting);
    default:
        return false;
    }
}

int AppDelegate::runSavePrompt(bool quitting) {
    const auto alert = environment_.toolkit.makeAlert();
    alert->setMessageText(localized("Save Changes?"));
    // What is asked before locking is also what is asked before connecting and disconnecting.
    alert->setInformativeText(quitting ? localized("Do you want to save changes before quitting?")
                                       : localized("Do you want to save changes before locking?"));
    alert->addButton(localized("Save"));
    alert->addButton(localized("Don\\U02BCt Save")); // the key holds the escape itself
    alert->addButton(localized("Cancel"));
    return alert->runModal();
}

bool AppDelegate::saveBefore(bool quitting) {
    const bool agreed = quitting ? mMainWindow->applicationWillQuitSavingChanges(true)
                                 : mMainWindow->applicationWillLockSavingChanges(true);
    if (!agreed) return false;
    mMainWindow->applyAction();
    return !mMainWindow->saveWasCancelled();
}

bool AppDelegate::discardBefore(bool quitting) {
    if (quitting) return mMainWindow->applicationWillQuitSavingChanges(false);
    const bool agreed = mMainWindow->applicationWillLockSavingChanges(false);
    mMainWindow->revertAction(); // even after a refusal: the user has said that the changes may go
    return agreed;
}

// A menu may be used before the main window is there; then there is nothing that a command could concern.
void AppDelegate::saveChanges() {
    if (mMainWindow != nullptr) mMainWindow->applyAction();
}
void AppDelegate::revertAction() {
    if (mMainWindow != nullptr) mMainWindow->revertAction();
}
void AppDelegate::enableRootUser() {
    if (mMainWindow != nullptr) mMainWindow->enableRootUser();
}
void AppDelegate::changeRootPassword() {
    if (mMainWindow != nullptr) mMainWindow->changeRootPassword();
}
void AppDelegate::showHelp() {
    if (mMainWindow != nullptr) mMainWindow->mainWindowHelpButtonHit();
}

void AppDelegate::connect() {
    if (isConnectedOrPending() || !applicationShouldSaveChanges(false)) return;
    mDisconnected = false;
    mConnected = false;
    showAuthDialogAction();
}

void AppDelegate::disconnect() {
    if (!mConnected || !applicationShouldSaveChanges(false)) return;
    mMainWindow->disconnect();
    mDisconnected = true;
    mConnected = false;
}

bool AppDelegate::isConnectedOrPending() {
    return !mDisconnected && mMainWindow != nullptr && mMainWindow->isRemote();
}

void AppDelegate::showAuthDialogAction() {
    auto& dialog = authDialog();
    dialog.setAcceptsPasswordOnly(false);
    dialog.showWindow(*this);
}

auth::ConnectionDialog& AppDelegate::authDialog() {
    if (!mAuthDialog) mAuthDialog = environment_.interfaces.loadAuthDialog();
    return *mAuthDialog;
}

void AppDelegate::authAccepted() { showMainWindowAction(); }

void AppDelegate::authCanceled() {
    if (mMainWindow == nullptr) {
        authDialog().saveFrame();
        environment_.toolkit.application().terminate();
        return;
    }
    mDisconnected = true;
}

void AppDelegate::showAboutWindow() {
    environment_.toolkit.application().orderFrontStandardAboutPanel(
        {{"NoticeStartYear", noticeStartYear}, {"NoticeEndYear", noticeEndYear}});
}

bool AppDelegate::validateMenuItem(toolkit::MenuItem& item) {
    const auto action = item.action();
    if (action == "connect" && !environment_.canConnectToServers) return false;
    if (action == "connect") return !isConnectedOrPending() && !hasSheet();
    if (action == "disconnect") return mConnected && !hasSheet();
    if (action == "saveChanges") return mMainWindow != nullptr && mMainWindow->window().isDocumentEdited();
    if (action == "enableRootUser") return validateRootUserItem(item) && environment_.canChangeRootUser;
    if (action == "changeRootPassword")
        return environment_.canChangeRootUser && mMainWindow != nullptr &&
               mMainWindow->rootUserIsEnabled(nullptr) && mMainWindow->isAuthed();
    return true;
}

bool AppDelegate::validateRootUserItem(toolkit::MenuItem& item) {
    const bool authed = mMainWindow != nullptr && mMainWindow->isAuthed();
    if (!authed)
        item.setTitle(localized("Root User…"));
    else
        item.setTitle(mMainWindow->rootUserIsEnabled(nullptr) ? localized("Disable Root User")
                                                              : localized("Enable Root User"));
    return authed;
}

bool AppDelegate::hasSheet() { return mMainWindow != nullptr && mMainWindow->window().hasAttachedSheet(); }

void AppDelegate::performMenuItem(const toolkit::MenuItem& item) {
    static const std::map<std::string, void (AppDelegate::*)(), std::less<>> commands = {
        {"saveChanges", &AppDelegate::saveChanges},
        {"revertAction", &AppDelegate::revertAction},
        {"enableRootUser", &AppDelegate::enableRootUser},
        {"changeRootPassword", &AppDelegate::changeRootPassword},
        {"connect", &AppDelegate::connect},
        {"disconnect", &AppDelegate::disconnect},
        {"showAboutWindow", &AppDelegate::showAboutWindow},
        {"mainWindowHelpButtonHit", &AppDelegate::showHelp}};
    if (const auto found = commands.find(item.action()); found != commands.end()) (this->*found->second)();
}

std::string AppDelegate::localized(std::string_view key) const {
    return environment_.platform.strings.localized(key);
}

} // namespace corvane::app
