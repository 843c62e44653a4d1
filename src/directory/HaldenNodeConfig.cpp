#include "directory/HaldenNodeConfig.h"

namespace corvane::directory {

HaldenNodeConfig::HaldenNodeConfig(std::shared_ptr<halden::Node> node) : node_(std::move(node)) {}

util::Array HaldenNodeConfig::standardRecordTypes() {
    return namesOfAllRecords(halden::recordType::recordTypes);
}
util::Array HaldenNodeConfig::standardAttributeTypes() {
    return namesOfAllRecords(halden::recordType::attributeTypes);
}

util::Array HaldenNodeConfig::namesOfAllRecords(std::string_view recordType) {
    auto names = util::Array::makeMutable();
    halden::Error error;
    halden::QueryParameters parameters;
    parameters.recordTypes = {std::string(recordType)};
    parameters.attributesToReturn = {std::string(halden::attribute::recordName)};
    const auto query = node_->query(parameters, &error);
    const auto records = query ? query->results(false, &error) : std::nullopt;
    if (!records) return names;
    for (const auto& record : *records)
        names.append(record->recordName());
    return names;
}

std::string HaldenNodeConfig::name() const { return node_->name(); }

util::Dictionary HaldenNodeConfig::nodeDetails(const std::optional<std::vector<std::string>>& keys,
                                               halden::Error* error) {
    return node_->nodeDetails(keys, error);
}

util::Array HaldenNodeConfig::subnodeNames(halden::Error* error) { return node_->subnodeNames(error); }

std::optional<util::Bytes> HaldenNodeConfig::customCall(std::int32_t code, util::BytesView request,
                                                        halden::Error* error) {
    return node_->customCall(code, request, error);
}

bool HaldenNodeConfig::setCredentials(std::string_view recordType, std::string_view authenticationType,
                                      const util::Array& items, util::Array* continueItems,
                                      std::shared_ptr<void>* context, halden::Error* error) {
    return node_->setCredentials(recordType, authenticationType, items, continueItems, context, error);
}

std::unique_ptr<halden::Query> HaldenNodeConfig::query(const halden::QueryParameters& parameters,
                                                       halden::Error* error) {
    return node_->query(parameters, error);
}

} // namespace corvane::directory
