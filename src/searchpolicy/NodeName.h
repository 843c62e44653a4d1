#pragma once

#include <string>

namespace corvane::searchpolicy {

/// The connector that a node belongs to: the text between the name's first and second "/". Raises
/// `util::RangeException` for a name without a "/".
[[nodiscard]] std::string connectorOfNode(const std::string& nodeName);

} // namespace corvane::searchpolicy
