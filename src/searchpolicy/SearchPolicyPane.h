#pragma once

#include "directory/Authorizer.h"
#include "plugins/PluginItem.h"
#include "searchpolicy/SearchPolicy.h"

namespace corvane::searchpolicy {

/// One policy's controls: what the table of nodes shows and in which colour, which rows may be selected,
/// added, deleted and dragged, and the change of mode. Two instances, as of `SearchPolicy`. Main thread.
class SearchPolicyPane final : public toolkit::TableDataSource,
                               public toolkit::TableDelegate,
                               public toolkit::TableDragHandler {
public:
    /// The type of what is dragged: a node's name as plain text.
    static constexpr const char* draggedType = "DirNodeNamePasteboardType";

    struct Needs {
        virtual ~Needs() = default;
        virtual void setSearchPolicyModified(bool modified) = 0;
        virtual void setPluginModified(bool modified) = 0;
        /// Runs the panel of nodes to add as a sheet: it inserts into the policy's list at `index`, or at the
        /// end.
        virtual void openNodePane(SearchPolicy& policy, int index) = 0;
        /// Selects a row, alone, in the authentication policy's table, whichever policy asks.
        virtual void selectRowInAuthenticationTable(int row) = 0;
    };
    struct Outlets {
        toolkit::PopUpButton& modeChooser;
        toolkit::TableView& nodeTable;
        toolkit::Button& addNode;
        toolkit::Button& deleteNode;
        toolkit::View& dragMessage;
    };

    SearchPolicyPane(SearchPolicy& policy, const plugins::PluginItems& items,
                     const directory::Authorizer& authorizer, platform::Environment& environment,
                     toolkit::Toolkit& toolkit, Outlets outlets, Needs& needs);

    [[nodiscard]] SearchPolicy& policy() { return policy_; }
    void reloadTable() { outlets_.nodeTable.reloadData(); }
    /// Shows the add button, the delete button and the reordering hint in Custom mode only.
    void adjustCustomBox();
    void updateDeleteEnable();
    /// The user has chosen a mode. Choosing the one already chosen changes nothing.
    void selectModeAction();
    /// Opens the panel of nodes. The list counts as edited from here on, even if nothing comes of it.
    void addNodeAction();
    /// Asks for confirmation in a sheet on the sender's window, then deletes every selected row.
    void deleteNodeAction(toolkit::Control& sender);
    /// Does what a press of the delete button does, if it can be pressed.
    void deleteKeyPressed();

    [[nodiscard]] int numberOfRowsInTableView(const toolkit::TableView& table) override;
    [[nodiscard]] toolkit::ObjectValue objectValueForTableColumn(const toolkit::TableView& table,
                                                                 const toolkit::TableColumn& column,
                                                                 int row) override;
    /// The node tables aren't edited in place.
    void setObjectValue(const toolkit::TableView& table, bool value, const toolkit::TableColumn& column,
                        int row) override;
    void willDisplayCell(const toolkit::TableView& table, toolkit::Cell& cell,
                         const toolkit::TableColumn& column, int row) override;
    [[nodiscard]] bool shouldSelectRow(const toolkit::TableView& table, int row) override;
    void tableViewSelectionDidChange(const toolkit::TableView& table) override;

    [[nodiscard]] bool writeRows(toolkit::TableView& table, const std::vector<int>& rows,
                                 toolkit::Pasteboard& pasteboard) override;
    [[nodiscard]] toolkit::DragOperation validateDrop(toolkit::TableView& table,
                                                      const toolkit::DraggingInfo& info, int proposedRow,
                                                      toolkit::DropOperation proposedOperation) override;
    [[nodiscard]] bool acceptDrop(toolkit::TableView& table, const toolkit::DraggingInfo& info, int row,
                                  toolkit::DropOperation operation) override;

private:
    [[nodiscard]] bool inCustomMode() const { return policy_.selectedMode() == Mode::custom; }
    [[nodiscard]] toolkit::TextColor colorOfRow(int row);
    [[nodiscard]] bool equalsLocalNodeAtSameRow(int row) const;
    [[nodiscard]] bool mayDelete(int row) const;
    /// The question for those who don't see the selected rows.
    [[nodiscard]] std::string spokenDeleteQuestion() const;
    void deleteSheetDidEnd(int returnCode);
    [[nodiscard]] bool mayDrag(int row) const;
    /// Moves the first entry of that name to `row`; the row that it ends up in.
    [[nodiscard]] int moveNode(const std::string& name, int row);
    [[nodiscard]] std::string localized(std::string_view key) const;

    SearchPolicy& policy_;
    const plugins::PluginItems& items_;
    const directory::Authorizer& authorizer_;
    platform::Environment& environment_;
    toolkit::Toolkit& toolkit_;
    Outlets outlets_;
    Needs& needs_;
    std::unique_ptr<toolkit::Alert> deleteSheet_;
};

} // namespace corvane::searchpolicy
