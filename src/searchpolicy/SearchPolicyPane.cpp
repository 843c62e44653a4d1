#include "searchpolicy/SearchPolicyPane.h"

#include <exception>

#include "searchpolicy/NodeName.h"

namespace corvane::searchpolicy {
namespace {

constexpr const char* nodeNameColumn = "NodeName";
constexpr const char* defaultEntry = "DefaultEntry";

int rowsOf(const util::Array& list) { return static_cast<int>(list.count()); }
std::size_t index(int row) { return static_cast<std::size_t>(row); }

} // namespace

SearchPolicyPane::SearchPolicyPane(SearchPolicy& policy, Outlets outlets, Needs& needs)
    : policy_(policy), outlets_(outlets), needs_(needs) {}

void SearchPolicyPane::adjustCustomBox() {
    const bool hidden = !inCustomMode();
    outlets_.addNode.setHidden(hidden);
    outlets_.deleteNode.setHidden(hidden);
    outlets_.dragMessage.setHidden(hidden);
}

void SearchPolicyPane::updateDeleteEnable() {
    const auto row = outlets_.nodeTable.selectedRow();
    const bool afterHead = row >= rowsOf(policy_.localOnlyList()) && row < rowsOf(policy_.customList());
    outlets_.deleteNode.setEnabled(policy_.traits().deleteLooksAtRow ? afterHead : row >= 0);
}

void SearchPolicyPane::selectModeAction() {
    const auto chosen = outlets_.modeChooser.indexOfSelectedItem();
    if (chosen < 0) return;
    const auto mode = static_cast<Mode>(chosen + 1);
    if (mode == policy_.selectedMode()) return;
    policy_.setSelectedMode(mode);
    if (const auto row = outlets_.nodeTable.selectedRow(); row >= 0) outlets_.nodeTable.deselectRow(row);
    outlets_.nodeTable.reloadData();
    adjustCustomBox();
    needs_.setSearchPolicyModified(true);
}

int SearchPolicyPane::numberOfRowsInTableView(const toolkit::TableView& /*table*/) {
    return rowsOf(policy_.shownList());
}

toolkit::ObjectValue SearchPolicyPane::objectValueForTableColumn(const toolkit::TableView& /*table*/,
                                                                 const toolkit::TableColumn& column,
                                                                 int row) {
    const auto list = policy_.shownList();
    if (!policy_.details() || column.identifier() != nodeNameColumn || row < 0 || row >= rowsOf(list))
        return defaultEntry;
    return list.textAt(index(row));
}

void SearchPolicyPane::setObjectValue(const toolkit::TableView& /*table*/, bool /*value*/,
                                      const toolkit::TableColumn& /*column*/, int /*row*/) {}

void SearchPolicyPane::willDisplayCell(const toolkit::TableView& /*table*/, toolkit::Cell& cell,
                                       const toolkit::TableColumn& column, int row) {
    if (!policy_.details() || column.identifier() != nodeNameColumn) return;
    try {
        cell.textColor = colorOfRow(row);
    } catch (const std::exception&) {
        return; // the cell keeps the colour it had: drawing must not fail
    }
}

toolkit::TextColor SearchPolicyPane::colorOfRow(int row) {
    using toolkit::TextColor;
    if (!needs_.unlocked()) return TextColor::gray;
    const bool inHead = policy_.traits().hasFixedHead && row < rowsOf(policy_.localOnlyList());
    // Where there is a head the entry is looked up in any mode: a custom list that is shorter than the list
    // on screen leaves the colour as it was.
    const auto entry =
        policy_.traits().hasFixedHead || inCustomMode() ? policy_.customList().textAt(index(row)) : "";
    if (!inCustomMode() || inHead) return TextColor::gray;
    const auto plugin = needs_.pluginWithPrefix(connectorOfNode(entry));
    return plugin && !plugin->isEnabled() ? TextColor::red : TextColor::black;
}

bool SearchPolicyPane::shouldSelectRow(const toolkit::TableView& /*table*/, int row) {
    if (!needs_.unlocked()) return false;
    if (!policy_.details()) return true;
    if (policy_.traits().refusesAllRowsOutsideCustom) {
        if (!inCustomMode()) return false;
        return row < 0 || row >= rowsOf(policy_.localOnlyList()) || !equalsLocalNodeAtSameRow(row);
    }
    const bool automatic = policy_.selectedMode() == Mode::automatic;
    const auto fixed = automatic ? policy_.automaticList() : policy_.localOnlyList();
    return row < 0 || row >= rowsOf(fixed);
}

bool SearchPolicyPane::equalsLocalNodeAtSameRow(int row) const {
    return policy_.localOnlyList().at(index(row)) == policy_.customList().at(index(row));
}

void SearchPolicyPane::tableViewSelectionDidChange(const toolkit::TableView& /*table*/) {
    if (needs_.unlocked())
        updateDeleteEnable();
    else
        outlets_.deleteNode.setEnabled(false);
}

} // namespace corvane::searchpolicy
