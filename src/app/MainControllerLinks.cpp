#include "app/MainControllerLinks.h"

#include "util/TextFormat.h"

namespace corvane::app {

void MainController::Links::sessionWasReplaced() {
    c_.authorization_.deauthToLocalNode();
    c_.authenticationPolicy_.forgetDetails();
    c_.contactsPolicy_.forgetDetails();
    c_.unsavedNotices_.update();
}

void MainController::Links::invalidateLoadedPanes() {
    c_.servicesList_.invalidate();
    c_.authenticationPolicy_.invalidate();
    c_.contactsPolicy_.invalidate();
}

void MainController::Links::invalidatePanesUnlessEdited() {
    if (!c_.outlets_.window.isDocumentEdited()) invalidateLoadedPanes();
}

void MainController::Links::showServerInTitle(const std::string& address) {
    const auto format = c_.environment_.platform.strings.localized("Corvane: %@");
    c_.outlets_.window.setTitle(util::formatted(format, {address}));
}

bool MainController::Links::runPasswordDialog() {
    if (c_.owner_ == nullptr) return false;
    auto& dialog = c_.owner_->authDialog();
    dialog.setAcceptsPasswordOnly(true);
    constexpr int accepted = 1;
    return dialog.runModal() == accepted;
}

namespace {

/// Is it done whenever something is drawn, or the list read? Its failure is reported once: otherwise the
/// sheet that reports it would be back as soon as it is closed.
bool isDoneOverAndOver(const std::string& operation) {
    static const std::set<std::string, std::less<>> operations = {
        "create",  "pluginName", "isEnabledForLocation", "canSetEnabledForLocation", "canConfigure",
        "isDirty", "destroy"};
    return operations.contains(operation);
}

} // namespace

void MainController::Links::pluginFailed(const std::string& plugin, const std::string& operation,
                                         const std::string& reason) {
    const bool first = failuresTold_.insert(plugin + " " + operation).second;
    if (!first && isDoneOverAndOver(operation)) return;
    log("plug-in " + plugin + " failed in " + operation + ": " + reason);
    const auto& strings = c_.environment_.platform.strings;
    c_.showErrorSheetWithTitle(
        util::formatted(strings.localized("The plug-in %@ has failed."), {plugin}),
        util::formatted(
            strings.localized("It failed in “%@”: %@. The operation wasn’t completed; everything else "
                              "continues to work. Try again, or contact its developer."),
            {operation, reason}));
}

void MainController::Links::customListReplaced(searchpolicy::SearchPolicy& policy) {
    if (&policy == policyOfPanel_) c_.sharedNodePaneController().replaceCustomNodeArray(policy.customList());
}

void MainController::Links::openNodePane(searchpolicy::SearchPolicy& policy, int index) {
    auto& panel = c_.sharedNodePaneController();
    policyOfPanel_ = &policy;
    panel.setCustomNodeArray(policy.customList());
    panel.setParentController(this);
    panel.setCustomNodeIndex(index);
    panel.buildNodePaneData();
    c_.outlets_.window.beginSheet(panel.window(), [this, &panel](toolkit::Window& sheet, int) {
        sheet.orderOut();
        policyOfPanel_ = nullptr;
        panel.forgetCustomNodeArray();
    });
}

// Where nothing else of the policies is unsaved, their mark goes, too.
void MainController::Links::showSavedPolicy(searchpolicy::SearchPolicy& policy) {
    policy.dropEdits();
    c_.adjustCustomBox();
    c_.adjustCustomBoxContact();
    if (!c_.authenticationPolicy_.hasUnsavedEdits() && !c_.contactsPolicy_.hasUnsavedEdits())
        c_.setSearchPolicyModified(false);
    c_.unsavedNotices_.update();
}

void MainController::Links::rereadEditedSearchPolicies() {
    if (c_.authenticationPolicy_.hasUnsavedEdits()) loadPane(Pane::authenticationPolicy);
    if (c_.contactsPolicy_.hasUnsavedEdits()) loadPane(Pane::contactsPolicy);
}

bool MainController::Links::isPaneLoaded(Pane pane) {
    switch (pane) {
    case Pane::services:
        return c_.servicesList_.isLoaded();
    case Pane::authenticationPolicy:
        return c_.authenticationPolicy_.isLoaded();
    case Pane::contactsPolicy:
        return c_.contactsPolicy_.isLoaded();
    case Pane::localUsers:
        break; // a page that no interface file has now
    }
    return false;
}

void MainController::Links::loadPane(Pane pane) {
    switch (pane) {
    case Pane::services:
        c_.buildDSConfigPaneData();
        break;
    case Pane::authenticationPolicy:
        c_.buildDSSearchPaneData();
        c_.adjustCustomBox();
        break;
    case Pane::contactsPolicy:
        c_.buildDSContactsPaneData();
        c_.adjustCustomBoxContact();
        break;
    case Pane::localUsers:
        break;
    }
}

} // namespace corvane::app
