#pragma once

#include <QLabel>

#include "forms/FormItems.h"

/// The labels of forms. All of them show plain text: what a plug-in or a server says isn't markup. Widgets
/// belong to their parents.
namespace corvane::qt {

/// The same text with invisible places to break long words at, such as names in certificates. For showing
/// only.
[[nodiscard]] QString breakable(const QString& content);
/// The window that a new one belongs in front of; null where the program shows none.
[[nodiscard]] QWidget* windowInFront();

/// A bold title at the top of a window.
[[nodiscard]] QLabel* formHeading(const QString& title, QWidget& parent);
/// Text that wraps. A hint is smaller and quieter, a warning has the colour of what went wrong.
[[nodiscard]] QLabel* formParagraph(const QString& content, forms::Item::Style style, QWidget& parent);
/// Whether a text has the colour of what went wrong.
void setAlarming(QLabel& label, bool alarming);

} // namespace corvane::qt
