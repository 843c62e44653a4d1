#include "plugins/HostObject.h"
#include "plugins/ReceivedText.h"

namespace corvane::plugins {
namespace {

/// Most entries answer a reference or nothing, and have no way to say why.
template <typename Body>
CorvaneObject* reference(Body body) noexcept {
    return shielded<CorvaneObject*>(nullptr, nullptr, body);
}

std::string_view view(const char* text, uint64_t length) {
    return text == nullptr ? std::string_view() : std::string_view(text, length);
}

std::string received(std::string_view text) {
    return receivedText::repaired(text, receivedText::Caller::name());
}

int32_t kindOfNumber(const util::Number& number) {
    if (number.isBoolean()) return CORVANE_BOOLEAN;
    return number.isFloating() ? CORVANE_REAL : CORVANE_INTEGER;
}

int32_t kindOfValue(const util::Value& value) {
    using util::Kind;
    if (const auto number = value.as<util::Number>()) return kindOfNumber(number);
    if (value.isKind(Kind::String)) return CORVANE_STRING;
    if (value.isKind(Kind::Date)) return CORVANE_DATE;
    if (value.isKind(Kind::Data)) return CORVANE_DATA;
    if (value.isKind(Kind::Array)) return CORVANE_ARRAY;
    return value.isKind(Kind::Dictionary) ? CORVANE_DICTIONARY : CORVANE_OTHER;
}

int32_t kindOf(const CorvaneObject* object) {
    if (object == nullptr) return CORVANE_NULL;
    if (contentOf<HostSession>(object) != nullptr) return CORVANE_SESSION;
    if (contentOf<HostNode>(object) != nullptr) return CORVANE_NODE;
    if (contentOf<std::shared_ptr<platform::Authorization>>(object) != nullptr) return CORVANE_AUTHORIZATION;
    if (contentOf<std::shared_ptr<toolkit::Formatter>>(object) != nullptr) return CORVANE_FORMATTER;
    if (contentOf<std::shared_ptr<forms::Form>>(object) != nullptr) return CORVANE_FORM;
    return kindOfValue(valueOf(object));
}

std::string descriptionOf(const CorvaneObject* object) {
    switch (kindOf(object)) {
    case CORVANE_SESSION:
        return "<session>";
    case CORVANE_NODE:
        return "<node " + contentOf<HostNode>(object)->node->name() + ">";
    case CORVANE_AUTHORIZATION:
        return "<authorization>";
    case CORVANE_FORMATTER:
        return "<formatter>";
    case CORVANE_FORM:
        return "<form>";
    default:
        return valueOf(object).description();
    }
}

void fillReferences(CorvaneObjects& table) {
    table.retain = [](CorvaneObject* object) {
        if (object != nullptr) ++object->references;
        return object;
    };
    table.release = [](CorvaneObject* object) {
        if (object != nullptr && --object->references == 0) delete object;
    };
    table.kind = [](const CorvaneObject* object) { return kindOf(object); };
    table.description = [](const CorvaneObject* object) {
        return reference([&] { return newReference(util::String(descriptionOf(object))); });
    };
}

void fillMakers(CorvaneObjects& table) {
    table.makeString = [](const char* text, uint64_t length) {
        return reference([&] { return newReference(util::String(received(view(text, length)))); });
    };
    table.makeInteger = [](int64_t number) {
        return reference([&] { return newReference(util::Number(number)); });
    };
    table.makeUnsigned = [](uint64_t number) {
        return reference([&] { return newReference(util::Number(number)); });
    };
    table.makeReal = [](double number) {
        return reference([&] { return newReference(util::Number(number)); });
    };
    table.makeBoolean = [](int8_t truth) {
        return reference([&] { return newReference(util::Number(truth != 0)); });
    };
    table.makeDate = [](double seconds) {
        return reference([&] { return newReference(util::Date(seconds)); });
    };
    table.makeData = [](const void* bytes, uint64_t length) {
        return reference([&] {
            const auto* first = static_cast<const uint8_t*>(bytes);
            return newReference(
                util::Data(first == nullptr ? util::Bytes() : util::Bytes(first, first + length)));
        });
    };
    table.makeArray = [] { return reference([] { return newReference(util::Array::makeMutable()); }); };
    table.makeDictionary = [] {
        return reference([] { return newReference(util::Dictionary::makeMutable()); });
    };
}

void fillChanges(CorvaneObjects& table) {
    table.append = [](CorvaneObject* array, const CorvaneObject* value) {
        return shielded(int8_t{0}, nullptr, [&] {
            auto list = valueOf(array).as<util::Array>();
            const auto element = valueOf(value);
            if (list.isNull() || element.isNull() || holds(element, list)) return int8_t{0};
            list.append(element);
            return int8_t{1};
        });
    };
    table.setValueForKey = [](CorvaneObject* dictionary, const char* key, const CorvaneObject* value) {
        return shielded(int8_t{0}, nullptr, [&] {
            auto entries = valueOf(dictionary).as<util::Dictionary>();
            const auto entry = valueOf(value);
            if (entries.isNull() || key == nullptr || (entry && holds(entry, entries))) return int8_t{0};
            entries.set(receivedText::repaired(key), entry);
            return int8_t{1};
        });
    };
}

void fillLeaves(CorvaneObjects& table) {
    table.text = [](const CorvaneObject* string, uint64_t* length) {
        const auto text = valueOf(string).as<util::String>();
        if (length != nullptr) *length = text.isNull() ? 0 : text.text().size();
        return text.isNull() ? "" : text.text().c_str();
    };
    table.bytes = [](const CorvaneObject* object, uint64_t* length) -> const uint8_t* {
        const auto data = valueOf(object).as<util::Data>();
        if (length != nullptr) *length = data.isNull() ? 0 : data.bytes().size();
        return data.isNull() ? nullptr : data.bytes().data();
    };
    table.integer = [](const CorvaneObject* object) -> int64_t {
        const auto number = valueOf(object).as<util::Number>();
        return number.isNull() ? 0 : number.integerValue();
    };
    table.real = [](const CorvaneObject* object) {
        const auto number = valueOf(object).as<util::Number>();
        return number.isNull() ? 0.0 : number.doubleValue();
    };
    table.boolean = [](const CorvaneObject* object) {
        const auto number = valueOf(object).as<util::Number>();
        return int8_t{!number.isNull() && number.booleanValue()};
    };
    table.date = [](const CorvaneObject* object) {
        const auto date = valueOf(object).as<util::Date>();
        return date.isNull() ? 0.0 : date.secondsSinceEpoch();
    };
}

void fillContainers(CorvaneObjects& table) {
    table.count = [](const CorvaneObject* container) -> uint64_t {
        const auto value = valueOf(container);
        return value.as<util::Array>().count() + value.as<util::Dictionary>().count();
    };
    table.at = [](const CorvaneObject* array, uint64_t index) {
        return reference([&]() -> CorvaneObject* {
            const auto list = valueOf(array).as<util::Array>();
            return index < list.count() ? newReference(list.at(index)) : nullptr;
        });
    };
    table.keys = [](const CorvaneObject* dictionary) {
        return reference([&]() -> CorvaneObject* {
            const auto entries = valueOf(dictionary).as<util::Dictionary>();
            return entries.isNull() ? nullptr : newReference(util::Array::ofTexts(entries.keys()));
        });
    };
    table.valueForKey = [](const CorvaneObject* dictionary, const char* key) {
        return reference([&]() -> CorvaneObject* {
            const auto entries = valueOf(dictionary).as<util::Dictionary>();
            return key == nullptr ? nullptr : newReference(entries.valueForKey(receivedText::repaired(key)));
        });
    };
}

} // namespace

const CorvaneObjects& hostObjectsTable() {
    static const CorvaneObjects table = [] {
        CorvaneObjects made{};
        made.size = sizeof made;
        fillReferences(made);
        fillMakers(made);
        fillChanges(made);
        fillLeaves(made);
        fillContainers(made);
        return made;
    }();
    return table;
}

} // namespace corvane::plugins
