#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "halden/Names.h"
#include "halden/Record.h"

namespace corvane::haldend {

/// Attribute name to values.
using AttributeMap = std::map<std::string, std::vector<std::string>, std::less<>>;

/// What many records of one kind have in common.
struct RecordLayout {
    std::string recordType;
    std::vector<std::string> attributes; ///< the record's name first
};

/// A record as it was when it was fetched. Immutable. Its values are kept in one piece of memory: a large
/// directory has hundreds of thousands of such records.
class FetchedRecord final : public halden::Record {
public:
    /// `values` is what a `RecordPacker` with that layout has packed.
    FetchedRecord(std::shared_ptr<const RecordLayout> layout, std::string values)
        : layout_(std::move(layout)), values_(std::move(values)) {}

    /// The first value of the record-name attribute, "" when there is none.
    [[nodiscard]] std::string recordName() const override;
    [[nodiscard]] std::string recordType() const override { return layout_->recordType; }
    [[nodiscard]] util::Array valuesForAttribute(std::string_view attribute,
                                                 halden::Error* error) const override;
    [[nodiscard]] util::Dictionary attributes() const override;

private:
    std::shared_ptr<const RecordLayout> layout_;
    std::string values_;
};

/// Makes the records of one layout, one after the other.
class RecordPacker {
public:
    /// `attributes`: those that records may have, in any order; their name is added.
    RecordPacker(std::string_view recordType, const std::vector<std::string>& attributes);

    /// The number by which an attribute is called here; none when it isn't wanted.
    [[nodiscard]] std::optional<std::size_t> numberOf(std::string_view attribute) const;
    /// A further value of the record that is being made.
    void add(std::size_t number, std::string_view value);
    [[nodiscard]] bool hasName() const { return !name_.empty(); }
    /// The record with what was added to it; the next one begins.
    [[nodiscard]] std::shared_ptr<halden::Record> take();
    /// Forgets what was added.
    void drop();

private:
    std::shared_ptr<const RecordLayout> layout_;
    std::string name_, others_; ///< packed
};

/// True when the query asks for records of this type.
[[nodiscard]] bool wantsType(const halden::QueryParameters& parameters, std::string_view recordType);
/// True when a record with these attributes is what the query looks for. Texts are compared byte by byte.
[[nodiscard]] bool matches(const halden::QueryParameters& parameters, const AttributeMap& attributes);
/// Of `attributes` those that the query asks for.
[[nodiscard]] std::vector<std::string> wantedAttributes(const halden::QueryParameters& parameters,
                                                        const std::vector<std::string>& attributes);
/// A record with the attributes that the query asks for; its name is always among them.
[[nodiscard]] std::shared_ptr<halden::Record> recordFor(const halden::QueryParameters& parameters,
                                                        std::string_view recordType,
                                                        const AttributeMap& attributes);
/// True when `records` already holds as many as the query wants.
[[nodiscard]] bool isFull(const halden::QueryParameters& parameters, const halden::RecordList& records);
/// True for a query that matches every record.
[[nodiscard]] bool matchesEverything(const halden::QueryParameters& parameters);

} // namespace corvane::haldend
