#include "qt/adapters/QtBusyIndicator.h"

#include <QApplication>
#include <QLabel>

#include "qt/Text.h"
#include "qt/widgets/Announcement.h"

namespace corvane::qt {

QtBusyIndicator::QtBusyIndicator(QLabel& note, std::chrono::milliseconds delay) : note_(note), delay_(delay) {
    makeAnnouncer(note_);
    note_.window()->installEventFilter(this);
}

QtBusyIndicator::~QtBusyIndicator() {
    if (shown_) QGuiApplication::restoreOverrideCursor();
}

void QtBusyIndicator::begin(std::string_view text) {
    text_ = fromUtf8(text);
    since_.start();
}

void QtBusyIndicator::end() {
    text_ = QString();
    hide();
}

void QtBusyIndicator::stillBusy() {
    const bool isDue = !text_.isNull() && !shown_ && since_.isValid() && since_.elapsed() >= delay_.count();
    if (isDue) show();
}

// A question has come up in the middle of the work: now it is the user who is waited for.
bool QtBusyIndicator::eventFilter(QObject* /*window*/, QEvent* event) {
    if (event->type() == QEvent::WindowBlocked) {
        hide();
        since_.invalidate();
    }
    if (event->type() == QEvent::WindowUnblocked) since_.start();
    return false;
}

void QtBusyIndicator::show() {
    shown_ = true;
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    note_.setText(text_);
    announce(note_, text_);
    note_.repaint();
}

void QtBusyIndicator::hide() {
    if (!shown_) return;
    shown_ = false;
    note_.clear();
    announce(note_, "");
    QGuiApplication::restoreOverrideCursor();
}

} // namespace corvane::qt
