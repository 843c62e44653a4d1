#include "util/DeepMutableCopy.h"

namespace corvane::util {
namespace {

Value converted(const Value& value, bool mutableLeaves) {
    if (const auto array = value.as<Array>()) return deepMutableCopyWithMutableLeaves(array, mutableLeaves);
    if (const auto entries = value.as<Dictionary>())
        return deepMutableCopyWithMutableLeaves(entries, mutableLeaves);
    if (const auto set = value.as<Set>()) return deepMutableCopyWithMutableLeaves(set, mutableLeaves);
    if (mutableLeaves)
        if (auto copy = value.mutableCopy()) return copy;
    if (auto copy = value.immutableCopy()) return copy;
    return value;
}

} // namespace

Array deepMutableCopy(const Array& source) { return deepMutableCopyWithMutableLeaves(source, false); }
Dictionary deepMutableCopy(const Dictionary& source) {
    return deepMutableCopyWithMutableLeaves(source, false);
}
Set deepMutableCopy(const Set& source) { return deepMutableCopyWithMutableLeaves(source, false); }

Array deepMutableCopyWithMutableLeaves(const Array& source, bool mutableLeaves) {
    auto result = Array::makeMutable();
    result.reserve(source.count());
    for (const auto& element : source.elements())
        result.append(converted(element, mutableLeaves));
    return result;
}

Dictionary deepMutableCopyWithMutableLeaves(const Dictionary& source, bool mutableLeaves) {
    auto result = Dictionary::makeMutable();
    for (const auto& [key, value] : source.entries())
        result.set(key, converted(value, mutableLeaves));
    return result;
}

Set deepMutableCopyWithMutableLeaves(const Set& source, bool mutableLeaves) {
    auto result = Set::makeMutable();
    result.reserve(source.count());
    for (const auto& element : source.elements())
        result.add(converted(element, mutableLeaves));
    return result;
}

} // namespace corvane::util
