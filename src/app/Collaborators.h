#pragma once

#include <memory>

#include "app/LockEffect.h"
#include "app/PluginServices.h"
#include "directory/NetworkLocations.h"
#include "directory/RootUser.h"
#include "formatters/ToolkitBeep.h"
#include "plugins/PluginAPIImplementor.h"
#include "searchpolicy/LeavingQuestion.h"
#include "searchpolicy/NodePaneSheet.h"

namespace corvane::app {

/// Everything that does the main window's work, made and connected here. Each gets what lies below it, or
/// beside it in its own folder, by reference; `Links` alone answers what is asked upward. Main thread.
class Collaborators {
    class Links;

public:
    explicit Collaborators(Environment& environment);
    Collaborators(const Collaborators&) = delete;
    Collaborators& operator=(const Collaborators&) = delete;
    /// Disconnects.
    ~Collaborators();
    /// The end of all plug-in objects, and of their requests in the background.
    void destroyPlugins();

    MainWindowOutlets outlets;
    WindowOwner owner;

private:
    std::unique_ptr<Links> links_;
    formatters::ToolkitBeep beep_;
    plugins::BackgroundCalls background_;

public:
    auth::DirectoryConnection connection;
    auth::LocalAuthorization authorization;
    directory::NetworkLocations networkLocations;
    directory::RootUser rootUser;
    services::ServicesTable servicesTable;
    services::ModifiedState modifiedState;
    searchpolicy::SearchPolicy authenticationPolicy;
    searchpolicy::SearchPolicy contactsPolicy;
    searchpolicy::SearchPolicyPane authenticationPane;
    searchpolicy::SearchPolicyPane contactsPane;
    searchpolicy::UnsavedNotices unsavedNotices;
    searchpolicy::SearchPolicies policies;
    searchpolicy::LeavingQuestion leavingQuestion;
    searchpolicy::NodePaneSheet nodePane;
    PaneLoader panes;
    MainWindow mainWindow;
    PluginServices pluginServices;
    LockEffect lockEffect;
    /// Made last and destroyed first: a plug-in that is destroyed may still call the host.
    services::ServicesList servicesList;
};

} // namespace corvane::app
