#include "qt/forms/FormList.h"

#include <QKeyEvent>
#include <QPaintEvent>
#include <QPainter>
#include <algorithm>

#include "qt/Text.h"
#include "util/Containers.h"
#include "views/EmptyMessageTableView.h"
#include "views/ServersTableCell.h"

namespace corvane::qt {

/// The list as the message wants it; the list itself is drawn already.
class FormList::MessageTable final : public views::EmptyMessageTableView::Table {
public:
    explicit MessageTable(const FormList& list) : list_(list) {}
    void drawTable() override {}
    [[nodiscard]] int numberOfRows() const override { return list_.count(); }
    [[nodiscard]] toolkit::Rect frame() const override {
        const QRectF rect(list_.viewport()->rect());
        return {{rect.x(), rect.y()}, {rect.width(), rect.height()}};
    }
    [[nodiscard]] double rowHeight() const override { return serversRowHeight; }
    [[nodiscard]] toolkit::Size intercellSpacing() const override { return {}; }
    void setNeedsDisplay() override {}

private:
    const FormList& list_;
};

FormList::FormList(QWidget* parent)
    : QListWidget(parent),
      delegate_(std::make_unique<views::ServersTableCell>(images_), serversRowHeight,
                [](const QModelIndex& index) {
                    return util::Dictionary{{"hostName", toUtf8(index.data(Qt::DisplayRole).toString())},
                                            {"ipAddress", toUtf8(index.data(detailRole).toString())}};
                }) {
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setUniformItemSizes(true);
    setItemDelegate(&delegate_);
}

void FormList::setEmptyMessage(const QString& message) {
    emptyMessage_ = message;
    describe();
    viewport()->update();
}

void FormList::setRows(const std::vector<forms::Row>& rows) {
    clear();
    for (const auto& row : rows) {
        auto* item = new QListWidgetItem(fromUtf8(row.title), this);
        item->setData(detailRole, fromUtf8(row.detail));
        item->setData(Qt::AccessibleTextRole,
                      row.detail.empty() ? fromUtf8(row.title) : fromUtf8(row.title + ", " + row.detail));
    }
    describe();
}

std::vector<std::int64_t> FormList::selection() const {
    std::vector<std::int64_t> rows;
    for (const auto& index : selectionModel()->selectedRows())
        rows.push_back(index.row());
    std::ranges::sort(rows);
    return rows;
}

void FormList::select(const std::vector<std::int64_t>& rows) {
    clearSelection();
    for (const auto row : rows)
        item(static_cast<int>(row))->setSelected(true);
    if (!rows.empty()) setCurrentRow(static_cast<int>(rows.front()), QItemSelectionModel::NoUpdate);
}

// What is drawn on an empty list is read out as well.
void FormList::describe() { setAccessibleDescription(count() == 0 ? emptyMessage_ : ""); }

void FormList::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Delete)) {
        if (removeRequested) removeRequested();
        return event->accept();
    }
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter)
        return QListWidget::keyPressEvent(event);
    if (auto* current = currentItem()) emit itemActivated(current);
    event->accept();
}

void FormList::paintEvent(QPaintEvent* event) {
    QListWidget::paintEvent(event);
    if (emptyMessage_.isEmpty()) return;
    MessageTable table(*this);
    views::EmptyMessageTableView view(table);
    view.setMesageForEmptyList(toUtf8(emptyMessage_));
    view.setMessageRow(1);
    QPainter painter(viewport());
    PainterCanvas canvas(painter, palette(), font());
    view.drawRect(canvas);
}

} // namespace corvane::qt
