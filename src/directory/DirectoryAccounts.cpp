#include "directory/DirectoryAccounts.h"

#include <algorithm>
#include <set>

namespace corvane::directory {
namespace {

namespace attribute = halden::attribute;

halden::RecordList everyRecord(halden::Node& node, std::string_view type, std::string_view wanted) {
    halden::QueryParameters parameters;
    parameters.recordTypes = {std::string(type)};
    parameters.attribute = attribute::recordName;
    parameters.matchType = halden::MatchType::equalTo;
    parameters.values = {std::string(halden::allRecords)};
    parameters.attributesToReturn = {std::string(wanted)};
    const auto query = node.query(parameters, nullptr);
    return query ? query->results(false, nullptr).value_or(halden::RecordList()) : halden::RecordList();
}

void note(std::vector<DirectoryMember>& members, const std::string& name, const std::string& group) {
    auto found = std::ranges::find(members, name, &DirectoryMember::name);
    if (found == members.end()) found = members.insert(members.end(), {name, {}});
    if (std::ranges::find(found->groups, group) == found->groups.end()) found->groups.push_back(group);
}

} // namespace

std::vector<DirectoryMember> membersFromDirectories(halden::Session& session) {
    const auto node = session.nodeWithType(halden::NodeType::localNodes, nullptr);
    if (!node) return {};
    std::set<std::string> own;
    for (const auto& user : everyRecord(*node, halden::recordType::users, attribute::recordName))
        own.insert(user->recordName());
    if (own.empty()) return {}; // the accounts can't be read: everybody would look like a stranger
    std::vector<DirectoryMember> members;
    for (const auto& group : everyRecord(*node, halden::recordType::groups, attribute::groupMembership))
        for (const auto& name : group->valuesForAttribute(attribute::groupMembership, nullptr).texts())
            if (!own.contains(name)) note(members, name, group->recordName());
    return members;
}

} // namespace corvane::directory
