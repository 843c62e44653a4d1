#pragma once

#include "Host.h"

namespace corvane::sdk {

/// Typed reads and writes of a dictionary with settings: what Settings.h says, in C++. On a host that is too
/// old for them reads answer the default or nothing, and writes false. Main thread.
class SettingsDictionary {
public:
    SettingsDictionary(const Host& host, Object settings) : host_(host), settings_(std::move(settings)) {}
    [[nodiscard]] const Object& object() const { return settings_; }

    [[nodiscard]] bool containsKey(const std::string& key) const {
        return read(std::int8_t{0}, &CorvaneSettings::containsKey, key.c_str()) != 0;
    }
    [[nodiscard]] std::int32_t integerForKey(const std::string& key, std::int32_t withDefault) const {
        return read(withDefault, &CorvaneSettings::integerForKey, key.c_str(), withDefault);
    }
    [[nodiscard]] std::uint32_t unsignedForKey(const std::string& key, std::uint32_t withDefault) const {
        return read(withDefault, &CorvaneSettings::unsignedForKey, key.c_str(), withDefault);
    }
    [[nodiscard]] bool booleanForKey(const std::string& key, bool withDefault) const {
        const auto otherwise = static_cast<std::int8_t>(withDefault ? 1 : 0);
        return read(otherwise, &CorvaneSettings::booleanForKey, key.c_str(), otherwise) != 0;
    }
    [[nodiscard]] std::string stringForKey(const std::string& key) const {
        return get(&CorvaneSettings::stringForKey, key.c_str()).text();
    }
    [[nodiscard]] Object arrayForKey(const std::string& key) const {
        return get(&CorvaneSettings::arrayForKey, key.c_str());
    }
    [[nodiscard]] Object dictionaryForKey(const std::string& key) const {
        return get(&CorvaneSettings::dictionaryForKey, key.c_str());
    }
    [[nodiscard]] Object dataForKey(const std::string& key) const {
        return get(&CorvaneSettings::dataForKey, key.c_str());
    }
    [[nodiscard]] Object mutableDeepCopy() const { return get(&CorvaneSettings::mutableDeepCopy); }

    // False when the dictionary can't be changed, or the value is of another kind.
    bool setInteger(std::int32_t value, const std::string& key) const {
        return write(&CorvaneSettings::setInteger, value, key.c_str());
    }
    bool setUnsigned(std::uint32_t value, const std::string& key) const {
        return write(&CorvaneSettings::setUnsigned, value, key.c_str());
    }
    bool setBoolean(bool value, const std::string& key) const {
        return write(&CorvaneSettings::setBoolean, static_cast<std::int8_t>(value ? 1 : 0), key.c_str());
    }
    bool setExists(bool exists, const std::string& key) const {
        return write(&CorvaneSettings::setExists, static_cast<std::int8_t>(exists ? 1 : 0), key.c_str());
    }
    bool setString(const Object& string, const std::string& key, bool removeIfNull) const {
        return write(&CorvaneSettings::setString, constant(string), key.c_str(),
                     static_cast<std::int8_t>(removeIfNull ? 1 : 0));
    }
    bool setNumber(const Object& number, const std::string& key) const {
        return write(&CorvaneSettings::setNumber, constant(number), key.c_str());
    }
    bool setArray(const Object& array, const std::string& key) const {
        return write(&CorvaneSettings::setArray, constant(array), key.c_str());
    }
    bool setDictionary(const Object& dictionary, const std::string& key) const {
        return write(&CorvaneSettings::setDictionary, constant(dictionary), key.c_str());
    }
    bool setData(const Object& data, const std::string& key) const {
        return write(&CorvaneSettings::setData, constant(data), key.c_str());
    }

private:
    [[nodiscard]] static const CorvaneObject* constant(const Object& object) { return object.get(); }
    template <typename Result, typename... Parameters, typename... Arguments>
    [[nodiscard]] Result read(Result otherwise,
                              Result (*CorvaneSettings::*entry)(const CorvaneObject*, Parameters...),
                              Arguments... arguments) const {
        if (!host_.offers(entry)) return otherwise;
        return (host_.table().settings->*entry)(settings_.get(), arguments...);
    }
    template <typename... Parameters, typename... Arguments>
    [[nodiscard]] Object get(CorvaneObject* (*CorvaneSettings::*entry)(const CorvaneObject*, Parameters...),
                             Arguments... arguments) const {
        return {*host_.table().objects, read<CorvaneObject*>(nullptr, entry, arguments...)};
    }
    template <typename... Parameters, typename... Arguments>
    bool write(std::int8_t (*CorvaneSettings::*entry)(CorvaneObject*, Parameters...),
               Arguments... arguments) const {
        return host_.offers(entry) && (host_.table().settings->*entry)(settings_.get(), arguments...) != 0;
    }

    Host host_;
    Object settings_;
};

} // namespace corvane::sdk
