#include "util/SettingsDictionary.h"

#include <algorithm>
#include <limits>

#include "util/DeepMutableCopy.h"

namespace corvane::util {
namespace {

constexpr std::string_view blanks = " \t\n\v\f\r";
bool isDigit(char c) { return c >= '0' && c <= '9'; }

std::string_view withoutFront(std::string_view text, std::string_view characters) {
    text.remove_prefix(std::min(text.find_first_not_of(characters), text.size()));
    return text;
}

std::int32_t clampedTo32Bits(std::int64_t number) {
    using Limits = std::numeric_limits<std::int32_t>;
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(number, Limits::min(), Limits::max()));
}

/// The decimal number at the front of a text, clamped to 32 bits.
std::int32_t leadingInteger(std::string_view text) {
    text = withoutFront(text, blanks);
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) text.remove_prefix(1);
    std::int64_t magnitude = 0;
    constexpr std::int64_t enough = std::int64_t{1} << 32U;
    for (const auto c : text) {
        if (!isDigit(c)) break;
        magnitude = std::min(magnitude * 10 + (c - '0'), enough);
    }
    return clampedTo32Bits(negative ? -magnitude : magnitude);
}

bool readsAsTrue(std::string_view text) {
    text = withoutFront(text, blanks);
    if (text.starts_with('-') || text.starts_with('+')) text.remove_prefix(1);
    text = withoutFront(text, "0");
    constexpr std::string_view affirmative = "YyTt123456789";
    return !text.empty() && affirmative.find(text.front()) != std::string_view::npos;
}

std::uint32_t clampedUnsigned(const Number& number) {
    return static_cast<std::uint32_t>(
        std::min<std::uint64_t>(number.unsignedValue(), std::numeric_limits<std::uint32_t>::max()));
}

/// Text keys are the only keys there are, so only the values decide.
bool isPropertyList(const Value& value) {
    if (value.isNull() || value.isKind(Kind::Set) || value.isKind(Kind::Opaque)) return false;
    if (const auto array = value.as<Array>()) {
        for (const auto& element : array.elements())
            if (!isPropertyList(element)) return false;
    }
    if (const auto entries = value.as<Dictionary>()) {
        for (const auto& [key, entry] : entries.entries())
            if (!isPropertyList(entry)) return false;
    }
    return true;
}

} // namespace

SettingsDictionary::SettingsDictionary(Dictionary settings, ProcessLog& log)
    : settings_(std::move(settings)), log_(&log) {}

void SettingsDictionary::logUnexpected(std::string_view type, std::string_view key,
                                       const Value& value) const {
    std::string line = "Unexpected setting for ";
    line.append(type).append(" key \"").append(key).append("\": ").append(value.description());
    log_->log(line);
}

bool SettingsDictionary::containsKey(std::string_view key) const { return settings_.containsKey(key); }

std::int32_t SettingsDictionary::integerForKey(std::string_view key, std::int32_t withDefault) const {
    const auto value = settings_.valueForKey(key);
    if (!value) return withDefault;
    if (const auto number = value.as<Number>()) return clampedTo32Bits(number.integerValue());
    if (const auto text = value.as<String>()) return leadingInteger(text.text());
    logUnexpected("integer", key, value);
    return withDefault;
}

std::uint32_t SettingsDictionary::unsignedForKey(std::string_view key, std::uint32_t withDefault) const {
    const auto value = settings_.valueForKey(key);
    if (!value) return withDefault;
    if (const auto number = value.as<Number>()) return clampedUnsigned(number);
    logUnexpected("unsigned", key, value);
    return withDefault;
}

bool SettingsDictionary::booleanForKey(std::string_view key, bool withDefault) const {
    const auto value = settings_.valueForKey(key);
    if (!value) return withDefault;
    if (const auto number = value.as<Number>()) return number.booleanValue();
    if (const auto text = value.as<String>()) return readsAsTrue(text.text());
    logUnexpected("boolean", key, value);
    return withDefault;
}

template <typename Handle>
Handle SettingsDictionary::objectOrEmpty(std::string_view type, std::string_view key,
                                         const Handle& empty) const {
    const auto value = settings_.valueForKey(key);
    if (const auto object = value.as<Handle>()) return object;
    if (value) logUnexpected(type, key, value);
    return empty;
}

String SettingsDictionary::objectForKey(std::string_view key) const {
    return objectOrEmpty("string", key, String(std::string_view()));
}
Array SettingsDictionary::arrayForKey(std::string_view key) const {
    return objectOrEmpty("array", key, Array(ValueList()));
}
Dictionary SettingsDictionary::dictionaryForKey(std::string_view key) const {
    return objectOrEmpty("dictionary", key, Dictionary(ValueMap()));
}
Data SettingsDictionary::dataForKey(std::string_view key) const {
    return objectOrEmpty("data", key, Data(Bytes()));
}

Dictionary SettingsDictionary::mutableDeepCopy() const {
    return isPropertyList(settings_) ? deepMutableCopyWithMutableLeaves(settings_, true) : Dictionary();
}

void MutableSettingsDictionary::setInteger(std::int32_t value, std::string_view key) {
    settings().set(key, value);
}
void MutableSettingsDictionary::setUnsigned(std::uint32_t value, std::string_view key) {
    settings().set(key, value);
}
void MutableSettingsDictionary::setBoolean(bool value, std::string_view key) { settings().set(key, value); }

void MutableSettingsDictionary::setExists(bool exists, std::string_view key) {
    settings().set(key, exists ? Value(true) : Value());
}

void MutableSettingsDictionary::setString(const String& value, std::string_view key, bool removeIfNull) {
    const Value stored = value.isNull() ? Value(String(std::string_view())) : Value(value);
    settings().set(key, removeIfNull && value.text().empty() ? Value() : stored);
}

void MutableSettingsDictionary::setArray(const Array& value, std::string_view key) {
    settings().set(key, value.isEmpty() ? Value() : Value(value));
}
void MutableSettingsDictionary::setNumber(const Number& value, std::string_view key) {
    settings().set(key, value);
}
void MutableSettingsDictionary::setDictionary(const Dictionary& value, std::string_view key) {
    settings().set(key, value.isEmpty() ? Value() : Value(value));
}
void MutableSettingsDictionary::setData(const Data& value, std::string_view key) {
    settings().set(key, value.bytes().empty() ? Value() : Value(value));
}

} // namespace corvane::util
