#include "haldend/nodes/EngineNode.h"

#include "haldend/storage/Failure.h"

namespace corvane::haldend {
namespace {

/// Answers a request, with the engine in hand for as long as that takes.
template <typename Result, typename Action>
[[nodiscard]] Result answered(Engine& engine, halden::Error* error, Result fallback, const Action& action) {
    const Engine::Hold hold(engine);
    return guarded<Result>(error, std::move(fallback), action);
}

class NodeQuery final : public halden::Query {
public:
    NodeQuery(std::shared_ptr<EngineNode> node, halden::QueryParameters parameters)
        : node_(std::move(node)), parameters_(std::move(parameters)) {}

    [[nodiscard]] std::optional<halden::RecordList> results(bool allowPartialResults,
                                                            halden::Error* error) override {
        return answered<std::optional<halden::RecordList>>(node_->engine(), error, std::nullopt, [&] {
            return std::make_optional(node_->fetch(parameters_, allowPartialResults));
        });
    }

private:
    std::shared_ptr<EngineNode> node_;
    halden::QueryParameters parameters_;
};

bool isWanted(const std::optional<std::vector<std::string>>& keys, const std::string& key) {
    return !keys || std::find(keys->begin(), keys->end(), key) != keys->end();
}

void requireAuthorizationItem(std::string_view recordType, std::string_view authenticationType,
                              const util::Array& items) {
    if (recordType == halden::recordType::users &&
        authenticationType == halden::authenticationType::authorizationExternalForm && items.count() == 1 &&
        items.at(0).isKind(util::Kind::Data))
        return;
    throw Failure(halden::ErrorCode::parameter, "This way of authenticating is not known.",
                  "\"" + std::string(authenticationType) + "\" with " + std::to_string(items.count()) +
                      " item(s) for \"" + std::string(recordType) + "\" was asked for.",
                  "Authenticate with the external form of an authorization.");
}

} // namespace

util::Dictionary EngineNode::nodeDetails(const std::optional<std::vector<std::string>>& keys,
                                         halden::Error* error) {
    return answered<util::Dictionary>(*engine_, error, {}, [&] {
        util::ValueMap values;
        for (const auto& [key, texts] : details())
            if (isWanted(keys, key)) values.emplace(key, util::Array::ofTexts(texts));
        return util::Dictionary(std::move(values));
    });
}

util::Array EngineNode::subnodeNames(halden::Error* error) {
    return answered<util::Array>(*engine_, error, {}, [&] { return util::Array::ofTexts(subnodes()); });
}

std::optional<util::Bytes> EngineNode::customCall(std::int32_t code, util::BytesView request,
                                                  halden::Error* error) {
    return answered<std::optional<util::Bytes>>(*engine_, error, std::nullopt,
                                                [&] { return std::make_optional(call(code, request)); });
}

bool EngineNode::setCredentials(std::string_view recordType, std::string_view authenticationType,
                                const util::Array& items, util::Array*, std::shared_ptr<void>*,
                                halden::Error* error) {
    return answered(*engine_, error, false, [&] {
        requireAuthorizationItem(recordType, authenticationType, items);
        const auto& form = items.at(0).as<util::Data>().bytes();
        if (engine_->rights().permits(form, configureRight)) return true;
        throw Failure(halden::ErrorCode::credentials, "The node " + name_ + " refused the authorization.",
                      "It no longer holds the right to change the directory configuration, or never did.",
                      "Open the lock and try again.");
    });
}

std::unique_ptr<halden::Query> EngineNode::query(const halden::QueryParameters& parameters,
                                                 halden::Error* error) {
    return answered<std::unique_ptr<halden::Query>>(
        *engine_, error, nullptr, [&]() -> std::unique_ptr<halden::Query> {
            if (parameters.matchType != halden::MatchType::any && parameters.attribute.empty())
                throw Failure(halden::ErrorCode::parameter, "The query is not complete.",
                              "It has texts to match but no attribute to match them with.",
                              "Name an attribute.");
            return std::make_unique<NodeQuery>(shared_from_this(), parameters);
        });
}

util::Bytes EngineNode::call(std::int32_t code, util::BytesView) {
    throw Failure(halden::ErrorCode::callUnknown, "The node " + name_ + " does not know this request.",
                  "It was asked for call " + std::to_string(code) + ".",
                  "Use a service of the same version as this program.");
}

} // namespace corvane::haldend
