#pragma once

#include <QListWidget>

#include "qt/widgets/CellDelegate.h"

namespace corvane::connectors::ldap {

/// A list of servers in two lines each; says so, and reads it out, when there are none.
class ServerTable final : public QListWidget {
public:
    /// The second line of an item.
    static constexpr int summaryRole = Qt::UserRole + 1;
    explicit ServerTable(QWidget* parent);

protected:
    /// Enter is for the row alone: it never reaches the window's default button.
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void describe();

    class MessageTable;
    qt::QtImageSource images_;
    qt::CellDelegate delegate_;
    QObject context_; ///< goes before the list's model does, and what follows the model with it
};

} // namespace corvane::connectors::ldap
