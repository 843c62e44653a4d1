#pragma once

#include "fakes/FakeDirectory.h"
#include "platform/PropertyListCodec.h"

namespace corvane::fakes {

/// Lets the nodes of a fake session answer calls as a directory service does: the search nodes keep their
/// policies, the configuration node flips connectors, and a request with an empty authorization is refused. A
/// test that wants another answer sets the node's `onCall`.
class FakeService {
public:
    /// Both outlive the service.
    FakeService(FakeSession& session, const platform::PropertyListCodec& codec) : codec_(codec) {
        auto& search = session.search();
        auto& contacts = session.contacts();
        auto& config = session.config();
        search.onCall = [this, &search](const auto& call, auto* error) {
            return answered(changePolicy(search, call, true), error);
        };
        contacts.onCall = [this, &contacts](const auto& call, auto* error) {
            return answered(changePolicy(contacts, call, false), error);
        };
        config.onCall = [this, &config](const auto& call, auto* error) {
            return answered(flipConnector(config, call), error);
        };
        session.local().acceptsForm = granted;
    }
    FakeService(const FakeService&) = delete;
    FakeService& operator=(const FakeService&) = delete;

    /// An external form that was never made is all zero.
    [[nodiscard]] static bool granted(util::BytesView form) {
        return form.size() >= util::AuthorizationExternalForm::length &&
               std::ranges::any_of(form.first(util::AuthorizationExternalForm::length),
                                   [](auto byte) { return byte != 0; });
    }

private:
    using Reply = std::optional<util::Bytes>;

    static Reply answered(const halden::Error& problem, halden::Error* error) {
        if (!problem) return util::Bytes();
        if (error != nullptr) *error = problem;
        return std::nullopt;
    }
    static halden::Error refusal(int code, const char* why) {
        return {code, "The call was refused.", why, ""};
    }

    halden::Error changePolicy(FakeNodeState& node, const ReceivedCall& call,
                               bool beginsWithLocalNodes) const {
        namespace attribute = halden::attribute;
        if (!granted(call.request))
            return refusal(halden::ErrorCode::notPermitted, "The rights are missing.");
        const auto activate = [&](std::string_view path) {
            node.details.set(attribute::searchPolicy, util::Array{std::string(path)});
            return halden::Error();
        };
        switch (call.code) {
        case 111:
            return activate(attribute::automaticSearchPath);
        case 222:
            return activate(attribute::localOnlySearchPath);
        case 333:
            return activate(attribute::customSearchPath);
        case 444:
            return replaceCustomList(node, call, beginsWithLocalNodes);
        default:
            return refusal(halden::ErrorCode::callUnknown, "There is no such call.");
        }
    }

    halden::Error replaceCustomList(FakeNodeState& node, const ReceivedCall& call,
                                    bool beginsWithLocalNodes) const {
        namespace attribute = halden::attribute;
        const auto payload = util::BytesView(call.request).subspan(util::AuthorizationExternalForm::length);
        const auto list = codec_.parse(payload, nullptr).as<util::Array>();
        if (!list) return refusal(halden::ErrorCode::parameter, "That is no list.");
        auto names = beginsWithLocalNodes
                         ? node.details.valueForKey(attribute::localOnlySearchPath).as<util::Array>().texts()
                         : std::vector<std::string>();
        std::ranges::copy(list.texts(), std::back_inserter(names));
        node.details.set(attribute::customSearchPath, util::Array::ofTexts(names));
        return {};
    }

    /// A connector's call is 1000 plus the length of its version.
    static halden::Error flipConnector(FakeNodeState& node, const ReceivedCall& call) {
        namespace attribute = halden::attribute;
        if (!granted(call.request))
            return refusal(halden::ErrorCode::notPermitted, "The rights are missing.");
        for (const auto& record : node.records) {
            const auto version = record->valuesForAttribute(attribute::version, nullptr);
            if (version.isEmpty() || 1000 + static_cast<int>(version.textAt(0).size()) != call.code) continue;
            const auto state = record->valuesForAttribute(attribute::functionalState, nullptr);
            const bool active = !state.isEmpty() && state.textAt(0) == "Active";
            std::static_pointer_cast<FakeRecord>(record)->with(attribute::functionalState,
                                                               {active ? "Inactive" : "Active"});
            return {};
        }
        return refusal(halden::ErrorCode::callUnknown, "There is no such connector.");
    }

    const platform::PropertyListCodec& codec_;
};

} // namespace corvane::fakes
