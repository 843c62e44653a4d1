#include "connectors/ldap/Widgets.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <algorithm>

#include "qt/look/Icons.h"

namespace corvane::connectors::ldap {

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

QLabel* heading(const QString& title, QWidget& parent) {
    auto* label = new QLabel(title, &parent);
    label->setTextFormat(Qt::PlainText);
    auto font = label->font();
    font.setBold(true);
    font.setPointSizeF(font.pointSizeF() * 1.15);
    label->setFont(font);
    label->setWordWrap(true);
    return label;
}

QLabel* paragraph(const QString& content, QWidget& parent) {
    auto* label = new QLabel(content, &parent);
    label->setWordWrap(true);
    label->setTextFormat(Qt::PlainText); // what servers and their settings say is no markup
    label->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    return label;
}

QLabel* hint(const QString& content, QWidget& parent) {
    auto* label = paragraph(content, parent);
    auto font = label->font();
    font.setPointSizeF(font.pointSizeF() * 0.9);
    label->setFont(font);
    label->setMinimumWidth(320); // narrower, it would want more lines than it has, and leave a gap below
    auto palette = label->palette();
    palette.setColor(QPalette::WindowText, palette.color(QPalette::PlaceholderText));
    label->setPalette(palette);
    return label;
}

QLineEdit* namedField(const char* name, const QString& placeholder, QWidget& parent) {
    auto* field = new QLineEdit(&parent);
    field->setObjectName(name);
    field->setPlaceholderText(placeholder);
    field->setMinimumWidth(240);
    return field;
}

void setAlarming(QLabel& label, bool alarming) {
    auto palette = label.parentWidget()->palette();
    if (alarming) {
        const bool dark = palette.color(QPalette::Window).lightness() < 128;
        palette.setColor(QPalette::WindowText, dark ? QColor("#ff8f85") : QColor("#b3261e"));
    }
    label.setPalette(palette);
}

QMessageBox* messageBox(const QString& title, const QString& message, QMessageBox::StandardButton button,
                        QWidget* parent) {
    constexpr int signSize = 48; // as on the program's own alerts
    auto* box = new QMessageBox(QMessageBox::NoIcon, title, message, button, parent);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setIconPixmap(qt::icon("Corvane").pixmap(QSize(signSize, signSize), box->devicePixelRatioF()));
    return box;
}

void showError(QWidget* parent, const QString& title, const sdk::CallError& error) {
    auto* box = messageBox(title, QString::fromUtf8(error.what()), QMessageBox::Ok, parent);
    QStringList details;
    for (const auto& part : {error.reason(), error.recovery()})
        if (!part.empty()) details << text(part);
    box->setInformativeText(details.join("\n\n"));
    box->open();
}

} // namespace corvane::connectors::ldap
