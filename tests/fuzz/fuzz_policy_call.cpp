#include "fuzz/FuzzWorld.h"

// Requests to both search nodes of an engine on a temporary folder. The first byte of the input chooses the
// call and the node and whether an authorization that may change things goes in front. After each call the
// files and the policy must agree, and a call without authorization must fail.
namespace {

using namespace corvane;

using fuzz::World;

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static World world;
    if (size == 0) return 0;
    static constexpr int codes[] = {444, 111, 222, 333};
    const bool isAuthorized = (data[0] & 8U) == 0;
    const auto type =
        data[0] & 4U ? halden::NodeType::contactsSearchNode : halden::NodeType::authenticationSearchNode;
    util::Bytes request;
    if (isAuthorized) request.assign(world.form.bytes.begin(), world.form.bytes.end());
    request.insert(request.end(), data + 1, data + size);
    const auto error = world.call(type, codes[data[0] & 3U], request);
    if (!isAuthorized && error.code == 0) std::abort();
    return 0;
}
