#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "util/Value.h"

namespace corvane::toolkit {

/// Characters of a text, counted as the UTF-8 text's code points.
struct TextRange {
    std::size_t location = 0;
    std::size_t length = 0;
    friend bool operator==(const TextRange&, const TextRange&) = default;
};

/// Says what may be typed into a text field, and which value the text of a field stands for. A field asks at
/// each keystroke and when the edit is committed: a refused keystroke leaves the field as it was, a refused
/// commit leaves the field's value as it was. Texts are UTF-8. Main thread.
class Formatter {
public:
    virtual ~Formatter() = default;

    /// The text that shows a value; none for a value that this formatter can't show.
    [[nodiscard]] virtual std::optional<std::string> stringForObjectValue(const util::Value& value) const = 0;

    /// The edit is committed: true when `string` stands for a value, which goes to `objectValue`. When it
    /// doesn't, `errorDescription` may get a text for the user, and stays untouched where there is nothing to
    /// say. Either place may be null, as far as the formatter allows it.
    [[nodiscard]] virtual bool getObjectValueForString(util::Value* objectValue,
                                                       std::optional<std::string_view> string,
                                                       std::string* errorDescription) = 0;

    /// A keystroke, a paste, a drop: may the field's text become `partialString`? When it may not,
    /// `newEditingString` may get a text to take instead.
    [[nodiscard]] virtual bool isPartialStringValid(std::string_view partialString,
                                                    std::optional<std::string>* newEditingString,
                                                    std::string* errorDescription) = 0;

    /// The same question with what was there before; this is the one that a field asks. A refusing formatter
    /// may change the proposed text and selection to what the field shall take instead. Unless a formatter
    /// has its own way, the text alone is judged.
    [[nodiscard]] virtual bool isPartialEditValid(std::string& partialString,
                                                  TextRange& proposedSelectedRange,
                                                  std::string_view originalString,
                                                  TextRange originalSelectedRange,
                                                  std::string* errorDescription);
};

inline bool Formatter::isPartialEditValid(std::string& partialString, TextRange& /*proposedSelectedRange*/,
                                          std::string_view /*originalString*/,
                                          TextRange /*originalSelectedRange*/,
                                          std::string* errorDescription) {
    std::optional<std::string> instead;
    const bool valid = isPartialStringValid(partialString, &instead, errorDescription);
    if (!valid && instead) partialString = *instead;
    return valid;
}

} // namespace corvane::toolkit
