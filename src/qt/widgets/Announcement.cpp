#include "qt/widgets/Announcement.h"

#include <QAccessibleWidget>
#include <QVariant>

namespace corvane::qt {
namespace {

constexpr auto announces = "announces";

QAccessibleInterface* notificationFor(const QString& /*key*/, QObject* object) {
    auto* widget = qobject_cast<QWidget*>(object);
    const bool isAnnouncer = widget != nullptr && widget->property(announces).toBool();
    return isAnnouncer ? new QAccessibleWidget(widget, QAccessible::Notification) : nullptr;
}

std::function<void(const QString&)>& listener() {
    static std::function<void(const QString&)> hears;
    return hears;
}

} // namespace

void makeAnnouncer(QWidget& widget) {
    [[maybe_unused]] static const bool installed = [] {
        QAccessible::installFactory(notificationFor);
        return true;
    }();
    widget.setProperty(announces, true);
    // What Qt made for the widget before knows nothing of that.
    QAccessible::deleteAccessibleInterface(
        QAccessible::uniqueId(QAccessible::queryAccessibleInterface(&widget)));
}

// The bridge to the desktop's screen readers drops Qt's own alert events. A notification that comes to be
// shown is what they listen for.
void announce(QWidget& widget, const QString& text) {
    widget.setAccessibleName(text);
    if (!widget.isVisible() || text.isEmpty()) return;
    QAccessibleEvent shown(&widget, QAccessible::ObjectShow);
    QAccessible::updateAccessibility(&shown);
    if (listener()) listener()(text);
}

void setAnnouncementListener(std::function<void(const QString& text)> hears) {
    listener() = std::move(hears);
}

} // namespace corvane::qt
