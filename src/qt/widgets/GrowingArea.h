#pragma once

#include <QDialog>
#include <QScrollArea>

namespace corvane::qt {

/// The part of a dialogue that is as high as its content wants to be, and scrolls where the screen is lower
/// than that. What is beside it, its buttons above all, stays on the screen.
class GrowingArea final : public QScrollArea {
public:
    /// `content` gets its layout before it is shown. It becomes the area's own.
    GrowingArea(QWidget* content, QWidget* parent);
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
};

/// Makes the dialogue as high as its texts need at its width, but not higher than the screen. `area` is in
/// its layout. A dialogue is made lower again only if `mayShrink`.
void fitHeight(QDialog& dialog, GrowingArea& area, bool mayShrink);

/// How high a window's content may be so that its frame is still on the screen.
[[nodiscard]] int heightOnScreen(const QWidget& window);

} // namespace corvane::qt
