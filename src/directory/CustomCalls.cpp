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

std::size_t sizeOfItems(const util::Array& items) {
    std::size_t size = 0;
    for (const auto& item : items.elements()) {
        if (const auto text = item.as<util::String>()) size += sizeof(std::uint32_t) + text.text().size();
        if (const auto data = item.as<util::Data>()) size += sizeof(std::uint32_t) + data.bytes().size();
    }
    return size;
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
    const util::WipeGuard guard(request);
    return node.customCall(code, request, error);
}

std::optional<util::Bytes> customCall(halden::Node& node, std::int32_t code,
                                      const util::AuthorizationExternalForm& authorization,
                                      halden::Error* error) {
    return customCall(node, code, std::nullopt, authorization, error);
}

std::optional<util::Bytes> propertyListRequest(const util::Value& propertyList,
                                               const platform::PropertyListCodec& codec,
                                               const util::AuthorizationExternalForm& authorization,
                                               halden::Error* error) {
    std::string reason;
    if (auto document = codec.xml(propertyList, &reason)) {
        const util::WipeGuard guard(*document);
        auto request = authorizedRequest(authorization, document->size());
        request.insert(request.end(), document->begin(), document->end());
        return request;
    }
    if (error != nullptr)
        *error = {halden::ErrorCode::parameter, "The request can't be written as a property list.",
                  reason.empty() ? reason : "The cause: " + reason + ".", ""};
    return std::nullopt;
}

std::optional<util::Bytes> customCallSendPropertyList(halden::Node& node, std::int32_t code,
                                                      const util::Value& propertyList,
                                                      const platform::PropertyListCodec& codec,
                                                      const util::AuthorizationExternalForm& authorization,
                                                      halden::Error* error) {
    auto request = propertyListRequest(propertyList, codec, authorization, error);
    if (!request) return std::nullopt;
    const util::WipeGuard guard(*request);
    return node.customCall(code, *request, error);
}

std::optional<util::Bytes> customCallSendItems(halden::Node& node, std::int32_t code,
                                               const util::Array& items, halden::Error* error) {
    util::Bytes request;
    request.reserve(sizeOfItems(items)); // growing would leave copies of a secret behind
    const util::WipeGuard guard(request);
    for (const auto& item : items.elements()) {
        if (const auto text = item.as<util::String>()) appendItem(request, util::bytesFromText(text.text()));
        if (const auto data = item.as<util::Data>()) appendItem(request, data.bytes());
    }
    return node.customCall(code, request, error);
}

} // namespace corvane::directory
