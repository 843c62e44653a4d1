#include "qt/adapters/QtProgressIndicator.h"

namespace corvane::qt {

QtProgressIndicator::QtProgressIndicator(QProgressBar& bar) : QtView(bar) { apply(); }

void QtProgressIndicator::setIndeterminate(bool indeterminate) {
    indeterminate_ = indeterminate;
    apply();
}

void QtProgressIndicator::startAnimation() {
    animating_ = true;
    apply();
}

void QtProgressIndicator::stopAnimation() {
    animating_ = false;
    apply();
}

void QtProgressIndicator::setNeedsDisplay() { widget_.update(); }

// The window as a whole: the sheet that holds the bar may have appeared just now and wasn't drawn either.
void QtProgressIndicator::display() {
    if (widget_.isVisible()) widget_.window()->repaint();
}

// A range without extent is what Qt draws as "busy".
void QtProgressIndicator::apply() {
    const bool busy = indeterminate_ && animating_;
    widget_.setRange(0, busy ? 0 : 100);
    if (indeterminate_) widget_.reset();
}

} // namespace corvane::qt
