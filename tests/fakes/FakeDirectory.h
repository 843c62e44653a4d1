#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "fakes/Journal.h"
#include "halden/Session.h"

namespace corvane::fakes {

class FakeRecord final : public halden::Record {
public:
    FakeRecord(std::string type, std::string name) : type_(std::move(type)), name_(std::move(name)) {
        with(halden::attribute::recordName, {name_});
    }
    FakeRecord& with(std::string_view attribute, const std::vector<std::string>& values) {
        attributes_.set(attribute, util::Array::ofTexts(values));
        return *this;
    }
    [[nodiscard]] std::string recordName() const override { return name_; }
    [[nodiscard]] std::string recordType() const override { return type_; }
    [[nodiscard]] util::Array valuesForAttribute(std::string_view attribute,
                                                 halden::Error* error) const override {
        if (raises) throw halden::Exception("The record can't be read.");
        const auto values = attributes_.valueForKey(attribute).as<util::Array>();
        if (!values && error != nullptr)
            *error = {halden::ErrorCode::attributeUnknown, "No such attribute.", std::string(attribute), ""};
        return values;
    }
    [[nodiscard]] util::Dictionary attributes() const override { return attributes_; }
    bool raisesOnceFetched = false; ///< what a query brings of it can't be read
    bool raises = false;

private:
    std::string type_;
    std::string name_;
    util::Dictionary attributes_ = util::Dictionary::makeMutable();
};

/// A request as the node received it.
struct ReceivedCall {
    std::int32_t code;
    util::Bytes request;
};

/// One directory, kept in memory. What a session's handles share.
struct FakeNodeState {
    std::string name;
    util::Dictionary details = util::Dictionary::makeMutable();
    halden::RecordList records;
    std::vector<std::string> subnodes;
    std::vector<ReceivedCall> calls;
    std::vector<util::Bytes> credentials;
    std::vector<halden::QueryParameters> queries;
    /// Answers a call; without it every call succeeds with an empty reply.
    std::function<std::optional<util::Bytes>(const ReceivedCall&, halden::Error*)> onCall;
    /// Are these credentials accepted? Without it all are.
    std::function<bool(util::BytesView)> acceptsForm;
    halden::Error nextError;      ///< the next operation that can fail does so with this
    bool raisesOnDetails = false; ///< reading details raises instead
    int detailsBeforeRaising = 0; ///< so many times it still works
    bool raisesOnQuery = false;
};

class FakeNode final : public halden::Node {
public:
    FakeNode(Journal& journal, std::shared_ptr<FakeNodeState> state)
        : journal_(journal), state_(std::move(state)) {}

    [[nodiscard]] std::string name() const override { return state_->name; }
    [[nodiscard]] util::Dictionary nodeDetails(const std::optional<std::vector<std::string>>& keys,
                                               halden::Error* error) override {
        note("details");
        if (state_->raisesOnDetails && state_->detailsBeforeRaising-- <= 0)
            throw halden::Exception("the directory service has gone away");
        if (fails(error)) return {};
        if (!keys) return state_->details;
        auto chosen = util::Dictionary::makeMutable();
        for (const auto& key : *keys)
            chosen.set(key, state_->details.valueForKey(key));
        return chosen;
    }
    [[nodiscard]] util::Array subnodeNames(halden::Error* error) override {
        return fails(error) ? util::Array() : util::Array::ofTexts(state_->subnodes);
    }
    [[nodiscard]] std::optional<util::Bytes> customCall(std::int32_t code, util::BytesView request,
                                                        halden::Error* error) override {
        note("call " + std::to_string(code));
        state_->calls.push_back({code, {request.begin(), request.end()}});
        if (fails(error)) return std::nullopt;
        return state_->onCall ? state_->onCall(state_->calls.back(), error) : util::Bytes();
    }
    [[nodiscard]] bool setCredentials(std::string_view recordType, std::string_view authenticationType,
                                      const util::Array& items, util::Array* /*continueItems*/,
                                      std::shared_ptr<void>* /*context*/, halden::Error* error) override {
        note("credentials " + std::string(recordType) + " " + std::string(authenticationType));
        for (const auto& item : items.elements())
            state_->credentials.push_back(item.as<util::Data>().bytes());
        if (fails(error)) return false;
        if (!state_->acceptsForm || state_->acceptsForm(state_->credentials.back())) return true;
        if (error != nullptr)
            *error = {halden::ErrorCode::credentials, "The credentials were refused.", "", ""};
        return false;
    }
    [[nodiscard]] std::unique_ptr<halden::Query> query(const halden::QueryParameters& parameters,
                                                       halden::Error* error) override {
        note("query");
        state_->queries.push_back(parameters);
        if (state_->raisesOnQuery) throw halden::Exception("the directory service has gone away");
        if (fails(error)) return nullptr;
        return std::make_unique<FakeQuery>(state_, parameters);
    }

private:
    struct FakeQuery final : halden::Query {
        FakeQuery(std::shared_ptr<FakeNodeState> from, halden::QueryParameters what)
            : state(std::move(from)), parameters(std::move(what)) {}
        /// What has arrived so far is all but the last one.
        [[nodiscard]] std::optional<halden::RecordList> results(bool allowPartial,
                                                                halden::Error* error) override {
            if (state->nextError) {
                if (error != nullptr) *error = state->nextError;
                state->nextError = {};
                return std::nullopt;
            }
            halden::RecordList found;
            for (const auto& record : state->records) {
                const bool full = parameters.maximumResults != 0 && found.size() == parameters.maximumResults;
                if (!full && matchesType(*record) && matchesValue(*record)) found.push_back(fetched(*record));
            }
            if (allowPartial && !found.empty()) found.pop_back();
            return found;
        }
        /// A record as it comes from a service: a copy, with the attributes that were asked for and its name.
        [[nodiscard]] std::shared_ptr<halden::Record> fetched(const halden::Record& record) const {
            auto copy = std::make_shared<FakeRecord>(record.recordType(), record.recordName());
            const auto* original = dynamic_cast<const FakeRecord*>(&record);
            copy->raises = original != nullptr && original->raisesOnceFetched;
            for (const auto& [name, values] : record.attributes().entries())
                if (wants(halden::attribute::all) || wants(name))
                    copy->with(name, values.as<util::Array>().texts());
            return copy;
        }
        [[nodiscard]] bool wants(std::string_view attribute) const {
            return std::ranges::find(parameters.attributesToReturn, attribute) !=
                   parameters.attributesToReturn.end();
        }
        [[nodiscard]] bool matchesType(const halden::Record& record) const {
            return std::ranges::find(parameters.recordTypes, record.recordType()) !=
                   parameters.recordTypes.end();
        }
        [[nodiscard]] bool matchesValue(const halden::Record& record) const {
            if (parameters.matchType == halden::MatchType::any) return true;
            const auto values = record.valuesForAttribute(parameters.attribute, nullptr).texts();
            return std::ranges::any_of(parameters.values, [&](const auto& wanted) {
                return wanted == halden::allRecords ||
                       std::ranges::any_of(values, [&](const auto& value) { return matches(value, wanted); });
            });
        }
        [[nodiscard]] bool matches(const std::string& value, const std::string& wanted) const {
            switch (parameters.matchType) {
            case halden::MatchType::equalTo:
                return value == wanted;
            case halden::MatchType::beginsWith:
                return value.starts_with(wanted);
            case halden::MatchType::contains:
                return value.find(wanted) != std::string::npos;
            case halden::MatchType::any:
                break;
            }
            return true;
        }
        std::shared_ptr<FakeNodeState> state;
        halden::QueryParameters parameters;
    };

