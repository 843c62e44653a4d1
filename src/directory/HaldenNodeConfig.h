#pragma once

#include <memory>

#include "halden/Node.h"

namespace corvane::directory {

/// The configuration node of a session: a node like any other that also lists what the service knows.
class HaldenNodeConfig final : public halden::Node {
public:
    /// `node` is a node of type `configNode`.
    explicit HaldenNodeConfig(std::shared_ptr<halden::Node> node);

    /// Names of the record types, as a new mutable array in the service's order. Errors aren't reported: the
    /// result is then short or empty, never null.
    [[nodiscard]] util::Array standardRecordTypes();
    /// Names of the attribute types, in the same way.
    [[nodiscard]] util::Array standardAttributeTypes();

    [[nodiscard]] std::string name() const override;
    [[nodiscard]] util::Dictionary nodeDetails(const std::optional<std::vector<std::string>>& keys,
                                               halden::Error* error) override;
    [[nodiscard]] util::Array subnodeNames(halden::Error* error) override;
    [[nodiscard]] std::optional<util::Bytes> customCall(std::int32_t code, util::BytesView request,
                                                        halden::Error* error) override;
    [[nodiscard]] bool setCredentials(std::string_view recordType, std::string_view authenticationType,
                                      const util::Array& items, util::Array* continueItems,
                                      std::shared_ptr<void>* context, halden::Error* error) override;
    [[nodiscard]] std::unique_ptr<halden::Query> query(const halden::QueryParameters& parameters,
                                                       halden::Error* error) override;

private:
    [[nodiscard]] util::Array namesOfAllRecords(std::string_view recordType);
    std::shared_ptr<halden::Node> node_;
};

} // namespace corvane::directory
