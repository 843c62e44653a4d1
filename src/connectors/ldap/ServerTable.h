#pragma once

#include <QListWidget>

#include "qt/CellDelegate.h"

namespace corvane::connectors::ldap {

/// A list of servers in two lines each; says so when there are none.
class ServerTable final : public QListWidget {
public:
    /// The second line of an item.
    static constexpr int summaryRole = Qt::UserRole + 1;
    explicit ServerTable(QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    class MessageTable;
    qt::QtImageSource images_;
    qt::CellDelegate delegate_;
};

} // namespace corvane::connectors::ldap
