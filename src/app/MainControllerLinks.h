#pragma once

#include <set>

#include "app/MainController.h"

namespace corvane::app {

/// What the collaborators need of each other, answered by the controller. Each method is one forwarding line;
/// where two collaborators name the same need, one body serves both.
class MainController::Links final : public auth::DirectoryConnection::Needs,
                                    public auth::LocalAuthorization::Needs,
                                    public directory::NetworkLocations::Needs,
                                    public directory::RootUser::Needs,
                                    public plugins::PluginAPIImplementor::Host,
                                    public services::ServicesList::Needs,
                                    public services::ServicesTable::Needs,
                                    public services::ModifiedState::Needs,
                                    public searchpolicy::SearchPolicy::Needs,
                                    public searchpolicy::SearchPolicies::Needs,
                                    public searchpolicy::SearchPolicyPane::Needs,
                                    public searchpolicy::NodePaneController::Parent,
                                    public searchpolicy::UnsavedNotices::Needs,
                                    public searchpolicy::LeavingQuestion::Needs,
                                    public LockEffect::Needs,
                                    public MainWindow::Needs {
public:
    explicit Links(MainController& controller) : c_(controller) {}

    // Several collaborators
    bool isRemote() override { return c_.isRemote(); }
    bool unlocked() override { return c_.unlocked(); }
    bool preflightDSRef() override { return c_.preflightDSRef(); }
    bool preflightAuthRights() override { return c_.preflightAuthRights(); }
    std::int32_t makeAuthExternalForm(util::AuthorizationExternalForm& form) override {
        return c_.makeAuthExternalForm(form);
    }
    std::shared_ptr<halden::Session> haldenSession() override { return c_.haldenSession(); }
    std::shared_ptr<directory::HaldenNodeConfig> haldenConfigNode() override { return c_.haldenConfigNode(); }
    std::shared_ptr<plugins::PluginItem> pluginWithPrefix(const std::string& prefix) override {
        return c_.pluginWithPrefix(prefix);
    }
    void setPluginModified(bool modified) override { c_.setPluginModified(modified); }
    void setSearchPolicyModified(bool modified) override { c_.setSearchPolicyModified(modified); }
    void showProgressBar() override { c_.showProgressBar(); }
    void hideProgressBar() override { c_.hideProgressBar(); }
    void reloadPluginTable() override { c_.reloadPluginTable(); }

    // auth::DirectoryConnection
    void sessionWasReplaced() override;
    void setLockControlHidden(bool hidden) override { c_.outlets_.authorizationView.setHidden(hidden); }
    void invalidateLoadedPanes() override;
    void showServerInTitle(const std::string& address) override;
    void setUnlocked(bool unlocked) override { c_.setUnlocked(unlocked); }

    // auth::LocalAuthorization
    void lockStateChanged(bool unlocked) override {
        c_.lockEffect_.lockStateChanged(unlocked);
        c_.unsavedNotices_.update();
    }
    bool applicationShouldSaveChangesBeforeLocking() override {
        return c_.owner_ == nullptr || c_.owner_->applicationShouldSaveChanges(false);
    }
    bool runPasswordDialog() override;
    void authAccepted() override { c_.owner_->authAccepted(); }
    void invalidatePanesUnlessEdited() override;

    // directory::NetworkLocations, directory::RootUser
    std::shared_ptr<directory::HaldenNodeConfig> openedConfigNode() override {
        return c_.connection_.openedConfigNode();
    }
    std::string ipAddress() override { return c_.connection_.ipAddress().value_or(""); }
    std::shared_ptr<halden::Node> localHaldenNode() override { return c_.localHaldenNode(); }

    // plugins::PluginAPIImplementor
    std::shared_ptr<platform::Authorization> authorization() override { return c_.authorization(); }
    platform::AuthorizationRef authorizationRef() override { return c_.authorizationRef(); }
    util::Array networkSets() override { return c_.networkSets(); }
    util::Dictionary currentNetworkSet() override { return c_.currentNetworkSet(); }
    std::string hostName() override { return c_.hostName(); }
    void reloadSearchPolicies() override { c_.reloadSearchPolicies(); }
    bool isNodeOnAuthSearchPolicy(const std::string& name) override {
        return c_.isNodeOnAuthSearchPolicy(name);
    }
    bool isNodeOnContactsSearchPolicy(const std::string& name) override {
        return c_.isNodeOnContactsSearchPolicy(name);
    }
    void addNodeToAuthSearchPolicy(const std::string& name) override { c_.addNodeToAuthSearchPolicy(name); }
    void addNodeToContactsSearchPolicy(const std::string& name) override {
        c_.addNodeToContactsSearchPolicy(name);
    }
    void deleteNodeFromAuthSearchPolicy(const std::string& name) override {
        c_.deleteNodeFromAuthSearchPolicy(name);
    }
    void deleteNodeFromContactsSearchPolicy(const std::string& name) override {
        c_.deleteNodeFromContactsSearchPolicy(name);
    }
    void deleteNodesFromAuthSearchPolicyWithPrefix(const std::string& prefix) override {
        c_.deleteNodesFromAuthSearchPolicyWithPrefix(prefix);
    }
    void deleteNodesFromContactsSearchPolicyWithPrefix(const std::string& prefix) override {
        c_.deleteNodesFromContactsSearchPolicyWithPrefix(prefix);
    }
    void nodeNameChanged(const std::optional<std::string>& from,
                         const std::optional<std::string>& to) override {
        c_.nodeNameChanged(from, to);
    }
    std::optional<std::string> pluginVersionWithPrefix(const std::string& prefix) override {
        return c_.pluginVersionWithPrefix(prefix);
    }
    std::optional<std::string> osVersion() override { return c_.osVersion(); }
    const platform::LocalizedStrings& strings() override { return c_.environment_.platform.strings; }
    const platform::PropertyListCodec& propertyLists() override {
        return c_.environment_.platform.propertyLists;
    }
    plugins::PluginSurroundings surroundings() override {
        return {
            c_.environment_.formPresenter, {*this, strings()}, c_.environment_.platform.runLoop, background_};
    }
    void beep() override { c_.environment_.toolkit.application().beep(); }
    bool isPluginEnabled(const std::string& prefix) override { return c_.isPluginEnabled(prefix); }
    void setPluginEnabled(const std::string& prefix, bool enabled) override {
        c_.setPluginEnabled(prefix, enabled);
    }
    void pluginFailed(const std::string& plugin, const std::string& operation,
                      const std::string& reason) override;
    void log(const std::string& line) override { c_.environment_.platform.log.log(line); }

    // services::ServicesList, services::ModifiedState
    bool legacyDS() override { return c_.legacyDS(); }
    std::shared_ptr<plugins::PluginAPIImplementor> apiImplementor() override { return c_.apiImplementor_; }
    bool agreesToDirectoriesLeaving() override { return c_.leavingQuestion_.agreed(); }
    bool saveSearchPolicies() override { return c_.saveSearchPolicies(); }
    void rereadEditedSearchPolicies() override;

    // searchpolicy::SearchPolicy
    void customListReplaced(searchpolicy::SearchPolicy& policy) override;

    // searchpolicy::SearchPolicies
    void loadCurrentTabIfNeeded() override { c_.loadCurrentTabIfNeeded(std::nullopt); }

    // searchpolicy::SearchPolicyPane, searchpolicy::NodePaneController
    void openNodePane(searchpolicy::SearchPolicy& policy, int index) override;
    void selectRowInAuthenticationTable(int row) override { c_.outlets_.selectNode.selectRow(row, false); }
    bool shouldAllowNodeNameOnSearchPolicy(const std::string& nodeName) override {
        return c_.shouldAllowNodeNameOnSearchPolicy(nodeName);
    }
    void refreshTable() override { c_.refreshTable(); }
    void endSheet(toolkit::Window& sheet) override { c_.outlets_.window.endSheet(sheet, 0); }

    // searchpolicy::LeavingQuestion
    const std::vector<std::shared_ptr<plugins::PluginItem>>* pluginItems() override {
        return c_.servicesList_.items();
    }

    // searchpolicy::UnsavedNotices
    void saveChanges() override { c_.applyAction(); }
    void showSavedPolicy(searchpolicy::SearchPolicy& policy) override;

    // LockEffect
    void updateConfigEnable() override { c_.updateConfigEnable(); }
    void updateDeleteEnable() override { c_.updateDeleteEnable(); }
    void updateDeleteContactEnable() override { c_.updateDeleteContactEnable(); }
    void updateModifiedState() override { c_.updateModifiedState(); }
    std::string selectedTabItemIdentifier() override { return c_.selectedTabItemIdentifier(); }

    // MainWindow
    bool isPaneLoaded(Pane pane) override;
    void loadPane(Pane pane) override;
    void udpateAuthStatus() override { c_.udpateAuthStatus(); }
    bool applicationShouldTerminate() override {
        return c_.owner_ == nullptr || c_.owner_->applicationShouldTerminate();
    }
    void windowIsClosing() override { c_.modifiedState_.setQuitting(); }

private:
    MainController& c_;
    plugins::BackgroundCalls background_{c_.environment_.platform.runLoop};
    searchpolicy::SearchPolicy* policyOfPanel_ = nullptr; ///< while the panel of nodes is open
    std::set<std::string> failuresTold_;                  ///< plug-in and operation
};

} // namespace corvane::app
