#include "qt/look/PainterCanvas.h"

#include <QFontMetricsF>
#include <algorithm>
#include <cmath>

#include "qt/Text.h"
#include "qt/look/Icons.h"

namespace corvane::qt {

namespace {

QRectF rectOf(const toolkit::Rect& rect) {
    return {rect.origin.x, rect.origin.y, rect.size.width, rect.size.height};
}

QPainter::CompositionMode modeOf(toolkit::CompositingOperation operation) {
    return operation == toolkit::CompositingOperation::copy ? QPainter::CompositionMode_Source
                                                            : QPainter::CompositionMode_SourceOver;
}

QPalette::ColorRole roleOf(toolkit::NamedColor color) {
    switch (color) {
    case toolkit::NamedColor::white:
        return QPalette::HighlightedText;
    case toolkit::NamedColor::gray:
        return QPalette::PlaceholderText;
    case toolkit::NamedColor::black:
        break;
    }
    return QPalette::Text;
}

/// Puts the painter back into the state in which it was.
class Saved {
public:
    explicit Saved(QPainter& painter) : painter_(painter) { painter.save(); }
    ~Saved() { painter_.restore(); }
    Saved(const Saved&) = delete;
    Saved& operator=(const Saved&) = delete;

private:
    QPainter& painter_;
};

} // namespace

std::shared_ptr<const toolkit::Image> QtImageSource::imageNamed(std::string_view name) {
    auto drawing = icon(fromUtf8(name));
    if (drawing.isNull()) return nullptr;
    return std::make_shared<QtImage>(std::move(drawing), toolkit::Size{32, 32});
}

PainterCanvas::PainterCanvas(QPainter& painter, const QPalette& palette, QFont systemFont)
    : painter_(painter), palette_(palette), systemFont_(std::move(systemFont)) {}

QColor PainterCanvas::colorOf(const toolkit::Color& color) const {
    if (const auto* named = std::get_if<toolkit::NamedColor>(&color)) return palette_.color(roleOf(*named));
    const auto& [white, alpha] = std::get<toolkit::CalibratedWhite>(color);
    return QColor::fromRgbF(float(white), float(white), float(white), float(alpha));
}

/// Points of the program are Qt's device-independent pixels.
QFont PainterCanvas::fontOf(const toolkit::TextAttributes& attributes) const {
    auto font = systemFont_;
    font.setPixelSize(std::max(1, int(std::lround(attributes.systemFontSize))));
    return font;
}

void PainterCanvas::fillRect(const toolkit::Rect& rect, const toolkit::Color& color,
                             toolkit::CompositingOperation operation) {
    const Saved saved(painter_);
    painter_.setCompositionMode(modeOf(operation));
    painter_.fillRect(rectOf(rect), colorOf(color));
}

void PainterCanvas::strokeRect(const toolkit::Rect& rect, double lineWidth, const toolkit::Color& color,
                               toolkit::CompositingOperation operation) {
    const Saved saved(painter_);
    painter_.setCompositionMode(modeOf(operation));
    // Without smooth edges a thin line on the outline would be put beyond the right and the lower one.
    painter_.setRenderHint(QPainter::Antialiasing);
    painter_.setBrush(Qt::NoBrush);
    painter_.setPen(QPen(colorOf(color), lineWidth, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
    painter_.drawRect(rectOf(rect));
}

void PainterCanvas::drawText(const toolkit::AttributedString& text, const toolkit::Rect& rect) {
    const Saved saved(painter_);
    const auto& style = text.attributes.paragraphStyle;
    const auto font = fontOf(text.attributes);
    const QFontMetricsF metrics(font, painter_.device());
    auto place = rectOf(rect);
    // A line that begins in the rectangle is drawn whole: letters keep their feet.
    place.setHeight(std::max(place.height(), metrics.height()));
    const bool cut = style.lineBreakMode == toolkit::LineBreakMode::truncatingTail;
    auto shown = fromUtf8(text.string);
    if (cut) shown = metrics.elidedText(shown, Qt::ElideRight, place.width());
    const auto alignment =
        style.alignment == toolkit::TextAlignment::center ? Qt::AlignHCenter : Qt::AlignLeft;
    painter_.setFont(font);
    painter_.setPen(colorOf(text.attributes.color));
    painter_.drawText(place, int(alignment | Qt::AlignTop) | (cut ? Qt::TextSingleLine : Qt::TextWordWrap),
                      shown);
}

toolkit::Size PainterCanvas::sizeOfText(const toolkit::AttributedString& text) const {
    const QFontMetricsF metrics(fontOf(text.attributes), painter_.device());
    const auto size = metrics.size(0, fromUtf8(text.string));
    return {size.width(), std::max(size.height(), metrics.height())};
}

void PainterCanvas::drawImage(const toolkit::Image& image, const toolkit::Point& origin,
                              toolkit::CompositingOperation operation) {
    const auto* ours = dynamic_cast<const QtImage*>(&image);
    if (!ours) return;
    const Saved saved(painter_);
    painter_.setCompositionMode(modeOf(operation));
    const auto [width, height] = ours->size();
    ours->icon().paint(&painter_, QRectF(origin.x, origin.y - height, width, height).toAlignedRect());
}

} // namespace corvane::qt
