#pragma once

#include <stdexcept>

namespace corvane::plist {

/// Why bytes are no property list, or why a value has no such form. Stays inside this folder.
class FormatFailure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace corvane::plist
