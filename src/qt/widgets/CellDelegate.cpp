#include "qt/widgets/CellDelegate.h"

#include <QAbstractItemView>
#include <QPainter>

#include "qt/look/Appearance.h"

namespace corvane::qt {

namespace {

views::ControlView controlView(const QWidget* list) {
    return {list && list->hasFocus(), list && list->isActiveWindow()};
}

/// Away from the keyboard a selection is pale, because the cells then keep their ordinary colours; a bar in
/// front of it says that it is one.
void drawSelection(QPainter& painter, const QStyleOptionViewItem& option, bool atWork) {
    constexpr int barWidth = 3;
    const auto accent = option.palette.color(QPalette::Highlight);
    painter.fillRect(option.rect, atWork ? accent : restingSelection(option.palette));
    if (!atWork)
        painter.fillRect(QRect(option.rect.topLeft(), QSize(barWidth, option.rect.height())), accent);
}

} // namespace

CellDelegate::CellDelegate(std::unique_ptr<views::TextFieldCell> cell, int rowHeight, ValueOf valueOf)
    : cell_(std::move(cell)), rowHeight_(rowHeight), valueOf_(std::move(valueOf)) {}

void CellDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
    const auto cell = cell_->copy();
    const auto view = controlView(option.widget);
    const bool selected = option.state & QStyle::State_Selected;
    cell->setObjectValue(valueOf_(index));
    cell->setHighlighted(selected);
    if (selected) drawSelection(*painter, option, view.isFirstResponder && view.windowIsKey);
    painter->save();
    painter->setClipRect(option.rect, Qt::IntersectClip);
    PainterCanvas canvas(*painter, option.palette, option.font);
    const QRectF rect(option.rect);
    cell->drawInteriorWithFrame({{rect.x(), rect.y()}, {rect.width(), rect.height()}}, view, canvas);
    painter->restore();
}

// As wide as the list has room: the cells cut their lines off by themselves.
QSize CellDelegate::sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const {
    return {0, rowHeight_};
}

} // namespace corvane::qt
