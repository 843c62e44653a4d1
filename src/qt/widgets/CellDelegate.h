#pragma once

#include <QStyledItemDelegate>
#include <functional>
#include <memory>

#include "qt/look/PainterCanvas.h"
#include "views/TextFieldCell.h"

namespace corvane::qt {

/// Draws the rows of any of Qt's lists with one of the program's cells.
class CellDelegate final : public QStyledItemDelegate {
public:
    using ValueOf = std::function<util::Value(const QModelIndex&)>;

    /// `rowHeight` in points; `valueOf` answers a row's object value. The delegate has no parent: it belongs
    /// to whoever made it and outlives its use by the list.
    CellDelegate(std::unique_ptr<views::TextFieldCell> cell, int rowHeight, ValueOf valueOf);

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    std::unique_ptr<views::TextFieldCell> cell_;
    int rowHeight_;
    ValueOf valueOf_;
};

/// Heights of the rows that the two-line cells are laid out for, in points.
constexpr int usersRowHeight = 36;
constexpr int serversRowHeight = 44;

} // namespace corvane::qt
