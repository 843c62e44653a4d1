#include "qt/forms/FormTexts.h"

#include <QApplication>
#include <algorithm>

namespace corvane::qt {
namespace {

void setPointSize(QLabel& label, double factor) {
    auto font = label.font();
    font.setPointSizeF(font.pointSizeF() * factor);
    label.setFont(font);
}

void makeHint(QLabel& label) {
    constexpr int narrowest = 320; // below it would want more lines than it has, and leave a gap below
    setPointSize(label, 0.9);
    label.setMinimumWidth(narrowest);
    auto palette = label.palette();
    palette.setColor(QPalette::WindowText, palette.color(QPalette::PlaceholderText));
    label.setPalette(palette);
}

} // namespace

QString breakable(const QString& content) {
    constexpr int longest = 24; // characters without a place to break at
    const QChar place(0x200B);
    auto words = content.split(' ');
    for (auto& word : words) {
        if (word.size() <= longest) continue;
        QString broken;
        int length = 0;
        for (const auto letter : word) {
            const bool isInside = letter.isLowSurrogate() || letter.isMark();
            const bool isWanted =
                length > longest || (length > longest / 2 && QString(",=/.-_:@").contains(broken.back()));
            if (isWanted && !isInside) {
                broken += place;
                length = 0;
            }
            broken += letter;
            ++length;
        }
        word = broken;
    }
    return words.join(' ');
}

QWidget* windowInFront() {
    if (auto* active = QApplication::activeModalWidget()) return active;
    if (auto* active = QApplication::activeWindow()) return active;
    const auto all = QApplication::topLevelWidgets();
    const auto found = std::ranges::find_if(
        all, [](const QWidget* each) { return each->isVisible() && each->windowType() == Qt::Window; });
    return found == all.end() ? nullptr : *found;
}

QLabel* formHeading(const QString& title, QWidget& parent) {
    auto* label = new QLabel(title, &parent);
    label->setTextFormat(Qt::PlainText);
    auto font = label->font();
    font.setBold(true);
    label->setFont(font);
    setPointSize(*label, 1.15);
    label->setWordWrap(true);
    return label;
}

QLabel* formParagraph(const QString& content, forms::Item::Style style, QWidget& parent) {
    auto* label = new QLabel(content, &parent);
    label->setWordWrap(true);
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    // As wide as there is room: a form layout works out the height for that width, whatever the label takes.
    auto policy = label->sizePolicy();
    policy.setHorizontalPolicy(QSizePolicy::Expanding);
    label->setSizePolicy(policy);
    if (style == forms::Item::Style::hint) makeHint(*label);
    if (style == forms::Item::Style::warning) setAlarming(*label, true);
    return label;
}

void setAlarming(QLabel& label, bool alarming) {
    auto palette = label.parentWidget()->palette();
    if (alarming) {
        const bool dark = palette.color(QPalette::Window).lightness() < 128;
        palette.setColor(QPalette::WindowText, dark ? QColor("#ff8f85") : QColor("#b3261e"));
    }
    label.setPalette(palette);
}

} // namespace corvane::qt
