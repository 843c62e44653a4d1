#pragma once

#include <memory>
#include <optional>
#include <string>

#include "directory/Connection.h"
#include "platform/Environment.h"
#include "plugins/HostParts.h"
#include "searchpolicy/SearchPolicyTraits.h"
#include "toolkit/Controls.h"
#include "toolkit/TableView.h"
#include "toolkit/Toolkit.h"
#include "util/AuthorizationExternalForm.h"
#include "util/DeepMutableCopy.h"

namespace corvane::searchpolicy {

/// One search policy: the copy that is edited, and the ways in from and out to the directory service. The
/// authentication and contacts policies are two instances with different traits. Main thread.
class SearchPolicy final : public plugins::HostPolicy {
public:
    struct Needs {
        virtual ~Needs() = default;
        virtual void setSearchPolicyModified(bool modified) = 0;
        virtual void hideProgressBar() = 0;
        /// The policy's custom list is another object from here on, or gone.
        virtual void customListReplaced(SearchPolicy& policy) = 0;
    };
    struct Outlets {
        toolkit::PopUpButton& modeChooser;
        toolkit::TableView& nodeTable;
        toolkit::Notice& remarks; ///< what of the configuration isn't used, and why
    };

    SearchPolicy(const SearchPolicyTraits& traits, directory::Connection& connection,
                 platform::Environment& environment, toolkit::Toolkit& toolkit, Outlets outlets,
                 Needs& needs);
    SearchPolicy(const SearchPolicy&) = delete;
    SearchPolicy& operator=(const SearchPolicy&) = delete;

    [[nodiscard]] const SearchPolicyTraits& traits() const { return traits_; }

    /// What the service refused when the policy was saved last, as far as it is still unsaved.
    struct Refusal {
        bool customList = false;
        bool mode = false;
        halden::Error error; ///< of the first call that was refused
    };

    /// Reads the policy from its search node and shows it; an unsaved choice of mode is lost. A failure is
    /// shown in an alert and leaves the policy not loaded.
    void buildPaneData();
    [[nodiscard]] bool isLoaded() const { return loaded_; }
    void invalidate() { loaded_ = false; }
    /// The session is another one: what was read is void.
    void forgetDetails();

    /// Null until the first read.
    [[nodiscard]] const util::Dictionary& details() const { return details_; }
    /// The lists themselves, empty when there are none: editing these lists edits the policy.
    [[nodiscard]] util::Array automaticList() const;
    [[nodiscard]] util::Array localOnlyList() const;
    [[nodiscard]] util::Array customList() const;
    /// The list that the chosen mode uses; empty in no mode.
    [[nodiscard]] util::Array shownList() const;
    /// The list that the service uses, as it was last read or written.
    [[nodiscard]] util::Array listInService() const;
    /// Reads the policy unless it is loaded or has edits that must stay; a failure is not shown.
    void readIfStale();

    [[nodiscard]] Mode selectedMode() const { return selectedMode_; }
    void setSelectedMode(Mode mode) { selectedMode_ = mode; }
    [[nodiscard]] Mode pastMode() const { return pastMode_; }
    [[nodiscard]] bool customListChanged() const { return customListChanged_; }
    void setCustomListChanged() { customListChanged_ = true; }
    [[nodiscard]] bool hasUnsavedEdits() const { return customListChanged_ || selectedMode_ != pastMode_; }
    /// Null when nothing was refused, or nothing of it is unsaved any longer.
    [[nodiscard]] const Refusal* refusal() const;
    /// Lets the service know that another program's change was read, after which it takes changes again; what
    /// is edited stays as it is. A failure is left to the next save to report.
    void acknowledgeOtherChanges();
    /// Shows the policy as the service has it. Where it can't be read the edits stay.
    void dropEdits();
    /// Shows the chosen mode in the pop-up.
    void selectModeInChooser();

    /// These read the policy first if that hasn't happened.
    [[nodiscard]] bool isNodeOnSearchPolicy(const std::string& nodeName) override;
    /// The add and delete buttons are left as they are.
    void addNode(const std::string& nodeName) override;
    void deleteNode(const std::string& nodeName) override;
    void deleteNodesWithPrefix(const std::string& prefix) override;
    /// Replaces the first occurrence in its place.
    void renameNode(const std::string& oldName, const std::string& newName);

    /// Writes what was edited: the custom list, then the mode. A call that fails shows an alert and leaves
    /// its part unsaved, to be tried by the next save. False only when the search node can't be opened.
    [[nodiscard]] bool save(const util::AuthorizationExternalForm& authForm);

private:
    void readDetails();
    void setDetails(util::Dictionary details);
    void readMode();
    void showRemarks();
    void readIfNeeded();
    void markCustomListEdited();
    [[nodiscard]] util::Array listOf(Mode mode) const;
    [[nodiscard]] util::Array list(std::string_view attribute) const;
    [[nodiscard]] std::shared_ptr<halden::Node> openSearchNode(halden::Error* error);
    /// Null when there is no list.
    [[nodiscard]] util::Array customListToWrite() const;
    void saveMode(halden::Node& node, const util::AuthorizationExternalForm& authForm);
    [[nodiscard]] bool saveSearchPolicy(halden::Node& node, const util::AuthorizationExternalForm& authForm,
                                        const util::Array& custom);
    [[nodiscard]] bool changePolicy(std::int32_t code, const util::AuthorizationExternalForm& authForm,
                                    halden::Node& node);
    [[nodiscard]] bool succeeded(const halden::Error& error);
    [[nodiscard]] bool wasTaken(const halden::Error& error, bool Refusal::*part);
    void showAlert(const std::string& message, const std::string& information, const std::string& button);

    const SearchPolicyTraits& traits_;
    directory::Connection& connection_;
    platform::Environment& environment_;
    toolkit::Toolkit& toolkit_;
    Outlets outlets_;
    Needs& needs_;
    util::Dictionary details_;
    util::Array savedCustomList_; ///< as the service has it; the one in the details is edited
    Mode selectedMode_ = Mode::notYetKnown;
    Mode pastMode_ = Mode::notYetKnown;
    std::optional<Refusal> refusal_;
    bool customListChanged_ = false;
    bool loaded_ = false;
};

} // namespace corvane::searchpolicy
