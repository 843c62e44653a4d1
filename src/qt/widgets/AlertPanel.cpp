#include "qt/widgets/AlertPanel.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>
#include <algorithm>

#include "qt/Text.h"
#include "qt/look/Icons.h"
#include "qt/widgets/GrowingArea.h"

namespace corvane::qt {

namespace {

constexpr int signSize = 48;
constexpr int textWidth = 312;

QLabel* textLabel(QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setFixedWidth(textWidth);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->hide();
    return label;
}

} // namespace

AlertPanel::AlertPanel(QWidget* parent)
    : QDialog(parent), message_(textLabel(this)), information_(textLabel(this)), texts_(new QVBoxLayout),
      row_(new QHBoxLayout) {
    auto font = message_->font();
    font.setBold(true);
    message_->setFont(font);
    auto* sign = new QLabel(this);
    sign->setPixmap(icon("Corvane").pixmap(QSize(signSize, signSize), devicePixelRatioF()));
    sign->setFixedSize(signSize, signSize);
    texts_->setSpacing(8);
    texts_->addWidget(message_);
    texts_->addWidget(information_);
    texts_->addStretch(1);
    auto* upper = new QHBoxLayout;
    upper->setSpacing(16);
    upper->addWidget(sign, 0, Qt::AlignTop);
    upper->addLayout(texts_);
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(24, 24, 24, 24);
    all->setSpacing(24);
    all->addLayout(upper);
    all->addLayout(row_);
    all->setSizeConstraint(QLayout::SetFixedSize);
    row_->setSpacing(8);
}

void AlertPanel::setMessageText(const QString& text) {
    message_->setText(text);
    message_->setVisible(!text.isEmpty());
    setAccessibleName(text);
    setWindowTitle(text);
}

void AlertPanel::setInformativeText(const QString& text) {
    information_->setText(text);
    information_->setVisible(!text.isEmpty());
    setAccessibleDescription(text);
}

QString AlertPanel::messageText() const { return message_->text(); }

QString AlertPanel::informativeText() const { return information_->text(); }

void AlertPanel::addButton(const QString& title) {
    auto* button = new QPushButton(withMnemonic(title, mnemonics_), this);
    button->setAccessibleName(title);
    button->setMinimumWidth(96);
    buttons_.push_back(button);
    const int number = int(buttons_.size());
    connect(button, &QPushButton::clicked, this, [this, number] { done(number); });
}

// A text that is too long for the screen scrolls, so that the answers stay where they can be seen.
void AlertPanel::fitScreen() {
    const int excess = sizeHint().height() - heightOnScreen(*this);
    if (excess <= 0 || information_->isHidden()) return;
    constexpr int least = 60;
    auto* area = new QScrollArea(this);
    area->setObjectName("alertText");
    area->setFrameShape(QFrame::NoFrame);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    delete texts_->replaceWidget(information_, area);
    const int height = information_->heightForWidth(textWidth);
    information_->setFixedHeight(height);
    area->setWidget(information_);
    information_->show();
    area->setFixedSize(textWidth + area->verticalScrollBar()->sizeHint().width(),
                       std::max(least, height - excess));
}

// The default button where the eye ends, on the right; the second of three, which throws something away,
// apart from the others on the left.
void AlertPanel::arrange() {
    const bool three = buttons_.size() == 3;
    if (three) row_->addWidget(buttons_[1]);
    row_->addStretch(1);
    for (auto at = buttons_.size(); at-- > 0;)
        if (!three || at != 1) row_->addWidget(buttons_[at]);
    for (std::size_t at = 1; at < buttons_.size(); ++at)
        setTabOrder(buttons_[at - 1], buttons_[at]);
    fitScreen();
    if (buttons_.empty()) return;
    buttons_.front()->setDefault(true);
    buttons_.front()->setFocus();
}

} // namespace corvane::qt
