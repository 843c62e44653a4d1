#pragma once

#include <string>
#include <variant>

namespace corvane::toolkit {

/// The system's colours by their names. What they look like is the theme's: black is the colour of text.
enum class NamedColor { black, white, gray };
/// A shade between black (0) and white (1), with its opacity (0 to 1); it looks the same in every theme.
struct CalibratedWhite {
    double white = 0;
    double alpha = 1;
    friend bool operator==(const CalibratedWhite&, const CalibratedWhite&) = default;
};
using Color = std::variant<NamedColor, CalibratedWhite>;

enum class TextAlignment { natural, center };
/// What happens to a text that is wider than its place.
enum class LineBreakMode { wordWrapping, truncatingTail };

struct ParagraphStyle {
    TextAlignment alignment = TextAlignment::natural;
    LineBreakMode lineBreakMode = LineBreakMode::wordWrapping;
    friend bool operator==(const ParagraphStyle&, const ParagraphStyle&) = default;
};

/// How a text is drawn.
struct TextAttributes {
    Color color = NamedColor::black;
    double systemFontSize = 13; ///< points
    ParagraphStyle paragraphStyle;
    friend bool operator==(const TextAttributes&, const TextAttributes&) = default;
};

/// A text in UTF-8 with the attributes that all of it has.
struct AttributedString {
    std::string string;
    TextAttributes attributes;
    friend bool operator==(const AttributedString&, const AttributedString&) = default;
};

} // namespace corvane::toolkit
