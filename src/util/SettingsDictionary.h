#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "util/Containers.h"
#include "util/ProcessLog.h"

namespace corvane::util {

/// Typed reads of a settings dictionary with one policy: what is missing gives the caller's default or an
/// empty value, what is of the wrong kind is logged once per call and treated as missing. Never changes
/// anything.
///
/// Numbers (booleans included) convert to each scalar; outside the 32-bit range they are clamped, fractions
/// are cut off. Texts convert to an integer (the decimal number they begin with, else 0) and to a boolean
/// (true for a first letter Y or T in either case, or a digit 1-9, after blanks, a sign and leading zeros),
/// but not to an unsigned number. Object getters give the stored object itself.
class SettingsDictionary {
public:
    /// `log` outlives the accessor.
    SettingsDictionary(Dictionary settings, ProcessLog& log);

    [[nodiscard]] bool containsKey(std::string_view key) const;
    [[nodiscard]] std::int32_t integerForKey(std::string_view key, std::int32_t withDefault) const;
    [[nodiscard]] std::uint32_t unsignedForKey(std::string_view key, std::uint32_t withDefault) const;
    [[nodiscard]] bool booleanForKey(std::string_view key, bool withDefault) const;
    /// The text read. Named as the plain look-up is called elsewhere; the plain look-up of this program is
    /// `Dictionary::valueForKey`, and every getter here begins with that one.
    [[nodiscard]] String objectForKey(std::string_view key) const;
    [[nodiscard]] Array arrayForKey(std::string_view key) const;
    [[nodiscard]] Dictionary dictionaryForKey(std::string_view key) const;
    [[nodiscard]] Data dataForKey(std::string_view key) const;
    /// A copy of everything as a property list in which containers and leaves alike are mutable. Null when
    /// the dictionary holds what is no property-list value; that isn't logged.
    [[nodiscard]] Dictionary mutableDeepCopy() const;

protected:
    [[nodiscard]] const Dictionary& settings() const { return settings_; }
    [[nodiscard]] Dictionary& settings() { return settings_; }

private:
    void logUnexpected(std::string_view type, std::string_view key, const Value& value) const;
    template <typename Handle>
    [[nodiscard]] Handle objectOrEmpty(std::string_view type, std::string_view key,
                                       const Handle& empty) const;

    Dictionary settings_;
    ProcessLog* log_;
};

/// Typed writes of a mutable settings dictionary. Empty values aren't stored: they remove their key, and
/// removing an absent key is harmless. The object passed is the one stored. Changes are seen by whoever
/// shares the dictionary; an immutable one raises `ImmutableObjectException`.
class MutableSettingsDictionary : public SettingsDictionary {
public:
    using SettingsDictionary::SettingsDictionary;

    void setInteger(std::int32_t value, std::string_view key);
    void setUnsigned(std::uint32_t value, std::string_view key);
    /// False is stored.
    void setBoolean(bool value, std::string_view key);
    /// False removes the key.
    void setExists(bool exists, std::string_view key);
    /// With `removeIfNull` a null or empty text removes the key, without it a null text is stored as "".
    void setString(const String& value, std::string_view key, bool removeIfNull);
    void setArray(const Array& value, std::string_view key);
    /// Null removes; zero is stored.
    void setNumber(const Number& value, std::string_view key);
    void setDictionary(const Dictionary& value, std::string_view key);
    void setData(const Data& value, std::string_view key);
};

} // namespace corvane::util
