#include "qt/windows/FoldingSection.h"

#include <QEvent>
#include <QVBoxLayout>

#include "views/CollapsibleViewAnimationProxy.h"

namespace corvane::qt {

namespace {

QToolButton* titleButton(const QString& title) {
    auto* button = new QToolButton;
    button->setText(title);
    button->setAutoRaise(true);
    button->setCheckable(true);
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    button->setArrowType(Qt::RightArrow);
    button->setFocusPolicy(Qt::StrongFocus);
    return button;
}

} // namespace

FoldingSection::FoldingSection(const QString& title, QWidget* details, HandlerGuard& guard)
    : title_(titleButton(title)), panel_(new BackgroundPanel), details_(details), runLoop_(guard),
      view_(*panel_), folding_(view_, runLoop_) {
    auto* inside = new QVBoxLayout(panel_);
    inside->setContentsMargins(12, 8, 12, 8);
    inside->setSizeConstraint(QLayout::SetNoConstraint); // the panel may be lower than its details
    inside->addWidget(details);
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(0, 0, 0, 0);
    all->setSpacing(4);
    all->addWidget(title_, 0, Qt::AlignHCenter);
    all->addWidget(panel_);
    panel_->installEventFilter(this);
    // What the panel would like to be is what unfolding brings back, before it was ever shown.
    panel_->adjustSize();
    folding_.collapseHeight();
    details_->hide();
    connect(title_, &QToolButton::toggled, this, [this](bool open) { fold(!open); });
}

void FoldingSection::fold(bool folded) {
    const auto animated = folding_.animationProxy();
    folded ? animated->collapseHeight() : animated->restoreHeight();
    title_->setArrowType(folded ? Qt::RightArrow : Qt::DownArrow);
}

// What can't be seen must not have the keyboard or be read out.
bool FoldingSection::eventFilter(QObject* watched, QEvent* event) {
    if (watched == panel_ && event->type() == QEvent::Resize) details_->setVisible(panel_->height() > 0);
    return false;
}

} // namespace corvane::qt
