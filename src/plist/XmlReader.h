#pragma once

#include <memory>

#include "util/Value.h"
#include "util/Bytes.h"

namespace corvane::plist {

/// Reads one XML document. Used once. Throws `FormatFailure` with line and column.
class XmlReader {
public:
    XmlReader();
    XmlReader(const XmlReader&) = delete;
    XmlReader& operator=(const XmlReader&) = delete;
    ~XmlReader();
    [[nodiscard]] util::Value read(util::BytesView document);

private:
    class Builder;
    std::unique_ptr<Builder> builder_;
};

} // namespace corvane::plist
