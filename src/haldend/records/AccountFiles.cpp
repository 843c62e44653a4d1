#include "haldend/records/AccountFiles.h"

namespace corvane::haldend {
namespace {

using namespace halden;

std::vector<std::string_view> split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    for (;;) {
        const auto end = text.find(separator);
        parts.push_back(text.substr(0, end));
        if (end == std::string_view::npos) return parts;
        text = text.substr(end + 1);
    }
}

bool isAccount(const std::vector<std::string_view>& fields, std::size_t count) {
    if (fields.size() < count || fields[0].empty()) return false;
    return fields[0].front() != '+' && fields[0].front() != '-' && fields[0].front() != '#';
}

void add(AttributeMap& attributes, std::string_view name, std::string_view value) {
    if (!value.empty()) attributes[std::string(name)].emplace_back(value);
}

AttributeMap userFrom(const std::vector<std::string_view>& fields) {
    AttributeMap user;
    add(user, attribute::recordName, fields[0]);
    add(user, attribute::uniqueID, fields[2]);
    add(user, attribute::primaryGroupID, fields[3]);
    add(user, attribute::realName, split(fields[4], ',').front());
    add(user, attribute::homeDirectory, fields[5]);
    add(user, attribute::userShell, fields[6]);
    return user;
}

AttributeMap groupFrom(const std::vector<std::string_view>& fields) {
    AttributeMap group;
    add(group, attribute::recordName, fields[0]);
    add(group, attribute::primaryGroupID, fields[2]);
    for (const auto member : split(fields[3], ','))
        add(group, attribute::groupMembership, member);
    return group;
}

void append(RecordList& records, const QueryParameters& parameters, std::string_view type,
            const std::vector<AttributeMap>& accounts) {
    for (const auto& account : accounts)
        if (!isFull(parameters, records) && matches(parameters, account))
            records.push_back(recordFor(parameters, type, account));
}

} // namespace

std::vector<AttributeMap> usersIn(std::string_view passwd) {
    std::vector<AttributeMap> users;
    for (const auto line : split(passwd, '\n'))
        if (const auto fields = split(line, ':'); isAccount(fields, 7)) users.push_back(userFrom(fields));
    return users;
}

std::vector<AttributeMap> groupsIn(std::string_view group) {
    std::vector<AttributeMap> groups;
    for (const auto line : split(group, '\n'))
        if (const auto fields = split(line, ':'); isAccount(fields, 4)) groups.push_back(groupFrom(fields));
    return groups;
}

RecordList accountRecords(const MachineFolder& folder, const QueryParameters& parameters) {
    RecordList records;
    if (wantsType(parameters, recordType::users))
        append(records, parameters, recordType::users,
               usersIn(folder.read(machineFile::passwd).value_or("")));
    if (wantsType(parameters, recordType::groups))
        append(records, parameters, recordType::groups,
               groupsIn(folder.read(machineFile::group).value_or("")));
    return records;
}

std::string osReleaseValue(std::string_view osRelease, std::string_view key) {
    for (auto line : split(osRelease, '\n')) {
        if (!line.starts_with(key) || line.substr(key.size(), 1) != "=") continue;
        line.remove_prefix(key.size() + 1);
        const bool isQuoted =
            line.size() >= 2 && (line.front() == '"' || line.front() == '\'') && line.back() == line.front();
        return std::string(isQuoted ? line.substr(1, line.size() - 2) : line);
    }
    return {};
}

} // namespace corvane::haldend
