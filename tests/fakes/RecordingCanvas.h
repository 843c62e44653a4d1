#pragma once

#include <sstream>
#include <string>
#include <vector>

#include "toolkit/Canvas.h"
#include "util/CharacterSet.h"

namespace corvane::fakes {

class FakeImage final : public toolkit::Image {
public:
    FakeImage(std::string name, toolkit::Size size) : name_(std::move(name)), size_(size) {}
    [[nodiscard]] toolkit::Size size() const override { return size_; }
    [[nodiscard]] std::string description() const override { return name_; }

private:
    std::string name_;
    toolkit::Size size_;
};

class FakeImageSource final : public toolkit::ImageSource {
public:
    [[nodiscard]] std::shared_ptr<const toolkit::Image> imageNamed(std::string_view name) override {
        asked.emplace_back(name);
        return hasImages ? std::make_shared<FakeImage>(std::string(name), toolkit::Size{32, 32}) : nullptr;
    }
    std::vector<std::string> asked;
    bool hasImages = true;
};

/// Writes down what is drawn. A character is half as wide as its font is high, and a line a quarter higher
/// than it.
class RecordingCanvas final : public toolkit::Canvas {
public:
    struct Text {
        toolkit::AttributedString text;
        toolkit::Rect rect;
        friend bool operator==(const Text&, const Text&) = default;
    };

    void fillRect(const toolkit::Rect& rect, const toolkit::Color& color,
                  toolkit::CompositingOperation operation) override {
        drawn.push_back("fill " + written(rect) + " " + written(color) + " " + written(operation));
    }
    void strokeRect(const toolkit::Rect& rect, double lineWidth, const toolkit::Color& color,
                    toolkit::CompositingOperation operation) override {
        drawn.push_back("stroke " + written(rect) + " " + written(lineWidth) + " " + written(color) + " " +
                        written(operation));
    }
    void drawText(const toolkit::AttributedString& text, const toolkit::Rect& rect) override {
        drawn.push_back("text " + text.string);
        texts.push_back({text, rect});
    }
    [[nodiscard]] toolkit::Size sizeOfText(const toolkit::AttributedString& text) const override {
        double characters = 0;
        for (std::string_view rest = text.string; !rest.empty(); ++characters)
            (void)util::takeCharacter(rest);
        const double font = text.attributes.systemFontSize;
        return {characters * font * 0.5, font * 1.25};
    }
    void drawImage(const toolkit::Image& image, const toolkit::Point& origin,
                   toolkit::CompositingOperation operation) override {
        drawn.push_back("image " + image.description() + " " + written(origin.x) + "," + written(origin.y) +
                        " " + written(operation));
    }

    std::vector<std::string> drawn; ///< everything, in order
    std::vector<Text> texts;

private:
    static std::string written(double number) {
        std::ostringstream out;
        out << number;
        return out.str();
    }
    static std::string written(const toolkit::Rect& rect) {
        return written(rect.origin.x) + "," + written(rect.origin.y) + " " + written(rect.size.width) + "x" +
               written(rect.size.height);
    }
    static std::string written(toolkit::CompositingOperation operation) {
        return operation == toolkit::CompositingOperation::sourceOver ? "over" : "copy";
    }
    static std::string written(const toolkit::Color& color) {
        if (const auto* white = std::get_if<toolkit::CalibratedWhite>(&color))
            return "white(" + written(white->white) + "," + written(white->alpha) + ")";
        switch (std::get<toolkit::NamedColor>(color)) {
        case toolkit::NamedColor::white:
            return "white";
        case toolkit::NamedColor::gray:
            return "gray";
        case toolkit::NamedColor::black:
            break;
        }
        return "black";
    }
};

} // namespace corvane::fakes
