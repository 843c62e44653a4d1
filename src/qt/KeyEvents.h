#pragma once

#include <QKeyEvent>

#include "toolkit/Application.h"

namespace corvane::qt {

/// Ctrl is the program's command key, Super (or Windows) its control key, Alt its option key.
[[nodiscard]] toolkit::Event toolkitEvent(const QKeyEvent& event);

} // namespace corvane::qt
