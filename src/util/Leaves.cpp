#include "util/Leaves.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <utility>

namespace corvane::util {
namespace {

class StringObject final : public Object {
public:
    StringObject(std::string_view text, bool isMutable) : Object(isMutable), text_(text) {}
    [[nodiscard]] Kind kind() const override { return Kind::String; }
    [[nodiscard]] bool equals(const Object& other) const override {
        return text_ == static_cast<const StringObject&>(other).text_;
    }
    [[nodiscard]] std::string description() const override { return text_; }
    [[nodiscard]] Value immutableCopy() const override { return String(text_); }
    [[nodiscard]] Value mutableCopy() const override { return String::makeMutable(text_); }

    [[nodiscard]] const std::string& text() const { return text_; }
    void setText(std::string_view text) {
        requireMutable();
        text_ = text;
    }

private:
    std::string text_;
};

class DataObject final : public Object {
public:
    DataObject(Bytes bytes, bool isMutable) : Object(isMutable), bytes_(std::move(bytes)) {}
    /// Passwords travel as data: nothing of them stays behind in the memory.
    ~DataObject() override { wipe(bytes_); }
    [[nodiscard]] Kind kind() const override { return Kind::Data; }
    [[nodiscard]] bool equals(const Object& other) const override {
        return bytes_ == static_cast<const DataObject&>(other).bytes_;
    }
    [[nodiscard]] std::string description() const override {
        static constexpr char digits[] = "0123456789abcdef";
        std::string text = "<";
        for (const auto byte : bytes_)
            text.append({digits[byte >> 4U], digits[byte & 15U]});
        return text + ">";
    }
    [[nodiscard]] Value immutableCopy() const override { return Data(bytes_); }
    [[nodiscard]] Value mutableCopy() const override { return Data::makeMutable(bytes_); }

    [[nodiscard]] const Bytes& bytes() const { return bytes_; }
    void setBytes(Bytes bytes) {
        requireMutable();
        wipe(bytes_);
        bytes_ = std::move(bytes);
    }

private:
    Bytes bytes_;
};

std::string textOf(double number) {
    char buffer[32];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, number).ptr;
    return {buffer, end};
}

class NumberObject final : public Object {
public:
    using Form = std::variant<bool, double, std::int64_t, std::uint64_t>;
    explicit NumberObject(Form form) : Object(false), form_(form) {}
    [[nodiscard]] Kind kind() const override { return Kind::Number; }
    [[nodiscard]] bool equals(const Object& other) const override {
        const auto& a = form_;
        const auto& b = static_cast<const NumberObject&>(other).form_;
        if (std::holds_alternative<bool>(a) || std::holds_alternative<bool>(b)) return a == b;
        return std::visit([](auto x, auto y) { return equalNumbers(x, y); }, a, b);
    }
    [[nodiscard]] std::string description() const override {
        if (const auto* number = std::get_if<double>(&form_)) return textOf(*number);
        return std::visit([](auto number) { return std::to_string(number); }, form_);
    }
    // An immutable object is its own copy, but the object doesn't know who shares it.
    [[nodiscard]] Value immutableCopy() const override {
        return Value(std::make_shared<NumberObject>(form_));
    }
    [[nodiscard]] Value mutableCopy() const override { return {}; }
    [[nodiscard]] const Form& form() const { return form_; }

private:
    template <typename X, typename Y>
    static bool equalNumbers(X x, Y y) {
        if constexpr (std::integral<X> && std::integral<Y> && !std::same_as<X, bool> &&
                      !std::same_as<Y, bool>)
            return std::cmp_equal(x, y);
        else
            return static_cast<double>(x) == static_cast<double>(y);
    }
    Form form_;
};

class DateObject final : public Object {
public:
    explicit DateObject(double seconds) : Object(false), seconds_(seconds) {}
    [[nodiscard]] Kind kind() const override { return Kind::Date; }
    [[nodiscard]] bool equals(const Object& other) const override {
        return seconds_ == static_cast<const DateObject&>(other).seconds_;
    }
    [[nodiscard]] std::string description() const override { return textOf(seconds_) + " s since 1970"; }
    [[nodiscard]] Value immutableCopy() const override { return Date(seconds_); }
    [[nodiscard]] Value mutableCopy() const override { return {}; }
    [[nodiscard]] double seconds() const { return seconds_; }

private:
    double seconds_;
};

template <typename T>
T clamped(double number) {
    if (std::isnan(number)) return 0;
    if (number >= static_cast<double>(std::numeric_limits<T>::max())) return std::numeric_limits<T>::max();
    if (number <= static_cast<double>(std::numeric_limits<T>::min())) return std::numeric_limits<T>::min();
    return static_cast<T>(number);
}

template <typename T, typename From>
T converted(From number) {
    if constexpr (std::same_as<From, bool>)
        return number ? 1 : 0;
    else if constexpr (std::same_as<From, double>)
        return clamped<T>(number);
    else if (std::cmp_less(number, std::numeric_limits<T>::min()))
        return std::numeric_limits<T>::min();
    else if (std::cmp_greater(number, std::numeric_limits<T>::max()))
        return std::numeric_limits<T>::max();
    else
        return static_cast<T>(number);
}

const NumberObject& object(const Number& number) {
    if (number.isNull()) throw std::logic_error("a null number has no value");
    return static_cast<const NumberObject&>(*number.object());
}

} // namespace

