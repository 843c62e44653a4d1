#pragma once

#include <optional>
#include <variant>

#include "util/Bytes.h"
#include "util/Value.h"

namespace corvane::util {

/// UTF-8 text.
class String : public HandleOf<Kind::String> {
public:
    using HandleOf::HandleOf;
    explicit String(std::string_view text);
    [[nodiscard]] static String makeMutable(std::string_view text);

    /// The text, empty for a null handle. Borrowed: valid until the object changes or goes.
    [[nodiscard]] const std::string& text() const;
    /// Throws `ImmutableObjectException` on the immutable form.
    void setText(std::string_view text);
};

/// A number that remembers which of four forms it was made from. Numbers have no mutable form.
/// Two numbers are equal when their values are; a boolean equals only a boolean.
class Number : public HandleOf<Kind::Number> {
public:
    using HandleOf::HandleOf;
    template <PlainNumber T>
    explicit Number(T number) : HandleOf(Value(number).object()) {}

    [[nodiscard]] bool isBoolean() const;
    [[nodiscard]] bool isFloating() const;
    [[nodiscard]] bool isUnsigned() const;
    [[nodiscard]] bool booleanValue() const;
    [[nodiscard]] double doubleValue() const;
    /// Fractions are cut off; what lies outside the 64-bit range is clamped to its nearer end.
    [[nodiscard]] std::int64_t integerValue() const;
    /// As `integerValue`; negative numbers give 0.
    [[nodiscard]] std::uint64_t unsignedValue() const;
};

/// A point in time: seconds since 1970-01-01T00:00:00Z. Dates have no mutable form.
class Date : public HandleOf<Kind::Date> {
public:
    using HandleOf::HandleOf;
    explicit Date(double secondsSinceEpoch);
    [[nodiscard]] double secondsSinceEpoch() const;
};

/// Raw bytes. They are overwritten when the last reference goes.
class Data : public HandleOf<Kind::Data> {
public:
    using HandleOf::HandleOf;
    explicit Data(Bytes bytes);
    [[nodiscard]] static Data makeMutable(Bytes bytes);

    /// The bytes, none for a null handle. Borrowed as with `String::text`.
    [[nodiscard]] const Bytes& bytes() const;
    /// Throws `ImmutableObjectException` on the immutable form.
    void setBytes(Bytes bytes);
};

/// Base of leaves that belong to somebody else: they compare by identity and have no copies unless a
/// derived class says otherwise.
class OpaqueObject : public Object {
public:
    OpaqueObject() : Object(false) {}
    [[nodiscard]] Kind kind() const override { return Kind::Opaque; }
    [[nodiscard]] bool equals(const Object& other) const override { return this == &other; }
    [[nodiscard]] std::string description() const override { return "<opaque>"; }
    [[nodiscard]] Value immutableCopy() const override { return {}; }
    [[nodiscard]] Value mutableCopy() const override { return {}; }
};

} // namespace corvane::util
