#include <gtest/gtest.h>

#include <random>

#include "plist/PropertyListCodec.h"
#include "util/Containers.h"

using namespace corvane::util;
using corvane::plist::PropertyListCodec;

namespace {

/// Makes values of every kind that has a property-list form, deterministically from a seed.
class ValueGenerator {
public:
    explicit ValueGenerator(unsigned seed) : random_(seed) {}

    Value any(int depth) {
        switch (pick(depth > 0 ? 9 : 7)) {
        case 0:
            return text();
        case 1:
            return pick(2) == 0;
        case 2:
            return static_cast<std::int64_t>(bits());
        case 3:
            return bits();
        case 4:
            return std::ldexp(static_cast<double>(static_cast<std::int64_t>(bits())),
                              static_cast<int>(pick(200)) - 100);
        case 5:
            return Date(static_cast<double>(pick(4'000'000'000U)) - 1e9);
        case 6:
            return Data(bytesFromText(text()));
        case 7:
            return array(depth - 1);
        default:
            return dictionary(depth - 1);
        }
    }

private:
    std::uint64_t pick(std::uint64_t bound) { return random_() % bound; }
    std::uint64_t bits() { return random_() >> pick(64); }
    std::string text() {
        static const std::string parts[] = {"a", "<&>\"'", "\r\n", "ü", "日本", "😀", "\t", " ", "]]>", "0"};
        std::string result;
        for (auto count = pick(20); count > 0; --count)
            result += parts[pick(std::size(parts))];
        return result;
    }
    Array array(int depth) {
        ValueList list;
        for (auto count = pick(20); count > 0; --count)
            list.push_back(any(depth));
        return Array(std::move(list));
    }
    Dictionary dictionary(int depth) {
        ValueMap map;
        for (auto count = pick(20); count > 0; --count)
            map.insert_or_assign(text(), any(depth));
        return Dictionary(std::move(map));
    }

    std::mt19937_64 random_;
};

class RoundTrip : public testing::TestWithParam<unsigned> {};

} // namespace

TEST_P(RoundTrip, writtenThenRead_givesAnEqualValueInBothForms) {
    const PropertyListCodec codec;
    ValueGenerator generator(GetParam());
    for (int i = 0; i < 20; ++i) {
        const auto value = generator.any(4);
        std::string reason;
        const auto xml = codec.xml(value);
        const auto binary = codec.binary(value);
        ASSERT_TRUE(xml && binary);
        EXPECT_EQ(codec.parse(*xml, &reason), value) << reason << textFromBytes(*xml);
        EXPECT_EQ(codec.parse(*binary, &reason), value) << reason << value.description();
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RoundTrip, testing::Range(0U, 25U));

TEST(PropertyListCodec, formOfANumber_survivesWritingAndReading) {
    const PropertyListCodec codec;
    for (const auto& bytes : {*codec.xml(Array{true, 1, 1.0}), *codec.binary(Array{true, 1, 1.0})}) {
        const auto list = codec.parse(bytes, nullptr).as<Array>();
        EXPECT_TRUE(list.at(0).as<Number>().isBoolean());
        EXPECT_FALSE(list.at(1).as<Number>().isFloating());
        EXPECT_TRUE(list.at(2).as<Number>().isFloating());
    }
}

TEST(PropertyListCodec, damagedAtAnyByte_isReadOrRefusedWithAReason) {
    const PropertyListCodec codec;
    ValueGenerator generator(77);
    const auto value = Array{generator.any(3), generator.any(3), Dictionary{{"key", generator.any(2)}}};
    for (auto bytes : {*codec.xml(value), *codec.binary(value)}) {
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            for (const std::uint8_t change : {0x01, 0x80, 0xFF}) {
                bytes[i] ^= change;
                std::string reason;
                const auto read = codec.parse(bytes, &reason);
                EXPECT_TRUE(!read.isNull() || !reason.empty());
                bytes[i] ^= change;
            }
        }
    }
}
