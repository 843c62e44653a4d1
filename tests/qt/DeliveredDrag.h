#pragma once

#include <QAbstractItemView>
#include <QApplication>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>
#include <memory>
#include <vector>

namespace corvane::qt {

enum class DropTarget { aboveRow, onRow, emptySpace };

/// A drag of rows as the window system reports it to the table under the pointer: it comes in, moves, and
/// ends in a drop above the row `place` (the count of rows: behind the last), on it, or in the empty space
/// behind the rows. What is dragged is what the table itself makes of its rows. Without a screen there is no
/// pointer that could drag: only the way from one table to the other, which is the window system's own, is
/// missing. False when the drag can't begin, isn't taken there, or nothing comes of it.
inline bool deliverDrag(QAbstractItemView& from, const std::vector<int>& rows, QAbstractItemView& to,
                        int place, DropTarget target = DropTarget::aboveRow) {
    QModelIndexList indexes;
    for (const int row : rows)
        indexes << from.model()->index(row, 0);
    if (!from.isEnabled() || !from.dragEnabled()) return false;
    const std::unique_ptr<QMimeData> dragged(from.model()->mimeData(indexes));
    if (!dragged) return false;
    const int count = to.model()->rowCount();
    const auto at = to.visualRect(to.model()->index(std::min(place, count - 1), 0));
    QPoint where(at.center().x(), place < count ? at.top() + 1 : at.bottom() - 1);
    if (target == DropTarget::onRow) where = at.center();
    if (target == DropTarget::emptySpace) where.setY(to.viewport()->height() - 2);
    constexpr auto button = Qt::LeftButton;
    QDragEnterEvent enter(where, Qt::MoveAction, dragged.get(), button, Qt::NoModifier);
    QApplication::sendEvent(to.viewport(), &enter);
    QDragMoveEvent move(where, Qt::MoveAction, dragged.get(), button, Qt::NoModifier);
    if (enter.isAccepted()) QApplication::sendEvent(to.viewport(), &move);
    if (!enter.isAccepted() || !move.isAccepted()) {
        QDragLeaveEvent leave;
        QApplication::sendEvent(to.viewport(), &leave);
        return false;
    }
    QDropEvent drop(where, Qt::MoveAction, dragged.get(), button, Qt::NoModifier);
    QApplication::sendEvent(to.viewport(), &drop);
    return drop.isAccepted();
}

} // namespace corvane::qt
