#pragma once

#include <QFormLayout>
#include <QLabel>
#include <vector>

namespace corvane::qt {

/// Rows of labels and fields, some of which are hidden for a while. A hidden row is taken out of the layout:
/// QFormLayout's own hidden rows take the height of visible ones where texts wrap. Belongs to the layout that
/// it was added to. Main thread.
class FormRows final : public QFormLayout {
public:
    FormRows();
    /// An empty label leaves the first column free. Both become visible with the window.
    void add(const QString& label, QWidget& field, QWidget& parent);
    void setShown(QWidget& field, bool shown);

private:
    struct Row {
        QLabel* label; ///< null for none
        QWidget* field;
        bool isShown = true;
    };
    std::vector<Row> rows_; ///< all of them, in their order
};

} // namespace corvane::qt
