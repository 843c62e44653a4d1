#pragma once

#include <QtGlobal>

namespace corvane::qt {

/// In the environment, because a plug-in has its own copy of this code.
inline constexpr auto screenDoesNotMatter = "CORVANE_FORGET_SCREEN";

/// Windows are only drawn for pictures: how large the screen is doesn't matter. Before the first window is
/// made.
inline void forgetScreen() { qputenv(screenDoesNotMatter, "1"); }
/// Whether windows are kept on their screen.
[[nodiscard]] inline bool fitsScreen() { return !qEnvironmentVariableIsSet(screenDoesNotMatter); }

} // namespace corvane::qt
