#include "plist/BinaryWriter.h"

#include <algorithm>
#include <bit>

#include "plist/FormatFailure.h"
#include "plist/Limits.h"
#include "plist/Text.h"

namespace corvane::plist {
namespace {

constexpr double secondsFrom1970To2001 = 978307200.0; // the binary form counts from 2001-01-01

/// Bytes needed for an unsigned number: 1, 2, 4 or 8.
std::size_t widthOf(std::uint64_t number) {
    if (number <= 0xFF) return 1;
    if (number <= 0xFFFF) return 2;
    return number <= 0xFFFFFFFF ? 4 : 8;
}

} // namespace

util::Bytes BinaryWriter::write(const util::Value& value) {
    flatten(value, 0);
    referenceWidth_ = widthOf(items_.size());
    bytes_ = util::bytesFromText("bplist00");
    std::vector<std::uint64_t> offsets;
    for (const auto& item : items_) {
        offsets.push_back(bytes_.size());
        writeItem(item);
    }
    const std::uint64_t tableOffset = bytes_.size();
    const auto offsetWidth = widthOf(tableOffset);
    for (const auto offset : offsets)
        writeBigEndian(offset, offsetWidth);
    writeTrailer(tableOffset, offsetWidth);
    return std::move(bytes_);
}

std::size_t BinaryWriter::flatten(const util::Value& value, std::size_t depth) {
    if (value.isNull()) throw FormatFailure("null has no property-list form");
    if (depth > maximumDepth) throw FormatFailure("containers are nested too deeply");
    if (items_.size() >= maximumObjects) throw FormatFailure("more than a million objects");
    const auto index = items_.size();
    items_.push_back({value, {}});
    flattenContainer(index, value, depth);
    return index;
}

void BinaryWriter::flattenContainer(std::size_t index, const util::Value& value, std::size_t depth) {
    std::vector<std::size_t> references;
    for (const auto& [key, element] : value.as<util::Dictionary>().entries())
        references.push_back(flatten(key, depth + 1));
    for (const auto& [key, element] : value.as<util::Dictionary>().entries())
        references.push_back(flatten(element, depth + 1));
    for (const auto& element : value.as<util::Array>().elements())
        references.push_back(flatten(element, depth + 1));
    items_[index].references = std::move(references);
}

void BinaryWriter::writeItem(const Item& item) {
    const auto& value = item.value;
    switch (value.object()->kind()) {
    case util::Kind::String:
        writeText(value.as<util::String>().text());
        break;
    case util::Kind::Number:
        writeNumber(value.as<util::Number>());
        break;
    case util::Kind::Date:
        bytes_.push_back(0x33);
        writeBigEndian(
            std::bit_cast<std::uint64_t>(value.as<util::Date>().secondsSinceEpoch() - secondsFrom1970To2001),
            8);
        break;
    case util::Kind::Data: {
        const auto& bytes = value.as<util::Data>().bytes();
        writeMarker(0x4, bytes.size());
        bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
        break;
    }
    case util::Kind::Array:
        writeMarker(0xA, item.references.size());
        break;
    case util::Kind::Dictionary:
        writeMarker(0xD, item.references.size() / 2);
        break;
    default:
        throw FormatFailure("a set or an opaque object has no property-list form");
    }
    for (const auto reference : item.references)
        writeBigEndian(reference, referenceWidth_);
}

void BinaryWriter::writeNumber(const util::Number& number) {
    if (number.isBoolean()) {
        bytes_.push_back(number.booleanValue() ? 0x09 : 0x08);
    } else if (number.isFloating()) {
        bytes_.push_back(0x23);
        writeBigEndian(std::bit_cast<std::uint64_t>(number.doubleValue()), 8);
    } else if (number.isUnsigned() && number.unsignedValue() > INT64_MAX) {
        bytes_.push_back(0x14); // eight bytes are signed, so the upper half needs sixteen
        writeBigEndian(0, 8);
        writeBigEndian(number.unsignedValue(), 8);
    } else {
        writeSizedInteger(static_cast<std::uint64_t>(number.integerValue()));
    }
}

void BinaryWriter::writeText(const std::string& text) {
    if (std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; })) {
        writeMarker(0x5, text.size());
        bytes_.insert(bytes_.end(), text.begin(), text.end());
        return;
    }
    const auto units = utf16FromUtf8(text);
    if (!units) throw FormatFailure("a text is not in UTF-8");
    writeMarker(0x6, units->size());
    for (const auto unit : *units)
        writeBigEndian(unit, 2);
}

void BinaryWriter::writeMarker(unsigned kind, std::size_t count) {
    bytes_.push_back(static_cast<std::uint8_t>((kind << 4U) | std::min<std::size_t>(count, 15)));
    if (count >= 15) writeSizedInteger(count);
}

void BinaryWriter::writeSizedInteger(std::uint64_t number) {
    const auto width = widthOf(number);
    bytes_.push_back(static_cast<std::uint8_t>(0x10U | static_cast<unsigned>(std::countr_zero(width))));
    writeBigEndian(number, width);
}

void BinaryWriter::writeBigEndian(std::uint64_t number, std::size_t width) {
    for (std::size_t i = width; i-- > 0;)
        bytes_.push_back(static_cast<std::uint8_t>(number >> (8 * i)));
}

void BinaryWriter::writeTrailer(std::uint64_t tableOffset, std::size_t offsetWidth) {
    bytes_.insert(bytes_.end(), 6, 0);
    bytes_.push_back(static_cast<std::uint8_t>(offsetWidth));
    bytes_.push_back(static_cast<std::uint8_t>(referenceWidth_));
    writeBigEndian(items_.size(), 8);
    writeBigEndian(0, 8); // the first object is the top one
    writeBigEndian(tableOffset, 8);
}

} // namespace corvane::plist
