#include "haldend/records/FetchedRecord.h"

#include <algorithm>
#include <cstdint>

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

/// One value of a record: the number of its attribute, its length, its bytes.
struct PackedValue {
    std::uint16_t attribute = 0;
    std::string_view text;

    void appendTo(std::string& values) const {
        const auto length = static_cast<std::uint32_t>(text.size());
        values.append(reinterpret_cast<const char*>(&attribute), sizeof attribute);
        values.append(reinterpret_cast<const char*>(&length), sizeof length);
        values.append(text);
    }
    /// Takes the first one off.
    static PackedValue takenFrom(std::string_view& values) {
        PackedValue value;
        std::uint32_t length = 0;
        values.copy(reinterpret_cast<char*>(&value.attribute), sizeof value.attribute);
        values.copy(reinterpret_cast<char*>(&length), sizeof length, sizeof value.attribute);
        value.text = values.substr(sizeof value.attribute + sizeof length, length);
        values.remove_prefix(sizeof value.attribute + sizeof length + length);
        return value;
    }
};

/// Calls `visit` with each value and the number of its attribute.
template <typename Visit>
void eachValue(std::string_view values, const Visit& visit) {
    while (!values.empty()) {
        const auto value = PackedValue::takenFrom(values);
        visit(value.attribute, value.text);
    }
}

} // namespace

std::string FetchedRecord::recordName() const {
    std::string_view values = values_;
    const auto first = values.empty() ? PackedValue{1, {}} : PackedValue::takenFrom(values);
    return first.attribute == 0 ? std::string(first.text) : std::string();
}

util::Array FetchedRecord::valuesForAttribute(std::string_view attribute, halden::Error* error) const {
    std::vector<std::string> texts;
    eachValue(values_, [&](std::size_t number, std::string_view text) {
        if (layout_->attributes[number] == attribute) texts.emplace_back(text);
    });
    if (!texts.empty()) return util::Array::ofTexts(texts);
    if (error)
        *error = {halden::ErrorCode::attributeUnknown,
                  "The record \"" + recordName() + "\" has no such attribute.",
                  "\"" + std::string(attribute) + "\" is not among the attributes that were fetched.", ""};
    return {};
}

util::Dictionary FetchedRecord::attributes() const {
    std::vector<std::vector<std::string>> texts(layout_->attributes.size());
    eachValue(values_, [&](std::size_t number, std::string_view text) { texts[number].emplace_back(text); });
    util::ValueMap values;
    for (std::size_t i = 0; i < texts.size(); ++i)
        if (!texts[i].empty()) values.emplace(layout_->attributes[i], util::Array::ofTexts(texts[i]));
    return util::Dictionary(std::move(values));
}

RecordPacker::RecordPacker(std::string_view recordType, const std::vector<std::string>& attributes) {
    const auto layout = std::make_shared<RecordLayout>();
    layout->recordType = recordType;
    layout->attributes.emplace_back(halden::attribute::recordName);
    for (const auto& attribute : attributes)
        if (attribute != halden::attribute::recordName) layout->attributes.push_back(attribute);
    layout_ = layout;
}

std::optional<std::size_t> RecordPacker::numberOf(std::string_view attribute) const {
    const auto found = std::ranges::find(layout_->attributes, attribute);
    if (found == layout_->attributes.end()) return std::nullopt;
    return static_cast<std::size_t>(found - layout_->attributes.begin());
}

void RecordPacker::add(std::size_t number, std::string_view value) {
    PackedValue{static_cast<std::uint16_t>(number), value}.appendTo(number == 0 ? name_ : others_);
}

std::shared_ptr<halden::Record> RecordPacker::take() {
    std::string values;
    values.reserve(name_.size() + others_.size());
    values += name_;
    values += others_;
    drop();
    return std::make_shared<FetchedRecord>(layout_, std::move(values));
}

void RecordPacker::drop() {
    name_.clear();
    others_.clear();
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

std::vector<std::string> wantedAttributes(const halden::QueryParameters& parameters,
                                          const std::vector<std::string>& attributes) {
    const auto& wanted = parameters.attributesToReturn;
    if (contains(wanted, halden::attribute::all)) return attributes;
    std::vector<std::string> result;
    for (const auto& attribute : attributes)
        if (contains(wanted, attribute)) result.push_back(attribute);
    return result;
}

std::shared_ptr<halden::Record> recordFor(const halden::QueryParameters& parameters,
                                          std::string_view recordType, const AttributeMap& attributes) {
    std::vector<std::string> names;
    for (const auto& [name, values] : attributes)
        names.push_back(name);
    RecordPacker packer(recordType, wantedAttributes(parameters, names));
    for (const auto& [name, values] : attributes)
        if (const auto number = packer.numberOf(name))
            for (const auto& value : values)
                packer.add(*number, value);
    return packer.take();
}

bool isFull(const halden::QueryParameters& parameters, const halden::RecordList& records) {
    return parameters.maximumResults != 0 && records.size() >= parameters.maximumResults;
}

} // namespace corvane::haldend
