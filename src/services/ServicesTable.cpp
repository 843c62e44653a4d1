#include "services/ServicesTable.h"

#include <exception>

namespace corvane::services {
namespace {

constexpr const char* defaultEntry = "DefaultEntry";
/// Interface files of old spell the on/off column with a slash.
constexpr const char* onOff = "On-Off";
constexpr const char* onOffOfOld = "On/Off";

bool isOnOff(const std::string& identifier) { return identifier == onOff || identifier == onOffOfOld; }

std::shared_ptr<toolkit::Cell> checkBoxCell() {
    auto cell = std::make_shared<toolkit::Cell>();
    cell->type = toolkit::CellType::checkBox;
    cell->imagePosition = toolkit::ImagePosition::above;
    return cell;
}

} // namespace

ServicesTable::ServicesTable(ServicesList& list, Outlets outlets, Needs& needs)
    : list_(list), outlets_(outlets), needs_(needs) {}

void ServicesTable::setUpTable() {
    auto& table = outlets_.selectPlugIn;
    if (auto* column = onOffColumn()) {
        column->setDataCell(checkBoxCell());
        table.removeTableColumn(*column);
    }
    if (auto* column = table.tableColumnWithIdentifier("Version")) table.removeTableColumn(*column);
    table.sizeToFit();
    table.setDoubleAction([this](toolkit::Control& sender) { configPlugInAction(&sender); });
}

toolkit::TableColumn* ServicesTable::onOffColumn() {
    auto* column = outlets_.selectPlugIn.tableColumnWithIdentifier(onOff);
    return column != nullptr ? column : outlets_.selectPlugIn.tableColumnWithIdentifier(onOffOfOld);
}

void ServicesTable::reloadPluginTable() { outlets_.selectPlugIn.reloadData(); }

std::shared_ptr<plugins::PluginItem> ServicesTable::itemAtRow(int row) const {
    if (row < 0 || static_cast<std::size_t>(row) >= list_.count()) return nullptr;
    return (*list_.items())[static_cast<std::size_t>(row)];
}

void ServicesTable::updateConfigEnable() {
    const auto item = itemAtRow(outlets_.selectPlugIn.selectedRow());
    outlets_.configPlugIn.setEnabled(item && item->canConfigure());
}

void ServicesTable::configPlugInAction(toolkit::Control* sender) {
    if (const auto item = itemAtRow(outlets_.selectPlugIn.selectedRow()))
        item->configureButtonClicked(sender);
}

int ServicesTable::numberOfRowsInTableView(const toolkit::TableView& /*table*/) {
    return static_cast<int>(list_.count());
}

toolkit::ObjectValue ServicesTable::objectValueForTableColumn(const toolkit::TableView& /*table*/,
                                                              const toolkit::TableColumn& column, int row) {
    const auto item = itemAtRow(row);
    if (!item) return defaultEntry;
    const auto identifier = column.identifier();
    if (isOnOff(identifier)) {
        auto cell = column.dataCell();
        if (!cell) return defaultEntry;
        cell->on = item->isEnabledForLocation(nullptr);
        return cell;
    }
    if (identifier == "Name") return item->pluginName();
    if (identifier == "Version") return item->pluginVersion();
    return defaultEntry;
}

void ServicesTable::setObjectValue(const toolkit::TableView& /*table*/, bool value,
                                   const toolkit::TableColumn& column, int row) {
    const auto item = itemAtRow(row);
    if (!item || !isOnOff(column.identifier())) return;
    item->setEnabledForLocation(value, nullptr);
    needs_.setPluginModified(true);
}

void ServicesTable::willDisplayCell(const toolkit::TableView& /*table*/, toolkit::Cell& cell,
                                    const toolkit::TableColumn& column, int row) {
    try {
        const auto identifier = column.identifier();
        const bool unlocked = needs_.unlocked();
        if (isOnOff(identifier)) {
            const auto item = unlocked ? itemAtRow(row) : nullptr;
            cell.enabled = item && item->canSetEnabledForLocation(nullptr);
        } else if (identifier == "Name" || identifier == "Version") {
            cell.textColor = unlocked ? toolkit::TextColor::black : toolkit::TextColor::gray;
        }
    } catch (const std::exception&) {
        // A cell that can't be decided is drawn as it was: drawing must not fail.
        return;
    }
}

bool ServicesTable::shouldSelectRow(const toolkit::TableView& /*table*/, int /*row*/) {
    return needs_.unlocked();
}

void ServicesTable::tableViewSelectionDidChange(const toolkit::TableView& /*table*/) {
    if (needs_.unlocked())
        updateConfigEnable();
    else
        outlets_.configPlugIn.setEnabled(false);
}

} // namespace corvane::services