bool operator==(const Value& a, const Value& b) {
    if (a.object_ == b.object_) return true;
    if (!a.object_ || !b.object_ || a.object_->kind() != b.object_->kind()) return false;
    return a.object_->equals(*b.object_);
}

Value Value::fromText(std::string_view text) { return String(text); }
Value Value::fromNumber(bool number) { return Value(std::make_shared<NumberObject>(number)); }
Value Value::fromNumber(double number) { return Value(std::make_shared<NumberObject>(number)); }
Value Value::fromNumber(std::int64_t number) { return Value(std::make_shared<NumberObject>(number)); }
Value Value::fromNumber(std::uint64_t number) { return Value(std::make_shared<NumberObject>(number)); }

String::String(std::string_view text) : HandleOf(std::make_shared<StringObject>(text, false)) {}

String String::makeMutable(std::string_view text) {
    return String(std::static_pointer_cast<Object>(std::make_shared<StringObject>(text, true)));
}

const std::string& String::text() const {
    static const std::string none;
    return isNull() ? none : static_cast<const StringObject&>(*object()).text();
}

void String::setText(std::string_view text) { static_cast<StringObject&>(*object()).setText(text); }

bool Number::isBoolean() const { return std::holds_alternative<bool>(util::object(*this).form()); }
bool Number::isFloating() const { return std::holds_alternative<double>(util::object(*this).form()); }
bool Number::isUnsigned() const { return std::holds_alternative<std::uint64_t>(util::object(*this).form()); }

bool Number::booleanValue() const {
    return std::visit([](auto number) { return number != decltype(number){}; }, util::object(*this).form());
}
double Number::doubleValue() const {
    return std::visit([](auto number) { return static_cast<double>(number); }, util::object(*this).form());
}
std::int64_t Number::integerValue() const {
    return std::visit([](auto number) { return converted<std::int64_t>(number); },
                      util::object(*this).form());
}
std::uint64_t Number::unsignedValue() const {
    return std::visit([](auto number) { return converted<std::uint64_t>(number); },
                      util::object(*this).form());
}

Date::Date(double secondsSinceEpoch) : HandleOf(std::make_shared<DateObject>(secondsSinceEpoch)) {}
double Date::secondsSinceEpoch() const { return static_cast<const DateObject&>(*object()).seconds(); }

Data::Data(Bytes bytes) : HandleOf(std::make_shared<DataObject>(std::move(bytes), false)) {}

Data Data::makeMutable(Bytes bytes) {
    return Data(std::static_pointer_cast<Object>(std::make_shared<DataObject>(std::move(bytes), true)));
}

const Bytes& Data::bytes() const {
    static const Bytes none;
    return isNull() ? none : static_cast<const DataObject&>(*object()).bytes();
}

void Data::setBytes(Bytes bytes) { static_cast<DataObject&>(*object()).setBytes(std::move(bytes)); }

} // namespace corvane::util
