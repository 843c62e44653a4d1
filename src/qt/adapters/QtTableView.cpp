#include "qt/adapters/QtTableView.h"

#include <QHeaderView>
#include <algorithm>

namespace corvane::qt {

QtTableView::QtTableView(TableWidget& table, const std::vector<Column>& columns, HandlerGuard& guard)
    : QtControl(table), guard_(guard), model_(*this, guard, nullptr), selection_(&model_, nullptr) {
    for (const auto& column : columns)
        model_.addColumn(std::make_unique<QtTableColumn>(column.identifier, column.title));
    table.setModel(&model_);
    table.setSelectionModel(&selection_);
    table.setItemDelegate(&cells_);
    selection_.mayUserSelect = table.mayUserSelect = [this](int row) { return mayUserSelect(row); };
    table.activate = [this] { runDoubleAction(); };
    table.pressDelete = [this] { runDeleteAction(); };
    table.press = [this](const QModelIndex& index) { return toggleCheckBox(index); };
    QObject::connect(&selection_, &QItemSelectionModel::selectionChanged, &context_, [this] {
        if (selection_.isProgramChange()) return;
        guard_.run("a selection", [this] { selectionMayHaveChanged(); });
    });
    sizeToFit();
}

QtTableView::~QtTableView() {
    widget_.mayUserSelect = nullptr;
    widget_.activate = nullptr;
    widget_.pressDelete = nullptr;
    widget_.press = nullptr;
    widget_.moveSelectedRow = nullptr;
    model_.dragHandler = nullptr;
    model_.source = nullptr;
    model_.delegate = nullptr;
}

void QtTableView::setDataSource(toolkit::TableDataSource* source) {
    model_.source = source;
    reloadData();
}

void QtTableView::setDelegate(toolkit::TableDelegate* delegate) {
    model_.delegate = delegate;
    widget_.viewport()->update();
}

void QtTableView::setDragHandler(toolkit::TableDragHandler* handler) {
    model_.dragHandler = handler;
    widget_.setDragEnabled(handler != nullptr);
    widget_.setAcceptDrops(handler != nullptr);
    widget_.setDropIndicatorShown(true);
    widget_.setDragDropMode(handler ? QAbstractItemView::DragDrop : QAbstractItemView::NoDragDrop);
    widget_.setDefaultDropAction(Qt::MoveAction);
    widget_.moveSelectedRow = [this](int step) {
        const auto rows = selectedRows();
        return rows.size() == 1 && model_.moveRowByOne(rows.front(), step);
    };
}

toolkit::TableColumn* QtTableView::tableColumnWithIdentifier(std::string_view identifier) {
    return model_.column(identifier);
}

void QtTableView::removeTableColumn(toolkit::TableColumn& column) {
    const TableSelectionModel::ProgramChange byProgram(selection_);
    model_.removeColumn(column);
    sizeToFit();
}

void QtTableView::sizeToFit() {
    auto* header = widget_.header();
    header->setStretchLastSection(false);
    for (int at = 0; at < header->count(); ++at)
        header->setSectionResizeMode(at, at == 0 ? QHeaderView::Stretch : QHeaderView::ResizeToContents);
}

void QtTableView::reloadData() {
    {
        const TableSelectionModel::ProgramChange byProgram(selection_);
        model_.reload();
    }
    selectionMayHaveChanged();
}

void QtTableView::setEmptyMessage(std::string_view message) {
    widget_.emptyMessage().setMesageForEmptyList(message);
}

void QtTableView::setAllowsMultipleSelection(bool allows) {
    widget_.setSelectionMode(allows ? QAbstractItemView::ExtendedSelection
                                    : QAbstractItemView::SingleSelection);
}

std::vector<int> QtTableView::selectedRows() const { return selection_.rows(); }

void QtTableView::selectRow(int row, bool byExtendingSelection) {
    const bool extends =
        byExtendingSelection && widget_.selectionMode() == QAbstractItemView::ExtendedSelection;
    changeSelection(row, extends ? QItemSelectionModel::Select : QItemSelectionModel::ClearAndSelect);
}

void QtTableView::deselectRow(int row) { changeSelection(row, QItemSelectionModel::Deselect); }

void QtTableView::deselectAll() {
    {
        const TableSelectionModel::ProgramChange byProgram(selection_);
        selection_.clearSelection();
    }
    selectionMayHaveChanged();
}

void QtTableView::changeSelection(int row, QItemSelectionModel::SelectionFlags command) {
    if (row < 0 || row >= numberOfRows()) return;
    const auto index = model_.index(row, 0);
    const bool selects = command & QItemSelectionModel::Select;
    {
        const TableSelectionModel::ProgramChange byProgram(selection_);
        selection_.select(index, command | QItemSelectionModel::Rows);
        if (selects) selection_.setCurrentIndex(index, QItemSelectionModel::NoUpdate);
    }
    if (selects) widget_.scrollTo(index);
    selectionMayHaveChanged();
}

void QtTableView::selectionMayHaveChanged() {
    const auto rows = selectedRows();
    if (rows == known_) return;
    std::vector<int> added;
    std::ranges::set_difference(rows, known_, std::back_inserter(added));
    const auto holds = [](const std::vector<int>& list, int row) {
        return std::ranges::count(list, row) > 0;
    };
    const int current = selection_.currentIndex().row();
    if (!added.empty())
        lastSelected_ = holds(added, current) ? current : added.back();
    else if (!holds(rows, lastSelected_))
        lastSelected_ = rows.empty() ? -1 : rows.back();
    known_ = rows;
    if (model_.delegate) model_.delegate->tableViewSelectionDidChange(*this);
}

bool QtTableView::mayUserSelect(int row) {
    if (!model_.delegate) return true;
    return guard_.answer("a selection", false, [&] { return model_.delegate->shouldSelectRow(*this, row); });
}

void QtTableView::runDoubleAction() {
    guard_.run("a double click", [this] {
        if (const auto action = doubleAction_) action(*this);
    });
}

void QtTableView::runDeleteAction() {
    guard_.run("the delete key", [this] {
        if (const auto action = deleteAction_) action(*this);
    });
}

// The row's check box, wherever in the row the focus mark is.
bool QtTableView::toggleCheckBox(const QModelIndex& where) {
    for (int column = 0; where.isValid() && column < model_.columnCount(); ++column) {
        const auto index = model_.index(where.row(), column);
        if (!(model_.flags(index) & Qt::ItemIsUserCheckable)) continue;
        const bool on = model_.data(index, Qt::CheckStateRole).toInt() == Qt::Checked;
        return model_.setData(index, on ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
    }
    return false;
}

} // namespace corvane::qt
