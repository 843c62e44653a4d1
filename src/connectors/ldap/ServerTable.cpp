#include "connectors/ldap/ServerTable.h"

#include <QKeyEvent>
#include <QPaintEvent>
#include <QPainter>

#include "util/Containers.h"
#include "views/EmptyMessageTableView.h"
#include "views/ServersTableCell.h"

namespace corvane::connectors::ldap {
namespace {

constexpr auto noServers = "No servers";

util::Value serverOf(const QModelIndex& index) {
    return util::Dictionary{{"hostName", index.data(Qt::DisplayRole).toString().toStdString()},
                            {"ipAddress", index.data(ServerTable::summaryRole).toString().toStdString()}};
}

} // namespace

/// The list as the message wants it; the list itself is drawn already.
class ServerTable::MessageTable final : public views::EmptyMessageTableView::Table {
public:
    explicit MessageTable(const ServerTable& list) : list_(list) {}
    void drawTable() override {}
    [[nodiscard]] int numberOfRows() const override { return list_.count(); }
    [[nodiscard]] toolkit::Rect frame() const override {
        const QRectF rect(list_.viewport()->rect());
        return {{rect.x(), rect.y()}, {rect.width(), rect.height()}};
    }
    [[nodiscard]] double rowHeight() const override { return qt::serversRowHeight; }
    [[nodiscard]] toolkit::Size intercellSpacing() const override { return {}; }
    void setNeedsDisplay() override {}

private:
    const ServerTable& list_;
};

ServerTable::ServerTable(QWidget* parent)
    : QListWidget(parent),
      delegate_(std::make_unique<views::ServersTableCell>(images_), qt::serversRowHeight, serverOf) {
    setObjectName("servers");
    setAccessibleName("LDAP servers");
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setUniformItemSizes(true);
    setItemDelegate(&delegate_);
    const auto follow = [this] { describe(); };
    for (const auto change : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved})
        connect(model(), change, &context_, follow);
    connect(model(), &QAbstractItemModel::modelReset, &context_, follow);
    describe();
}

// What is drawn on an empty list is read out as well.
void ServerTable::describe() { setAccessibleDescription(count() == 0 ? noServers : ""); }

void ServerTable::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter)
        return QListWidget::keyPressEvent(event);
    if (auto* item = currentItem()) emit itemActivated(item);
    event->accept();
}

void ServerTable::paintEvent(QPaintEvent* event) {
    QListWidget::paintEvent(event);
    MessageTable table(*this);
    views::EmptyMessageTableView view(table);
    view.setMesageForEmptyList(noServers);
    view.setMessageRow(1);
    QPainter painter(viewport());
    qt::PainterCanvas canvas(painter, palette(), font());
    view.drawRect(canvas);
}

} // namespace corvane::connectors::ldap
