#pragma once

#include <vector>

#include "util/Containers.h"

namespace corvane::plist {

/// Writes one value in the binary form: an eight-byte header, the objects, a table of their offsets and a
/// trailer of 32 bytes, all integers big-endian. Used once. Throws `FormatFailure` like `XmlWriter`, except
/// that any well-formed text and any date can be held.
class BinaryWriter {
public:
    [[nodiscard]] util::Bytes write(const util::Value& value);

private:
    /// One object in the order of writing; a container keeps the numbers of what it holds.
    struct Item {
        util::Value value;
        std::vector<std::size_t> references;
    };

    std::size_t flatten(const util::Value& value, std::size_t depth);
    void flattenContainer(std::size_t index, const util::Value& value, std::size_t depth);
    void writeItem(const Item& item);
    void writeNumber(const util::Number& number);
    void writeText(const std::string& text);
    void writeMarker(unsigned kind, std::size_t count);
    void writeSizedInteger(std::uint64_t number);
    void writeBigEndian(std::uint64_t number, std::size_t width);
    void writeTrailer(std::uint64_t tableOffset, std::size_t offsetWidth);

    std::vector<Item> items_;
    std::size_t referenceWidth_ = 1;
    util::Bytes bytes_;
};

} // namespace corvane::plist
