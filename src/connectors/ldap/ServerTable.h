#pragma once

#include <QListWidget>

namespace corvane::connectors::ldap {

/// A list of servers in two lines each; says so when there are none.
class ServerTable final : public QListWidget {
public:
    /// The second line of an item.
    static constexpr int summaryRole = Qt::UserRole + 1;
    explicit ServerTable(QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace corvane::connectors::ldap
