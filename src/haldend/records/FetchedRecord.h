#pragma once

#include <map>
#include <string>
#include <vector>

#include "halden/Names.h"
#include "halden/Record.h"

namespace corvane::haldend {

/// Attribute name to values.
using AttributeMap = std::map<std::string, std::vector<std::string>, std::less<>>;

/// A record as it was when it was fetched. Immutable.
class FetchedRecord final : public halden::Record {
public:
    FetchedRecord(std::string recordType, AttributeMap attributes)
        : recordType_(std::move(recordType)), attributes_(std::move(attributes)) {}

    /// The first value of the record-name attribute.
    [[nodiscard]] std::string recordName() const override;
    [[nodiscard]] std::string recordType() const override { return recordType_; }
    [[nodiscard]] util::Array valuesForAttribute(std::string_view attribute,
                                                 halden::Error* error) const override;
    [[nodiscard]] util::Dictionary attributes() const override;
    [[nodiscard]] const AttributeMap& map() const { return attributes_; }

private:
    std::string recordType_;
    AttributeMap attributes_;
};

/// True when the query asks for records of this type.
[[nodiscard]] bool wantsType(const halden::QueryParameters& parameters, std::string_view recordType);
/// True when a record with these attributes is what the query looks for. Texts are compared byte by byte.
[[nodiscard]] bool matches(const halden::QueryParameters& parameters, const AttributeMap& attributes);
/// A record with the attributes that the query asks for; its name is always among them.
[[nodiscard]] std::shared_ptr<halden::Record> recordFor(const halden::QueryParameters& parameters,
                                                        std::string_view recordType,
                                                        const AttributeMap& attributes);
/// True when `records` already holds as many as the query wants.
[[nodiscard]] bool isFull(const halden::QueryParameters& parameters, const halden::RecordList& records);
/// True for a query that matches every record.
[[nodiscard]] bool matchesEverything(const halden::QueryParameters& parameters);

} // namespace corvane::haldend
