#include "util/Decimal.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <memory>

#include "util/Leaves.h"

namespace corvane::util {
namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool areDigits(std::string_view text) { return std::ranges::all_of(text, isDigit); }

std::strong_ordering compareMagnitudes(const Decimal& a, const Decimal& b) {
    const auto &left = a.integerDigits(), &right = b.integerDigits();
    if (left.size() != right.size()) return left.size() <=> right.size();
    if (const auto order = left <=> right; order != 0) return order;
    return a.fractionDigits() <=> b.fractionDigits();
}

/// Counts `digits` up by one in the last place.
void increment(std::string& digits) {
    for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit) {
        if (*digit != '9') {
            ++*digit;
            return;
        }
        *digit = '0';
    }
    digits.insert(digits.begin(), '1');
}

/// Whether a magnitude whose digits behind `kept` are `rest` (not all of them zero) goes up.
bool goesUp(RoundingMode mode, bool negative, std::string_view kept, std::string_view rest) {
    if (mode == RoundingMode::down) return negative;
    if (mode == RoundingMode::up) return !negative;
    const bool half = rest.front() == '5' && rest.find_first_not_of('0', 1) == std::string_view::npos;
    if (!half || mode == RoundingMode::plain) return rest.front() >= '5';
    return !kept.empty() && (kept.back() - '0') % 2 != 0;
}

class DecimalLeaf final : public OpaqueObject {
public:
    explicit DecimalLeaf(Decimal value) : number(std::move(value)) {}
    [[nodiscard]] bool equals(const Object& other) const override {
        const auto* leaf = dynamic_cast<const DecimalLeaf*>(&other);
        return leaf && leaf->number == number;
    }
    [[nodiscard]] std::string description() const override { return number.text(); }
    const Decimal number;
};

template <typename T>
std::optional<T> readAll(const std::string& text) {
    T number{};
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size()) return std::nullopt;
    return number;
}

std::string textOf(double number) {
    std::array<char, 1100> buffer{}; // the longest double has 1077 characters in this form
    const auto end =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, std::chars_format::fixed).ptr;
    return {buffer.data(), end};
}

std::string textOf(const Number& number) {
    if (number.isFloating()) return textOf(number.doubleValue());
    return number.isUnsigned() ? std::to_string(number.unsignedValue())
                               : std::to_string(number.integerValue());
}

} // namespace

Decimal Decimal::fromText(std::string_view text) {
    Decimal number;
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) text.remove_prefix(1);
    const auto point = std::min(text.find('.'), text.size());
    auto integer = text.substr(0, point);
    auto fraction = text.substr(std::min(point + 1, text.size()));
    if (integer.size() + fraction.size() == 0 || !areDigits(integer) || !areDigits(fraction)) return number;
    integer.remove_prefix(std::min(integer.find_first_not_of('0'), integer.size()));
    fraction = fraction.substr(0, fraction.find_last_not_of('0') + 1);
    number.notANumber_ = false;
    number.integer_ = integer;
    number.fraction_ = fraction;
    number.negative_ = negative && !number.isZero();
    return number;
}

std::string Decimal::text() const {
    if (notANumber_) return "NaN";
    return (negative_ ? "-" : "") + (integer_.empty() ? "0" : integer_) +
           (fraction_.empty() ? "" : "." + fraction_);
}

Decimal Decimal::rounded(RoundingMode mode, std::size_t digits) const {
    if (notANumber_ || fraction_.size() <= digits) return *this;
    auto kept = integer_ + fraction_.substr(0, digits);
    if (goesUp(mode, negative_, kept, std::string_view(fraction_).substr(digits))) increment(kept);
    const auto point = kept.size() - digits;
    return fromText((negative_ ? "-0" : "0") + kept.substr(0, point) + "." + kept.substr(point));
}

std::partial_ordering operator<=>(const Decimal& a, const Decimal& b) {
    if (a.notANumber_ || b.notANumber_) return std::partial_ordering::unordered;
    if (a.negative_ != b.negative_) return b.negative_ <=> a.negative_;
    return a.negative_ ? compareMagnitudes(b, a) : compareMagnitudes(a, b);
}

Value valueFromDecimal(const Decimal& number) {
    if (number.isNotANumber()) return {};
    const auto text = number.text();
    if (number.fractionDigits().empty()) {
        if (const auto integer = readAll<std::int64_t>(text)) return Value(*integer);
        if (const auto integer = readAll<std::uint64_t>(text)) return Value(*integer);
    } else if (const auto floating = readAll<double>(text); floating && textOf(*floating) == text) {
        return Value(*floating);
    }
    return Value(std::make_shared<DecimalLeaf>(number));
}

std::optional<Decimal> decimalFromValue(const Value& value) {
    Decimal number;
    if (const auto leaf = std::dynamic_pointer_cast<DecimalLeaf>(value.object()))
        number = leaf->number;
    else if (const auto text = value.as<String>())
        number = Decimal::fromText(text.text());
    else if (const auto plain = value.as<Number>(); plain && std::isfinite(plain.doubleValue()))
        number = Decimal::fromText(textOf(plain));
    return number.isNotANumber() ? std::nullopt : std::optional(number);
}

} // namespace corvane::util
