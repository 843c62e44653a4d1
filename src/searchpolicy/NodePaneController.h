#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "halden/Session.h"
#include "platform/Environment.h"
#include "toolkit/Controls.h"
#include "toolkit/TableView.h"
#include "toolkit/Toolkit.h"
#include "util/Containers.h"

namespace corvane::searchpolicy {

/// The panel that offers directory nodes to be put on a custom policy. One panel serves both policies; each
/// opening sets it up anew. It inserts into the very list that the policy holds. Main thread.
class NodePaneController final : public toolkit::TableDataSource {
public:
    /// The controller that opened the panel.
    struct Parent {
        virtual ~Parent() = default;
        [[nodiscard]] virtual std::shared_ptr<halden::Session> haldenSession() = 0;
        [[nodiscard]] virtual bool shouldAllowNodeNameOnSearchPolicy(const std::string& nodeName) = 0;
        /// Redraws the tables of both policies.
        virtual void refreshTable() = 0;
        virtual void setPluginModified(bool modified) = 0;
        virtual void endSheet(toolkit::Window& sheet) = 0;
    };
    /// Controls of the interface file "AddNodes".
    struct Outlets {
        toolkit::Window& window;
        toolkit::TableView& selectNode; ///< column "NodeName"
        toolkit::TextField& filter;     ///< narrows the rows down as the user types
        toolkit::Button& addButton;
        toolkit::Button& doneButton;
    };
    /// The place that means the end of the list.
    static constexpr int appendAtEnd = -1;
    /// A legacy node that is never offered.
    static constexpr const char* legacyLocalNode = "/Local/Former";

    NodePaneController(platform::Environment& environment, toolkit::Toolkit& toolkit, Outlets outlets);
    NodePaneController(const NodePaneController&) = delete;
    NodePaneController& operator=(const NodePaneController&) = delete;

    /// Null is ignored. Borrowed.
    void setParentController(Parent* parent);
    /// The list to insert into, and the names that aren't offered. A null list is ignored.
    void setCustomNodeArray(const util::Array& list);
    void setOmittedNodes(const util::Array& list);
    /// Where the next chosen node goes, or `appendAtEnd`.
    void setCustomNodeIndex(int index) { cspNodeInsertIndex_ = index; }
    /// Reads the session's nodes and shows those that may be chosen; none without a list to add them to. A
    /// failure leaves the panel as it is.
    void buildNodePaneData();
    /// The policy was read again while the panel is open: its list is another one. The rows stay.
    void replaceCustomNodeArray(const util::Array& list);
    /// The panel is closed: from here on it adds to no list until it is given one.
    void forgetCustomNodeArray() { cspNodeArray_ = {}; }

    /// Inserts the selected nodes in the order of their rows, reports duplicates, and ends the sheet.
    void addNodeAction();
    void doneAction();
    void windowWillClose();

    [[nodiscard]] toolkit::Window& window() { return outlets_.window; }

    [[nodiscard]] int numberOfRowsInTableView(const toolkit::TableView& table) override;
    [[nodiscard]] toolkit::ObjectValue objectValueForTableColumn(const toolkit::TableView& table,
                                                                 const toolkit::TableColumn& column,
                                                                 int row) override;
    void setObjectValue(const toolkit::TableView& table, bool value, const toolkit::TableColumn& column,
                        int row) override;

private:
    void showRows();
    void filterRows();
    [[nodiscard]] bool insertNode(const std::string& name);
    void reportDuplicates(int count);

    platform::Environment& environment_;
    toolkit::Toolkit& toolkit_;
    Outlets outlets_;
    std::vector<std::string> fullNodeArray_;
    std::optional<std::vector<std::string>> nodeArray_; ///< the rows
    std::unordered_set<std::string> omitSet_;
    util::Array cspNodeArray_;
    int cspNodeInsertIndex_ = appendAtEnd;
    Parent* parent_ = nullptr;
};

} // namespace corvane::searchpolicy
