#pragma once

#include <stdexcept>

#include "forms/FormItems.h"

namespace corvane::forms {

/// A description that can't be shown; `what()` says where and why: 'item "port": there is no kind "nummer"'.
class FormError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Reads a description as it is documented for plug-ins. Throws `FormError` for a key that isn't known, a
/// value of the wrong kind, a name that appears twice, and more than the limits. `description` isn't kept.
[[nodiscard]] FormDescription readForm(const util::Dictionary& description);

/// Changes one property of an item, or of a button, by the key that a description has for it. Throws
/// `FormError`, and changes nothing then.
void setProperty(Item& item, const std::string& key, const util::Value& value);
void setProperty(Button& button, const std::string& key, const util::Value& value);

/// How much one form may hold, in all its parts.
constexpr std::size_t mostItems = 500;
constexpr std::size_t mostRows = 100'000;
constexpr std::size_t longestText = 100'000; ///< bytes

} // namespace corvane::forms
