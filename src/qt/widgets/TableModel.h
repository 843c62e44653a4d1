#pragma once

#include <QAbstractTableModel>
#include <QStyledItemDelegate>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "qt/HandlerGuard.h"
#include "toolkit/TableView.h"

namespace corvane::qt {

class QtTableColumn final : public toolkit::TableColumn {
public:
    QtTableColumn(std::string identifier, QString title)
        : identifier_(std::move(identifier)), title_(std::move(title)) {}
    [[nodiscard]] std::string identifier() const override { return identifier_; }
    void setDataCell(std::shared_ptr<toolkit::Cell> cell) override { cell_ = std::move(cell); }
    [[nodiscard]] std::shared_ptr<toolkit::Cell> dataCell() const override { return cell_; }
    [[nodiscard]] const QString& title() const { return title_; }

private:
    std::string identifier_;
    QString title_;
    std::shared_ptr<toolkit::Cell> cell_ = std::make_shared<toolkit::Cell>();
};

/// What one cell looks like at this moment.
struct CellAppearance {
    std::string text;
    toolkit::Cell cell;
};

/// Turns Qt's questions about a table into the program's.
class TableModel final : public QAbstractTableModel {
public:
    TableModel(toolkit::TableView& table, HandlerGuard& guard, QObject* parent);

    /// What stands beside a cell's text.
    static constexpr int noteRole = Qt::UserRole + 1;

    toolkit::TableDataSource* source = nullptr;
    toolkit::TableDelegate* delegate = nullptr;
    toolkit::TableDragHandler* dragHandler = nullptr;
    std::vector<std::string> draggedTypes; ///< what may be dropped

    void addColumn(std::unique_ptr<QtTableColumn> column);
    void removeColumn(const toolkit::TableColumn& column);
    [[nodiscard]] QtTableColumn* column(std::string_view identifier) const;

    /// Takes the row count anew; rows that stay keep their selection.
    void reload();
    [[nodiscard]] CellAppearance appearance(const QModelIndex& index) const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

    [[nodiscard]] Qt::DropActions supportedDropActions() const override { return Qt::MoveAction; }
    [[nodiscard]] QStringList mimeTypes() const override;
    /// Null when the rows may not be dragged.
    [[nodiscard]] QMimeData* mimeData(const QModelIndexList& indexes) const override;
    [[nodiscard]] bool canDropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                                       const QModelIndex& parent) const override;
    bool dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                      const QModelIndex& parent) override;
    /// What a drag of the row by one place would do; false when it may not be moved there.
    bool moveRowByOne(int row, int step);

private:
    struct Drop;
    [[nodiscard]] Drop dropAt(int row, const QModelIndex& parent) const;
    void setRowCount(int rows);
    [[nodiscard]] bool canToggle(const QModelIndex& index) const;
    [[nodiscard]] CellAppearance ask(const QModelIndex& index) const;

    toolkit::TableView& table_;
    HandlerGuard& guard_;
    std::vector<std::unique_ptr<QtTableColumn>> columns_;
    int rows_ = 0;
};

/// Draws cells: rows of a calm height, colours by the theme.
class TableCellDelegate final : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
};

} // namespace corvane::qt
