#include "directory/CustomCalls.h"

#include <cstring>

namespace corvane::directory {
namespace {

void appendItem(util::Bytes& request, util::BytesView item) {
    const auto length = static_cast<std::uint32_t>(item.size());
    std::uint8_t bytes[sizeof length];
    std::memcpy(bytes, &length, sizeof length);
    request.insert(request.end(), bytes, bytes + sizeof length);
    request.insert(request.end(), item.begin(), item.end());
}

} // namespace

util::Bytes authorizedRequest(const util::AuthorizationExternalForm& authorization,
                              std::size_t payloadLength) {
    util::Bytes request;
    request.reserve(authorization.bytes.size() + payloadLength);
    request.insert(request.end(), authorization.bytes.begin(), authorization.bytes.end());
    return request;
}

std::optional<util::Bytes> customCall(halden::Node& node, std::int32_t code,
                                      const std::optional<util::Bytes>& data,
                                      const util::AuthorizationExternalForm& authorization,
                                      halden::Error* error) {
    auto request = authorizedRequest(authorization, data ? data->size() : 0);
    if (data) request.insert(request.end(), data->begin(), data->end());
    auto reply = node.customCall(code, request, error);
    util::wipe(request);
    return reply;
}

std::optional<util::Bytes> customCall(halden::Node& node, std::int32_t code,
                                      const util::AuthorizationExternalForm& authorization,
                                      halden::Error* error) {
    return customCall(node, code, std::nullopt, authorization, error);
}

std::optional<util::Bytes> customCallSendPropertyList(halden::Node& node, std::int32_t code,
                                                      const util::Value& propertyList,
                                                      const platform::PropertyListCodec& codec,
                                                      const util::AuthorizationExternalForm& authorization,
                                                      halden::Error* error) {
    if (auto document = codec.xml(propertyList)) {
        auto reply = customCall(node, code, document, authorization, error);
        util::wipe(*document);
        return reply;
    }
    if (error != nullptr)
        *error = {halden::ErrorCode::parameter, "The request can't be written as a property list.",
                  "It holds a value that is neither text, number, date, data, array nor dictionary.", ""};
    return std::nullopt;
}

std::optional<util::Bytes> customCallSendItems(halden::Node& node, std::int32_t code,
                                               const util::Array& items, halden::Error* error) {
    util::Bytes request;
    for (const auto& item : items.elements()) {
        if (const auto text = item.as<util::String>()) appendItem(request, util::bytesFromText(text.text()));
        if (const auto data = item.as<util::Data>()) appendItem(request, data.bytes());
    }
    return node.customCall(code, request, error);
}

} // namespace corvane::directory