    void note(const std::string& what) const { journal_.add(state_->name + "." + what); }
    bool fails(halden::Error* error) {
        if (!state_->nextError) return false;
        if (error != nullptr) *error = state_->nextError;
        state_->nextError = {};
        return true;
    }

    Journal& journal_;
    std::shared_ptr<FakeNodeState> state_;
};

/// A directory service with the four nodes that every one has, and whatever a test adds.
class FakeSession final : public halden::Session {
public:
    explicit FakeSession(Journal& journal) : journal_(journal) {
        for (const auto type : {halden::NodeType::localNodes, halden::NodeType::authenticationSearchNode,
                                halden::NodeType::configNode, halden::NodeType::contactsSearchNode})
            byType_[type] = std::make_shared<FakeNodeState>();
        local().name = "/Local/Accounts";
        search().name = "/Search";
        config().name = "/Config";
        contacts().name = "/Contacts";
    }

    [[nodiscard]] FakeNodeState& local() { return *byType_[halden::NodeType::localNodes]; }
    [[nodiscard]] FakeNodeState& search() { return *byType_[halden::NodeType::authenticationSearchNode]; }
    [[nodiscard]] FakeNodeState& config() { return *byType_[halden::NodeType::configNode]; }
    [[nodiscard]] FakeNodeState& contacts() { return *byType_[halden::NodeType::contactsSearchNode]; }

    [[nodiscard]] std::shared_ptr<halden::Node> nodeWithType(halden::NodeType type,
                                                             halden::Error* error) override {
        if (const auto failing = failingTypes.find(type); failing != failingTypes.end()) {
            if (error != nullptr) *error = failing->second;
            return nullptr;
        }
        journal_.add("open " + byType_[type]->name);
        return std::make_shared<FakeNode>(journal_, byType_[type]);
    }
    [[nodiscard]] std::shared_ptr<halden::Node> nodeWithName(const std::string& name,
                                                             halden::Error* error) override {
        for (const auto& [type, state] : byType_)
            if (state->name == name) return std::make_shared<FakeNode>(journal_, state);
        if (error != nullptr)
            *error = {halden::ErrorCode::nodeUnknown, "There is no node " + name + ".", "", ""};
        return nullptr;
    }
    [[nodiscard]] util::Array nodeNames(halden::Error* /*error*/) override {
        return listingFails ? util::Array() : util::Array::ofTexts(names);
    }

    std::map<halden::NodeType, halden::Error> failingTypes;
    bool listingFails = false; ///< the names of the nodes can't be had
    std::vector<std::string> names = {"/Local/Accounts", "/BSD/Files", "/Search", "/Contacts"};

private:
    Journal& journal_;
    std::map<halden::NodeType, std::shared_ptr<FakeNodeState>> byType_;
};

class FakeFramework final : public halden::Framework {
public:
    explicit FakeFramework(Journal& journal)
        : session(std::make_shared<FakeSession>(journal)), journal_(journal) {}
    [[nodiscard]] std::shared_ptr<halden::Session> defaultSession() override {
        journal_.add("defaultSession");
        if (refusals > 0) return --refusals, nullptr;
        return available ? session : nullptr;
    }
    std::shared_ptr<FakeSession> session;
    bool available = true;
    int refusals = 0; ///< so many of the next sessions can't be had

private:
    Journal& journal_;
};

} // namespace corvane::fakes
