#include "haldend/records/FetchedRecord.h"

#include <algorithm>

namespace corvane::haldend {
namespace {

bool matchesValue(halden::MatchType type, std::string_view value, std::string_view text) {
    switch (type) {
    case halden::MatchType::any:
        return true;
    case halden::MatchType::equalTo:
        return value == text;
    case halden::MatchType::beginsWith:
        return value.starts_with(text);
    case halden::MatchType::contains:
        return value.find(text) != std::string_view::npos;
    }
    return false;
}

bool contains(const std::vector<std::string>& texts, std::string_view text) {
    return std::ranges::find(texts, text) != texts.end();
}

} // namespace

std::string FetchedRecord::recordName() const {
    const auto found = attributes_.find(halden::attribute::recordName);
    return found == attributes_.end() || found->second.empty() ? std::string() : found->second.front();
}

util::Array FetchedRecord::valuesForAttribute(std::string_view attribute, halden::Error* error) const {
    if (const auto found = attributes_.find(attribute); found != attributes_.end())
        return util::Array::ofTexts(found->second);
    if (error)
        *error = {halden::ErrorCode::attributeUnknown,
                  "The record \"" + recordName() + "\" has no such attribute.",
                  "\"" + std::string(attribute) + "\" is not among the attributes that were fetched.", ""};
    return {};
}

util::Dictionary FetchedRecord::attributes() const {
    util::ValueMap values;
    for (const auto& [name, texts] : attributes_)
        values.emplace(name, util::Array::ofTexts(texts));
    return util::Dictionary(std::move(values));
}

bool wantsType(const halden::QueryParameters& parameters, std::string_view recordType) {
    return contains(parameters.recordTypes, recordType);
}

bool matchesEverything(const halden::QueryParameters& parameters) {
    if (parameters.matchType == halden::MatchType::any) return true;
    return parameters.attribute == halden::attribute::recordName &&
           contains(parameters.values, halden::allRecords);
}

bool matches(const halden::QueryParameters& parameters, const AttributeMap& attributes) {
    if (matchesEverything(parameters)) return true;
    const auto found = attributes.find(parameters.attribute);
    if (found == attributes.end()) return false;
    return std::ranges::any_of(found->second, [&](const auto& value) {
        return std::ranges::any_of(parameters.values, [&](const auto& text) {
            return matchesValue(parameters.matchType, value, text);
        });
    });
}

std::shared_ptr<halden::Record> recordFor(const halden::QueryParameters& parameters,
                                          std::string_view recordType, const AttributeMap& attributes) {
    const auto& wanted = parameters.attributesToReturn;
    if (contains(wanted, halden::attribute::all))
        return std::make_shared<FetchedRecord>(std::string(recordType), attributes);
    AttributeMap kept;
    for (const auto& [name, values] : attributes)
        if (name == halden::attribute::recordName || contains(wanted, name)) kept.emplace(name, values);
    return std::make_shared<FetchedRecord>(std::string(recordType), std::move(kept));
}

bool isFull(const halden::QueryParameters& parameters, const halden::RecordList& records) {
    return parameters.maximumResults != 0 && records.size() >= parameters.maximumResults;
}

} // namespace corvane::haldend
