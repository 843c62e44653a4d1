#pragma once

#include "halden/Record.h"
#include "util/AuthorizationExternalForm.h"
#include "util/Containers.h"

struct CorvaneObject;

/// What the blocking and the waiting requests of plug-ins have in common. Main thread.
namespace corvane::plugins {

/// The plug-in's 32 bytes; zeros for null.
[[nodiscard]] util::AuthorizationExternalForm authorizationFrom(const std::uint8_t* bytes);
/// A query as `CorvaneDirectory::records` describes it.
[[nodiscard]] halden::QueryParameters parametersFor(const char* recordType, const char* name,
                                                    const CorvaneObject* attributes, std::uint32_t maximum);
/// Each record as a dictionary of its attributes.
[[nodiscard]] util::Array arrayOf(const halden::RecordList& records);

} // namespace corvane::plugins
