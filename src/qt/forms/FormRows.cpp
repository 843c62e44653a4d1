#include "qt/forms/FormRows.h"

#include <algorithm>

namespace corvane::qt {

FormRows::FormRows() { setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow); }

void FormRows::add(const QString& label, QWidget& field, QWidget& parent) {
    QLabel* words = nullptr;
    if (!label.isEmpty()) {
        words = new QLabel(label, &parent);
        words->setBuddy(&field);
        words->stackUnder(&field);
    }
    rows_.push_back({words, &field});
    addRow(words, &field);
}

void FormRows::setShown(QWidget& field, bool shown) {
    const auto row = std::ranges::find(rows_, &field, &Row::field);
    if (row == rows_.end() || row->isShown == shown) return;
    row->isShown = shown;
    if (shown) {
        const auto before = std::count_if(rows_.begin(), row, [](const Row& each) { return each.isShown; });
        insertRow(static_cast<int>(before), row->label, row->field);
    } else {
        const auto taken = takeRow(row->field);
        delete taken.labelItem;
        delete taken.fieldItem;
    }
    if (row->label != nullptr) row->label->setVisible(shown);
    row->field->setVisible(shown);
}

} // namespace corvane::qt
