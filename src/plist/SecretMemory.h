#pragma once

#include <expat.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "util/Bytes.h"

/// Property lists carry passwords (as data). Whatever memory a list passes through is overwritten before it
/// is given back.
namespace corvane::plist {

/// Text that grows without leaving copies of itself behind.
class SecretText {
public:
    SecretText() = default;
    SecretText(const SecretText&) = delete;
    SecretText& operator=(const SecretText&) = delete;
    ~SecretText() { clear(); }

    SecretText& operator+=(std::string_view more) {
        if (text_.size() + more.size() > text_.capacity()) grow(text_.size() + more.size());
        text_.append(more);
        return *this;
    }
    void clear() noexcept { util::wipe(text_); }
    [[nodiscard]] const std::string& text() const { return text_; }

private:
    void grow(std::size_t atLeast) {
        std::string larger;
        larger.reserve(std::max(atLeast, 2 * text_.capacity()));
        larger.append(text_);
        util::wipe(text_);
        text_ = std::move(larger);
    }
    std::string text_;
};

/// Memory for the XML parser: each block is overwritten when it is given back.
class WipingAllocator {
public:
    [[nodiscard]] static const XML_Memory_Handling_Suite& suite() {
        static const XML_Memory_Handling_Suite functions = {allocate, reallocate, release};
        return functions;
    }

private:
    /// What stands in front of each block, as wide as the strictest alignment.
    static constexpr std::size_t header = alignof(std::max_align_t);
    static_assert(header >= sizeof(std::size_t));

    static void* allocate(std::size_t size) noexcept {
        if (size > SIZE_MAX - header) return nullptr;
        auto* block = static_cast<char*>(std::malloc(size + header));
        if (block == nullptr) return nullptr;
        std::memcpy(block, &size, sizeof size);
        return block + header;
    }
    static std::size_t sizeOf(void* memory) noexcept {
        std::size_t size = 0;
        std::memcpy(&size, static_cast<char*>(memory) - header, sizeof size);
        return size;
    }
    static void* reallocate(void* memory, std::size_t size) noexcept {
        auto* larger = allocate(size);
        if (larger == nullptr || memory == nullptr) return larger;
        std::memcpy(larger, memory, std::min(size, sizeOf(memory)));
        release(memory);
        return larger;
    }
    static void release(void* memory) noexcept {
        if (memory == nullptr) return;
        util::wipe(memory, sizeOf(memory));
        std::free(static_cast<char*>(memory) - header);
    }
};

} // namespace corvane::plist
