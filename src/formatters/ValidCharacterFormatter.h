#pragma once

#include <memory>

#include "toolkit/AttributedString.h"
#include "toolkit/Formatter.h"
#include "util/CharacterSet.h"

namespace corvane::formatters {

/// Only characters of a given set may be typed; line feeds may stand before and behind them. What was typed
/// is accepted in the end without another look. Main thread.
class ValidCharacterFormatter : public toolkit::Formatter {
public:
    struct Needs {
        virtual ~Needs() = default;
        /// The system's sound for a refused key.
        virtual void beep() = 0;
    };

    /// Without a set at first, which accepts as much as an empty one. `needs` outlives the formatter.
    explicit ValidCharacterFormatter(Needs& needs) : needs_(needs) {}

    void setValidCharacterSet(std::shared_ptr<const util::CharacterSet> set) {
        _formatterValidCharacterSet = std::move(set);
    }
    /// The set in force; null when there is none.
    [[nodiscard]] virtual std::shared_ptr<const util::CharacterSet> getValidCharacterSet() const {
        return _formatterValidCharacterSet;
    }

    /// Any value as text.
    [[nodiscard]] std::optional<std::string> stringForObjectValue(const util::Value& value) const override;
    /// The value must be a string; throws `std::invalid_argument` on any other.
    [[nodiscard]] toolkit::AttributedString
    attributedStringForObjectValue(const util::Value& value,
                                   const toolkit::TextAttributes& defaultAttributes) const;
    /// False without a place for the value or without a string; nothing is ever described.
    [[nodiscard]] bool getObjectValueForString(util::Value* objectValue,
                                               std::optional<std::string_view> string,
                                               std::string* errorDescription) override;
    /// Beeps on refusal. Neither place is written.
    [[nodiscard]] bool isPartialStringValid(std::string_view partialString,
                                            std::optional<std::string>* newEditingString,
                                            std::string* errorDescription) override;

protected:
    void beep() { needs_.beep(); }

private:
    Needs& needs_;
    std::shared_ptr<const util::CharacterSet> _formatterValidCharacterSet;
};

} // namespace corvane::formatters
