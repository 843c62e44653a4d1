#pragma once

#include "util/Containers.h"

/// Copies of nested collections in which every container at every depth is new and mutable. Leaves are copied
/// immutably, or mutably where they can be and it is asked for; a leaf that has no copy is shared. Numbers
/// and dates have no mutable form. A change of the source during the copy raises
/// `EnumerationMutationException`. The result is the caller's own.
namespace corvane::util {

[[nodiscard]] Array deepMutableCopy(const Array& source);
[[nodiscard]] Dictionary deepMutableCopy(const Dictionary& source);
/// Elements that become equal by being copied collapse into one.
[[nodiscard]] Set deepMutableCopy(const Set& source);

[[nodiscard]] Array deepMutableCopyWithMutableLeaves(const Array& source, bool mutableLeaves);
[[nodiscard]] Dictionary deepMutableCopyWithMutableLeaves(const Dictionary& source, bool mutableLeaves);
[[nodiscard]] Set deepMutableCopyWithMutableLeaves(const Set& source, bool mutableLeaves);

} // namespace corvane::util
