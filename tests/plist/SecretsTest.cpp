#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <fstream>

#include "plist/PropertyListCodec.h"
#include "plist/Text.h"
#include "util/Containers.h"

using namespace corvane;

namespace {

/// A pattern to look for that isn't itself in the memory: every byte inverted.
using Inverted = std::vector<std::uint8_t>;

Inverted inverted(std::string_view text) {
    Inverted pattern;
    for (const char c : text)
        pattern.push_back(static_cast<std::uint8_t>(~static_cast<std::uint8_t>(c)));
    return pattern;
}

bool holds(const std::uint8_t* first, std::size_t length, const Inverted& pattern) {
    const auto fits = [](std::uint8_t byte, std::uint8_t wanted) {
        return byte == static_cast<std::uint8_t>(~wanted);
    };
    return std::search(first, first + length, pattern.begin(), pattern.end(), fits) != first + length;
}

/// How many of this process's writable pieces of memory, the stack left out, hold the pattern.
int piecesWith(const Inverted& pattern) {
    int found = 0;
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
        unsigned long from = 0;
        unsigned long to = 0;
        char rights[5] = {};
        if (std::sscanf(line.c_str(), "%lx-%lx %4s", &from, &to, rights) != 3) continue;
        if (std::string_view(rights).substr(0, 2) != "rw" || line.find("[stack]") != line.npos) continue;
        if (holds(reinterpret_cast<const std::uint8_t*>(from), to - from, pattern)) ++found;
    }
    return found;
}

util::Value withSecret(const util::Bytes& secret) {
    auto list = util::Dictionary::makeMutable();
    for (int i = 0; i < 200; ++i) // long enough for the texts to grow several times
        list.set("key" + std::to_string(i), "value");
    list.set("password", util::Data(secret));
    for (int i = 0; i < 200; ++i)
        list.set("tail" + std::to_string(i), "value");
    return list;
}

util::Bytes secretFor(unsigned seed) {
    util::Bytes secret;
    for (int i = 0; i < 33; ++i) {
        seed = seed * 1103515245U + 12345U;
        secret.push_back(static_cast<std::uint8_t>('!' + (seed >> 16U) % 90U));
    }
    return secret;
}

} // namespace

TEST(Secrets, memoryThatHoldsOne_isFound) {
    auto secret = secretFor(1);
    const auto pattern = inverted(util::textFromBytes(secret));
    EXPECT_GT(piecesWith(pattern), 0) << "else the tests below could never fail";
    util::wipe(secret);
}

TEST(Secrets, passwordThatWasWrittenAndRead_isNowhereInMemory) {
    const plist::PropertyListCodec codec;
    Inverted plain;
    Inverted encoded;
    {
        auto secret = secretFor(2);
        {
            auto text = util::textFromBytes(secret);
            plain = inverted(text);
            auto coded = plist::base64(text);
            encoded = inverted(coded);
            util::wipe(text);
            util::wipe(coded);
        }
        auto document = codec.xml(withSecret(secret));
        ASSERT_TRUE(document);
        ASSERT_FALSE(codec.parse(*document, nullptr).isNull());
        util::wipe(*document);
        util::wipe(secret);
    }
    EXPECT_EQ(piecesWith(plain), 0);
    EXPECT_EQ(piecesWith(encoded), 0);
}
