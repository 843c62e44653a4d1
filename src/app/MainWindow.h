#pragma once

#include <deque>
#include <memory>
#include <optional>
#include <string>

#include "app/Environment.h"
#include "app/PaneLoader.h"
#include "app/WindowOwner.h"
#include "auth/LocalAuthorization.h"
#include "services/ModifiedState.h"

namespace corvane::app {

/// The one window's navigation: its pages and toolbar, the loading of each page when it is first shown, its
/// size for each page, the state kept between runs, and the progress and error sheets. Main thread.
class MainWindow final : public toolkit::TabViewDelegate,
                         public toolkit::ToolbarDelegate,
                         public toolkit::WindowDelegate {
public:
    struct Parts {
        WindowOwner& owner;
        PaneLoader& panes;
        directory::Connection& connection;
        auth::LocalAuthorization& authorization;
        services::ModifiedState& modified;
    };

    MainWindow(Environment& environment, const MainWindowOutlets& outlets, Parts parts);
    MainWindow(const MainWindow&) = delete;
    MainWindow& operator=(const MainWindow&) = delete;

    /// Selects the first page, groups the two policies' pages, installs the toolbar and loads what is shown.
    void setUpNavigation();
    void startAuthStatusTimerIfActive();
    void windowDidLoad();
    void showWindow();

    /// Moves the two policies' pages into a tab view of their own, page "20".
    void buildGroupedTabs();
    void useToolbarInsteadOfTableView();
    /// No identifier: the page that is selected.
    void loadCurrentTabIfNeeded(const std::optional<std::string>& identifier);
    /// "" while there is no page.
    [[nodiscard]] std::string selectedTabItemIdentifier() const;
    [[nodiscard]] bool isServicesPaneShown() const;
    /// Lets the panes be read again unless there are unsaved edits.
    void invalidatePanesUnlessEdited();
    /// `name` is the machine's name or address.
    void showMachineInTitle(const std::string& name);
    /// Another grouping of the pages, which nothing in the program asks for.
    void createAdvancedPanel();

    void showProgressBar();
    void hideProgressBar();
    /// Does nothing: the bar is indeterminate.
    void updateProgressBar() {}
    /// One "OK" button, on the main window. A second one waits until the first has been read.
    void showErrorSheet(const std::string& title, const std::string& message);
    /// Says in a sheet that this version can't change the root user.
    void explainRootUser();
    void mainWindowHelpButtonHit();
    void localNodeWindowHelpButtonHit();
    void toolbarItemClicked(const toolkit::ToolbarItem& item);
    /// Selects the item and does what a click on it does. Nothing happens for an unknown one.
    void selectToolbarItem(const std::string& identifier);

    void applicationDidBecomeActive();
    void applicationDidResignActive();

    [[nodiscard]] bool shouldSelectTabViewItem(toolkit::TabView& tabView,
                                               const toolkit::TabViewItem& item) override;
    void willSelectTabViewItem(toolkit::TabView& tabView, const toolkit::TabViewItem& item) override;
    void didSelectTabViewItem(toolkit::TabView& tabView, const toolkit::TabViewItem& item) override;

    [[nodiscard]] std::vector<std::string>
    toolbarDefaultItemIdentifiers(const toolkit::Toolbar& toolbar) override;
    [[nodiscard]] std::vector<std::string>
    toolbarAllowedItemIdentifiers(const toolkit::Toolbar& toolbar) override;
    [[nodiscard]] std::vector<std::string>
    toolbarSelectableItemIdentifiers(const toolkit::Toolbar& toolbar) override;
    [[nodiscard]] toolkit::ToolbarItem itemForItemIdentifier(const toolkit::Toolbar& toolbar,
                                                             const std::string& identifier,
                                                             bool willBeInserted) override;
    [[nodiscard]] bool validateToolbarItem(const toolkit::ToolbarItem& item) override;

    [[nodiscard]] bool windowShouldClose(toolkit::Window& window) override;
    void windowWillClose(toolkit::Window& window) override;
    void willEncodeRestorableState(toolkit::Window& window, toolkit::StateCoder& coder) override;
    void didDecodeRestorableState(toolkit::Window& window, const toolkit::StateCoder& coder) override;

private:
    [[nodiscard]] std::string localized(std::string_view key) const;
    void clickItem(const std::string& identifier);
    void movePage(const char* identifier, toolkit::TabView& target);
    void loadPaneWithProgress(Pane pane, bool remote);
    void sizeForPage(const std::string& identifier);
    void setContentSize(const toolkit::Size& size, bool resizable);
    void scheduleAuthStatusTimer();
    void showFirstErrorSheet();
    void errorSheetDidEnd();

    Environment& environment_;
    MainWindowOutlets outlets_;
    Parts parts_;
    std::shared_ptr<toolkit::TabView> searchPathsTabView_;
    std::shared_ptr<toolkit::Toolbar> toolbar_;
    std::unique_ptr<platform::Timer> authStatusTimer_;
    std::deque<std::unique_ptr<toolkit::Alert>> errorSheets_; ///< the first one is on screen
};

} // namespace corvane::app
