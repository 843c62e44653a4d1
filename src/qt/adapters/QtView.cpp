#include "qt/adapters/QtView.h"

#include "qt/adapters/QtWindow.h"

namespace corvane::qt {

QWidget* widgetOf(const toolkit::View* view) {
    const auto* backed = dynamic_cast<const WidgetBacked*>(view);
    return backed ? &backed->widget() : nullptr;
}

toolkit::Window* windowOf(const QWidget& widget) { return QtWindow::of(widget); }

toolkit::Rect frameOf(const QWidget& widget) {
    const QRect place = widget.geometry();
    const auto* parent = widget.parentWidget();
    const int bottom = parent ? parent->height() - place.y() - place.height() : 0;
    return {{double(place.x()), double(bottom)}, {double(place.width()), double(place.height())}};
}

} // namespace corvane::qt
