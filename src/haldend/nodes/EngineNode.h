#pragma once

#include <memory>
#include <string>

#include "halden/Node.h"
#include "haldend/engine/Engine.h"
#include "haldend/records/FetchedRecord.h"

namespace corvane::haldend {

/// What all nodes of the engine share: failures become errors, and what a kind of node doesn't have is
/// answered with a clear one. Any thread; one request is answered after the other. A kind overrides the
/// protected operations, which throw `Failure` and have the engine in hand.
class EngineNode : public halden::Node, public std::enable_shared_from_this<EngineNode> {
public:
    EngineNode(std::shared_ptr<Engine> engine, std::string name)
        : engine_(std::move(engine)), name_(std::move(name)) {}

    [[nodiscard]] std::string name() const final { return name_; }
    [[nodiscard]] util::Dictionary nodeDetails(const std::optional<std::vector<std::string>>& keys,
                                               halden::Error* error) final;
    [[nodiscard]] util::Array subnodeNames(halden::Error* error) final;
    [[nodiscard]] std::optional<util::Bytes> customCall(std::int32_t code, util::BytesView request,
                                                        halden::Error* error) final;
    [[nodiscard]] bool setCredentials(std::string_view recordType, std::string_view authenticationType,
                                      const util::Array& items, util::Array* continueItems,
                                      std::shared_ptr<void>* context, halden::Error* error) final;
    [[nodiscard]] std::unique_ptr<halden::Query> query(const halden::QueryParameters& parameters,
                                                       halden::Error* error) final;

    /// Runs a query. With `allowPartial` a source that fails is logged and passed over where others are left.
    [[nodiscard]] virtual halden::RecordList fetch(const halden::QueryParameters& parameters,
                                                   bool allowPartial) = 0;
    [[nodiscard]] Engine& engine() const { return *engine_; }

protected:
    [[nodiscard]] virtual AttributeMap details() { return {}; }
    [[nodiscard]] virtual std::vector<std::string> subnodes() { return {}; }
    virtual util::Bytes call(std::int32_t code, util::BytesView request);
    [[nodiscard]] const std::shared_ptr<Engine>& sharedEngine() const { return engine_; }

private:
    std::shared_ptr<Engine> engine_;
    std::string name_;
};

} // namespace corvane::haldend
