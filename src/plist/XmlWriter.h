#pragma once

#include <string>

#include "plist/SecretMemory.h"
#include "util/Containers.h"

namespace corvane::plist {

/// Writes one value as an XML document. Used once. Throws `FormatFailure` on what has no XML form: null,
/// sets, opaque leaves, texts with characters that XML can't hold, containers nested too deeply.
class XmlWriter {
public:
    [[nodiscard]] util::Bytes write(const util::Value& value);

private:
    void writeValue(const util::Value& value, std::size_t depth);
    void writeNumber(const util::Number& number);
    void writeArray(const util::Array& array, std::size_t depth);
    void writeDictionary(const util::Dictionary& dictionary, std::size_t depth);
    void writeData(const util::Data& data, std::size_t depth);
    void writeElement(std::size_t depth, std::string_view name, std::string_view text);
    void indent(std::size_t depth);

    SecretText document_;
    std::size_t depth_ = 0;
};

} // namespace corvane::plist
