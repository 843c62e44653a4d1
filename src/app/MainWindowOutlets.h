#pragma once

#include "auth/ConnectionDialog.h"
#include "auth/DirectoryEditor.h"
#include "platform/AuthorizationView.h"
#include "searchpolicy/NodePaneController.h"
#include "searchpolicy/UnsavedNotices.h"
#include "toolkit/Controls.h"
#include "toolkit/TabView.h"
#include "toolkit/TableView.h"
#include "toolkit/Window.h"

namespace corvane::app {

/// The controls of the interface file "MainWindow", by the names that they have there. All belong to the
/// interface, which outlives the program's objects.
struct MainWindowOutlets {
    toolkit::Window& window;

    /// Pages "main" and "directoryEditor".
    toolkit::TabView& mainVsDirectoryEditorTabView;
    /// Pages "1" services, "2" authentication policy, "3" contacts policy.
    toolkit::TabView& mainTabView;
    auth::DirectoryEditor& directoryEditorView;

    toolkit::Window& progressSheet;
    toolkit::ProgressIndicator& progressBar;
    toolkit::Button& applyButton;
    toolkit::Button& helpButton;
    toolkit::Notice& trialNotice; ///< seen in every pane
    toolkit::BusyIndicator& busy; ///< at the window's foot

    toolkit::TableView& selectPlugIn; ///< columns "Name", "Version" and "On-Off"
    toolkit::Button& configPlugIn;
    toolkit::Label& serviceState; ///< below the services table

    toolkit::PopUpButton& selectSearchPolicy; ///< Automatic, Local, Custom
    toolkit::TableView& selectNode;           ///< column "NodeName"
    toolkit::Button& addNode;
    toolkit::Button& deleteNode;
    toolkit::View& dragMessage;

    toolkit::PopUpButton& selectContactPolicy;
    toolkit::TableView& selectNodeContact;
    toolkit::Button& addNodeContact;
    toolkit::Button& deleteNodeContact;
    toolkit::View& dragMessageContact;

    /// Above the list of each policy.
    searchpolicy::UnsavedNotices::Outlets unsaved;
    searchpolicy::UnsavedNotices::Outlets unsavedContact;
    toolkit::Notice& remarks; ///< below the list of each policy
    toolkit::Notice& remarksContact;

    platform::AuthorizationView& authorizationView;
};

/// Brings the interface files to life.
class InterfaceLoader {
public:
    virtual ~InterfaceLoader() = default;
    /// Loads "MainWindow" on the first call; the same outlets afterwards.
    [[nodiscard]] virtual MainWindowOutlets loadMainWindow() = 0;
    /// Loads "AddNodes" on the first call; the same outlets afterwards.
    [[nodiscard]] virtual searchpolicy::NodePaneController::Outlets loadAddNodes() = 0;
    /// A new connection dialog.
    [[nodiscard]] virtual std::unique_ptr<auth::ConnectionDialog> loadAuthDialog() = 0;
};

} // namespace corvane::app
