#pragma once

#include <memory>

#include "toolkit/Canvas.h"
#include "util/Value.h"

namespace corvane::views {

/// The control that a cell is drawn in, as it is at that moment.
struct ControlView {
    bool isFirstResponder = false; ///< of its window
    bool windowIsKey = false;
};

/// Draws one value of a list as a line of text. Main thread.
class TextFieldCell {
public:
    TextFieldCell() = default;
    virtual ~TextFieldCell() = default;
    TextFieldCell& operator=(const TextFieldCell&) = delete;

    /// A cell in the same state. Attributes and images are shared with it.
    [[nodiscard]] virtual std::unique_ptr<TextFieldCell> copy() const;

    void setObjectValue(util::Value value) { objectValue_ = std::move(value); }
    [[nodiscard]] const util::Value& objectValue() const { return objectValue_; }
    /// The row is selected.
    void setHighlighted(bool highlighted) { highlighted_ = highlighted; }
    [[nodiscard]] bool isHighlighted() const { return highlighted_; }
    void setAttributes(const toolkit::TextAttributes& attributes) { attributes_ = attributes; }

    /// The room that the cell would like inside `bounds`.
    [[nodiscard]] virtual toolkit::Size cellSizeForBounds(const toolkit::Rect& bounds,
                                                          const toolkit::Canvas& canvas) const;
    virtual void drawInteriorWithFrame(const toolkit::Rect& frame, const ControlView& view,
                                       toolkit::Canvas& canvas) const;

protected:
    TextFieldCell(const TextFieldCell&) = default;
    /// Highlighted, and the keyboard is at work right here.
    [[nodiscard]] bool showsSelection(const ControlView& view) const {
        return highlighted_ && view.isFirstResponder && view.windowIsKey;
    }

private:
    [[nodiscard]] toolkit::AttributedString text() const;

    util::Value objectValue_;
    bool highlighted_ = false;
    toolkit::TextAttributes attributes_;
};

} // namespace corvane::views
