#pragma once

#include <QListWidget>

#include "forms/FormItems.h"
#include "qt/widgets/CellDelegate.h"

namespace corvane::qt {

/// A list of rows in two lines each; says so, and reads it out, when there are none. Main thread.
class FormList final : public QListWidget {
public:
    explicit FormList(QWidget* parent);
    /// What an empty list says; "" for nothing.
    void setEmptyMessage(const QString& message);
    void setRows(const std::vector<forms::Row>& rows);
    [[nodiscard]] std::vector<std::int64_t> selection() const;
    void select(const std::vector<std::int64_t>& rows);
    /// The Delete key was pressed on a selected row.
    std::function<void()> removeRequested;

protected:
    /// Enter is for the row alone: it never reaches the window's default button.
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    /// The second line of a row.
    static constexpr int detailRole = Qt::UserRole + 1;
    void describe();

    class MessageTable;
    QtImageSource images_;
    CellDelegate delegate_;
    QString emptyMessage_;
};

} // namespace corvane::qt
