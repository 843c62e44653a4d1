#pragma once

#include "platform/PropertyListCodec.h"

namespace corvane::plist {

/// Property lists as XML documents and in the binary form. Stateless; any thread.
///
/// XML: written with the XML declaration and a `plist` element of version 1.0, without a document type; read
/// with or without one. Entity declarations are refused and nothing outside the document is ever opened.
/// Dates have whole seconds in XML and fractions in the binary form. Sizes, depths and counts are bounded by
/// Limits.h; beyond them writing gives none and reading gives null with a reason.
class PropertyListCodec final : public platform::PropertyListCodec {
public:
    [[nodiscard]] std::optional<util::Bytes> xml(const util::Value& value,
                                                 std::string* reason = nullptr) const override;
    [[nodiscard]] std::optional<util::Bytes> binary(const util::Value& value) const override;
    [[nodiscard]] util::Value parse(util::BytesView bytes, std::string* reason) const override;
};

} // namespace corvane::plist
