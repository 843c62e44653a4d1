#pragma once

#include "platform/PropertyListCodec.h"
#include "util/Containers.h"

namespace corvane::fakes {

/// Writes a value as its description behind a marker of the form, and remembers what was written, so that
/// reading the octets back gives the value.
class FakePropertyListCodec final : public platform::PropertyListCodec {
public:
    [[nodiscard]] std::optional<util::Bytes> xml(const util::Value& value) const override {
        return write("xml:", value);
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
    [[nodiscard]] static bool hasForm(const util::Value& value) {
        if (value.isNull() || value.isKind(util::Kind::Set) || value.isKind(util::Kind::Opaque)) return false;
        if (const auto array = value.as<util::Array>()) {
            for (const auto& element : array.elements())
                if (!hasForm(element)) return false;
        }
        if (const auto entries = value.as<util::Dictionary>()) {
            for (const auto& [key, entry] : entries.entries())
                if (!hasForm(entry)) return false;
        }
        return true;
    }
    [[nodiscard]] std::optional<util::Bytes> write(const std::string& form, const util::Value& value) const {
        if (!hasForm(value)) return std::nullopt;
        const auto text = form + value.description();
        written_[text] = value.immutableCopy();
        return util::bytesFromText(text);
    }
    mutable std::map<std::string, util::Value> written_;
};

} // namespace corvane::fakes
