#include <gtest/gtest.h>

#include <cstring>

#include "plist/PropertyListCodec.h"
#include "util/Containers.h"

using namespace corvane::util;
using corvane::plist::PropertyListCodec;

namespace {

/// A document with one-byte offsets and references, the first object on top.
Bytes document(const std::vector<Bytes>& objects) {
    Bytes bytes = bytesFromText("bplist00");
    Bytes offsets;
    for (const auto& object : objects) {
        offsets.push_back(static_cast<std::uint8_t>(bytes.size()));
        bytes.insert(bytes.end(), object.begin(), object.end());
    }
    const auto table = bytes.size();
    bytes.insert(bytes.end(), offsets.begin(), offsets.end());
    bytes.insert(bytes.end(), {0, 0, 0, 0, 0, 0, 1, 1});
    bytes.insert(bytes.end(), {0, 0, 0, 0, 0, 0, 0, static_cast<std::uint8_t>(objects.size())});
    bytes.insert(bytes.end(), {0, 0, 0, 0, 0, 0, 0, 0});
    bytes.insert(bytes.end(), {0, 0, 0, 0, 0, 0, 0, static_cast<std::uint8_t>(table)});
    return bytes;
}

Value parsed(const Bytes& bytes) { return PropertyListCodec().parse(bytes, nullptr); }

std::string refusal(const Bytes& bytes) {
    std::string reason = "(none)";
    EXPECT_TRUE(PropertyListCodec().parse(bytes, &reason).isNull());
    return reason;
}

void expectRefusal(const Bytes& bytes, const std::string& part) {
    EXPECT_NE(refusal(bytes).find(part), std::string::npos) << refusal(bytes);
}

} // namespace

TEST(PropertyListBinary, everyKind_isWrittenAsTheseBytes) {
    const std::pair<Value, std::vector<Bytes>> table[] = {
        {true, {{0x09}}},
        {false, {{0x08}}},
        {5, {{0x10, 5}}},
        {256, {{0x11, 1, 0}}},
        {-1, {{0x13, 255, 255, 255, 255, 255, 255, 255, 255}}},
        {UINT64_MAX, {{0x14, 0, 0, 0, 0, 0, 0, 0, 0, 255, 255, 255, 255, 255, 255, 255, 255}}},
        {1.0, {{0x23, 0x3F, 0xF0, 0, 0, 0, 0, 0, 0}}},
        {Date(978307201), {{0x33, 0x3F, 0xF0, 0, 0, 0, 0, 0, 0}}},
        {Data({1, 2}), {{0x42, 1, 2}}},
        {"ab", {{0x52, 'a', 'b'}}},
        {"ü", {{0x61, 0, 0xFC}}},
        {"123456789012345",
         {{0x5F, 0x10, 15, '1', '2', '3', '4', '5', '6', '7', '8', '9', '0', '1', '2', '3', '4', '5'}}},
        {Array{"a", true}, {{0xA2, 1, 2}, {0x51, 'a'}, {0x09}}},
        {Dictionary{{"k", 1}}, {{0xD1, 1, 2}, {0x51, 'k'}, {0x10, 1}}},
    };
    for (const auto& [value, objects] : table) {
        EXPECT_EQ(PropertyListCodec().binary(value), document(objects)) << value.description();
        EXPECT_EQ(parsed(document(objects)), value) << value.description();
    }
}

TEST(PropertyListBinary, shortFloat_isRead) {
    EXPECT_EQ(parsed(document({{0x22, 0x3F, 0x80, 0, 0}})), Value(1.0));
}

TEST(PropertyListBinary, dateFraction_isKept) {
    EXPECT_EQ(parsed(*PropertyListCodec().binary(Date(978307201.25))), Date(978307201.25));
}

TEST(PropertyListBinary, sharedObject_isReadAtEachReference) {
    EXPECT_EQ(parsed(document({{0xA2, 1, 1}, {0x51, 'a'}})), (Array{"a", "a"}));
}

TEST(PropertyListBinary, malformedObject_isRefusedWithPlaceAndReason) {
    expectRefusal(bytesFromText("bplist00"), "byte 8: it ends too soon");
    expectRefusal(document({{0x00}}), "byte 8: an object of kind 0 is not known");
    expectRefusal(document({{0x80, 1}}), "kind 128");
    expectRefusal(document({{0xC1, 1}, {0x09}}), "kind 193");
    expectRefusal(document({{0x15, 1}}), "wider than sixteen");
    expectRefusal(document({{0x12, 1, 2}}), "reaches beyond the objects");
    expectRefusal(document({{0x24, 1}}), "floating number");
    expectRefusal(document({{0x32, 1, 2, 3, 4}}), "a date");
    expectRefusal(document({{0x45, 1, 2}}), "a count of 5 reaches beyond");
    expectRefusal(document({{0x5F, 0x52}}), "a count isn't an integer");
    expectRefusal(document({{0x5F, 0x14}}), "wider than eight");
    expectRefusal(document({{0x5F, 0x13, 255, 255, 255, 255, 255, 255, 255, 255}}),
                  "reaches beyond the objects");
    expectRefusal(document({{0x51, 0x80}}), "above 127");
    expectRefusal(document({{0x61, 0xD8, 0}}), "UTF-16");
    expectRefusal(document({{0xA1, 7}}), "object 7 does not exist");
    expectRefusal(document({{0xA1, 0}}), "object 0 holds itself");
    expectRefusal(document({{0xD1, 1, 1}, {0x09}}), "a key of a dictionary isn't a text");
    expectRefusal(document({{0xD2, 1, 1, 2, 2}, {0x51, 'k'}, {0x09}}), "\"k\" appears twice");
}

TEST(PropertyListBinary, malformedTrailer_isRefused) {
    const auto good = document({{0x09}});
    const auto changed = [&](std::size_t fromEnd, std::uint8_t byte) {
        auto bytes = good;
        bytes[bytes.size() - fromEnd] = byte;
        return bytes;
    };
    expectRefusal(changed(26, 0), "offsets are 0 bytes wide");
    expectRefusal(changed(26, 9), "offsets are 9 bytes wide");
    expectRefusal(changed(25, 0), "references are 0 bytes wide");
    expectRefusal(changed(17, 9), "the table of offsets is too short");
    expectRefusal(changed(24, 255), "the table of offsets is too short");
    expectRefusal(changed(9, 1), "object 1 does not exist");
    expectRefusal(changed(1, 200), "the table of offsets lies outside");
    expectRefusal(changed(8, 255), "the table of offsets lies outside");
    expectRefusal(changed(33, 200), "an offset lies outside the objects");
}

TEST(PropertyListBinary, sharedReferencesThatMultiply_areStoppedAtTheLimit) {
    std::vector<Bytes> objects;
    for (std::uint8_t i = 0; i < 12; ++i) {
        const auto next = static_cast<std::uint8_t>(i + 1);
        objects.push_back({0xA8, next, next, next, next, next, next, next, next});
    }
    objects.push_back({0x09});
    expectRefusal(document(objects), "more than a million objects");
}

TEST(PropertyListBinary, nestingBeyondTheLimit_isRefused) {
    std::vector<Bytes> objects;
    for (std::uint8_t i = 0; i < 70; ++i)
        objects.push_back({0xA1, static_cast<std::uint8_t>(i + 1)});
    objects.push_back({0x09});
    expectRefusal(document(objects), "nested more than 64 deep");
}
