#include "desktop/DesktopInterface.h"

namespace corvane::desktop {

app::MainWindowOutlets DesktopInterface::loadMainWindow() {
    auto& w = window_;
    return {.window = w.window,
            .mainVsDirectoryEditorTabView = w.mainVsDirectoryEditorTabView,
            .mainTabView = w.mainTabView,
            .directoryEditorView = directoryEditor_,
            .progressSheet = w.progressSheet,
            .progressBar = w.progressBar,
            .applyButton = w.applyButton,
            .helpButton = w.helpButton,
            .trialNotice = w.trialNotice,
            .busy = w.busy,
            .selectPlugIn = w.selectPlugIn,
            .configPlugIn = w.configPlugIn,
            .serviceState = w.serviceState,
            .selectSearchPolicy = w.selectSearchPolicy,
            .selectNode = w.selectNode,
            .addNode = w.addNode,
            .deleteNode = w.deleteNode,
            .dragMessage = w.dragMessage,
            .selectContactPolicy = w.selectContactPolicy,
            .selectNodeContact = w.selectNodeContact,
            .addNodeContact = w.addNodeContact,
            .deleteNodeContact = w.deleteNodeContact,
            .dragMessageContact = w.dragMessageContact,
            .unsaved = {w.unsaved, w.tryAgain, w.showSaved},
            .unsavedContact = {w.unsavedContact, w.tryAgainContact, w.showSavedContact},
            .remarks = w.remarks,
            .remarksContact = w.remarksContact,
            .authorizationView = w.authorizationView};
}

searchpolicy::NodePaneController::Outlets DesktopInterface::loadAddNodes() {
    if (!addNodes_) addNodes_ = std::make_unique<qt::AddNodesInterface>(settings_, guard_);
    return {addNodes_->window, addNodes_->selectNode, addNodes_->filter, addNodes_->addButton,
            addNodes_->doneButton};
}

std::unique_ptr<auth::ConnectionDialog> DesktopInterface::loadAuthDialog() {
    return std::make_unique<app::NoConnectionDialog>(toolkit_, strings_);
}

} // namespace corvane::desktop
