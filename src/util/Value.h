#pragma once

#include <concepts>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

#include "util/Exceptions.h"

namespace corvane::util {

/// What an object is. A mutable container, string or data is of the same kind as its immutable form.
enum class Kind { String, Number, Date, Data, Array, Dictionary, Set, Opaque };

class Value;

/// The object behind a `Value`. Only this folder and tests of opaque leaves derive from it.
class Object {
public:
    explicit Object(bool isMutable) : mutable_(isMutable) {}
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
    virtual ~Object() = default;

    [[nodiscard]] virtual Kind kind() const = 0;
    [[nodiscard]] bool isMutable() const { return mutable_; }
    /// Equality by contents; `other` is of the same kind.
    [[nodiscard]] virtual bool equals(const Object& other) const = 0;
    /// Text for people and logs; nested containers are written out.
    [[nodiscard]] virtual std::string description() const = 0;
    /// A copy in the immutable form, null when the object has none.
    [[nodiscard]] virtual Value immutableCopy() const = 0;
    /// A shallow copy in the mutable form, null when the object has none.
    [[nodiscard]] virtual Value mutableCopy() const = 0;

protected:
    void requireMutable() const {
        if (!mutable_) throw ImmutableObjectException("attempt to change an immutable object");
    }

private:
    bool mutable_;
};

template <typename T>
concept Text =
    std::convertible_to<const T&, std::string_view> && !std::same_as<std::remove_cvref_t<T>, std::nullptr_t>;
template <typename T>
concept PlainNumber = std::is_arithmetic_v<T> && !std::same_as<T, char>;

/// A reference to one object, or to none. Copying a `Value` shares the object: a change made through one
/// reference to a mutable container is seen through all of them. Any thread, one at a time per object.
class Value {
public:
    Value() = default;
    Value(std::nullptr_t) {}
    explicit Value(std::shared_ptr<Object> object) : object_(std::move(object)) {}

    /// Text and plain numbers become immutable leaves. Nothing else converts: no pointer turns into a
    /// number and no text into a boolean.
    template <Text T>
    Value(const T& text) : Value(fromText(std::string_view(text))) {}
    template <PlainNumber T>
    Value(T number) : Value(fromNumber(number)) {}

    [[nodiscard]] bool isNull() const { return object_ == nullptr; }
    explicit operator bool() const { return object_ != nullptr; }
    [[nodiscard]] bool isKind(Kind kind) const { return object_ && object_->kind() == kind; }
    [[nodiscard]] bool isMutable() const { return object_ && object_->isMutable(); }

    /// The same object as a typed handle; a null handle when it is of another kind.
    template <typename Handle>
    [[nodiscard]] Handle as() const {
        return isKind(Handle::handleKind) ? Handle(object_) : Handle(std::shared_ptr<Object>());
    }

    /// "(null)" for no object.
    [[nodiscard]] std::string description() const { return object_ ? object_->description() : "(null)"; }
    [[nodiscard]] bool isSameObjectAs(const Value& other) const { return object_ == other.object_; }
    [[nodiscard]] Value immutableCopy() const { return object_ ? object_->immutableCopy() : Value(); }
    [[nodiscard]] Value mutableCopy() const { return object_ ? object_->mutableCopy() : Value(); }

    /// Equal contents; two nulls are equal. Mutability doesn't count.
    friend bool operator==(const Value& a, const Value& b);

    [[nodiscard]] const std::shared_ptr<Object>& object() const { return object_; }

private:
    static Value fromText(std::string_view text);
    static Value fromNumber(bool number);
    static Value fromNumber(double number);
    static Value fromNumber(std::int64_t number);
    static Value fromNumber(std::uint64_t number);
    template <std::floating_point T>
    static Value fromNumber(T number) {
        return fromNumber(static_cast<double>(number));
    }
    template <std::signed_integral T>
    static Value fromNumber(T number) {
        return fromNumber(static_cast<std::int64_t>(number));
    }
    template <std::unsigned_integral T>
    static Value fromNumber(T number) {
        return fromNumber(static_cast<std::uint64_t>(number));
    }

    std::shared_ptr<Object> object_;
};

/// Base of the typed handles: a `Value` known to be of one kind, or null.
template <Kind K>
class HandleOf : public Value {
public:
    static constexpr Kind handleKind = K;
    HandleOf() = default;
    explicit HandleOf(std::shared_ptr<Object> object) : Value(std::move(object)) {}
};

} // namespace corvane::util
