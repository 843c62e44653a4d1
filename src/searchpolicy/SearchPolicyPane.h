#pragma once

#include "plugins/PluginItem.h"
#include "searchpolicy/SearchPolicy.h"

namespace corvane::searchpolicy {

/// One policy's controls: what the table of nodes shows and in which colour, which rows may be selected, and
/// the change of mode. Two instances, as of `SearchPolicy`. Main thread.
class SearchPolicyPane final : public toolkit::TableDataSource, public toolkit::TableDelegate {
public:
    /// The type of what is dragged: a node's name as plain text.
    static constexpr const char* draggedType = "DirNodeNamePasteboardType";

    struct Needs {
        virtual ~Needs() = default;
        [[nodiscard]] virtual bool unlocked() = 0;
        [[nodiscard]] virtual std::shared_ptr<plugins::PluginItem>
        pluginWithPrefix(const std::string& prefix) = 0;
        virtual void setSearchPolicyModified(bool modified) = 0;
    };
    struct Outlets {
        toolkit::PopUpButton& modeChooser;
        toolkit::TableView& nodeTable;
        toolkit::Button& addNode;
        toolkit::Button& deleteNode;
        toolkit::View& dragMessage;
    };

    SearchPolicyPane(SearchPolicy& policy, Outlets outlets, Needs& needs);

    /// Shows the add button, the delete button and the reordering hint in Custom mode only.
    void adjustCustomBox();
    void updateDeleteEnable();
    /// The user has chosen a mode. Choosing the one already chosen changes nothing.
    void selectModeAction();

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

private:
    [[nodiscard]] bool inCustomMode() const { return policy_.selectedMode() == Mode::custom; }
    [[nodiscard]] toolkit::TextColor colorOfRow(int row);
    [[nodiscard]] bool equalsLocalNodeAtSameRow(int row) const;

    SearchPolicy& policy_;
    Outlets outlets_;
    Needs& needs_;
};

} // namespace corvane::searchpolicy
