#pragma once

#include "toolkit/AttributedString.h"
#include "toolkit/Geometry.h"
#include "toolkit/Image.h"

namespace corvane::toolkit {

/// How what is drawn meets what is there: in its place, or laid over it as far as it is opaque.
enum class CompositingOperation { copy, sourceOver };

/// Where a view draws itself. Lengths are points, x grows to the right and y downwards, unlike on the screen.
/// Valid for one drawing. Main thread.
class Canvas {
public:
    virtual ~Canvas() = default;
    virtual void fillRect(const Rect& rect, const Color& color, CompositingOperation operation) = 0;
    /// The line lies on the outline, half of its width on either side.
    virtual void strokeRect(const Rect& rect, double lineWidth, const Color& color,
                            CompositingOperation operation) = 0;
    /// From the rectangle's upper edge on, in lines as wide as the rectangle; what doesn't fit isn't drawn.
    virtual void drawText(const AttributedString& text, const Rect& rect) = 0;
    /// The room that a text takes when its lines may be as long as they like.
    [[nodiscard]] virtual Size sizeOfText(const AttributedString& text) const = 0;
    /// `origin` is the image's lower left corner: the image stands on it.
    virtual void drawImage(const Image& image, const Point& origin, CompositingOperation operation) = 0;
};

} // namespace corvane::toolkit
