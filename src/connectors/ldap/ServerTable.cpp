#include "connectors/ldap/ServerTable.h"

#include <QPainter>

namespace corvane::connectors::ldap {

ServerTable::ServerTable(QWidget* parent) : QListWidget(parent) {
    setObjectName("servers");
    setAccessibleName("LDAP servers");
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setUniformItemSizes(true);
}

void ServerTable::paintEvent(QPaintEvent* event) {
    QListWidget::paintEvent(event);
    if (count() > 0) return;
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(viewport()->rect(), Qt::AlignCenter, "No servers");
}

} // namespace corvane::connectors::ldap
