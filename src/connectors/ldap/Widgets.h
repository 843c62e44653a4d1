#pragma once

#include <QMessageBox>
#include <QString>

#include "sdk/Object.h"

class QLabel;
class QLineEdit;
class QWidget;

/// Small pieces that the connector's windows share. Widgets belong to their parents.
namespace corvane::connectors::ldap {

[[nodiscard]] inline QString text(const std::string& utf8) { return QString::fromStdString(utf8); }

/// The same text with invisible places to break long words at, such as names in certificates. For showing
/// only.
[[nodiscard]] QString breakable(const QString& content);
/// The window that a new one belongs in front of; null where the program shows none.
[[nodiscard]] QWidget* windowInFront();

/// A bold title at the top of a window.
[[nodiscard]] QLabel* heading(const QString& title, QWidget& parent);
/// Text that wraps.
[[nodiscard]] QLabel* paragraph(const QString& content, QWidget& parent);
/// The same, smaller and quieter: a hint below a field.
[[nodiscard]] QLabel* hint(const QString& content, QWidget& parent);
[[nodiscard]] QLineEdit* namedField(const char* name, const QString& placeholder, QWidget& parent);
/// Whether a text stands in the colour of what went wrong.
void setAlarming(QLabel& label, bool alarming);

/// A message with the program's own sign, which goes when it is closed. Shown with `open`.
[[nodiscard]] QMessageBox* messageBox(const QString& title, const QString& message,
                                      QMessageBox::StandardButton button, QWidget* parent);
/// Shows what failed, why and what to try, on `parent`. Returns at once.
void showError(QWidget* parent, const QString& title, const sdk::CallError& error);

} // namespace corvane::connectors::ldap
