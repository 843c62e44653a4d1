#include "plist/PropertyListCodec.h"

#include "plist/BinaryReader.h"
#include "plist/BinaryWriter.h"
#include "plist/FormatFailure.h"
#include "plist/Limits.h"
#include "plist/XmlReader.h"
#include "plist/XmlWriter.h"

namespace corvane::plist {
namespace {

template <typename Write>
std::optional<util::Bytes> written(std::string* reason, const Write& write) {
    try {
        return write();
    } catch (const FormatFailure& failure) {
        if (reason != nullptr) *reason = failure.what();
        return std::nullopt;
    }
}

util::Value read(util::BytesView bytes) {
    if (bytes.empty()) throw FormatFailure("there is nothing to read");
    if (bytes.size() > maximumSize) throw FormatFailure("it is larger than 64 MiB");
    return BinaryReader::looksBinary(bytes) ? BinaryReader(bytes).read() : XmlReader().read(bytes);
}

} // namespace

std::optional<util::Bytes> PropertyListCodec::xml(const util::Value& value, std::string* reason) const {
    return written(reason, [&] { return XmlWriter().write(value); });
}

std::optional<util::Bytes> PropertyListCodec::binary(const util::Value& value) const {
    return written(nullptr, [&] { return BinaryWriter().write(value); });
}

util::Value PropertyListCodec::parse(util::BytesView bytes, std::string* reason) const {
    try {
        return read(bytes);
    } catch (const FormatFailure& failure) {
        if (reason) *reason = failure.what();
        return {};
    }
}

} // namespace corvane::plist
