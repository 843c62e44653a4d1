#include "qt/widgets/NoticeStrip.h"

#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

#include "qt/widgets/Announcement.h"

namespace corvane::qt {

namespace {

constexpr int mostLines = 4;
constexpr int noLimit = 10000;

int heightOf(const QLabel& label, const QString& text, int width) {
    return label.fontMetrics().boundingRect(0, 0, width, noLimit, Qt::TextWordWrap, text).height();
}

/// As much of the text as fits into `mostLines`, with an ellipsis where something is left out.
QString shortened(const QLabel& label, const QString& text, int width) {
    const int limit = mostLines * label.fontMetrics().lineSpacing();
    if (heightOf(label, text, width) <= limit) return text;
    const auto candidate = [&](qsizetype length) { return text.left(length).trimmed() + u'…'; };
    qsizetype fits = 0;
    for (qsizetype step = text.size(); step > 0; step /= 2)
        while (fits + step < text.size() && heightOf(label, candidate(fits + step), width) <= limit)
            fits += step;
    return candidate(fits);
}

QLabel* textLabel(QWidget& parent) {
    auto* label = new QLabel(&parent);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    label->hide();
    return label;
}

} // namespace

NoticeStrip::NoticeStrip(QWidget* parent)
    : QFrame(parent), message_(textLabel(*this)), information_(textLabel(*this)), buttons_(new QVBoxLayout) {
    makeAnnouncer(*this);
    auto font = message_->font();
    font.setWeight(QFont::DemiBold);
    message_->setFont(font);
    auto* texts = new QVBoxLayout;
    texts->setSpacing(2);
    texts->addWidget(message_);
    texts->addWidget(information_);
    texts->setAlignment(Qt::AlignVCenter);
    auto* all = new QHBoxLayout(this);
    all->setContentsMargins(12, 8, 8, 8);
    all->setSpacing(12);
    all->addLayout(texts, 1);
    all->addLayout(buttons_);
    buttons_->setSpacing(6);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void NoticeStrip::setMessageText(const QString& text) {
    const bool news = text != message_->text();
    message_->setText(text);
    message_->setVisible(!text.isEmpty());
    fitTexts();
    if (news) announce();
}

void NoticeStrip::setInformativeText(const QString& text) {
    const bool news = text != wholeInformation_;
    wholeInformation_ = text;
    information_->setVisible(!text.isEmpty());
    fitTexts();
    if (news) announce();
}

QString NoticeStrip::messageText() const { return message_->text(); }
QString NoticeStrip::informativeText() const { return wholeInformation_; }

QPushButton& NoticeStrip::addButton(const QString& title, const char* name) {
    auto* button = new QPushButton(title, this);
    button->setObjectName(name);
    button->setAutoDefault(false);
    buttons_->addWidget(button);
    return *button;
}

// The ground takes a little of the accent's colour, so that it is seen on any theme and text stays readable
// on it.
void NoticeStrip::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    auto ground = palette().color(QPalette::Highlight);
    ground.setAlphaF(0.10F);
    painter.setBrush(ground);
    painter.setPen(QPen(palette().color(QPalette::Highlight), 1));
    constexpr double corner = 6;
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), corner, corner);
}

void NoticeStrip::resizeEvent(QResizeEvent* event) {
    QFrame::resizeEvent(event);
    fitTexts();
}

void NoticeStrip::fitTexts() {
    const auto margins = layout()->contentsMargins();
    const int buttons = buttons_->isEmpty() ? 0 : buttons_->sizeHint().width() + layout()->spacing();
    const int room = width() - margins.left() - margins.right() - buttons;
    if (room <= 0) return;
    const auto shown = shortened(*information_, wholeInformation_, room);
    information_->setText(shown);
    information_->setToolTip(shown == wholeInformation_ ? QString() : wholeInformation_);
    for (auto* label : {message_, information_})
        if (label->wordWrap()) label->setFixedHeight(heightOf(*label, label->text(), room));
}

void NoticeStrip::keepMessageOnOneLine() { message_->setWordWrap(false); }

void NoticeStrip::announce() {
    const auto all = wholeInformation_.isEmpty() ? messageText() : messageText() + "\n" + wholeInformation_;
    qt::announce(*this, all);
}

} // namespace corvane::qt
