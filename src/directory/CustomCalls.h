#pragma once

#include <cstdint>
#include <optional>

#include "halden/Node.h"
#include "platform/PropertyListCodec.h"
#include "util/AuthorizationExternalForm.h"

/// Framing of numbered requests to directory nodes. An authorized request is the 32-byte external form
/// directly followed by the payload. None of these retries or logs: reply and error are the bare call's.
/// Main thread; each blocks until the service answers.
namespace corvane::directory {

/// The authorization form as a request's first bytes, with room for `payloadLength` more. The caller wipes
/// it.
[[nodiscard]] util::Bytes authorizedRequest(const util::AuthorizationExternalForm& authorization,
                                            std::size_t payloadLength);

/// Sends the form and `data`; no `data` means no payload.
[[nodiscard]] std::optional<util::Bytes> customCall(halden::Node& node, std::int32_t code,
                                                    const std::optional<util::Bytes>& data,
                                                    const util::AuthorizationExternalForm& authorization,
                                                    halden::Error* error);

/// Sends the form alone: exactly 32 bytes.
[[nodiscard]] std::optional<util::Bytes> customCall(halden::Node& node, std::int32_t code,
                                                    const util::AuthorizationExternalForm& authorization,
                                                    halden::Error* error);

/// Sends the form and the property list as an XML document. A value that has no property-list form is
/// reported as `ErrorCode::parameter`; nothing is sent then.
[[nodiscard]] std::optional<util::Bytes>
customCallSendPropertyList(halden::Node& node, std::int32_t code, const util::Value& propertyList,
                           const platform::PropertyListCodec& codec,
                           const util::AuthorizationExternalForm& authorization, halden::Error* error);

/// The same request without sending it; none where the value has no property-list form. The caller wipes it.
[[nodiscard]] std::optional<util::Bytes>
propertyListRequest(const util::Value& propertyList, const platform::PropertyListCodec& codec,
                    const util::AuthorizationExternalForm& authorization, halden::Error* error);

/// Sends strings and data one after the other, each behind its length in bytes (32 bits, host order; longer
/// data keeps only the low 32 bits). Other kinds are skipped. Strings are UTF-8 and never lack that form.
/// No authorization is added.
[[nodiscard]] std::optional<util::Bytes> customCallSendItems(halden::Node& node, std::int32_t code,
                                                             const util::Array& items, halden::Error* error);

} // namespace corvane::directory
