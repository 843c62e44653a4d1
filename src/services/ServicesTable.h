#pragma once

#include "directory/Authorizer.h"
#include "directory/Connection.h"
#include "platform/LocalizedStrings.h"
#include "services/ServicesList.h"
#include "toolkit/TableView.h"

namespace corvane::services {

/// The services list as a table: what the cells show, who may select and edit, and the way to a connector's
/// configuration. Main thread.
class ServicesTable final : public toolkit::TableDataSource, public toolkit::TableDelegate {
public:
    struct Needs {
        virtual ~Needs() = default;
        virtual void setPluginModified(bool modified) = 0;
        /// Is the table on screen?
        [[nodiscard]] virtual bool isServicesPaneShown() = 0;
    };
    struct Outlets {
        toolkit::TableView& selectPlugIn;
        toolkit::Button& configPlugIn;
        toolkit::Label& state; ///< below the table
    };

    ServicesTable(ServicesList& list, directory::Connection& connection,
                  const directory::Authorizer& authorizer, const platform::LocalizedStrings& strings,
                  Outlets outlets, Needs& needs);

    /// Gives the on/off column its check box, then takes it and the version column out of the table:
    /// connectors are switched by their plug-ins. An interface that keeps the columns would find them
    /// working.
    void setUpTable();
    void reloadPluginTable();
    /// Enables the configure button for a selected connector that can be configured.
    void updateConfigEnable();
    void configPlugInAction(toolkit::Control* sender);
    /// Says whether the selected connector is on, and with how many directories.
    void showState();
    /// Shows the state anew where that can be seen: the panel of nodes marks a modification for each row that
    /// it adds.
    void modificationMarked();

    [[nodiscard]] int numberOfRowsInTableView(const toolkit::TableView& table) override;
    [[nodiscard]] toolkit::ObjectValue objectValueForTableColumn(const toolkit::TableView& table,
                                                                 const toolkit::TableColumn& column,
                                                                 int row) override;
    void setObjectValue(const toolkit::TableView& table, bool value, const toolkit::TableColumn& column,
                        int row) override;
    void willDisplayCell(const toolkit::TableView& table, toolkit::Cell& cell,
                         const toolkit::TableColumn& column, int row) override;
    [[nodiscard]] bool shouldSelectRow(const toolkit::TableView& table, int row) override;
    void tableViewSelectionDidChange(const toolkit::TableView& table) override;

private:
    /// Null for a row outside the list.
    [[nodiscard]] std::shared_ptr<plugins::PluginItem> itemAtRow(int row) const;
    [[nodiscard]] toolkit::TableColumn* onOffColumn();
    [[nodiscard]] std::string stateOf(const plugins::PluginItem& item);
    [[nodiscard]] std::string directoriesOf(const std::string& prefix);

    ServicesList& list_;
    directory::Connection& connection_;
    const directory::Authorizer& authorizer_;
    const platform::LocalizedStrings& strings_;
    Outlets outlets_;
    Needs& needs_;
};

} // namespace corvane::services
