#pragma once

#include <QItemSelectionModel>
#include <QTreeView>
#include <functional>
#include <vector>

#include "views/EmptyMessageTableView.h"

class QPainter;

namespace corvane::qt {

/// A selection that asks about every row the user wants to select. The program's own changes go by unasked:
/// it holds a `ProgramChange` for their time.
class TableSelectionModel final : public QItemSelectionModel {
public:
    explicit TableSelectionModel(QAbstractItemModel* model, QObject* parent);

    std::function<bool(int row)> mayUserSelect;
    bool allowsEmpty = true;

    /// The selected rows in ascending order.
    [[nodiscard]] std::vector<int> rows() const;

    class ProgramChange {
    public:
        explicit ProgramChange(TableSelectionModel& model) : model_(model) { ++model_.programChanges_; }
        ~ProgramChange() { --model_.programChanges_; }
        ProgramChange(const ProgramChange&) = delete;
        ProgramChange& operator=(const ProgramChange&) = delete;

    private:
        TableSelectionModel& model_;
    };
    [[nodiscard]] bool isProgramChange() const { return programChanges_ > 0; }

    using QItemSelectionModel::select;
    void select(const QItemSelection& selection, SelectionFlags command) override;
    void setCurrentIndex(const QModelIndex& index, SelectionFlags command) override;

private:
    [[nodiscard]] QItemSelection allowedPart(const QItemSelection& selection, SelectionFlags command) const;
    [[nodiscard]] bool wouldBeEmpty(const QItemSelection& change, SelectionFlags command) const;

    int programChanges_ = 0;
};

/// The list on the screen: rows without a tree, keys that jump over rows that can't be selected, and a
/// message while there are no rows.
class TableWidget final : public QTreeView, private views::EmptyMessageTableView::Table {
public:
    explicit TableWidget(QWidget* parent = nullptr);

    std::function<bool(int row)> mayUserSelect;
    std::function<void()> activate;                ///< double click or return key on a selected row
    std::function<void()> pressDelete;             ///< the delete key
    std::function<bool(const QModelIndex&)> press; ///< space on a cell; true when that was something
    std::function<bool(int step)> moveSelectedRow; ///< Alt and an arrow key: one up (-1) or down (1)

    /// What the list says, and reads out, while it has no rows.
    [[nodiscard]] views::EmptyMessageTableView& emptyMessage() { return emptyMessage_; }
    void setModel(QAbstractItemModel* model) override;

protected:
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void startDrag(Qt::DropActions actions) override;

private:
    [[nodiscard]] QModelIndexList draggedIndexes() const;
    [[nodiscard]] int nextSelectableRow(int from, int step) const;
    void drawRows(QPaintEvent* event);
    void describe();

    void drawTable() override;
    [[nodiscard]] int numberOfRows() const override;
    [[nodiscard]] toolkit::Rect frame() const override;
    [[nodiscard]] double rowHeight() const override;
    [[nodiscard]] toolkit::Size intercellSpacing() const override { return {}; }
    void setNeedsDisplay() override;

    views::EmptyMessageTableView emptyMessage_{*this};
    QPersistentModelIndex pressed_;   ///< where the mouse button went down last
    bool dragRefused_ = false;        ///< what was taken hold of there can't be dragged
    QPaintEvent* painting_ = nullptr; ///< the event that is being drawn for
    QPainter* painter_ = nullptr;     ///< at work on the viewport once the rows are drawn
};

} // namespace corvane::qt
