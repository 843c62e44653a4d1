#include <cstdlib>

#include "plist/PropertyListCodec.h"

// The input stands behind the mark of the binary form. Whatever is read must be writable again and the same.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace corvane;
    const plist::PropertyListCodec codec;
    auto bytes = util::bytesFromText("bplist00");
    bytes.insert(bytes.end(), data, data + size);
    std::string reason;
    const auto value = codec.parse(bytes, &reason);
    if (value.isNull() && reason.empty()) std::abort();
    if (value.isNull()) return 0;
    const auto written = codec.binary(value);
    if (!written || codec.binary(codec.parse(*written, nullptr)) != written) std::abort();
    return 0;
}
