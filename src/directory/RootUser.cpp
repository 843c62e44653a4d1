#include "directory/RootUser.h"

namespace corvane::directory {
namespace {

/// An authority that says where the password is checked: in the record itself.
constexpr std::string_view basicAuthority = ";basic;";
constexpr std::string_view disabledUser = "DisabledUser";
/// First character of a password that nothing matches.
constexpr std::string_view noUsablePassword = "*";

std::string firstValue(const std::shared_ptr<halden::Record>& record, std::string_view attribute) {
    const auto values = record ? record->valuesForAttribute(attribute, nullptr) : util::Array();
    return values.isEmpty() ? "" : values.textAt(0);
}

} // namespace

bool RootUser::rootUserIsEnabled(bool* hasNoPassword) {
    if (hasNoPassword != nullptr) *hasNoPassword = false;
    const auto record = fetchRecord({std::string(halden::attribute::recordName),
                                     std::string(halden::attribute::authenticationAuthority),
                                     std::string(halden::attribute::password)});
    const auto authority = firstValue(record, halden::attribute::authenticationAuthority);
    const bool inRecord = authority.empty() || authority.ends_with(basicAuthority);
    if (inRecord && firstValue(record, halden::attribute::password).starts_with(noUsablePassword)) {
        if (hasNoPassword != nullptr) *hasNoPassword = true;
        return false;
    }
    return authority.find(disabledUser) == std::string::npos;
}

std::shared_ptr<halden::Record> RootUser::fetchRecord(const std::vector<std::string>& attributes) {
    const auto node = needs_.localHaldenNode();
    halden::QueryParameters parameters;
    parameters.recordTypes = {std::string(halden::recordType::users)};
    parameters.attribute = halden::attribute::recordName;
    parameters.matchType = halden::MatchType::equalTo;
    parameters.values = {"root"};
    parameters.attributesToReturn = attributes;
    const auto query = node ? node->query(parameters, nullptr) : nullptr;
    const auto records = query ? query->results(false, nullptr) : std::nullopt;
    return records && !records->empty() ? records->front() : nullptr;
}

} // namespace corvane::directory
