#include "haldend/nodes/SearchNode.h"

#include <algorithm>
#include <set>

#include "halden/Calls.h"
#include "halden/ConnectorNames.h"
#include "haldend/nodes/ConfigNode.h"
#include "haldend/nodes/NodeFactory.h"
#include "haldend/storage/Failure.h"

namespace corvane::haldend {
namespace {

using namespace halden;

constexpr std::size_t maximumListLength = 1000;
constexpr std::size_t maximumNameLength = 1024;

std::vector<std::string> withLocalNodes(const std::vector<std::string>& names) {
    auto path = localNodeNames();
    path.insert(path.end(), names.begin(), names.end());
    return path;
}

std::string attributeOf(PolicyMode mode) {
    switch (mode) {
    case PolicyMode::automatic:
        return std::string(attribute::automaticSearchPath);
    case PolicyMode::localOnly:
        return std::string(attribute::localOnlySearchPath);
    default:
        return std::string(attribute::customSearchPath);
    }
}

Failure badList(const std::string& reason) {
    return {ErrorCode::parameter, "The list of nodes can't be stored.", reason,
            "Take the entry off the list, or use a program of the same version as this service."};
}

bool isLocalNode(const std::string& name) {
    return std::ranges::find(localNodeNames(), name) != localNodeNames().end();
}

void requireNodeName(const std::string& name) {
    const auto second = name.find('/', 1);
    const bool hasTwoParts =
        name.starts_with('/') && second != std::string::npos && second > 1 && second + 1 < name.size();
    const auto connector = connectorOf(name);
    if (connector == halden::connector::search || connector == halden::connector::contacts)
        throw badList("\"" + name + "\" is a search policy itself and can't stand on one.");
    const bool isPlain = std::ranges::none_of(name, [](unsigned char c) { return c < 0x20 || c == 0x7F; });
    if (!hasTwoParts || !isPlain || name.size() > maximumNameLength)
        throw badList("\"" + name.substr(0, 80) + "\" isn't a node name like /LDAP/ldap.example.com.");
}

} // namespace

SearchNode::SearchNode(std::shared_ptr<Engine> engine, Purpose purpose)
    : EngineNode(std::move(engine),
                 std::string(purpose == Purpose::authentication ? searchNodeName : contactsNodeName)),
      purpose_(purpose) {}

StoredSearchPolicy& SearchNode::policyIn(MachinePolicy& policy) const {
    return purpose_ == Purpose::authentication ? policy.authentication : policy.contacts;
}

Machine::View SearchNode::view() const {
    return purpose_ == Purpose::authentication ? Machine::View::authentication : Machine::View::contacts;
}

/// The contacts policy isn't expressed by the machine's files, so damage there leaves it in reach.
StoredSearchPolicy SearchNode::policyOf(const MachineSnapshot& snapshot) const {
    return purpose_ == Purpose::authentication ? snapshot.policy().authentication
                                               : snapshot.storedPolicy().contacts;
}

/// A list that nobody ever stored begins as what Automatic uses now, so that choosing Custom changes nothing
/// yet.
std::vector<std::string> SearchNode::customPath(const StoredSearchPolicy& policy,
                                                const std::vector<std::string>& automatic) const {
    if (!policy.hasCustom) return withLocalNodes(automatic);
    return purpose_ == Purpose::authentication ? withLocalNodes(policy.custom) : policy.custom;
}

AttributeMap SearchNode::details() {
    auto& machine = engine().machine();
    machine.noteThatPolicyWasRead(view());
    const auto& snapshot = machine.snapshot();
    const auto own = policyOf(snapshot);
    const auto automatic = snapshot.automaticDirectories();
    // Sections that can't be used concern the machine, and are said there.
    const bool concernsUs = purpose_ == Purpose::authentication || !snapshot.knowsDirectories();
    return {{std::string(attribute::searchPolicy), {attributeOf(own.mode)}},
            {std::string(attribute::automaticSearchPath), withLocalNodes(automatic)},
            {std::string(attribute::localOnlySearchPath), localNodeNames()},
            {std::string(attribute::customSearchPath), customPath(own, automatic)},
            {std::string(attribute::remarks), concernsUs ? snapshot.remarks() : std::vector<std::string>()}};
}

std::vector<std::string> SearchNode::activePath() const {
    const auto& snapshot = engine().machine().snapshot();
    const auto own = policyOf(snapshot);
    if (own.mode == PolicyMode::localOnly) return localNodeNames();
    const auto automatic = snapshot.automaticDirectories();
    if (own.mode == PolicyMode::automatic) return withLocalNodes(automatic);
    const auto usable = snapshot.usableDirectories();
    auto path = customPath(own, automatic);
    std::erase_if(path, [&](const auto& name) {
        return !isLocalNode(name) && std::ranges::find(usable, name) == usable.end();
    });
    return path;
}

RecordList SearchNode::fetch(const QueryParameters& parameters, bool allowPartial) {
    RecordList found;
    std::set<std::pair<std::string, std::string>> known;
    for (const auto& name : activePath()) {
        try {
            for (auto& record : nodeNamed(sharedEngine(), name)->fetch(parameters, allowPartial)) {
                if (isFull(parameters, found)) return found;
                if (known.emplace(record->recordType(), record->recordName()).second)
                    found.push_back(std::move(record));
            }
        } catch (const Failure& failure) {
            if (!allowPartial) throw;
            engine().log().log("the search passes over " + name + ": " + failure.error().reason);
        }
    }
    return found;
}

util::Bytes SearchNode::call(std::int32_t code, util::BytesView request) {
    switch (code) {
    case callCode::automaticPolicy:
        setMode(PolicyMode::automatic, request);
        return {};
    case callCode::localPolicy:
        setMode(PolicyMode::localOnly, request);
        return {};
    case callCode::customPolicy:
        setMode(PolicyMode::custom, request);
        return {};
    case callCode::replaceCustomList:
        setCustomList(request);
        return {};
    default:
        return EngineNode::call(code, request);
    }
}

std::vector<std::string> SearchNode::firstCustomList(const StoredSearchPolicy& own) const {
    auto list = customPath(own, engine().machine().snapshot().automaticDirectories());
    if (purpose_ == Purpose::authentication) std::erase_if(list, isLocalNode);
    return list;
}

void SearchNode::setMode(PolicyMode mode, util::BytesView request) {
    engine().requireConfigureRight(soleAuthorizationIn(request));
    auto& machine = engine().machine();
    machine.change(view(), [&](MachinePolicy& policy) {
        auto& own = policyIn(policy);
        if (mode == PolicyMode::custom && !own.hasCustom && machine.snapshot().knowsDirectories()) {
            own.custom = firstCustomList(own);
            own.hasCustom = true;
        }
        own.mode = mode;
    });
}

void SearchNode::setCustomList(util::BytesView request) {
    engine().requireConfigureRight(authorizationIn(request));
    const auto names = listFrom(request.subspan(util::AuthorizationExternalForm::length));
    auto& machine = engine().machine();
    machine.change(view(), [&](MachinePolicy& policy) {
        auto& own = policyIn(policy);
        // What was only reported and comes back as it was isn't anybody's choice: it still follows Automatic.
        if (!own.hasCustom && names == firstCustomList(own)) return;
        own.custom = names;
        own.hasCustom = true;
    });
}

std::vector<std::string> SearchNode::listFrom(util::BytesView bytes) const {
    std::string reason;
    const auto value = engine().codec().parse(bytes, &reason);
    if (value.isNull()) throw badList("It isn't a property list: " + reason + ".");
    const auto list = value.as<util::Array>();
    if (list.isNull()) throw badList("It isn't an array.");
    if (list.count() > maximumListLength) throw badList("It has more than a thousand entries.");
    for (const auto& element : list.elements()) {
        if (!element.isKind(util::Kind::String))
            throw badList("An entry isn't a text: " + element.description().substr(0, 80));
        requireNodeName(element.as<util::String>().text());
    }
    auto names = list.texts();
    if (purpose_ == Purpose::authentication)
        std::erase_if(names, isLocalNode); // its path begins with them anyway
    return names;
}

} // namespace corvane::haldend
