#pragma once

#include <vector>

#include "util/Containers.h"

namespace corvane::plist {

/// Reads the binary form. Every offset, reference and count is checked before it is used; a container that
/// holds itself is refused, and an object counts once for each reference to it, so that small input can't
/// grow into a huge value. The bytes are borrowed. Used once. Throws `FormatFailure` with the offset.
class BinaryReader {
public:
    explicit BinaryReader(util::BytesView bytes) : bytes_(bytes) {}
    /// True when the bytes begin like the binary form, whole or not.
    [[nodiscard]] static bool looksBinary(util::BytesView bytes);
    [[nodiscard]] util::Value read();

private:
    void readTrailer();
    util::Value readObject(std::uint64_t index);
    util::Value readAt(std::size_t offset);
    util::Value readSimple(std::size_t offset);
    util::Value readInteger(std::size_t offset);
    util::Value readFloating(std::size_t offset, bool isDate);
    util::Value readData(std::size_t offset);
    util::Value readText(std::size_t offset, bool isWide);
    util::Value readArray(std::size_t offset);
    util::Value readDictionary(std::size_t offset);

    /// Length of an object and where its contents begin.
    struct Extent {
        std::uint64_t count;
        std::size_t start;
    };
    [[nodiscard]] Extent extentAt(std::size_t offset, std::size_t elementWidth) const;
    [[nodiscard]] util::BytesView slice(std::size_t offset, std::uint64_t length) const;
    [[nodiscard]] std::uint64_t unsignedAt(std::size_t offset, std::size_t width) const;
    [[nodiscard]] std::uint64_t referenceAt(const Extent& extent, std::uint64_t position) const;
    void countLeaf(std::uint64_t bytes);
    [[noreturn]] static void fail(std::size_t offset, const std::string& why);

    util::BytesView bytes_;
    std::size_t end_ = 0; ///< where the objects end and the table begins
    std::size_t offsetWidth_ = 0;
    std::size_t referenceWidth_ = 0;
    std::uint64_t objectCount_ = 0;
    std::uint64_t top_ = 0;
    std::vector<std::uint64_t> path_; ///< containers being read, outermost first
    std::size_t visits_ = 0;
    std::uint64_t leafBytes_ = 0;
};

} // namespace corvane::plist
