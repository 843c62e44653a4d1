#include "haldend/nodes/LdapNode.h"

#include <algorithm>
#include <optional>

#include "haldend/ldap/LdapSchema.h"

namespace corvane::haldend {
namespace {

using namespace halden;

/// The SSSD option that names the LDAP attribute behind one of ours.
struct Mapping {
    std::string_view attribute;
    std::string_view option; ///< "" for the telephone number, which SSSD doesn't know
};

constexpr Mapping userMappings[] = {
    {attribute::recordName, "ldap_user_name"},
    {attribute::realName, "ldap_user_fullname"},
    {attribute::uniqueID, "ldap_user_uid_number"},
    {attribute::primaryGroupID, "ldap_user_gid_number"},
    {attribute::homeDirectory, "ldap_user_home_directory"},
    {attribute::userShell, "ldap_user_shell"},
    {attribute::mail, "ldap_user_email"},
    {attribute::phone, ""},
};
constexpr Mapping groupMappings[] = {
    {attribute::recordName, "ldap_group_name"},
    {attribute::primaryGroupID, "ldap_group_gid_number"},
    {attribute::groupMembership, "ldap_group_member"},
};

/// One kind of record in this directory.
struct RecordKind {
    std::string_view type;
    std::string objectClass;
    std::vector<LdapSearchBase> bases;
    std::vector<std::pair<std::string, std::string>> names; ///< ours, the directory's
};

template <typename Mappings>
RecordKind kindOf(std::string_view type, std::string objectClass, std::vector<LdapSearchBase> bases,
                  const Mappings& mappings, const SssdDomain& domain) {
    RecordKind kind{type, std::move(objectClass), std::move(bases), {}};
    for (const auto& mapping : mappings)
        kind.names.emplace_back(mapping.attribute, mapping.option.empty() ? "telephoneNumber"
                                                                          : ldapName(domain, mapping.option));
    return kind;
}

std::string term(const std::string& name, MatchType type, const std::string& text) {
    const auto escaped = filterEscaped(text);
    switch (type) {
    case MatchType::beginsWith:
        return "(" + name + "=" + escaped + "*)";
    case MatchType::contains:
        return text.empty() ? "(" + name + "=*)" : "(" + name + "=*" + escaped + "*)";
    default:
        return "(" + name + "=" + escaped + ")";
    }
}

/// The filter for a query; none when no record of this kind can match.
std::optional<std::string> filterFor(const RecordKind& kind, const QueryParameters& parameters,
                                     const std::string& extra) {
    std::string filter = "(objectClass=" + filterEscaped(kind.objectClass) + ")" + extra;
    if (!matchesEverything(parameters)) {
        const auto found =
            std::ranges::find(kind.names, parameters.attribute, &std::pair<std::string, std::string>::first);
        if (found == kind.names.end() || parameters.values.empty()) return std::nullopt;
        std::string terms;
        for (const auto& text : parameters.values)
            terms += term(found->second, parameters.matchType, text);
        filter += "(|" + terms + ")";
    }
    return "(&" + filter + ")";
}

std::vector<std::string> directoryNames(const RecordKind& kind) {
    std::vector<std::string> names;
    for (const auto& [ours, theirs] : kind.names)
        names.push_back(theirs);
    return names;
}

AttributeMap translated(const RecordKind& kind, const AttributeMap& entry) {
    AttributeMap attributes;
    for (const auto& [ours, theirs] : kind.names)
        if (const auto found = entry.find(theirs); found != entry.end())
            attributes.emplace(ours, found->second);
    return attributes;
}

void append(RecordList& records, LdapConnection& connection, const RecordKind& kind,
            const QueryParameters& parameters, bool allowPartial) {
    auto bases = kind.bases;
    if (bases.empty()) bases.push_back({connection.defaultBase(), 2, ""});
    for (const auto& base : bases) {
        const auto filter = filterFor(kind, parameters, base.filter);
        if (!filter || isFull(parameters, records)) return;
        const auto left = parameters.maximumResults == 0 ? 0 : parameters.maximumResults - records.size();
        for (const auto& entry :
             connection.search({base, *filter, directoryNames(kind), left, allowPartial})) {
            const auto attributes = translated(kind, entry);
            if (attributes.contains(attribute::recordName))
                records.push_back(recordFor(parameters, kind.type, attributes));
        }
    }
}

} // namespace

LdapNode::LdapNode(std::shared_ptr<Engine> engine, const DomainNode& node)
    : EngineNode(std::move(engine), node.name), domain_(node.domain) {}

RecordList LdapNode::fetch(const QueryParameters& parameters, bool allowPartial) {
    RecordList records;
    const bool wantsUsers = wantsType(parameters, recordType::users);
    const bool wantsGroups = wantsType(parameters, recordType::groups);
    if (!wantsUsers && !wantsGroups) return records;
    const auto settings = LdapSettings::from(domain_, engine().machine().folder());
    LdapConnection connection(settings);
    if (wantsUsers)
        append(records, connection,
               kindOf(recordType::users, settings.userClass, settings.userBases, userMappings, domain_),
               parameters, allowPartial);
    if (wantsGroups)
        append(records, connection,
               kindOf(recordType::groups, settings.groupClass, settings.groupBases, groupMappings, domain_),
               parameters, allowPartial);
    return records;
}

} // namespace corvane::haldend
