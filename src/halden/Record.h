#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "halden/Error.h"
#include "util/Containers.h"

namespace corvane::halden {

/// One entry of a node, with the attributes that were asked for when it was fetched.
///
/// Everywhere in this folder: an `Error*` may be null; it is written on failure only and left untouched on
/// success; a result of a failed operation is null or false. All operations block until the service has
/// answered. Main thread.
class Record {
public:
    virtual ~Record() = default;
    [[nodiscard]] virtual std::string recordName() const = 0;
    [[nodiscard]] virtual std::string recordType() const = 0;
    /// The attribute's values in the service's order; null when the attribute is absent (code
    /// `attributeUnknown`) or can't be read.
    [[nodiscard]] virtual util::Array valuesForAttribute(std::string_view attribute, Error* error) const = 0;
    /// Everything fetched: attribute name to array of values.
    [[nodiscard]] virtual util::Dictionary attributes() const = 0;
};

using RecordList = std::vector<std::shared_ptr<Record>>;

enum class MatchType { any = 1, equalTo = 2, beginsWith = 3, contains = 4 };

/// What to look for in a node.
struct QueryParameters {
    std::vector<std::string> recordTypes;
    std::string attribute; ///< attribute to match, "" when `matchType` is `any`
    MatchType matchType = MatchType::any;
    std::vector<std::string> values;             ///< texts to match, any of them
    std::vector<std::string> attributesToReturn; ///< `attribute::all` for every one
    std::size_t maximumResults = 0;              ///< 0: unlimited
};

/// A query that is ready to be run. Owned by the caller; keeps its node alive.
class Query {
public:
    virtual ~Query() = default;
    /// All records, none (no value) on failure. With `allowPartialResults` what has arrived so far will do.
    [[nodiscard]] virtual std::optional<RecordList> results(bool allowPartialResults, Error* error) = 0;
};

} // namespace corvane::halden
