#pragma once

#include <QIcon>
#include <QString>

namespace corvane::qt {

/// One of our own drawings by its file's name without ".svg"; sharp at every size and in the colours of the
/// palette at the time of drawing. An empty icon for an unknown name.
[[nodiscard]] QIcon icon(const QString& name);

} // namespace corvane::qt
