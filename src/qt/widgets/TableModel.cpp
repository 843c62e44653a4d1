#include "qt/widgets/TableModel.h"

#include <QApplication>
#include <QMimeData>
#include <QPainter>
#include <QPalette>
#include <algorithm>
#include <optional>
#include <set>

#include "qt/Text.h"
#include "qt/look/Appearance.h"

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
    if (role != Qt::DisplayRole && role != Qt::CheckStateRole && role != Qt::ForegroundRole &&
        role != Qt::AccessibleTextRole && role != noteRole)
        return {};
    const auto shown = appearance(index);
    const bool isCheckBox = shown.cell.type == toolkit::CellType::checkBox;
    if (role == Qt::ForegroundRole)
        return QBrush(textColor(shown.cell.textColor, QGuiApplication::palette()));
    if (role == Qt::CheckStateRole)
        return isCheckBox ? QVariant(shown.cell.on ? Qt::Checked : Qt::Unchecked) : QVariant();
    if (role == noteRole) return fromUtf8(shown.cell.note);
    const auto text = fromUtf8(isCheckBox ? shown.cell.title : shown.text);
    const bool adds = role == Qt::AccessibleTextRole && !shown.cell.note.empty();
    return adds ? text + ", " + fromUtf8(shown.cell.note) : text;
}

QVariant TableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    const bool isTitle = orientation == Qt::Horizontal && role == Qt::DisplayRole;
    return isTitle && section < columnCount() ? columns_[std::size_t(section)]->title() : QVariant();
}

Qt::ItemFlags TableModel::flags(const QModelIndex& index) const {
    // Drops go between rows: the space around them takes them, the rows themselves don't.
    if (!index.isValid()) return dragHandler ? Qt::ItemIsDropEnabled : Qt::NoItemFlags;
    auto flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    if (dragHandler) flags |= Qt::ItemIsDragEnabled;
    return canToggle(index) ? flags | Qt::ItemIsUserCheckable : flags;
}

// A list asks this of each of its rows, seen or not: where there are no check boxes, the program isn't asked.
bool TableModel::canToggle(const QModelIndex& index) const {
    const auto& dataCell = columns_[std::size_t(index.column())]->dataCell();
    if (!dataCell || dataCell->type != toolkit::CellType::checkBox) return false;
    const auto cell = appearance(index).cell;
    return cell.type == toolkit::CellType::checkBox && cell.enabled;
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

namespace {

/// What a table's row is while it is dragged.
class DraggedRows final : public QMimeData, public toolkit::Pasteboard {
public:
    explicit DraggedRows(const toolkit::TableView& from) : source(&from) {}
    void declareTypes(const std::vector<std::string>& types) override {
        clear();
        for (const auto& type : types)
            setData(fromUtf8(type), {});
    }
    void setString(std::string_view text, std::string_view type) override {
        setData(fromUtf8(type), QByteArray(text.data(), qsizetype(text.size())));
    }
    [[nodiscard]] std::vector<std::string> types() const override {
        std::vector<std::string> all;
        for (const auto& format : formats())
            all.push_back(toUtf8(format));
        return all;
    }
    [[nodiscard]] std::optional<std::string> stringForType(std::string_view type) const override {
        const auto format = fromUtf8(type);
        return hasFormat(format) ? std::optional(data(format).toStdString()) : std::nullopt;
    }
    const toolkit::TableView* source;
};

} // namespace

struct TableModel::Drop {
    int row;
    toolkit::DropOperation operation;
};

QStringList TableModel::mimeTypes() const {
    QStringList types;
    for (const auto& type : draggedTypes)
        types << fromUtf8(type);
    return types;
}

QMimeData* TableModel::mimeData(const QModelIndexList& indexes) const {
    std::set<int> rows;
    for (const auto& index : indexes)
        rows.insert(index.row());
    auto dragged = std::make_unique<DraggedRows>(table_);
    const bool allowed = dragHandler && guard_.answer("the beginning of a drag", false, [&] {
        return dragHandler->writeRows(table_, {rows.begin(), rows.end()}, *dragged);
    });
    return allowed ? dragged.release() : nullptr;
}

/// Qt names no row for the empty space behind the last one.
TableModel::Drop TableModel::dropAt(int row, const QModelIndex& parent) const {
    if (parent.isValid()) return {parent.row(), toolkit::DropOperation::on};
    return {row < 0 ? rows_ : row, toolkit::DropOperation::above};
}

bool TableModel::canDropMimeData(const QMimeData* data, Qt::DropAction, int row, int,
                                 const QModelIndex& parent) const {
    auto* dragged = dynamic_cast<DraggedRows*>(const_cast<QMimeData*>(data));
    if (!dragHandler || !dragged) return false;
    const auto takes = [dragged](const QString& type) { return dragged->hasFormat(type); };
    if (!std::ranges::any_of(mimeTypes(), takes)) return false;
    const auto drop = dropAt(row, parent);
    return guard_.answer("a drag", toolkit::DragOperation::none, [&] {
        return dragHandler->validateDrop(table_, {dragged->source, *dragged}, drop.row, drop.operation);
    }) != toolkit::DragOperation::none;
}

bool TableModel::dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                              const QModelIndex& parent) {
    if (!canDropMimeData(data, action, row, column, parent)) return false;
    auto* dragged = dynamic_cast<DraggedRows*>(const_cast<QMimeData*>(data));
    const auto drop = dropAt(row, parent);
    return guard_.answer("a drop", false, [&] {
        return dragHandler->acceptDrop(table_, {dragged->source, *dragged}, drop.row, drop.operation);
    });
}

bool TableModel::moveRowByOne(int row, int step) {
    const int target = step < 0 ? row - 1 : row + 2;
    if (row < 0 || target < 0 || target > rows_) return false;
    const std::unique_ptr<QMimeData> dragged(mimeData({index(row, 0)}));
    return dragged && dropMimeData(dragged.get(), Qt::MoveAction, target, 0, {});
}

QSize TableCellDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const auto size = QStyledItemDelegate::sizeHint(option, index);
    return {size.width() + 16, std::max(size.height(), option.fontMetrics.height() + 8)};
}

// The note stands at the row's end, and the text gets what room is left.
void TableCellDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const {
    const auto note = index.data(TableModel::noteRole).toString();
    if (note.isEmpty()) return QStyledItemDelegate::paint(painter, option, index);
    constexpr int margin = 8;
    const int width = option.fontMetrics.horizontalAdvance(note) + 2 * margin;
    QStyleOptionViewItem ground(option);
    initStyleOption(&ground, index);
    ground.text.clear();
    const auto* style = option.widget ? option.widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &ground, painter, option.widget);
    QStyleOptionViewItem text(option);
    text.rect.setRight(text.rect.right() - width);
    QStyledItemDelegate::paint(painter, text, index);
    const bool selected = option.state & QStyle::State_Selected;
    painter->save();
    painter->setPen(selected ? option.palette.color(QPalette::HighlightedText)
                             : textColor(toolkit::TextColor::gray, option.palette));
    painter->drawText(option.rect.adjusted(0, 0, -margin, 0), Qt::AlignRight | Qt::AlignVCenter, note);
    painter->restore();
}

void TableCellDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
    QStyledItemDelegate::initStyleOption(option, index);
    const bool isCheckBox = option->features & QStyleOptionViewItem::HasCheckIndicator;
    if (isCheckBox && !(index.flags() & Qt::ItemIsUserCheckable)) option->state &= ~QStyle::State_Enabled;
}

} // namespace corvane::qt
