#include "services/ServicesTable.h"

#include <exception>

#include "halden/ConnectorNames.h"
#include "util/TextFormat.h"

namespace corvane::services {
namespace {

constexpr const char* defaultEntry = "DefaultEntry";
/// Older interface files spell the on/off column with a slash.
constexpr const char* onOff = "On-Off";
constexpr const char* formerOnOff = "On/Off";

bool isOnOff(const std::string& identifier) { return identifier == onOff || identifier == formerOnOff; }

std::shared_ptr<toolkit::Cell> checkBoxCell() {
    auto cell = std::make_shared<toolkit::Cell>();
    cell->type = toolkit::CellType::checkBox;
    cell->imagePosition = toolkit::ImagePosition::above;
    return cell;
}

} // namespace

ServicesTable::ServicesTable(ServicesList& list, directory::Connection& connection,
                             const directory::Authorizer& authorizer,
                             const platform::LocalizedStrings& strings, Outlets outlets, Needs& needs)
    : list_(list), connection_(connection), authorizer_(authorizer), strings_(strings), outlets_(outlets),
      needs_(needs) {}

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
    return column != nullptr ? column : outlets_.selectPlugIn.tableColumnWithIdentifier(formerOnOff);
}

void ServicesTable::reloadPluginTable() {
    outlets_.selectPlugIn.reloadData();
    showState();
}

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

void ServicesTable::showState() {
    const auto item = itemAtRow(outlets_.selectPlugIn.selectedRow());
    outlets_.state.setText(item ? stateOf(*item) : "");
}

void ServicesTable::modificationMarked() {
    if (needs_.isServicesPaneShown()) showState();
}

std::string ServicesTable::stateOf(const plugins::PluginItem& item) {
    const bool on = item.isEnabledForLocation(nullptr);
    const auto said = [&](std::string_view format) {
        return util::formatted(strings_.localized(format), {item.pluginName()});
    };
    if (on != item.isActive())
        return on ? said("%@ is on once you apply the change.")
                  : said("%@ is off once you apply the change.");
    if (!on) return said("%@ is off: none of its directories is used.");
    const auto prefix = item.pluginPrefix();
    const bool isTheMachines = prefix == halden::connector::local || prefix == halden::connector::bsd;
    return isTheMachines ? said("%@ is on.") : said("%@ is on, ") + directoriesOf(prefix);
}

/// "with two servers." or the like.
std::string ServicesTable::directoriesOf(const std::string& prefix) {
    const auto session = connection_.haldenSession();
    const auto names = session ? session->nodeNames(nullptr) : util::Array();
    std::size_t count = 0;
    if (names)
        for (const auto& name : names.texts())
            count += name.starts_with("/" + prefix + "/") ? 1 : 0;
    const bool areServers = prefix == halden::connector::ldap;
    if (count == 0) return strings_.localized(areServers ? "without a server." : "without a directory.");
    if (count == 1) return strings_.localized(areServers ? "with one server." : "with one directory.");
    return util::formatted(strings_.localized(areServers ? "with %@ servers." : "with %@ directories."),
                           {std::to_string(count)});
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
        const bool unlocked = authorizer_.unlocked();
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
    return authorizer_.unlocked();
}

void ServicesTable::tableViewSelectionDidChange(const toolkit::TableView& /*table*/) {
    if (authorizer_.unlocked())
        updateConfigEnable();
    else
        outlets_.configPlugIn.setEnabled(false);
    showState();
}

} // namespace corvane::services
