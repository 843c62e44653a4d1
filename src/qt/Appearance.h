#pragma once

#include <QColor>
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
[[nodiscard]] bool isDark(const QPalette& palette);
/// The theme's colour for ordinary, secondary or alarming text.
[[nodiscard]] QColor textColor(toolkit::TextColor color, const QPalette& palette);

/// Larger and bolder than running text: a heading. `scale` is relative to the label's font.
void makeHeading(QLabel& label, double scale = 1.1);
/// Explains what stands beside it: in the theme's secondary colour, also after a change of theme.
void makeSecondary(QLabel& label);

} // namespace corvane::qt
