#pragma once

#include <optional>
#include <string>

#include "util/Bytes.h"
#include "util/Value.h"

namespace corvane::platform {

/// Property-list values as bytes and back. Sets, opaque leaves and null have no such form. Any thread.
class PropertyListCodec {
public:
    virtual ~PropertyListCodec() = default;
    /// An XML document in UTF-8. None when the value holds something without a property-list form; `reason`,
    /// when given, then says what.
    [[nodiscard]] virtual std::optional<util::Bytes> xml(const util::Value& value,
                                                         std::string* reason = nullptr) const = 0;
    /// The binary form; none as for `xml`.
    [[nodiscard]] virtual std::optional<util::Bytes> binary(const util::Value& value) const = 0;
    /// Reads either form, told apart by its first bytes. Null when the bytes are no property list;
    /// `reason`, when given, then says why and where. Depth and size are limited. Values come immutable.
    [[nodiscard]] virtual util::Value parse(util::BytesView bytes, std::string* reason) const = 0;
};

} // namespace corvane::platform
