#pragma once

#include <functional>
#include <memory>
#include <string>

#include "searchpolicy/NodePaneController.h"
#include "searchpolicy/SearchPolicies.h"
#include "toolkit/Window.h"

namespace corvane::searchpolicy {

/// The panel of nodes as a sheet on the main window, made when it is first wanted. It inserts into the list
/// of the policy that has opened it. Main thread.
class NodePaneSheet final : public NodePaneController::Parent {
public:
    struct Needs {
        virtual ~Needs() = default;
        virtual void setPluginModified(bool modified) = 0;
    };
    struct Parts {
        toolkit::Window& window;
        /// Loads the panel's interface file.
        std::function<NodePaneController::Outlets()> load;
        SearchPolicies& policies;
        directory::Connection& connection;
    };

    NodePaneSheet(Parts parts, platform::Environment& environment, toolkit::Toolkit& toolkit, Needs& needs)
        : parts_(std::move(parts)), environment_(environment), toolkit_(toolkit), needs_(needs) {}

    /// What is chosen goes into the policy's custom list at `index`, or at the end.
    void open(SearchPolicy& policy, int index);
    /// The policy's custom list is another object from here on, or gone.
    void customListReplaced(SearchPolicy& policy);
    [[nodiscard]] NodePaneController& sharedNodePaneController();

private:
    void closed(toolkit::Window& sheet);

    [[nodiscard]] std::shared_ptr<halden::Session> haldenSession() override {
        return parts_.connection.haldenSession();
    }
    [[nodiscard]] bool shouldAllowNodeNameOnSearchPolicy(const std::string& nodeName) override {
        return parts_.policies.shouldAllowNodeNameOnSearchPolicy(nodeName);
    }
    void refreshTable() override { parts_.policies.refreshTable(); }
    void setPluginModified(bool modified) override { needs_.setPluginModified(modified); }
    void endSheet(toolkit::Window& sheet) override { parts_.window.endSheet(sheet, 0); }

    Parts parts_;
    platform::Environment& environment_;
    toolkit::Toolkit& toolkit_;
    Needs& needs_;
    std::unique_ptr<NodePaneController> controller_;
    SearchPolicy* policy_ = nullptr; ///< while the panel is open
};

} // namespace corvane::searchpolicy
