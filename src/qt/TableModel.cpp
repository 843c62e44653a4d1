#include "qt/TableModel.h"

#include <QGuiApplication>
#include <QPalette>
#include <algorithm>

#include "qt/Appearance.h"
#include "qt/Text.h"

namespace corvane::qt {

TableModel::TableModel(toolkit::TableView& table, HandlerGuard& guard, QObject* parent)
    : QAbstractTableModel(parent), table_(table), guard_(guard) {}

void TableModel::addColumn(std::unique_ptr<QtTableColumn> column) {
    const int at = int(columns_.size());
    beginInsertColumns({}, at, at);
    columns_.push_back(std::move(column));
    endInsertColumns();
}

void TableModel::removeColumn(const toolkit::TableColumn& column) {
    const auto found = std::ranges::find(columns_, &column, [](const auto& held) { return held.get(); });
    if (found == columns_.end()) return;
    const int at = int(found - columns_.begin());
    beginRemoveColumns({}, at, at);
    columns_.erase(found);
    endRemoveColumns();
}

QtTableColumn* TableModel::column(std::string_view identifier) const {
    for (const auto& held : columns_)
        if (held->identifier() == identifier) return held.get();
    return nullptr;
}

void TableModel::reload() {
    setRowCount(source ? std::max(0, source->numberOfRowsInTableView(table_)) : 0);
    if (rows_ > 0 && !columns_.empty()) emit dataChanged(index(0, 0), index(rows_ - 1, columnCount() - 1));
}

void TableModel::setRowCount(int rows) {
    if (rows < rows_) {
        beginRemoveRows({}, rows, rows_ - 1);
        rows_ = rows;
        endRemoveRows();
    } else if (rows > rows_) {
        beginInsertRows({}, rows_, rows - 1);
        rows_ = rows;
        endInsertRows();
    }
}

CellAppearance TableModel::appearance(const QModelIndex& index) const {
    return guard_.answer("a table's question", CellAppearance{}, [&] { return ask(index); });
}

// The value first: a check box's value is the column's cell with its state set, which the delegate then
// adjusts.
CellAppearance TableModel::ask(const QModelIndex& index) const {
    const auto& column = *columns_[std::size_t(index.column())];
    auto cell = column.dataCell();
    CellAppearance result;
    if (source) {
        const auto value = source->objectValueForTableColumn(table_, column, index.row());
        if (const auto* own = std::get_if<std::shared_ptr<toolkit::Cell>>(&value))
            cell = *own;
        else
            result.text = std::get<std::string>(value);
    }
    if (!cell) cell = std::make_shared<toolkit::Cell>();
    if (delegate) delegate->willDisplayCell(table_, *cell, column, index.row());
    result.cell = *cell;
    return result;
}

int TableModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : rows_; }

int TableModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(columns_.size());
}

QVariant TableModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    if (role != Qt::DisplayRole && role != Qt::CheckStateRole && role != Qt::ForegroundRole) return {};
    const auto shown = appearance(index);
    const bool isCheckBox = shown.cell.type == toolkit::CellType::checkBox;
    if (role == Qt::ForegroundRole)
        return QBrush(textColor(shown.cell.textColor, QGuiApplication::palette()));
    if (role == Qt::CheckStateRole)
        return isCheckBox ? QVariant(shown.cell.on ? Qt::Checked : Qt::Unchecked) : QVariant();
    return fromUtf8(isCheckBox ? shown.cell.title : shown.text);
}

QVariant TableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    const bool isTitle = orientation == Qt::Horizontal && role == Qt::DisplayRole;
    return isTitle && section < columnCount() ? columns_[std::size_t(section)]->title() : QVariant();
}

Qt::ItemFlags TableModel::flags(const QModelIndex& index) const {
    if (!index.isValid()) return Qt::NoItemFlags;
    const auto cell = appearance(index).cell;
    const bool canToggle = cell.type == toolkit::CellType::checkBox && cell.enabled;
    const auto always = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    return canToggle ? always | Qt::ItemIsUserCheckable : always;
}

bool TableModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role != Qt::CheckStateRole || !source || !(flags(index) & Qt::ItemIsUserCheckable)) return false;
    guard_.run("a check box's action", [&] {
        source->setObjectValue(table_, value.toInt() == Qt::Checked, *columns_[std::size_t(index.column())],
                               index.row());
    });
    emit dataChanged(index, index);
    return true;
}

QSize TableCellDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const auto size = QStyledItemDelegate::sizeHint(option, index);
    return {size.width() + 16, std::max(size.height(), option.fontMetrics.height() + 8)};
}

void TableCellDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
    QStyledItemDelegate::initStyleOption(option, index);
    const bool isCheckBox = option->features & QStyleOptionViewItem::HasCheckIndicator;
    if (isCheckBox && !(index.flags() & Qt::ItemIsUserCheckable)) option->state &= ~QStyle::State_Enabled;
}

} // namespace corvane::qt
