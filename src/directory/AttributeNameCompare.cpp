#include "directory/AttributeNameCompare.h"

#include "util/TextComparison.h"

namespace corvane::directory {
namespace {

constexpr std::string_view standardPrefix = "dsAttrTypeStandard:";
constexpr std::string_view nativePrefix = "dsAttrTypeNative:";

} // namespace

std::strong_ordering compareAttributeName(std::string_view name, std::string_view other) {
    if (name.starts_with(standardPrefix) && other.starts_with(nativePrefix))
        return std::strong_ordering::less;
    if (other.starts_with(standardPrefix) && name.starts_with(nativePrefix))
        return std::strong_ordering::greater;
    return util::compareInLocale(name, other);
}

} // namespace corvane::directory
