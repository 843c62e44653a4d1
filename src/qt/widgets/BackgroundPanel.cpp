#include "qt/widgets/BackgroundPanel.h"

#include <QPaintEvent>
#include <QPainter>

#include "qt/look/Appearance.h"
#include "qt/look/PainterCanvas.h"

namespace corvane::qt {

// The usual colours are made for a light ground; on a dark one they would swallow light text.
void BackgroundPanel::paintEvent(QPaintEvent* event) {
    const bool dark = isDark(palette());
    view_.setMyFillColor(dark ? std::optional<toolkit::Color>(toolkit::CalibratedWhite{1.0, 0.05})
                              : std::nullopt);
    view_.setMyBorderColor(dark ? std::optional<toolkit::Color>(toolkit::CalibratedWhite{1.0, 0.2})
                                : std::nullopt);
    QPainter painter(this);
    PainterCanvas canvas(painter, palette(), font());
    const QRectF dirty(event->rect());
    view_.drawRect({{dirty.x(), dirty.y()}, {dirty.width(), dirty.height()}},
                   {{0, 0}, {double(width()), double(height())}}, canvas);
}

} // namespace corvane::qt
