#pragma once

#include "qt/HandlerGuard.h"
#include "qt/adapters/QtView.h"
#include "qt/widgets/TableModel.h"
#include "qt/widgets/TableWidget.h"
#include "toolkit/TableView.h"

namespace corvane::qt {

class QtTableView final : public QtControl<toolkit::TableView, TableWidget> {
public:
    struct Column {
        std::string identifier;
        QString title;
    };
    QtTableView(TableWidget& table, const std::vector<Column>& columns, HandlerGuard& guard);
    ~QtTableView() override;

    void setDataSource(toolkit::TableDataSource* source) override;
    void setDelegate(toolkit::TableDelegate* delegate) override;
    void setDoubleAction(Action action) override { doubleAction_ = std::move(action); }
    void setDeleteAction(Action action) override { deleteAction_ = std::move(action); }
    [[nodiscard]] toolkit::TableColumn* tableColumnWithIdentifier(std::string_view identifier) override;
    void removeTableColumn(toolkit::TableColumn& column) override;
    void sizeToFit() override;
    void registerForDraggedTypes(const std::vector<std::string>& types) override {
        model_.draggedTypes = types;
    }
    [[nodiscard]] const std::vector<std::string>& registeredDraggedTypes() const {
        return model_.draggedTypes;
    }
    /// Rows can also be moved with Alt and the arrow keys.
    void setDragHandler(toolkit::TableDragHandler* handler) override;

    void reloadData() override;
    [[nodiscard]] int numberOfRows() const override { return model_.rowCount(); }
    void setEmptyMessage(std::string_view message) override;

    void setAllowsEmptySelection(bool allows) override { selection_.allowsEmpty = allows; }
    void setAllowsMultipleSelection(bool allows) override;
    [[nodiscard]] int selectedRow() const override { return lastSelected_; }
    [[nodiscard]] std::vector<int> selectedRows() const override;
    void selectRow(int row, bool byExtendingSelection) override;
    void deselectRow(int row) override;
    void deselectAll() override;

private:
    [[nodiscard]] bool mayUserSelect(int row);
    void runDoubleAction();
    void runDeleteAction();
    bool toggleCheckBox(const QModelIndex& where);
    void changeSelection(int row, QItemSelectionModel::SelectionFlags command);
    /// Works out what is selected now and tells the delegate if that is news.
    void selectionMayHaveChanged();

    HandlerGuard& guard_;
    TableModel model_;
    TableSelectionModel selection_;
    TableCellDelegate cells_;
    Action doubleAction_;
    Action deleteAction_;
    std::vector<int> known_; ///< the selection that the delegate knows of
    int lastSelected_ = -1;
};

} // namespace corvane::qt
