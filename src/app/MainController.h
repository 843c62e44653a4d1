#pragma once

#include <memory>
#include <optional>
#include <string>

#include "app/WindowSetUp.h"

namespace corvane::app {

/// The one controller of the main window: every operation that the program has on it, handed to the
/// collaborator that does the work. Main thread throughout.
class MainController final {
public:
    /// The controller of this process, made on the first call.
    [[nodiscard]] static MainController& sharedInstance(Environment& environment);

    explicit MainController(Environment& environment);
    MainController(const MainController&) = delete;
    MainController& operator=(const MainController&) = delete;
    ~MainController() = default;

    // Window and navigation
    /// Loads the window on the first call, then shows it. `sender` stays the owner until the next call.
    void showWindow(MainControllerOwner& sender);
    void loadCurrentTabIfNeeded(const std::optional<std::string>& identifier);
    [[nodiscard]] std::string selectedTabItemIdentifier() const;
    void showProgressBar();
    void hideProgressBar();
    void adjustCustomBox();
    void adjustCustomBoxContact();
    void showErrorSheetWithTitle(const std::string& title, const std::string& message);
    void mainWindowHelpButtonHit();
    void localNodeWindowHelpButtonHit();
    void applicationDidBecomeActive();
    void applicationDidResignActive();
    [[nodiscard]] MainWindow& mainWindow() { return c_.mainWindow; }
    [[nodiscard]] toolkit::Window& window() { return c_.outlets.window; }

    // Services
    void buildDSConfigPaneData();
    [[nodiscard]] std::shared_ptr<plugins::PluginItem> pluginWithPrefix(const std::string& prefix);
    [[nodiscard]] std::shared_ptr<plugins::PluginItem> pluginWithName(const std::string& name);
    [[nodiscard]] std::optional<std::string> pluginVersionWithPrefix(const std::string& prefix);
    [[nodiscard]] bool isPluginEnabled(const std::string& prefix);
    void setPluginEnabled(const std::string& prefix, bool enabled);
    void configPlugInAction(toolkit::Control* sender);
    void updateConfigEnable();
    void reloadPluginTable();
    /// Redraws the two tables of nodes, not the services table.
    void refreshTable();
    void loadConfigWithSheet();
    void enableButtons(const std::vector<toolkit::Control*>& controls);

    // Modified state, save and revert
    void setPluginModified(bool modified);
    void setSearchPolicyModified(bool modified);
    void updateModifiedState();
    [[nodiscard]] bool isDirty();
    bool save();
    void applyAction();
    [[nodiscard]] bool saveWasCancelled() const { return c_.modifiedState.saveWasCancelled(); }
    void revertAction();
    /// Asks whether to quit, or to lock, although the service refused to save something. True to go on.
    [[nodiscard]] bool mayLeaveUnsaved(bool quitting);
    [[nodiscard]] bool applicationWillQuitSavingChanges(bool save);
    [[nodiscard]] bool applicationWillLockSavingChanges(bool save);

    // Search policies
    void buildDSSearchPaneData();
    void buildDSContactsPaneData();
    [[nodiscard]] bool saveSearchPolicies();
    void reloadSearchPolicies();
    void searchPolicyChange();
    [[nodiscard]] bool isNodeOnAuthSearchPolicy(const std::string& nodeName);
    [[nodiscard]] bool isNodeOnContactsSearchPolicy(const std::string& nodeName);
    void addNodeToAuthSearchPolicy(const std::string& nodeName);
    void addNodeToContactsSearchPolicy(const std::string& nodeName);
    void deleteNodeFromAuthSearchPolicy(const std::string& nodeName);
    void deleteNodeFromContactsSearchPolicy(const std::string& nodeName);
    void deleteNodesFromAuthSearchPolicyWithPrefix(const std::string& prefix);
    void deleteNodesFromContactsSearchPolicyWithPrefix(const std::string& prefix);
    void nodeNameChanged(const std::optional<std::string>& from, const std::optional<std::string>& to);
    [[nodiscard]] bool shouldAllowNodeNameOnSearchPolicy(const std::string& nodeName);
    void selectSearchPolicyAction();
    void selectContactPolicyAction();
    void addNodeAction();
    void addNodeContactAction();
    void deleteNodeAction(toolkit::Control& sender);
    void deleteNodeContactAction(toolkit::Control& sender);
    /// The panel of nodes to add, made on the first call.
    [[nodiscard]] searchpolicy::NodePaneController& sharedNodePaneController();
    void updateDeleteEnable();
    void updateDeleteContactEnable();

    // Authorization
    [[nodiscard]] bool unlocked();
    [[nodiscard]] bool isAuthed();
    [[nodiscard]] std::shared_ptr<platform::Authorization> authorization();
    [[nodiscard]] platform::AuthorizationRef authorizationRef();
    [[nodiscard]] bool haveAuthRights();
    [[nodiscard]] bool preflightAuthRights();
    [[nodiscard]] bool preflightDSRef();
    [[nodiscard]] std::int32_t makeAuthExternalForm(util::AuthorizationExternalForm& form);
    void authToLocalNode();
    void deauthToLocalNode();
    void setUnlocked(bool unlocked);
    void udpateAuthStatus();
    void didAuthenticate();
    void didDeauthenticate();

    // Session
    [[nodiscard]] bool isRemote();
    [[nodiscard]] std::shared_ptr<halden::Session> haldenSession();
    void setHaldenSession(std::shared_ptr<halden::Session> session);
    [[nodiscard]] std::shared_ptr<halden::Node> localHaldenNode();
    [[nodiscard]] std::shared_ptr<directory::HaldenNodeConfig> haldenConfigNode();
    void setRemoteAuth(std::shared_ptr<auth::RemoteAuthorization> authorization);
    void setIPAddress(const std::string& address);
    void disconnect();
    /// For the end of the program: destroys the plug-ins' objects, which may still call the host, and waits
    /// for what they have asked for in the background.
    void destroyPlugins();

    // The machine
    [[nodiscard]] util::Array networkSets();
    [[nodiscard]] util::Dictionary currentNetworkSet();
    [[nodiscard]] std::string hostName();
    [[nodiscard]] std::optional<std::string> osVersion();
    [[nodiscard]] bool legacyDS();

    // Root user
    [[nodiscard]] bool rootUserIsEnabled(bool* hasNoPassword);
    /// Both say in a sheet that this version can't do it.
    void enableRootUser();
    void changeRootPassword();

    // Diagnostics: this version has no debug menu, so there is none to build.
    void buildDebugMenu() {}
    void toggleDebugMenu();

private:
    Environment& environment_;
    Collaborators c_;
    WindowSetUp setUp_;
};

} // namespace corvane::app
