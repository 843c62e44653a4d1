#include "formatters/NumberFormatter.h"
#include "plugins/HostObject.h"
#include "plugins/ReceivedText.h"
#include "util/CharacterSet.h"

namespace corvane::plugins {
namespace {

std::shared_ptr<toolkit::Formatter> formatterOf(const CorvaneObject* object) {
    const auto* formatter = contentOf<std::shared_ptr<toolkit::Formatter>>(object);
    return formatter == nullptr ? nullptr : *formatter;
}

/// Where a field's cursor is when nothing is said about it: at the text's end.
toolkit::TextRange endOf(std::string_view text) {
    std::size_t characters = 0;
    for (; !text.empty(); ++characters)
        (void)util::takeCharacter(text);
    return {characters, 0};
}

int8_t isPartialStringValid(CorvaneObject* object, const char* proposed, const char* original) {
    return shielded(int8_t{0}, nullptr, [&] {
        const auto formatter = formatterOf(object);
        if (!formatter || proposed == nullptr) return int8_t{formatter == nullptr};
        std::string text = receivedText::repaired(proposed);
        const auto before = receivedText::repaired(original);
        auto selection = endOf(text);
        return int8_t{formatter->isPartialEditValid(text, selection, before, endOf(before), nullptr)};
    });
}

int8_t objectValueForString(CorvaneObject* object, const char* text, CorvaneObject** valuePlace,
                            CorvaneObject** descriptionPlace) {
    *valuePlace = nullptr;
    *descriptionPlace = nullptr;
    return shielded(int8_t{0}, nullptr, [&] {
        const auto formatter = formatterOf(object);
        if (!formatter) return int8_t{0};
        util::Value value;
        std::string description;
        const auto typed = receivedText::repaired(text);
        const auto string = text == nullptr ? std::nullopt : std::optional<std::string_view>(typed);
        const bool accepted = formatter->getObjectValueForString(&value, string, &description);
        *valuePlace = newReference(value);
        if (!description.empty()) *descriptionPlace = newReference(util::String(description));
        return int8_t{accepted};
    });
}

CorvaneObject* stringForObjectValue(CorvaneObject* object, const CorvaneObject* value) {
    return shielded<CorvaneObject*>(nullptr, nullptr, [&]() -> CorvaneObject* {
        const auto formatter = formatterOf(object);
        const auto text = formatter ? formatter->stringForObjectValue(valueOf(value)) : std::nullopt;
        return text ? newReference(util::String(*text)) : nullptr;
    });
}

template <typename Setter>
int8_t setBound(CorvaneObject* object, const char* decimal, Setter set) {
    return shielded(int8_t{0}, nullptr, [&] {
        const auto formatter = std::dynamic_pointer_cast<formatters::NumberFormatter>(formatterOf(object));
        if (!formatter) return int8_t{0};
        const auto bound = decimal == nullptr ? util::Decimal() : util::Decimal::fromText(decimal);
        if (decimal != nullptr && bound.isNotANumber()) return int8_t{0};
        set(*formatter, bound);
        return int8_t{1};
    });
}

} // namespace

const CorvaneFormatters& hostFormattersTable() {
    static const CorvaneFormatters table = [] {
        CorvaneFormatters made{};
        made.size = sizeof made;
        made.isPartialStringValid = isPartialStringValid;
        made.objectValueForString = objectValueForString;
        made.stringForObjectValue = stringForObjectValue;
        made.setMinimum = [](CorvaneObject* formatter, const char* decimal) {
            return setBound(formatter, decimal, [](auto& number, auto bound) { number.setMinimum(bound); });
        };
        made.setMaximum = [](CorvaneObject* formatter, const char* decimal) {
            return setBound(formatter, decimal, [](auto& number, auto bound) { number.setMaximum(bound); });
        };
        return made;
    }();
    return table;
}

} // namespace corvane::plugins
