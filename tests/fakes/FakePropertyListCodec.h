#pragma once

#include <map>

#include "platform/PropertyListCodec.h"
#include "util/Containers.h"

namespace corvane::fakes {

/// Writes a value as its description behind a marker of the form and of the value's kinds, and remembers what
/// was written, so that reading the bytes back gives the value.
class FakePropertyListCodec final : public platform::PropertyListCodec {
public:
    [[nodiscard]] std::optional<util::Bytes> xml(const util::Value& value,
                                                 std::string* reason = nullptr) const override {
        auto written = write("xml:", value);
        if (!written && reason != nullptr) *reason = "something in it has no such form";
        return written;
    }
    [[nodiscard]] std::optional<util::Bytes> binary(const util::Value& value) const override {
        return write("bin:", value);
    }
    [[nodiscard]] util::Value parse(util::BytesView bytes, std::string* reason) const override {
        const auto found = written_.find(util::textFromBytes(bytes));
        if (found != written_.end()) return found->second;
        if (reason != nullptr) *reason = "not one of the property lists written here";
        return {};
    }

private:
    /// The value with everything inside it in its immutable form; null when something has no property-list
    /// form. `kinds` gets a letter for each value met, so that the text 1 and the number 1 are told apart.
    [[nodiscard]] static util::Value frozen(const util::Value& value, std::string& kinds) {
        if (value.isNull() || value.isKind(util::Kind::Set) || value.isKind(util::Kind::Opaque)) return {};
        kinds += kindOf(value);
        if (const auto array = value.as<util::Array>()) return frozenArray(array, kinds);
        if (const auto entries = value.as<util::Dictionary>()) return frozenDictionary(entries, kinds);
        return value.immutableCopy();
    }
    [[nodiscard]] static util::Value frozenArray(const util::Array& array, std::string& kinds) {
        util::ValueList elements;
        for (const auto& element : array.elements()) {
            elements.push_back(frozen(element, kinds));
            if (!elements.back()) return {};
        }
        return util::Array(std::move(elements));
    }
    [[nodiscard]] static util::Value frozenDictionary(const util::Dictionary& dictionary,
                                                      std::string& kinds) {
        util::ValueMap entries;
        for (const auto& [key, entry] : dictionary.entries()) {
            entries[key] = frozen(entry, kinds);
            if (!entries[key]) return {};
        }
        return util::Dictionary(std::move(entries));
    }
    [[nodiscard]] static char kindOf(const util::Value& value) {
        if (const auto number = value.as<util::Number>())
            return number.isBoolean() ? 'b' : number.isFloating() ? 'f' : 'i';
        if (value.isKind(util::Kind::Array)) return 'A';
        if (value.isKind(util::Kind::Dictionary)) return 'D';
        return value.isKind(util::Kind::String) ? 's' : value.isKind(util::Kind::Data) ? 'o' : 'd';
    }
    [[nodiscard]] std::optional<util::Bytes> write(const std::string& form, const util::Value& value) const {
        std::string kinds;
        const auto copy = frozen(value, kinds);
        if (!copy) return std::nullopt;
        const auto text = form + kinds + ":" + copy.description();
        written_[text] = copy;
        return util::bytesFromText(text);
    }
    mutable std::map<std::string, util::Value> written_;
};

} // namespace corvane::fakes
