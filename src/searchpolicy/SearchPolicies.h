#pragma once

#include <optional>
#include <string>

#include "searchpolicy/SearchPolicyPane.h"
#include "searchpolicy/UnsavedNotices.h"

namespace corvane::searchpolicy {

/// What concerns both policies at once: writing them, renaming on both, admission, showing them, and reading
/// them again when the directory service says that they have changed. Main thread.
class SearchPolicies final : public plugins::HostPolicies {
public:
    struct Needs {
        virtual ~Needs() = default;
        virtual void setSearchPolicyModified(bool modified) = 0;
        /// Reads the pane that is on screen, if it isn't loaded.
        virtual void loadCurrentTabIfNeeded() = 0;
    };
    struct Parts {
        SearchPolicyPane& authentication;
        SearchPolicyPane& contacts;
        UnsavedNotices& notices;
        const plugins::PluginItems& items;
        directory::Connection& connection;
        directory::Authorizer& authorizer;
    };

    SearchPolicies(Parts parts, Needs& needs) : parts_(parts), needs_(needs) {}

    [[nodiscard]] SearchPolicy& authenticationPolicy() override { return parts_.authentication.policy(); }
    [[nodiscard]] SearchPolicy& contactsPolicy() override { return parts_.contacts.policy(); }

    void buildDSSearchPaneData();
    void buildDSContactsPaneData();
    /// The same, and the controls beside the list follow.
    void loadAuthenticationPane();
    void loadContactsPane();
    void refreshTable();
    /// Both are read again when they are next shown; what is on screen stays until then.
    void invalidate();
    /// The session is another one: what was read is void.
    void forgetDetails();
    /// Reads each policy again whose custom list or mode has unsaved edits.
    void rereadEdited();
    /// Shows the policy as the service has it; what was edited in it is gone.
    void showSavedPolicy(SearchPolicy& policy);

    /// The authentication policy, then the contacts policy with the same external form. False, with nothing
    /// more attempted, without rights or when a search node can't be opened. A call that fails otherwise has
    /// shown its alert and doesn't count as a failure of the whole.
    [[nodiscard]] bool saveSearchPolicies() override;
    void reloadSearchPolicies() override;
    /// The directory service has announced a change. A policy with unsaved edits is left alone.
    void searchPolicyChange();
    void nodeNameChanged(const std::optional<std::string>& oldName,
                         const std::optional<std::string>& newName) override;
    /// May this node be on a policy? The plug-in of its connector decides; without one, all may but the
    /// hidden connectors. The name begins with "/" and names a connector, else `RangeException` is raised.
    [[nodiscard]] bool shouldAllowNodeNameOnSearchPolicy(const std::string& nodeName);

private:
    [[nodiscard]] bool saveBoth();

    Parts parts_;
    Needs& needs_;
};

} // namespace corvane::searchpolicy
