#include "searchpolicy/SearchPolicyPane.h"

#include <exception>

#include "searchpolicy/NodeName.h"
#include "searchpolicy/NodePaneController.h"
#include "util/TextFormat.h"

namespace corvane::searchpolicy {
namespace {

constexpr const char* nodeNameColumn = "NodeName";
constexpr const char* defaultEntry = "DefaultEntry";

int rowsOf(const util::Array& list) { return static_cast<int>(list.count()); }
std::size_t index(int row) { return static_cast<std::size_t>(row); }

} // namespace

SearchPolicyPane::SearchPolicyPane(SearchPolicy& policy, const plugins::PluginItems& items,
                                   const directory::Authorizer& authorizer,
                                   platform::Environment& environment, toolkit::Toolkit& toolkit,
                                   Outlets outlets, Needs& needs)
    : policy_(policy), items_(items), authorizer_(authorizer), environment_(environment), toolkit_(toolkit),
      outlets_(outlets), needs_(needs) {}

std::string SearchPolicyPane::localized(std::string_view key) const {
    return environment_.strings.localized(key);
}

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

void SearchPolicyPane::addNodeAction() {
    const auto row = outlets_.nodeTable.selectedRow();
    const auto head = rowsOf(policy_.localOnlyList());
    const int place = row < 0 ? NodePaneController::appendAtEnd : row < head ? head : row + 1;
    policy_.setCustomListChanged();
    needs_.openNodePane(policy_, place);
}

bool SearchPolicyPane::mayDelete(int row) const {
    const auto head = rowsOf(policy_.localOnlyList());
    if (row >= head && row < rowsOf(policy_.customList())) return true;
    // Without a head only a local node in its own place is protected; a row that isn't there raises.
    return !policy_.traits().deleteLooksAtRow && !equalsLocalNodeAtSameRow(row);
}

void SearchPolicyPane::deleteNodeAction(toolkit::Control& sender) {
    auto* window = sender.window();
    if (!mayDelete(outlets_.nodeTable.selectedRow()) || window == nullptr) return;
    deleteSheet_ = toolkit_.makeAlert();
    deleteSheet_->setMessageText(localized("Delete directory domain?"));
    deleteSheet_->setInformativeText(localized("Please confirm deletion."));
    deleteSheet_->setSpokenText(spokenDeleteQuestion());
    deleteSheet_->addButton(localized("OK"));
    deleteSheet_->addButton(localized("Cancel"));
    deleteSheet_->beginSheet(*window, [this](int returnCode) { deleteSheetDidEnd(returnCode); });
}

void SearchPolicyPane::deleteKeyPressed() {
    if (outlets_.deleteNode.isEnabled() && !outlets_.deleteNode.isHidden())
        deleteNodeAction(outlets_.deleteNode);
}

std::string SearchPolicyPane::spokenDeleteQuestion() const {
    std::string names;
    for (const int row : outlets_.nodeTable.selectedRows())
        names += (names.empty() ? "" : ", ") + policy_.customList().textAt(index(row));
    return util::formatted(localized("Please confirm deletion: %@"), {names});
}

void SearchPolicyPane::deleteSheetDidEnd(int returnCode) {
    constexpr int confirmed = 1;
    deleteSheet_.reset();
    if (returnCode != confirmed) return;
    const auto rows = outlets_.nodeTable.selectedRows();
    for (auto row = rows.rbegin(); row != rows.rend(); ++row)
        policy_.customList().removeAt(index(*row));
    policy_.setCustomListChanged();
    needs_.setSearchPolicyModified(true);
    outlets_.nodeTable.deselectAll();
    outlets_.nodeTable.reloadData();
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
    cell.note.clear();
    if (!policy_.details() || column.identifier() != nodeNameColumn) return;
    try {
        cell.textColor = colorOfRow(row);
        // For users who can't distinguish the colours.
        cell.note = cell.textColor == toolkit::TextColor::red ? localized("switched off") : "";
    } catch (const std::exception&) {
        return; // the cell keeps what it had: drawing must not fail
    }
}

toolkit::TextColor SearchPolicyPane::colorOfRow(int row) {
    using toolkit::TextColor;
    if (!authorizer_.unlocked()) return TextColor::gray;
    const bool inHead = policy_.traits().hasFixedHead && row < rowsOf(policy_.localOnlyList());
    // Where there is a head the entry is looked up in any mode: a custom list that is shorter than the list
    // on screen leaves the colour as it was.
    const auto entry =
        policy_.traits().hasFixedHead || inCustomMode() ? policy_.customList().textAt(index(row)) : "";
    if (!inCustomMode() || inHead) return TextColor::gray;
    const auto plugin = items_.pluginWithPrefix(connectorOfNode(entry));
    return plugin && !plugin->isEnabled() ? TextColor::red : TextColor::black;
}

bool SearchPolicyPane::shouldSelectRow(const toolkit::TableView& /*table*/, int row) {
    if (!authorizer_.unlocked()) return false;
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
    if (authorizer_.unlocked())
        updateDeleteEnable();
    else
        outlets_.deleteNode.setEnabled(false);
}

bool SearchPolicyPane::writeRows(toolkit::TableView& /*table*/, const std::vector<int>& rows,
                                 toolkit::Pasteboard& pasteboard) {
    if (!authorizer_.unlocked() || rows.size() != 1 || !mayDrag(rows.front())) return false;
    // The name comes from the custom list, whichever list is on screen.
    const auto name = policy_.customList().textAt(index(rows.front()));
    pasteboard.declareTypes({draggedType});
    pasteboard.setString(name, draggedType);
    return true;
}

bool SearchPolicyPane::mayDrag(int row) const {
    if (policy_.selectedMode() == Mode::automatic) return false;
    if (!policy_.traits().dragLooksAtRow) return true;
    return row >= rowsOf(policy_.localOnlyList()) && row < rowsOf(policy_.customList());
}

toolkit::DragOperation SearchPolicyPane::validateDrop(toolkit::TableView& table,
                                                      const toolkit::DraggingInfo& info, int proposedRow,
                                                      toolkit::DropOperation proposedOperation) {
    using toolkit::DragOperation;
    if (proposedRow == -1 || info.source != &table) return DragOperation::none;
    if (policy_.traits().refusesDropsInHead && proposedRow < rowsOf(policy_.localOnlyList()))
        return DragOperation::none;
    return proposedOperation == toolkit::DropOperation::above ? DragOperation::move : DragOperation::none;
}

bool SearchPolicyPane::acceptDrop(toolkit::TableView& /*table*/, const toolkit::DraggingInfo& info, int row,
                                  toolkit::DropOperation /*operation*/) {
    const auto name = info.pasteboard.stringForType(draggedType);
    if (!name) return false;
    policy_.setCustomListChanged();
    const int place = moveNode(*name, row);
    // Both on purpose: the selection is the authentication table's even after a drop on the other one, and
    // the mark is the services' one, which enables Apply just the same.
    needs_.selectRowInAuthenticationTable(place);
    needs_.setPluginModified(true);
    outlets_.nodeTable.reloadData();
    return true;
}

int SearchPolicyPane::moveNode(const std::string& name, int row) {
    auto list = policy_.customList();
    const auto found = list.indexOf(name);
    list.insert(name, index(row));
    if (!found) return row;
    const auto old = *found + (*found > index(row) ? 1U : 0U); // the insertion has moved what comes after it
    const bool beyond = policy_.traits().toleratesOldPlaceBeyondEnd && old >= list.count();
    if (beyond) return row;
    list.removeAt(old);
    return old < index(row) ? row - 1 : row;
}

} // namespace corvane::searchpolicy
