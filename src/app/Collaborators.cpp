#include "app/Collaborators.h"

namespace corvane::app {

/// What is asked upward, or across to a folder of the same floor, and who answers it.
class Collaborators::Links final : public auth::DirectoryConnection::Needs,
                                   public auth::LocalAuthorization::Needs,
                                   public services::ServicesList::Needs,
                                   public services::ServicesTable::Needs,
                                   public services::ModifiedState::Needs,
                                   public searchpolicy::SearchPolicy::Needs,
                                   public searchpolicy::SearchPolicyPane::Needs,
                                   public searchpolicy::SearchPolicies::Needs,
                                   public searchpolicy::NodePaneSheet::Needs,
                                   public searchpolicy::UnsavedNotices::Needs {
public:
    explicit Links(Collaborators& collaborators) : c_(collaborators) {}

    // Several collaborators
    void setPluginModified(bool modified) override { c_.modifiedState.setPluginModified(modified); }
    void setSearchPolicyModified(bool modified) override {
        c_.modifiedState.setSearchPolicyModified(modified);
        c_.unsavedNotices.update();
    }
    void hideProgressBar() override { c_.mainWindow.hideProgressBar(); }

    // auth::DirectoryConnection
    void sessionWasReplaced() override {
        c_.authorization.deauthToLocalNode();
        c_.policies.forgetDetails();
    }
    void setLockControlHidden(bool hidden) override { c_.outlets.authorizationView.setHidden(hidden); }
    void invalidateLoadedPanes() override { c_.panes.invalidate(); }
    void showServerInTitle(const std::string& address) override { c_.mainWindow.showMachineInTitle(address); }
    void setUnlocked(bool unlocked) override { c_.authorization.setUnlocked(unlocked); }

    // auth::LocalAuthorization
    void lockStateChanged(bool unlocked) override { c_.lockEffect.lockStateChanged(unlocked); }
    bool applicationShouldSaveChangesBeforeLocking() override {
        return c_.owner.applicationShouldSaveChangesBeforeLocking();
    }
    bool runPasswordDialog() override { return c_.owner.runPasswordDialog(); }
    void authAccepted() override { c_.owner.authAccepted(); }
    void invalidatePanesUnlessEdited() override { c_.mainWindow.invalidatePanesUnlessEdited(); }

    // services::ServicesList, services::ServicesTable
    void reloadPluginTable() override { c_.servicesTable.reloadPluginTable(); }
    bool isServicesPaneShown() override { return c_.mainWindow.isServicesPaneShown(); }

    // services::ModifiedState
    bool agreesToDirectoriesLeaving() override { return c_.leavingQuestion.agreed(); }
    bool agreesToLeaveUnsaved(bool quitting) override { return c_.unsavedNotices.mayLeave(quitting); }
    void rereadEditedSearchPolicies() override { c_.policies.rereadEdited(); }
    void showProgressBar() override { c_.mainWindow.showProgressBar(); }

    // searchpolicy
    void customListReplaced(searchpolicy::SearchPolicy& policy) override {
        c_.nodePane.customListReplaced(policy);
    }
    void loadCurrentTabIfNeeded() override { c_.mainWindow.loadCurrentTabIfNeeded(std::nullopt); }
    void openNodePane(searchpolicy::SearchPolicy& policy, int index) override {
        c_.nodePane.open(policy, index);
    }
    void selectRowInAuthenticationTable(int row) override { c_.outlets.selectNode.selectRow(row, false); }
    void saveChanges() override { (void)c_.modifiedState.save(); }
    void showSavedPolicy(searchpolicy::SearchPolicy& policy) override { c_.policies.showSavedPolicy(policy); }

private:
    Collaborators& c_;
};

namespace {

plugins::PluginItem::Context itemContext(Environment& environment) {
    return {plugins::PluginController::sharedInstance(environment.platform), environment.toolkit,
            environment.platform};
}

std::shared_ptr<plugins::PluginAPIImplementor> makeImplementor(Collaborators& c, Environment& environment,
                                                               formatters::ToolkitBeep& beep,
                                                               plugins::BackgroundCalls& background) {
    return std::make_shared<plugins::PluginAPIImplementor>(
        plugins::PluginAPIImplementor::Parts{c.connection, c.authorization, c.policies, c.pluginServices,
                                             c.networkLocations},
        plugins::PluginAPIImplementor::Tools{
            environment.platform.log, environment.platform.strings, environment.platform.propertyLists, beep,
            environment.formPresenter, environment.platform.runLoop, background});
}

} // namespace

// References to collaborators that are made further down are kept by the ones above, and not used before all
// of them are there.
Collaborators::Collaborators(Environment& environment)
    : outlets(environment.interfaces.loadMainWindow()), links_(std::make_unique<Links>(*this)),
      beep_(environment.toolkit.application()), background_(environment.platform.runLoop),
      connection(environment.halden, *links_),
      authorization(environment.platform, connection, outlets.authorizationView, outlets.directoryEditorView,
                    *links_),
      networkLocations(environment.platform, connection), rootUser(connection),
      servicesTable(servicesList, connection, authorization, environment.platform.strings,
                    {outlets.selectPlugIn, outlets.configPlugIn, outlets.serviceState}, *links_),
      modifiedState({servicesList, servicesTable, policies, authorization}, environment.platform,
                    environment.toolkit,
                    {outlets.window, outlets.applyButton, outlets.progressBar, outlets.busy}, *links_),
      authenticationPolicy(searchpolicy::authenticationTraits, connection, environment.platform,
                           environment.toolkit,
                           {outlets.selectSearchPolicy, outlets.selectNode, outlets.remarks}, *links_),
      contactsPolicy(searchpolicy::contactsTraits, connection, environment.platform, environment.toolkit,
                     {outlets.selectContactPolicy, outlets.selectNodeContact, outlets.remarksContact},
                     *links_),
      authenticationPane(authenticationPolicy, servicesList, authorization, environment.platform,
                         environment.toolkit,
                         {outlets.selectSearchPolicy, outlets.selectNode, outlets.addNode, outlets.deleteNode,
                          outlets.dragMessage},
                         *links_),
      contactsPane(contactsPolicy, servicesList, authorization, environment.platform, environment.toolkit,
                   {outlets.selectContactPolicy, outlets.selectNodeContact, outlets.addNodeContact,
                    outlets.deleteNodeContact, outlets.dragMessageContact},
                   *links_),
      unsavedNotices(authenticationPolicy, outlets.unsaved, contactsPolicy, outlets.unsavedContact,
                     authorization, environment.platform, environment.toolkit, *links_),
      policies({authenticationPane, contactsPane, unsavedNotices, servicesList, connection, authorization},
               *links_),
      leavingQuestion(authenticationPolicy, servicesList, connection, environment.platform,
                      environment.toolkit),
      nodePane({outlets.window, [&environment] { return environment.interfaces.loadAddNodes(); }, policies,
                connection},
               environment.platform, environment.toolkit, *links_),
      panes(servicesList, policies),
      mainWindow(environment, outlets, {owner, panes, connection, authorization, modifiedState}),
      pluginServices({servicesList, servicesTable, modifiedState, mainWindow}, environment.platform),
      lockEffect(outlets, {mainWindow, servicesTable, modifiedState, authenticationPane, contactsPane,
                           unsavedNotices}),
      servicesList(itemContext(environment),
                   {connection, networkLocations, makeImplementor(*this, environment, beep_, background_)},
                   *links_) {}

Collaborators::~Collaborators() { connection.disconnect(); }

void Collaborators::destroyPlugins() {
    servicesList.destroyPlugins();
    background_.finish();
}

} // namespace corvane::app
