#include "qt/widgets/TableWidget.h"

#include <QDrag>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMimeData>
#include <QPainter>
#include <algorithm>
#include <vector>

#include "qt/Text.h"
#include "qt/look/PainterCanvas.h"

namespace corvane::qt {

namespace {

/// In ascending order, each once.
std::vector<int> rowsOf(const QItemSelection& selection) {
    std::vector<int> rows;
    for (const auto& range : selection)
        for (int row = range.top(); range.isValid() && row <= range.bottom(); ++row)
            rows.push_back(row);
    std::ranges::sort(rows);
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

/// Neighbours in one range: a selection of many single rows would take minutes to work with.
QItemSelection selectionOf(const QAbstractItemModel& model, const std::vector<int>& rows) {
    QItemSelection selection;
    const int lastColumn = model.columnCount() - 1;
    for (std::size_t at = 0; at < rows.size();) {
        const int first = rows[at];
        int last = first;
        while (++at < rows.size() && rows[at] == last + 1)
            ++last;
        selection.append(QItemSelectionRange(model.index(first, 0), model.index(last, lastColumn)));
    }
    return selection;
}

} // namespace

TableSelectionModel::TableSelectionModel(QAbstractItemModel* model, QObject* parent)
    : QItemSelectionModel(model, parent) {}

void TableSelectionModel::select(const QItemSelection& selection, SelectionFlags command) {
    if (isProgramChange()) return QItemSelectionModel::select(selection, command);
    const auto allowed = allowedPart(selection, command);
    const bool asksForRows = std::ranges::any_of(selection, &QItemSelectionRange::isValid);
    const bool refused = asksForRows && allowed.isEmpty();
    if (refused || (!allowsEmpty && wouldBeEmpty(allowed, command))) return;
    QItemSelectionModel::select(allowed, command);
}

std::vector<int> TableSelectionModel::rows() const { return rowsOf(selection()); }

void TableSelectionModel::setCurrentIndex(const QModelIndex& index, SelectionFlags command) {
    const bool refused =
        !isProgramChange() && index.isValid() && mayUserSelect && !mayUserSelect(index.row());
    if (!refused) QItemSelectionModel::setCurrentIndex(index, command);
}

QItemSelection TableSelectionModel::allowedPart(const QItemSelection& selection,
                                                SelectionFlags command) const {
    if (!(command & (Select | Toggle)) || !mayUserSelect) return selection;
    auto rows = rowsOf(selection);
    std::erase_if(rows, [this](int row) { return !mayUserSelect(row) && !isRowSelected(row); });
    return selectionOf(*model(), rows);
}

bool TableSelectionModel::wouldBeEmpty(const QItemSelection& change, SelectionFlags command) const {
    if (command == NoUpdate || selection().isEmpty()) return false;
    const auto changed = rowsOf(change);
    if (command & Clear) return changed.empty() || !(command & (Select | Toggle));
    if (command & Select) return false;
    const auto selected = rows();
    const bool adds = !std::ranges::includes(selected, changed);
    return std::ranges::includes(changed, selected) && !(adds && (command & Toggle));
}

TableWidget::TableWidget(QWidget* parent) : QTreeView(parent) {
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setSelectionBehavior(SelectRows);
    setSelectionMode(SingleSelection);
    setEditTriggers(NoEditTriggers);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTextElideMode(Qt::ElideMiddle);
    setTabKeyNavigation(false);
    header()->setSectionsMovable(false);
    header()->setSectionsClickable(false);
    header()->setHighlightSections(false);
    header()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
}

QModelIndex TableWidget::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) {
    const auto wanted = QTreeView::moveCursor(action, modifiers);
    if (!wanted.isValid() || !mayUserSelect || mayUserSelect(wanted.row())) return wanted;
    const bool up = action == MoveUp || action == MovePageUp || action == MoveEnd || action == MovePrevious;
    int row = nextSelectableRow(wanted.row(), up ? -1 : 1);
    // A page may end among rows that can't be selected: the last one before them is as near as it gets.
    const bool byPage = action == MovePageUp || action == MovePageDown;
    if (row < 0 && byPage) row = nextSelectableRow(wanted.row(), up ? 1 : -1);
    return row < 0 ? currentIndex() : model()->index(row, wanted.column());
}

int TableWidget::nextSelectableRow(int from, int step) const {
    const int rows = model() ? model()->rowCount() : 0;
    for (int row = from; row >= 0 && row < rows; row += step)
        if (!mayUserSelect || mayUserSelect(row)) return row;
    return -1;
}

void TableWidget::keyPressEvent(QKeyEvent* event) {
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isReturn && activate && selectionModel() && selectionModel()->hasSelection()) {
        activate();
        event->accept();
        return;
    }
    // Without a selected row the return key belongs to the window's default button.
    if (isReturn) return event->ignore();
    const bool byOne = event->key() == Qt::Key_Up || event->key() == Qt::Key_Down;
    if (byOne && event->modifiers() == Qt::AltModifier && moveSelectedRow) {
        (void)moveSelectedRow(event->key() == Qt::Key_Up ? -1 : 1);
        return event->accept();
    }
    if (event->matches(QKeySequence::Delete) && pressDelete) {
        pressDelete();
        return event->accept();
    }
    if (event->key() == Qt::Key_Space && press && press(currentIndex())) return event->accept();
    QTreeView::keyPressEvent(event);
}

