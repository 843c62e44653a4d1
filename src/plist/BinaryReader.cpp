#include "plist/BinaryReader.h"

#include <algorithm>
#include <bit>

#include "plist/FormatFailure.h"
#include "plist/Limits.h"
#include "plist/Text.h"

namespace corvane::plist {
namespace {

constexpr double secondsFrom1970To2001 = 978307200.0;
constexpr std::size_t headerLength = 8;
constexpr std::size_t trailerLength = 32;

} // namespace

bool BinaryReader::looksBinary(util::BytesView bytes) {
    static constexpr std::string_view magic = "bplist";
    return bytes.size() >= magic.size() &&
           std::ranges::equal(bytes.first(magic.size()), magic,
                              [](std::uint8_t byte, char c) { return byte == c; });
}

util::Value BinaryReader::read() {
    if (bytes_.size() < headerLength + 1 + trailerLength) fail(bytes_.size(), "it ends too soon");
    if (bytes_[6] != '0') fail(6, "its version is not known");
    readTrailer();
    return readObject(top_);
}

void BinaryReader::readTrailer() {
    const auto trailer = bytes_.size() - trailerLength;
    offsetWidth_ = bytes_[trailer + 6];
    referenceWidth_ = bytes_[trailer + 7];
    end_ = trailer; // the fields of the trailer themselves are read beyond the objects
    const auto field = [&](std::size_t at) {
        std::uint64_t value = 0;
        for (std::size_t i = 0; i < 8; ++i)
            value = (value << 8U) | bytes_[trailer + at + i];
        return value;
    };
    objectCount_ = field(8);
    top_ = field(16);
    const auto table = field(24);
    if (offsetWidth_ < 1 || offsetWidth_ > 8)
        fail(trailer + 6, "offsets are " + std::to_string(offsetWidth_) + " bytes wide");
    if (referenceWidth_ < 1 || referenceWidth_ > 8)
        fail(trailer + 7, "references are " + std::to_string(referenceWidth_) + " bytes wide");
    if (table < headerLength || table > trailer)
        fail(trailer + 24, "the table of offsets lies outside the document");
    if (objectCount_ > (trailer - table) / offsetWidth_)
        fail(trailer + 8, "the table of offsets is too short");
    end_ = static_cast<std::size_t>(table);
}

util::Value BinaryReader::readObject(std::uint64_t index) {
    if (index >= objectCount_) fail(end_, "object " + std::to_string(index) + " does not exist");
    if (++visits_ > maximumObjects) fail(end_, "more than a million objects");
    if (path_.size() > maximumDepth) fail(end_, "containers are nested more than 64 deep");
    if (std::ranges::find(path_, index) != path_.end())
        fail(end_, "object " + std::to_string(index) + " holds itself");
    std::uint64_t offset = 0;
    const auto entry = end_ + static_cast<std::size_t>(index) * offsetWidth_;
    for (std::size_t i = 0; i < offsetWidth_; ++i)
        offset = (offset << 8U) | bytes_[entry + i];
    if (offset < headerLength || offset >= end_) fail(entry, "an offset lies outside the objects");
    path_.push_back(index);
    auto value = readAt(static_cast<std::size_t>(offset));
    path_.pop_back();
    return value;
}

util::Value BinaryReader::readAt(std::size_t offset) {
    switch (bytes_[offset] >> 4U) {
    case 0x0:
        return readSimple(offset);
    case 0x1:
        return readInteger(offset);
    case 0x2:
        return readFloating(offset, false);
    case 0x3:
        return readFloating(offset, true);
    case 0x4:
        return readData(offset);
    case 0x5:
        return readText(offset, false);
    case 0x6:
        return readText(offset, true);
    case 0xA:
        return readArray(offset);
    case 0xD:
        return readDictionary(offset);
    default:
        fail(offset, "an object of kind " + std::to_string(bytes_[offset]) + " is not known");
    }
}

util::Value BinaryReader::readSimple(std::size_t offset) {
    if (bytes_[offset] == 0x08) return false;
    if (bytes_[offset] == 0x09) return true;
    fail(offset, "an object of kind " + std::to_string(bytes_[offset]) + " is not known");
}

util::Value BinaryReader::readInteger(std::size_t offset) {
    const auto exponent = bytes_[offset] & 0xFU;
    if (exponent > 4) fail(offset, "an integer is wider than sixteen bytes");
    if (exponent < 3) return static_cast<std::int64_t>(unsignedAt(offset + 1, std::size_t{1} << exponent));
    if (exponent == 3) return static_cast<std::int64_t>(unsignedAt(offset + 1, 8));
    const auto high = unsignedAt(offset + 1, 8);
    const auto low = unsignedAt(offset + 9, 8);
    if (high == 0) return low;
    if (high == UINT64_MAX && low > INT64_MAX) return static_cast<std::int64_t>(low);
    fail(offset, "an integer needs more than 64 bits");
}

util::Value BinaryReader::readFloating(std::size_t offset, bool isDate) {
    const auto exponent = bytes_[offset] & 0xFU;
    if (exponent == 3) {
        const auto number = std::bit_cast<double>(unsignedAt(offset + 1, 8));
        return isDate ? util::Value(util::Date(number + secondsFrom1970To2001)) : util::Value(number);
    }
    if (exponent == 2 && !isDate)
        return static_cast<double>(
            std::bit_cast<float>(static_cast<std::uint32_t>(unsignedAt(offset + 1, 4))));
    fail(offset,
         isDate ? "a date is not eight bytes wide" : "a floating number is not four or eight bytes wide");
}

util::Value BinaryReader::readData(std::size_t offset) {
    const auto extent = extentAt(offset, 1);
    countLeaf(extent.count);
    const auto bytes = slice(extent.start, extent.count);
    return util::Data(util::Bytes(bytes.begin(), bytes.end()));
}

util::Value BinaryReader::readText(std::size_t offset, bool isWide) {
    const auto extent = extentAt(offset, isWide ? 2 : 1);
    countLeaf(extent.count * (isWide ? 2 : 1));
    if (!isWide) {
        const auto bytes = slice(extent.start, extent.count);
        if (std::ranges::any_of(bytes, [](std::uint8_t byte) { return byte >= 0x80; }))
            fail(offset, "a plain text holds a byte above 127");
        return util::String(util::textFromBytes(bytes));
    }
    std::u16string units;
    for (std::uint64_t i = 0; i < extent.count; ++i)
        units += static_cast<char16_t>(unsignedAt(extent.start + static_cast<std::size_t>(i) * 2, 2));
    const auto text = utf8FromUtf16(units);
    if (!text) fail(offset, "a text is not in UTF-16");
    return util::String(*text);
}

util::Value BinaryReader::readArray(std::size_t offset) {
    const auto extent = extentAt(offset, referenceWidth_);
    util::ValueList list;
    for (std::uint64_t i = 0; i < extent.count; ++i)
        list.push_back(readObject(referenceAt(extent, i)));
    return util::Array(std::move(list));
}

util::Value BinaryReader::readDictionary(std::size_t offset) {
    const auto extent = extentAt(offset, 2 * referenceWidth_);
    util::ValueMap map;
    for (std::uint64_t i = 0; i < extent.count; ++i) {
        const auto key = readObject(referenceAt(extent, i)).as<util::String>();
        if (key.isNull()) fail(offset, "a key of a dictionary isn't a text");
        auto value = readObject(referenceAt(extent, extent.count + i));
        if (!map.emplace(key.text(), std::move(value)).second)
            fail(offset, "the key \"" + key.text() + "\" appears twice");
    }
    return util::Dictionary(std::move(map));
}

BinaryReader::Extent BinaryReader::extentAt(std::size_t offset, std::size_t elementWidth) const {
    Extent extent{bytes_[offset] & 0xFU, offset + 1};
    if (extent.count == 0xF) {
        if (offset + 1 >= end_ || (bytes_[offset + 1] >> 4U) != 1)
            fail(offset + 1, "a count isn't an integer");
        const auto exponent = bytes_[offset + 1] & 0xFU;
        if (exponent > 3) fail(offset + 1, "a count is wider than eight bytes");
        extent.count = unsignedAt(offset + 2, std::size_t{1} << exponent);
        extent.start = offset + 2 + (std::size_t{1} << exponent);
    }
    if (extent.count > (end_ - extent.start) / elementWidth)
        fail(offset, "a count of " + std::to_string(extent.count) + " reaches beyond the objects");
    return extent;
}

util::BytesView BinaryReader::slice(std::size_t offset, std::uint64_t length) const {
    return bytes_.subspan(offset, static_cast<std::size_t>(length));
}

std::uint64_t BinaryReader::unsignedAt(std::size_t offset, std::size_t width) const {
    if (offset > end_ || width > end_ - offset) fail(offset, "an object reaches beyond the objects");
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < width; ++i)
        value = (value << 8U) | bytes_[offset + i];
    return value;
}

std::uint64_t BinaryReader::referenceAt(const Extent& extent, std::uint64_t position) const {
    return unsignedAt(extent.start + static_cast<std::size_t>(position) * referenceWidth_, referenceWidth_);
}

void BinaryReader::countLeaf(std::uint64_t bytes) {
    leafBytes_ += bytes;
    if (leafBytes_ > maximumSize) fail(end_, "the texts and data are larger than 64 MiB in all");
}

void BinaryReader::fail(std::size_t offset, const std::string& why) {
    throw FormatFailure("byte " + std::to_string(offset) + ": " + why);
}

} // namespace corvane::plist
