#pragma once

#include <QColor>
#include <QList>
#include <QPalette>

#include "toolkit/TableView.h"

class QApplication;
class QLabel;

namespace corvane::qt {

enum class ColorScheme { automatic, light, dark };

/// Gives the application its style and fonts. Colours are the desktop's where it has any; on a bare display
/// they are ours, light or dark (`automatic` then means light).
void installAppearance(QApplication& application, ColorScheme scheme = ColorScheme::automatic);

[[nodiscard]] QPalette ownPalette(bool dark);
/// How well one colour is seen on another, opaque one: 1 for not at all, 21 for black on white.
[[nodiscard]] double contrast(const QColor& color, const QColor& ground);
/// Text is to be read, and the borders of fields are to be seen, by people who don't see well.
inline constexpr double readableText = 4.5;
inline constexpr double visibleBorder = 3.0;
/// `color`, as far towards black or white as it takes to reach that contrast on each of the grounds.
[[nodiscard]] QColor strengthened(const QColor& color, const QList<QColor>& grounds, double wanted);
/// The palette with every text readable on its ground and every border visible; what is so already is left
/// alone.
[[nodiscard]] QPalette readable(QPalette palette);
/// The ground of a selection while the keyboard is elsewhere: as much of the accent as leaves ordinary and
/// secondary text readable.
[[nodiscard]] QColor restingSelection(const QPalette& palette);
[[nodiscard]] bool isDark(const QPalette& palette);
/// The theme's colour for ordinary, secondary or alarming text.
[[nodiscard]] QColor textColor(toolkit::TextColor color, const QPalette& palette);

/// Larger and bolder than running text: a heading. `scale` is relative to the label's font.
void makeHeading(QLabel& label, double scale = 1.1);
/// Explains what stands beside it: in the theme's secondary colour, also after a change of theme.
void makeSecondary(QLabel& label);

} // namespace corvane::qt
