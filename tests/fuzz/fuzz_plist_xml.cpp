#include <cstdlib>

#include "plist/PropertyListCodec.h"

// Whatever is read from XML must be writable as XML again and read back equal.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace corvane;
    const plist::PropertyListCodec codec;
    std::string reason;
    const auto value = codec.parse({data, size}, &reason);
    if (value.isNull() && reason.empty()) std::abort();
    if (value.isNull()) return 0;
    const auto written = codec.xml(value);
    if (written && codec.xml(codec.parse(*written, nullptr)) != written) std::abort();
    return 0;
}