void TableWidget::mousePressEvent(QMouseEvent* event) {
    pressed_ = indexAt(event->position().toPoint());
    dragRefused_ = false;
    QTreeView::mousePressEvent(event);
}

// After a drag that was refused, Qt would select the rows that the pointer goes over.
void TableWidget::mouseMoveEvent(QMouseEvent* event) {
    if (!dragRefused_ || event->buttons() == Qt::NoButton) QTreeView::mouseMoveEvent(event);
}

void TableWidget::mouseDoubleClickEvent(QMouseEvent* event) {
    QTreeView::mouseDoubleClickEvent(event);
    const auto index = indexAt(event->position().toPoint());
    const bool onSelectedRow = index.isValid() && selectionModel()->isRowSelected(index.row());
    if (event->button() == Qt::LeftButton && onSelectedRow && activate) activate();
}

void TableWidget::setModel(QAbstractItemModel* model) {
    QTreeView::setModel(model);
    if (model)
        for (const auto change : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved})
            connect(model, change, this, &TableWidget::describe);
    describe();
}

// The rows first, with a painter of their own, then the message with another.
void TableWidget::paintEvent(QPaintEvent* event) {
    QPainter painter;
    painting_ = event;
    painter_ = &painter;
    PainterCanvas canvas(painter, palette(), font());
    emptyMessage_.drawRect(canvas);
    painting_ = nullptr;
    painter_ = nullptr;
}

void TableWidget::drawTable() {
    drawRows(painting_);
    painter_->begin(viewport());
}

int TableWidget::numberOfRows() const { return model() ? model()->rowCount() : 0; }

// What scrolls begins at the viewport's corner and fills it.
toolkit::Rect TableWidget::frame() const {
    return {{0, 0}, {double(viewport()->width()), double(viewport()->height())}};
}

// Without a row to look at, as high as the rows are made.
double TableWidget::rowHeight() const { return fontMetrics().height() + 8; }

void TableWidget::setNeedsDisplay() {
    viewport()->update();
    describe();
}

void TableWidget::describe() {
    const auto& message = emptyMessage_.message();
    setAccessibleDescription(message && numberOfRows() == 0 ? fromUtf8(message->string) : QString());
}

// The place of a drop, drawn stronger than the style would: a bar in the colour of the selection.
void TableWidget::drawRows(QPaintEvent* event) {
    const bool dragging = state() == DraggingState && dropIndicatorPosition() != OnViewport;
    setDropIndicatorShown(!dragging);
    QTreeView::paintEvent(event);
    setDropIndicatorShown(true);
    if (!dragging) return;
    const auto row = visualRect(indexAt(viewport()->mapFromGlobal(QCursor::pos())));
    if (!row.isValid()) return;
    constexpr int thickness = 3;
    const int y = dropIndicatorPosition() == BelowItem ? row.bottom() + 1 : row.top();
    QPainter painter(viewport());
    painter.fillRect(QRect(0, y - thickness / 2, viewport()->width(), thickness), palette().highlight());
}

// What is dragged is what lies under the pointer: the selection if that row is part of it, otherwise the row
// alone. A row that can't be selected leaves the selection where it was, which nobody has taken hold of.
QModelIndexList TableWidget::draggedIndexes() const {
    if (!pressed_.isValid()) return {};
    if (selectionModel()->isRowSelected(pressed_.row())) return selectedIndexes();
    return {pressed_};
}

// As Qt's own, but for the beginning and the end: the program has moved the rows itself, so none is taken out
// here.
void TableWidget::startDrag(Qt::DropActions actions) {
    const auto indexes = draggedIndexes();
    auto* dragged = indexes.isEmpty() ? nullptr : model()->mimeData(indexes);
    dragRefused_ = !dragged;
    if (!dragged) return;
    auto* drag = new QDrag(this);
    drag->setMimeData(dragged);
    drag->setPixmap(viewport()->grab(visualRect(indexes.front())));
    drag->exec(actions, defaultDropAction());
    setState(NoState);
    viewport()->update();
}

// Qt would put the focus mark on row 0 unasked; it stays where the selection is.
void TableWidget::focusInEvent(QFocusEvent* event) {
    const auto before = currentIndex();
    QTreeView::focusInEvent(event);
    if (before.isValid() || !currentIndex().isValid() || !mayUserSelect) return;
    if (!mayUserSelect(currentIndex().row())) selectionModel()->clearCurrentIndex();
}

} // namespace corvane::qt
