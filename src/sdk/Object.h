#pragma once

#if __cplusplus < 202002L
#error "Corvane's C++ headers need C++20: compile with -std=c++20. PluginTable.h is also C++17 and C11."
#endif

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "PluginTable.h"

namespace corvane::sdk {

/// Does a table have this entry? Whoever made the table may be too old to know it.
template <typename Table, typename Function>
[[nodiscard]] bool offers(const Table& table, Function Table::*entry) {
    const auto* place = reinterpret_cast<const char*>(&(table.*entry));
    const auto end = place - reinterpret_cast<const char*>(&table) + std::ptrdiff_t{sizeof(Function)};
    return end <= std::ptrdiff_t{table.size} && table.*entry != nullptr;
}

/// A counted reference to an object of the host, or to none: what Objects.h says, with the counting done.
/// Copying shares the object. Reading what the object isn't gives "", 0, false, or an empty reference, never
/// an exception. Main thread.
class Object {
public:
    Object() = default;
    /// Takes over a reference that the host has handed out; null is none.
    Object(const CorvaneObjects& table, CorvaneObject* taken) : table_(&table), object_(taken) {}
    Object(const Object& other) : table_(other.table_), object_(other.retained()) {}
    Object(Object&& other) noexcept : table_(other.table_), object_(std::exchange(other.object_, nullptr)) {}
    Object& operator=(Object other) noexcept {
        std::swap(table_, other.table_);
        std::swap(object_, other.object_);
        return *this;
    }
    ~Object() {
        if (object_ != nullptr) table_->release(object_);
    }

    explicit operator bool() const { return object_ != nullptr; }
    /// Borrowed, for an entry of the C tables.
    [[nodiscard]] CorvaneObject* get() const { return object_; }
    [[nodiscard]] std::int32_t kind() const {
        return object_ == nullptr ? std::int32_t{CORVANE_NULL} : table_->kind(object_);
    }

    [[nodiscard]] std::string text() const {
        if (object_ == nullptr) return {};
        std::uint64_t length = 0;
        const char* first = table_->text(object_, &length);
        return {first, length};
    }
    /// Borrowed: valid while a reference is held.
    [[nodiscard]] std::span<const std::uint8_t> bytes() const& {
        if (object_ == nullptr) return {};
        std::uint64_t length = 0;
        const auto* first = table_->bytes(object_, &length);
        return {first, length};
    }
    /// A temporary would free them before anyone could read them: give it a name.
    std::span<const std::uint8_t> bytes() const&& = delete;
    [[nodiscard]] std::int64_t integer() const { return object_ == nullptr ? 0 : table_->integer(object_); }
    [[nodiscard]] double real() const { return object_ == nullptr ? 0 : table_->real(object_); }
    [[nodiscard]] bool boolean() const { return object_ != nullptr && table_->boolean(object_) != 0; }
    /// Seconds since 1970-01-01T00:00:00Z.
    [[nodiscard]] double date() const { return object_ == nullptr ? 0 : table_->date(object_); }

    /// Elements of an array or entries of a dictionary.
    [[nodiscard]] std::uint64_t count() const { return object_ == nullptr ? 0 : table_->count(object_); }
    /// An element of an array; none past the end.
    [[nodiscard]] Object at(std::uint64_t index) const {
        return object_ == nullptr ? Object() : Object(*table_, table_->at(object_, index));
    }
    /// The value under a key of a dictionary; none where the key is absent.
    [[nodiscard]] Object operator[](const std::string& key) const {
        return object_ == nullptr ? Object() : Object(*table_, table_->valueForKey(object_, key.c_str()));
    }
    /// Elements of an array have no keys: at(0).
    template <std::integral Number>
    Object operator[](Number index) const = delete;
    Object operator[](std::nullptr_t) const = delete;
    [[nodiscard]] bool has(const std::string& key) const { return static_cast<bool>((*this)[key]); }
    /// The keys of a dictionary, in the order of their bytes.
    [[nodiscard]] std::vector<std::string> keys() const {
        return object_ == nullptr ? std::vector<std::string>()
                                  : Object(*table_, table_->keys(object_)).texts();
    }
    /// An array's elements as texts; those that are none are "".
    [[nodiscard]] std::vector<std::string> texts() const {
        std::vector<std::string> all;
        for (std::uint64_t i = 0; i < count(); ++i)
            all.push_back(at(i).text());
        return all;
    }

    /// False when this is no array, or one that can't be changed.
    bool append(const Object& value) const {
        return object_ != nullptr && table_->append(object_, value.get()) != 0;
    }
    /// False when this is no dictionary, or one that can't be changed. No value removes the key.
    bool set(const std::string& key, const Object& value) const {
        return object_ != nullptr && table_->setValueForKey(object_, key.c_str(), value.get()) != 0;
    }

private:
    [[nodiscard]] CorvaneObject* retained() const {
        return object_ == nullptr ? nullptr : table_->retain(object_);
    }
    const CorvaneObjects* table_ = nullptr;
    CorvaneObject* object_ = nullptr;
};

/// A request to the directory service failed. `what()` is the description: what failed, one sentence.
class CallError : public std::runtime_error {
public:
    explicit CallError(const Object& error)
        : std::runtime_error(error["description"].text()), code_(error["code"].integer()),
          reason_(error["reason"].text()), recovery_(error["recovery"].text()) {}
    /// One that the plug-in makes itself, to be shown like the others.
    explicit CallError(const std::string& description, std::string reason = "", std::string recovery = "",
                       std::int64_t code = 0)
        : std::runtime_error(description), code_(code), reason_(std::move(reason)),
          recovery_(std::move(recovery)) {}
    [[nodiscard]] std::int64_t code() const { return code_; }
    [[nodiscard]] const std::string& reason() const { return reason_; }     ///< cause and evidence
    [[nodiscard]] const std::string& recovery() const { return recovery_; } ///< what to try next

private:
    std::int64_t code_;
    std::string reason_;
    std::string recovery_;
};

} // namespace corvane::sdk
