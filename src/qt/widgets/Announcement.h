#pragma once

#include <QWidget>
#include <functional>

namespace corvane::qt {

/// Lets a widget be one that `announce` has read out: screen readers learn that it is a notification.
void makeAnnouncer(QWidget& widget);

/// Has screen readers read `text` out as the widget's name, although the keyboard is elsewhere. A widget that
/// can't be seen is read out when it comes to be shown. `widget` was given to `makeAnnouncer`.
void announce(QWidget& widget, const QString& text);

/// Hears what is read out, besides the screen readers; for tests, since Qt passes nothing on while none runs.
/// An empty one ends that.
void setAnnouncementListener(std::function<void(const QString& text)> listener);

} // namespace corvane::qt
