#include "haldend/nodes/LdapNode.h"

#include <algorithm>
#include <optional>

#include "haldend/ldap/LdapDirectory.h"
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
RecordKind kindOf(std::string_view type, std::string_view classOption, std::vector<LdapSearchBase> bases,
                  const Mappings& mappings, const SssdDomain& domain) {
    RecordKind kind{type, ldapName(domain, classOption), std::move(bases), {}};
    for (const auto& mapping : mappings)
        kind.names.emplace_back(mapping.attribute, mapping.option.empty() ? "telephoneNumber"
                                                                          : ldapName(domain, mapping.option));
    return kind;
}

char foldedAscii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

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

bool isSameName(std::string_view one, std::string_view other) {
    return one.size() == other.size() && std::ranges::equal(one, other, {}, foldedAscii, foldedAscii);
}

/// Turns entries into records, with the attributes alone that a query asks for.
class EntryReader {
public:
    EntryReader(const RecordKind& kind, const QueryParameters& parameters)
        : packer_(kind.type, wantedAttributes(parameters, ourNames(kind))) {
        for (const auto& [ours, theirs] : kind.names)
            if (const auto number = packer_.numberOf(ours)) wanted_.emplace_back(theirs, *number);
    }

    /// What the server is asked for.
    [[nodiscard]] std::vector<std::string> directoryNames() const {
        std::vector<std::string> names;
        for (const auto& [theirs, number] : wanted_)
            if (std::ranges::find(names, theirs) == names.end()) names.push_back(theirs);
        return names;
    }
    /// Null for an entry without a name.
    [[nodiscard]] std::shared_ptr<Record> read(const LdapEntry& entry) {
        entry.eachValue([this](std::string_view name, std::string_view value) {
            for (const auto& [theirs, number] : wanted_)
                if (isSameName(theirs, name)) packer_.add(number, value);
        });
        if (packer_.hasName()) return packer_.take();
        packer_.drop();
        return nullptr;
    }

private:
    [[nodiscard]] static std::vector<std::string> ourNames(const RecordKind& kind) {
        std::vector<std::string> names;
        for (const auto& [ours, theirs] : kind.names)
            names.push_back(ours);
        return names;
    }

    RecordPacker packer_;
    std::vector<std::pair<std::string, std::size_t>> wanted_; ///< the directory's name, the packer's number
};

void append(RecordList& records, LdapDirectory& directory, const RecordKind& kind,
            const QueryParameters& parameters, bool allowPartial) {
    auto bases = kind.bases;
    if (bases.empty()) bases.push_back({directory.defaultBase(), 2, ""});
    EntryReader reader(kind, parameters);
    for (const auto& base : bases) {
        const auto filter = filterFor(kind, parameters, base.filter);
        if (!filter || isFull(parameters, records)) return;
        const auto left = parameters.maximumResults == 0 ? 0 : parameters.maximumResults - records.size();
        directory.search({base.base, base.scope, *filter, reader.directoryNames(), left}, allowPartial,
                         [&](const LdapEntry& entry) {
                             if (auto record = reader.read(entry)) records.push_back(std::move(record));
                         });
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
    const auto section = LdapSection::from(domain_);
    LdapDirectory directory(section, LdapTrust::from(domain_, engine().machine().folder()));
    const Engine::LetGo meanwhile(engine()); // nothing below asks it for anything
    if (wantsUsers)
        append(records, directory,
               kindOf(recordType::users, "ldap_user_object_class", section.userBases, userMappings, domain_),
               parameters, allowPartial);
    if (wantsGroups)
        append(
            records, directory,
            kindOf(recordType::groups, "ldap_group_object_class", section.groupBases, groupMappings, domain_),
            parameters, allowPartial);
    return records;
}

} // namespace corvane::haldend
