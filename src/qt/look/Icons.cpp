#include "qt/look/Icons.h"

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QSvgRenderer>

#include "qt/look/Appearance.h"

inline void initCorvaneResources() { Q_INIT_RESOURCE(corvane); }

namespace corvane::qt {

namespace {

/// The drawings are made for a light ground with these two colours of their own; everything else stays.
constexpr auto drawnInk = "#3a4654";
constexpr auto drawnPaper = "#fdfdfe";

/// Draws from the text of the SVG each time, so that a change of theme needs no new icon.
class SvgIconEngine final : public QIconEngine {
public:
    explicit SvgIconEngine(QByteArray drawing) : drawing_(std::move(drawing)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        QSvgRenderer renderer(inColorsOf(QGuiApplication::palette()));
        painter->save();
        if (mode == QIcon::Disabled) painter->setOpacity(0.4);
        renderer.render(painter, rect);
        painter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap image(size);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        paint(&painter, image.rect(), mode, state);
        return image;
    }

    [[nodiscard]] QIconEngine* clone() const override { return new SvgIconEngine(drawing_); }

private:
    [[nodiscard]] QByteArray inColorsOf(const QPalette& palette) const {
        if (!isDark(palette)) return drawing_;
        auto drawing = drawing_;
        return drawing.replace(drawnInk, "#ccd3dc").replace(drawnPaper, "#2c323a");
    }

    QByteArray drawing_;
};

} // namespace

QIcon icon(const QString& name) {
    initCorvaneResources();
    QFile file(":/corvane/" + name + ".svg");
    if (!file.open(QIODevice::ReadOnly)) return {};
    return QIcon(new SvgIconEngine(file.readAll()));
}

} // namespace corvane::qt
