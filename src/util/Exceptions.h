#pragma once

#include <stdexcept>
#include <string>

namespace corvane::util {

/// An index past the end of a list.
class RangeException : public std::out_of_range {
public:
    using std::out_of_range::out_of_range;
};

/// A container was changed while somebody walked it.
class EnumerationMutationException : public std::logic_error {
public:
    using std::logic_error::logic_error;
};

/// A change was asked of an object in its immutable form.
class ImmutableObjectException : public std::logic_error {
public:
    using std::logic_error::logic_error;
};

} // namespace corvane::util
