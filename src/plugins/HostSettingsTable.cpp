#include "plugins/HostObject.h"
#include "plugins/ReceivedText.h"
#include "util/SettingsDictionary.h"

namespace corvane::plugins {
namespace {

/// Lines about values of the wrong kind go where those about broken texts go.
class ReceivedLog final : public util::ProcessLog {
public:
    void log(std::string_view line) override { receivedText::log(std::string(line)); }
};

ReceivedLog& theLog() {
    static ReceivedLog log;
    return log;
}

std::string keyOf(const char* key) { return receivedText::repaired(key); }

/// Reads a dictionary; `otherwise` for what is none.
template <typename Result, typename Body>
Result read(const CorvaneObject* object, Result otherwise, Body body) noexcept {
    return shielded<Result>(otherwise, nullptr, [&]() -> Result {
        const auto dictionary = valueOf(object).as<util::Dictionary>();
        return dictionary.isNull() ? otherwise : body(util::SettingsDictionary(dictionary, theLog()));
    });
}

template <typename Body>
CorvaneObject* get(const CorvaneObject* object, Body body) noexcept {
    return read<CorvaneObject*>(object, nullptr, [&](const util::SettingsDictionary& settings) {
        return newReference(body(settings));
    });
}

template <typename Body>
int8_t write(CorvaneObject* object, Body body) noexcept {
    return shielded<int8_t>(0, nullptr, [&] {
        const auto dictionary = valueOf(object).as<util::Dictionary>();
        if (!dictionary.isMutable()) return int8_t{0};
        util::MutableSettingsDictionary settings(dictionary, theLog());
        body(settings);
        return int8_t{1};
    });
}

void fillScalarReads(CorvaneSettings& table) {
    table.containsKey = [](const CorvaneObject* object, const char* key) {
        return read<int8_t>(object, 0, [&](const util::SettingsDictionary& settings) {
            return int8_t{settings.containsKey(keyOf(key))};
        });
    };
    table.integerForKey = [](const CorvaneObject* object, const char* key, int32_t withDefault) {
        return read(object, withDefault, [&](const util::SettingsDictionary& settings) {
            return settings.integerForKey(keyOf(key), withDefault);
        });
    };
    table.unsignedForKey = [](const CorvaneObject* object, const char* key, uint32_t withDefault) {
        return read(object, withDefault, [&](const util::SettingsDictionary& settings) {
            return settings.unsignedForKey(keyOf(key), withDefault);
        });
    };
    table.booleanForKey = [](const CorvaneObject* object, const char* key, int8_t withDefault) {
        return read(object, withDefault, [&](const util::SettingsDictionary& settings) {
            return int8_t{settings.booleanForKey(keyOf(key), withDefault != 0)};
        });
    };
}

void fillObjectReads(CorvaneSettings& table) {
    using util::SettingsDictionary;
    table.stringForKey = [](const CorvaneObject* object, const char* key) {
        return get(object, [&](const SettingsDictionary& all) { return all.objectForKey(keyOf(key)); });
    };
    table.arrayForKey = [](const CorvaneObject* object, const char* key) {
        return get(object, [&](const SettingsDictionary& all) { return all.arrayForKey(keyOf(key)); });
    };
    table.dictionaryForKey = [](const CorvaneObject* object, const char* key) {
        return get(object, [&](const SettingsDictionary& all) { return all.dictionaryForKey(keyOf(key)); });
    };
    table.dataForKey = [](const CorvaneObject* object, const char* key) {
        return get(object, [&](const SettingsDictionary& all) { return all.dataForKey(keyOf(key)); });
    };
    table.mutableDeepCopy = [](const CorvaneObject* object) {
        return get(object, [](const SettingsDictionary& all) { return all.mutableDeepCopy(); });
    };
}

void fillScalarWrites(CorvaneSettings& table) {
    using Settings = util::MutableSettingsDictionary;
    table.setInteger = [](CorvaneObject* object, int32_t value, const char* key) {
        return write(object, [&](Settings& settings) { settings.setInteger(value, keyOf(key)); });
    };
    table.setUnsigned = [](CorvaneObject* object, uint32_t value, const char* key) {
        return write(object, [&](Settings& settings) { settings.setUnsigned(value, keyOf(key)); });
    };
    table.setBoolean = [](CorvaneObject* object, int8_t value, const char* key) {
        return write(object, [&](Settings& settings) { settings.setBoolean(value != 0, keyOf(key)); });
    };
    table.setExists = [](CorvaneObject* object, int8_t exists, const char* key) {
        return write(object, [&](Settings& settings) { settings.setExists(exists != 0, keyOf(key)); });
    };
}

/// A value of another kind than the entry is for changes nothing.
template <typename Handle, typename Body>
int8_t writeObject(CorvaneObject* object, const CorvaneObject* value, Body body) noexcept {
    const auto handle = valueOf(value).as<Handle>();
    if (value != nullptr && (handle.isNull() || holds(handle, valueOf(object)))) return 0;
    return write(object, [&](util::MutableSettingsDictionary& settings) { body(settings, handle); });
}

void fillObjectWrites(CorvaneSettings& table) {
    table.setString = [](CorvaneObject* object, const CorvaneObject* value, const char* key,
                         int8_t removeIfNull) {
        return writeObject<util::String>(object, value, [&](auto& settings, const auto& text) {
            settings.setString(text, keyOf(key), removeIfNull != 0);
        });
    };
    table.setNumber = [](CorvaneObject* object, const CorvaneObject* value, const char* key) {
        return writeObject<util::Number>(object, value, [&](auto& settings, const auto& number) {
            settings.setNumber(number, keyOf(key));
        });
    };
    table.setArray = [](CorvaneObject* object, const CorvaneObject* value, const char* key) {
        return writeObject<util::Array>(
            object, value, [&](auto& settings, const auto& array) { settings.setArray(array, keyOf(key)); });
    };
    table.setDictionary = [](CorvaneObject* object, const CorvaneObject* value, const char* key) {
        return writeObject<util::Dictionary>(object, value, [&](auto& settings, const auto& dictionary) {
            settings.setDictionary(dictionary, keyOf(key));
        });
    };
    table.setData = [](CorvaneObject* object, const CorvaneObject* value, const char* key) {
        return writeObject<util::Data>(
            object, value, [&](auto& settings, const auto& data) { settings.setData(data, keyOf(key)); });
    };
}

} // namespace

const CorvaneSettings& hostSettingsTable() {
    static const CorvaneSettings table = [] {
        CorvaneSettings made{};
        made.size = sizeof made;
        fillScalarReads(made);
        fillObjectReads(made);
        fillScalarWrites(made);
        fillObjectWrites(made);
        return made;
    }();
    return table;
}

} // namespace corvane::plugins
