#include "plugins/HostQueries.h"

#include <algorithm>

#include "plugins/HostObject.h"
#include "plugins/ReceivedText.h"

namespace corvane::plugins {

util::AuthorizationExternalForm authorizationFrom(const std::uint8_t* bytes) {
    util::AuthorizationExternalForm form;
    if (bytes != nullptr) std::copy_n(bytes, form.bytes.size(), form.bytes.begin());
    return form;
}

halden::QueryParameters parametersFor(const char* recordType, const char* name,
                                      const CorvaneObject* attributes, std::uint32_t maximum) {
    halden::QueryParameters parameters;
    parameters.recordTypes = {receivedText::repaired(recordType)};
    if (name != nullptr) {
        parameters.attribute = halden::attribute::recordName;
        parameters.matchType = halden::MatchType::equalTo;
        parameters.values = {receivedText::repaired(name)};
    }
    parameters.attributesToReturn = valueOf(attributes).as<util::Array>().texts();
    if (parameters.attributesToReturn.empty())
        parameters.attributesToReturn = {std::string(halden::attribute::all)};
    parameters.maximumResults = maximum;
    return parameters;
}

util::Array arrayOf(const halden::RecordList& records) {
    auto list = util::Array::makeMutable();
    for (const auto& record : records)
        list.append(record->attributes());
    return list;
}

} // namespace corvane::plugins
