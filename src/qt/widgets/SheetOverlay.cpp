#include "qt/widgets/SheetOverlay.h"

#include <QEvent>
#include <QLayout>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

#include "qt/look/Appearance.h"

namespace corvane::qt {

namespace {

constexpr int cornerRadius = 10;
constexpr int shadowWidth = 18;

bool takesTabFocus(const QWidget& widget) {
    return widget.isVisible() && widget.isEnabled() && (widget.focusPolicy() & Qt::TabFocus);
}

} // namespace

SheetOverlay::SheetOverlay(QWidget& shell, QWidget& content, QWidget& panel)
    : QWidget(&shell), content_(content), panel_(&panel) {
    panel.setParent(this, Qt::Widget);
    content.installEventFilter(this);
    panel.installEventFilter(this);
    place();
    panel.show();
    raise();
    show();
}

SheetOverlay::~SheetOverlay() {
    if (!panel_ || panel_->parentWidget() != this) return;
    panel_->hide();
    panel_->setParent(nullptr);
}

void SheetOverlay::takeFocus() {
    if (!panel_) return;
    auto* wanted = panel_->focusWidget();
    for (auto* each : panel_->findChildren<QWidget*>())
        if (!wanted && takesTabFocus(*each)) wanted = each;
    (wanted ? wanted : panel_.data())->setFocus(Qt::PopupFocusReason);
}

bool SheetOverlay::eventFilter(QObject* watched, QEvent* event) {
    const auto type = event->type();
    const bool moved = type == QEvent::Resize || type == QEvent::Move || type == QEvent::LayoutRequest;
    if (moved && (watched == &content_ || type == QEvent::LayoutRequest)) place();
    return false;
}

// Round and round inside the panel.
bool SheetOverlay::focusNextPrevChild(bool next) {
    if (!panel_) return false;
    auto* start = panel_->focusWidget() ? panel_->focusWidget() : panel_.data();
    const auto step = [next](QWidget* at) {
        return next ? at->nextInFocusChain() : at->previousInFocusChain();
    };
    for (auto* at = step(start); at != start; at = step(at)) {
        if (!panel_->isAncestorOf(at) || !takesTabFocus(*at)) continue;
        at->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
        break;
    }
    return true;
}

void SheetOverlay::place() {
    auto* shell = parentWidget();
    const QRect area(content_.mapTo(shell, QPoint()), content_.size());
    setGeometry(area);
    if (!panel_) return;
    const auto size = panel_->sizeHint().expandedTo(panel_->minimumSize()).boundedTo(area.size());
    panel_->setGeometry((area.width() - size.width()) / 2, 0, size.width(), size.height());
    update();
}

void SheetOverlay::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool dark = isDark(palette());
    painter.fillRect(rect(), QColor(0, 0, 0, dark ? 110 : 30));
    if (!panel_) return;
    // Hangs from above the upper edge, so that only the lower corners are seen to be round.
    const QRectF body = QRectF(panel_->geometry()).adjusted(0, -cornerRadius, 0, 0);
    painter.setPen(Qt::NoPen);
    for (int width = shadowWidth; width > 0; --width) {
        painter.setBrush(QColor(0, 0, 0, dark ? 5 : 2));
        const QRectF shadow = body.adjusted(-width, 0, width, width + 2);
        painter.drawRoundedRect(shadow, cornerRadius + width, cornerRadius + width);
    }
    painter.setBrush(palette().color(QPalette::Window));
    painter.setPen(QPen(palette().color(QPalette::Mid), 1));
    painter.drawRoundedRect(body.adjusted(0.5, 0.5, -0.5, -0.5), cornerRadius, cornerRadius);
}

void SheetOverlay::mousePressEvent(QMouseEvent* event) { event->accept(); }

} // namespace corvane::qt
