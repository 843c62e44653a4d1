#pragma once

#include <functional>
#include <memory>

#include "app/MainController.h"

namespace corvane::app {

/// The application's delegate: start-up, the question that guards unsaved changes, the menu commands that are
/// its own, and the shell's side of connecting to a remote server. Settings are the main controller's
/// business alone. Main thread.
class AppDelegate final : public MainControllerOwner, public auth::ConnectionDialog::Owner {
public:
    /// Gives the one main controller; called when the main window is first shown.
    using MainControllerProvider = std::function<MainController&()>;

    AppDelegate(Environment& environment, MainControllerProvider mainController);
    AppDelegate(const AppDelegate&) = delete;
    AppDelegate& operator=(const AppDelegate&) = delete;

    void applicationDidFinishLaunching();
    void showMainWindowAction();
    /// False cancels the quit.
    [[nodiscard]] bool applicationShouldTerminate() override;
    void applicationWillTerminate();

    /// Offers to save what is unsaved. True to go on. A save that fails doesn't stop what was begun.
    [[nodiscard]] bool applicationShouldSaveChanges(bool quitting) override;

    // Menu commands
    void saveChanges();
    void revertAction();
    void enableRootUser();
    void changeRootPassword();
    void connect();
    void disconnect();
    void showAuthDialogAction();
    void showAboutWindow();
    /// May the item be chosen? The item that enables the root user also gets its title here.
    [[nodiscard]] bool validateMenuItem(toolkit::MenuItem& item);
    /// Runs the command that the item names.
    void performMenuItem(const toolkit::MenuItem& item);

    // The connection dialog reports
    [[nodiscard]] auth::ConnectionDialog& authDialog() override;
    void authAccepted() override;
    void authCanceled() override;

private:
    void showHelp();
    [[nodiscard]] bool savePromptAllows(bool quitting);
    [[nodiscard]] int runSavePrompt(bool quitting);
    [[nodiscard]] bool saveBefore(bool quitting);
    [[nodiscard]] bool discardBefore(bool quitting);
    void handOverConnection();
    [[nodiscard]] bool hasSheet();
    [[nodiscard]] bool isConnectedOrPending();
    [[nodiscard]] bool validateRootUserItem(toolkit::MenuItem& item);
    [[nodiscard]] std::string localized(std::string_view key) const;

    Environment& environment_;
    MainControllerProvider provideMainController_;
    std::unique_ptr<auth::ConnectionDialog> mAuthDialog;
    MainController* mMainWindow = nullptr;
    /// The window shows a remote server that was connected through the dialog.
    bool mConnected = false;
    /// No remote connection is in force or pending. Not the negation of `mConnected`: while the dialog is up
    /// both are false.
    bool mDisconnected = true;
};

} // namespace corvane::app
