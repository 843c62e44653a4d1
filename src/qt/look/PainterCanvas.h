#pragma once

#include <QFont>
#include <QIcon>
#include <QPainter>
#include <QPalette>

#include "toolkit/Canvas.h"

namespace corvane::qt {

/// A picture of the program's, drawn in the theme's colours at any density.
class QtImage final : public toolkit::Image {
public:
    QtImage(QIcon icon, toolkit::Size size) : icon_(std::move(icon)), size_(size) {}
    [[nodiscard]] toolkit::Size size() const override { return size_; }
    [[nodiscard]] const QIcon& icon() const { return icon_; }

private:
    QIcon icon_;
    toolkit::Size size_;
};

/// The drawings among the program's resources, 32 points wide and high.
class QtImageSource final : public toolkit::ImageSource {
public:
    [[nodiscard]] std::shared_ptr<const toolkit::Image> imageNamed(std::string_view name) override;
};

/// Draws with a painter, which must be at work whenever something is drawn. Named colours are the palette's:
/// black is its text, white its text on a selection, grey its secondary text.
class PainterCanvas final : public toolkit::Canvas {
public:
    /// `systemFont` is used in whatever size a text asks for.
    PainterCanvas(QPainter& painter, const QPalette& palette, QFont systemFont);

    void fillRect(const toolkit::Rect& rect, const toolkit::Color& color,
                  toolkit::CompositingOperation operation) override;
    void strokeRect(const toolkit::Rect& rect, double lineWidth, const toolkit::Color& color,
                    toolkit::CompositingOperation operation) override;
    void drawText(const toolkit::AttributedString& text, const toolkit::Rect& rect) override;
    [[nodiscard]] toolkit::Size sizeOfText(const toolkit::AttributedString& text) const override;
    /// An image that isn't a `QtImage` isn't drawn.
    void drawImage(const toolkit::Image& image, const toolkit::Point& origin,
                   toolkit::CompositingOperation operation) override;

private:
    [[nodiscard]] QColor colorOf(const toolkit::Color& color) const;
    [[nodiscard]] QFont fontOf(const toolkit::TextAttributes& attributes) const;

    QPainter& painter_;
    QPalette palette_;
    QFont systemFont_;
};

} // namespace corvane::qt
