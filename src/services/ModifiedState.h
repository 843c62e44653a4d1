#pragma once

#include "platform/Environment.h"
#include "services/ServicesList.h"
#include "services/ServicesTable.h"
#include "toolkit/Controls.h"
#include "toolkit/TableView.h"
#include "toolkit/Toolkit.h"
#include "toolkit/Window.h"

namespace corvane::services {

/// Whether anything is unsaved, and the three ways in which an edit ends: saved, reverted, or handed to the
/// plug-ins on quitting and locking. Main thread.
class ModifiedState {
public:
    struct Needs {
        virtual ~Needs() = default;
        /// Asks about directories that the save would take off the login policy; false when the user wants
        /// none of it.
        [[nodiscard]] virtual bool agreesToDirectoriesLeaving() = 0;
        /// Asks whether to quit, or to lock, although the service refused to save something.
        [[nodiscard]] virtual bool agreesToLeaveUnsaved(bool quitting) = 0;
        /// Reads each search policy again whose custom list or mode has unsaved edits.
        virtual void rereadEditedSearchPolicies() = 0;
        virtual void showProgressBar() = 0;
        virtual void hideProgressBar() = 0;
    };
    struct Outlets {
        toolkit::Window& window;
        toolkit::Button& applyButton;
        toolkit::ProgressIndicator& progressBar;
        toolkit::BusyIndicator& busy;
    };

    /// What is saved, and what must be ready for it.
    struct Parts {
        ServicesList& list;
        ServicesTable& table;
        plugins::HostPolicies& policies;
        directory::Authorizer& authorizer;
    };

    ModifiedState(Parts parts, platform::Environment& environment, toolkit::Toolkit& toolkit, Outlets outlets,
                  Needs& needs);

    /// The services table shows it, too.
    void setPluginModified(bool modified);
    void setSearchPolicyModified(bool modified);
    /// Shows the two flags as the window's mark and the Apply button's state.
    void updateModifiedState();
    /// The window is closing: from here on nothing counts as unsaved.
    void setQuitting() { quitting_ = true; }
    /// True to go on to quit or to lock, although something may have been refused.
    [[nodiscard]] bool mayLeaveUnsaved(bool quitting);

    [[nodiscard]] bool isDirty() const;
    /// The search policies first, then each connector in the list's order up to the first that fails. Before
    /// that, the user may be asked, and may cancel: nothing is written then.
    bool save();
    /// The last save was cancelled by the user.
    [[nodiscard]] bool saveWasCancelled() const { return cancelled_; }
    /// Does nothing unless the window is marked as edited.
    void revertAction();

    /// Every plug-in is asked; the last one's answer counts.
    [[nodiscard]] bool applicationWillQuitSavingChanges(bool save);
    /// The first refusal ends the asking.
    [[nodiscard]] bool applicationWillLockSavingChanges(bool save);

    /// Builds the services list behind the progress sheet, unless it is loaded.
    void loadConfigWithSheet();

private:
    /// The flag alone, where the table is shown anew anyway.
    void markPluginModified(bool modified);
    [[nodiscard]] bool saveEverything();
    [[nodiscard]] bool saveItems();
    void showProgress();
    void showUnexpectedError(const std::string& title, const std::string& button, const std::string& reason);

    Parts parts_;
    platform::Environment& environment_;
    toolkit::Toolkit& toolkit_;
    Outlets outlets_;
    Needs& needs_;
    bool pluginModified_ = false;
    bool searchPolicyModified_ = false;
    bool quitting_ = false;
    bool cancelled_ = false;
};

} // namespace corvane::services
