#include "qt/widgets/FieldFormatting.h"

#include <QEvent>
#include <QLabel>
#include <QValidator>
#include <algorithm>
#include <utility>

#include "qt/widgets/Announcement.h"

namespace corvane::qt {

namespace {

std::size_t codePoints(const QString& text, qsizetype units) {
    return std::size_t(QStringView(text).left(units).toUcs4().size());
}

/// UTF-16 units of the first `count` code points.
int units(const QString& text, std::size_t count) {
    qsizetype at = 0;
    for (; count > 0 && at < text.size(); --count)
        at += text[at].isHighSurrogate() && at + 1 < text.size() ? 2 : 1;
    return int(at);
}

QColor alarmingColor(const QPalette& palette) {
    return palette.color(QPalette::Window).lightness() < 128 ? QColor("#ff8f85") : QColor("#b3261e");
}

/// Small and with a ground of its own, because it may lie over something else.
QLabel* makeLabel(const QLineEdit& field) {
    auto* label = new QLabel(field.parentWidget());
    label->setObjectName("fieldMessage");
    label->setTextFormat(Qt::PlainText);
    makeAnnouncer(*label);
    label->setAutoFillBackground(true);
    label->setMargin(3);
    label->setAttribute(Qt::WA_TransparentForMouseEvents);
    return label;
}

} // namespace

/// Where Qt asks about an edit, whatever made it: keys, the clipboard, a drop, an input method.
class FieldFormatting::Gate final : public QValidator {
public:
    explicit Gate(const FieldFormatting& owner) : owner_(owner) {}
    State validate(QString& text, int& cursor) const override {
        return owner_.mayBecome(text, cursor) ? Acceptable : Invalid;
    }

private:
    const FieldFormatting& owner_;
};

FieldFormatting::FieldFormatting(QLineEdit& field, Rules rules)
    : field_(&field), watched_(&field), rules_(std::move(rules)), gate_(std::make_unique<Gate>(*this)),
      text_(field.text()), value_(text_), judged_(text_),
      accessibleDescription_(field.accessibleDescription()) {
    field.setValidator(gate_.get());
    field.installEventFilter(this);
    connect(&field, &QLineEdit::textChanged, this, &FieldFormatting::textChanged);
    connect(&field, &QLineEdit::editingFinished, this, &FieldFormatting::commit);
    connect(&field, &QLineEdit::selectionChanged, this, &FieldFormatting::noteSelection);
    connect(&field, &QLineEdit::cursorPositionChanged, this, &FieldFormatting::noteSelection);
    noteSelection();
}

FieldFormatting::~FieldFormatting() {
    if (!field_) return;
    hide();
    field_->setValidator(nullptr);
}

/// The selection as it is between two edits: during one, Qt has changed it already.
void FieldFormatting::noteSelection() {
    const auto text = field_->text();
    const auto start =
        qsizetype(field_->hasSelectedText() ? field_->selectionStart() : field_->cursorPosition());
    const auto begin = codePoints(text, start);
    selection_ = {begin, codePoints(text, start + field_->selectionLength()) - begin};
}

bool FieldFormatting::mayBecome(QString& text, int& cursor) const {
    if (byProgram_ || text == text_) return true;
    const auto proposed = text.toStdString();
    Edit edit{proposed, {codePoints(text, cursor), 0}, text_.toStdString(), selection_};
    if (rules_.mayBecome(edit)) return true;
    if (edit.proposed == proposed) return false;
    text = QString::fromStdString(edit.proposed);
    cursor = units(text, edit.proposedSelection.location);
    return true;
}

void FieldFormatting::put(const QString& text) {
    const bool before = std::exchange(byProgram_, true);
    if (field_->text() != text) field_->setText(text);
    byProgram_ = before;
    text_ = value_ = judged_ = text;
    refused_ = false;
    hide();
}

void FieldFormatting::setText(const QString& text) {
    if (field_) put(text);
}

void FieldFormatting::textChanged(const QString& text) {
    text_ = text;
    if (byProgram_ || !refused_) return;
    const auto result = rules_.commit(text.toStdString());
    show(result.accepted ? QString() : QString::fromStdString(result.description));
}

bool FieldFormatting::commit() {
    if (!field_) return false;
    if (field_->text() == judged_) return !refused_;
    judged_ = field_->text();
    const auto result = rules_.commit(judged_.toStdString());
    refused_ = !result.accepted;
    if (refused_)
        show(QString::fromStdString(result.description));
    else
        put(QString::fromStdString(result.text));
    return !refused_;
}

QString FieldFormatting::shownDescription() const {
    return label_ && !label_->isHidden() ? label_->text() : QString();
}

void FieldFormatting::show(const QString& description) {
    if (description.isEmpty()) return hide();
    if (!label_) label_ = makeLabel(*field_);
    if (label_->parentWidget() != field_->parentWidget()) label_->setParent(field_->parentWidget());
    auto palette = field_->palette();
    palette.setColor(QPalette::WindowText, alarmingColor(palette));
    label_->setPalette(palette);
    label_->setText(description);
    announce(*label_, description);
    label_->setVisible(field_->parentWidget() && field_->isVisible());
    label_->raise();
    placeLabel();
    field_->setAccessibleDescription(description);
}

void FieldFormatting::hide() {
    if (!label_) return;
    label_->hide();
    label_->clear();
    if (field_) field_->setAccessibleDescription(accessibleDescription_);
}

/// To the right of the field where there is room, else under it; in lines as wide as the parent allows.
void FieldFormatting::placeLabel() {
    constexpr int gap = 4;
    const auto* parent = label_->parentWidget();
    if (!parent) return;
    const QRect field = field_->geometry();
    label_->setWordWrap(false);
    const bool fitsBeside = field.right() + gap + label_->sizeHint().width() <= parent->width();
    label_->setWordWrap(!fitsBeside);
    const bool rightToLeft = field_->layoutDirection() == Qt::RightToLeft;
    if (fitsBeside && !rightToLeft) {
        label_->adjustSize();
        label_->move(field.right() + gap, field.center().y() - label_->height() / 2);
        return;
    }
    const int width = std::min(label_->sizeHint().width(), parent->width() - 2 * gap);
    const int left = std::clamp(field.left(), gap, std::max(gap, parent->width() - gap - width));
    const int height = label_->heightForWidth(width);
    const bool below = field.bottom() + 1 + height <= parent->height();
    label_->setGeometry(left, below ? field.bottom() + 1 : field.top() - height, width, height);
}

bool FieldFormatting::eventFilter(QObject* watched, QEvent* event) {
    // By identity alone: a field that is being destroyed still sends events and is no line edit any more.
    const bool isField = watched == watched_ && label_ && !label_->text().isEmpty();
    if (isField && (event->type() == QEvent::Move || event->type() == QEvent::Resize)) placeLabel();
    if (isField && event->type() == QEvent::Hide) label_->hide();
    if (isField && event->type() == QEvent::Show) label_->show();
    return false;
}

} // namespace corvane::qt
