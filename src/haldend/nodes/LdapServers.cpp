#include "haldend/nodes/LdapServers.h"

#include <algorithm>
#include <set>

#include "haldend/servers/AccountDefaults.h"
#include "haldend/servers/LdapServerRequest.h"
#include "haldend/storage/Failure.h"
#include "sdk/LdapServerCalls.h"

namespace corvane::haldend {
namespace {

namespace key = sdk::ldap::serverKey;

constexpr std::size_t maximumRequest = 1024U * 1024U;

util::Value valueOf(const LdapServer& server, const std::string& node, bool isOnPolicy) {
    return util::Dictionary{{key::name, server.name},
                            {key::node, node},
                            {key::onPolicy, isOnPolicy},
                            {key::addresses, util::Array::ofTexts(server.addresses)},
                            {key::port, server.port},
                            {key::security, server.security},
                            {key::caFile, server.caFile},
                            {key::baseDN, server.baseDN},
                            {key::bindDN, server.bindDN},
                            {key::hasPassword, server.hasPassword},
                            {key::schema, server.schema},
                            {key::computedNumbers, server.computesNumbers},
                            {key::connectTimeout, server.connectTimeout},
                            {key::searchTimeout, server.searchTimeout}};
}

/// What either policy consults, in whichever mode it is.
std::set<std::string> nodesOnPolicies(const MachineSnapshot& snapshot) {
    const auto policy = snapshot.policy();
    const auto inputs = snapshot.inputs();
    std::set<std::string> names;
    for (const auto* each : {&policy.authentication, &policy.contacts})
        for (auto& name : consultedNodes(*each, policy.disabled, inputs))
            names.insert(std::move(name));
    return names;
}

/// Text of a draft without a trace of what was cut from it.
void replaceText(std::string& text, std::string changed) {
    util::wipe(text);
    text = std::move(changed);
}

/// A name may be free only after another server has given it up, so all go by names of their own first.
void rename(SssdLines& lines, const LdapServersRequest& request) {
    const auto passing = [](std::size_t i) { return "domain/." + std::to_string(i); };
    for (std::size_t i = 0; i < request.put.size(); ++i)
        if (const auto& put = request.put[i]; put.before && put.before->name != put.server.name)
            lines.renameSection("domain/" + put.before->name, passing(i));
    for (std::size_t i = 0; i < request.put.size(); ++i)
        lines.renameSection(passing(i), "domain/" + request.put[i].server.name);
}

std::string editedSections(const SssdFile& before, const LdapServersRequest& request,
                           std::vector<AddedOption>& added) {
    SssdLines lines(before.text());
    lines.setLastSection(before.readingEnd());
    for (const auto& name : request.remove)
        lines.removeSection("domain/" + name);
    rename(lines, request);
    for (const auto& put : request.put)
        writeSection(lines, put.server, put.before, put.password);
    followInAccountDefaults(lines, before, request, added);
    return lines.text();
}

/// The names on the `domains` line, a renamed server in its old place.
std::vector<std::string> listedAfter(const std::vector<std::string>& listed,
                                     const LdapServersRequest& request) {
    std::vector<std::string> names;
    for (const auto& name : listed)
        if (auto after = request.nameAfter(name)) names.push_back(std::move(*after));
    return names;
}

Failure unreadable(const std::string& evidence) {
    return {halden::ErrorCode::parameter,
            "The servers can't be written to sssd.conf, so nothing was changed.", evidence,
            "Look for unusual characters, such as quotation marks, in what was entered, and choose others."};
}

Failure overridden(const std::string& name, const std::string& snippet) {
    return {halden::ErrorCode::parameter,
            "The server " + name + " can't be changed here, so nothing was changed.",
            snippet + " has a section [domain/" + name + "] too, which overrides the one in sssd.conf.",
            "Change the server in " + snippet + ", or move its section to sssd.conf."};
}

Failure dependent(const std::string& name, const std::string& why) {
    return {halden::ErrorCode::parameter, "The server is needed by " + name + ", so nothing was changed.",
            "Without it SSSD couldn't use \"" + name + "\": " + why + ".",
            "Take the section of " + name + " out of sssd.conf first."};
}

std::shared_ptr<const SssdFile> requireReadable(const std::string& text, const Machine& machine) {
    try {
        return machine.sssdFileWith(text);
    } catch (const Failure& failure) {
        throw unreadable("The changed file would break its own rules: " + failure.error().reason);
    }
}

bool reads(const SssdDomain& domain, const LdapServerPut& put) {
    const auto found = LdapServer::from(domain);
    const auto& meant = put.server;
    const bool isKept = found.bindDN.empty() || !put.password || found.password == *put.password;
    return found.addresses == meant.addresses && found.port == meant.port && isKept &&
           found.security == meant.security && found.caFile == meant.caFile && found.baseDN == meant.baseDN &&
           found.bindDN == meant.bindDN && found.schema == meant.schema &&
           found.computesNumbers == meant.computesNumbers && found.connectTimeout == meant.connectTimeout &&
           found.searchTimeout == meant.searchTimeout;
}

/// A last look before anything is written: what was asked for reads as it was meant, and nothing else has
/// changed.
void requireMeaning(const SssdFile& before, const SssdFile& after, const LdapServersRequest& request) {
    const auto sectionIn = [](const SssdFile& file, const std::string& name) {
        return std::ranges::find(file.domains(), name, &SssdDomain::name);
    };
    for (const auto& put : request.put) {
        const auto found = sectionIn(after, put.server.name);
        if (const auto snippet = after.snippetDeciding("domain/" + put.server.name); !snippet.empty())
            throw overridden(put.server.name, snippet);
        if (found == after.domains().end() || !reads(*found, put))
            throw unreadable("The section [domain/" + put.server.name + "] would not read as it was meant.");
        if (const auto why = found->obstacle(); !why.empty())
            throw unreadable("SSSD couldn't use the section [domain/" + put.server.name + "]: " + why + ".");
    }
    for (const auto& name : request.remove)
        if (const auto snippet = after.snippetDeciding("domain/" + name); !snippet.empty())
            throw overridden(name, snippet);
    for (const auto& domain : before.domains()) {
        const bool isSpokenOf = request.nameAfter(domain.name) != domain.name ||
                                std::ranges::any_of(request.put, [&](const auto& put) {
                                    return put.before && put.before->name == domain.name;
                                });
        if (isSpokenOf) continue;
        const auto found = sectionIn(after, domain.name);
        if (found == after.domains().end() || found->options != domain.options)
            throw unreadable("The section [domain/" + domain.name + "] would change as well.");
        const bool isServed =
            std::ranges::find(before.servedDomains(), domain.name) != before.servedDomains().end();
        if (isServed && !found->obstacle().empty()) throw dependent(domain.name, found->obstacle());
    }
}

/// Both policies go on with the servers' new nodes in the places of the old ones. A node's name may change
/// with its address, and with that of another one of the same address.
void followInPolicy(StoredSearchPolicy& policy, const std::vector<DomainNode>& before,
                    const std::vector<DomainNode>& after, const LdapServersRequest& request) {
    std::vector<std::string> names;
    for (const auto& name : policy.custom) {
        auto now = std::optional(name);
        if (const auto node = std::ranges::find(before, name, &DomainNode::name); node != before.end()) {
            const auto section = request.nameAfter(node->domain.name);
            const auto found = std::ranges::find_if(
                after, [&](const auto& one) { return section && one.domain.name == *section; });
            now = found == after.end() ? std::nullopt : std::make_optional(found->name);
        }
        if (now && std::ranges::find(names, *now) == names.end()) names.push_back(*now);
    }
    policy.custom = names;
}

void apply(MachineDraft& draft, const util::Dictionary& values, const Machine& machine) {
    const auto before = machine.sssdFileWith(draft.sssd);
    const auto request = writeRequestFrom(values, before->domains());
    auto text = editedSections(*before, request, draft.added.options);
    const auto edited = requireReadable(text, machine);
    requireMeaning(*before, *edited, request);
    const auto listed = listedAfter(edited->listedDomains(), request);
    if (listed != edited->listedDomains()) replaceText(text, textWithDomainsLine(text, listed, draft.added));
    const auto after = domainNodes(*edited);
    followInPolicy(draft.policy.authentication, draft.nodes, after, request);
    followInPolicy(draft.policy.contacts, draft.nodes, after, request);
    replaceText(draft.sssd, std::move(text));
}

} // namespace

LdapRequestValues::LdapRequestValues(util::BytesView request, const platform::PropertyListCodec& codec) {
    std::string reason;
    const auto value = request.size() > maximumRequest ? util::Value() : codec.parse(request, &reason);
    if (request.size() > maximumRequest) reason = "it is larger than a mebibyte";
    values_ = value.as<util::Dictionary>();
    if (values_.isNull())
        throw Failure(halden::ErrorCode::parameter, "The request about LDAP servers can't be understood.",
                      value.isNull() ? "It isn't a property list: " + reason + "." : "It isn't a dictionary.",
                      "Use a program of the same version as this service.");
}

LdapRequestValues::~LdapRequestValues() { wipePasswords(values_); }

util::Bytes replyOf(util::ValueMap values, const platform::PropertyListCodec& codec) {
    const auto bytes = codec.xml(util::Dictionary(std::move(values)));
    if (!bytes)
        throw Failure(halden::ErrorCode::storage, "The LDAP servers can't be listed.",
                      "sssd.conf holds characters that no property list can hold.", "Correct the file.");
    return *bytes;
}

util::Bytes listLdapServers(Engine& engine) {
    auto& machine = engine.machine();
    const auto revision = machine.directoriesRevision();
    const auto consulted = nodesOnPolicies(machine.snapshot());
    util::ValueList servers;
    for (const auto& node : machine.snapshot().nodes())
        if (isLdapServer(node.domain))
            servers.push_back(
                valueOf(LdapServer::from(node.domain), node.name, consulted.contains(node.name)));
    return replyOf({{"revision", revision}, {"servers", util::Array(std::move(servers))}}, engine.codec());
}

util::Bytes writeLdapServers(Engine& engine, util::BytesView bytes) {
    const LdapRequestValues request(bytes, engine.codec());
    const auto revision = plainTextIn(request.values(), "revision");
    engine.machine().changeDirectories(
        revision, [&](MachineDraft& draft) { apply(draft, request.values(), engine.machine()); });
    return listLdapServers(engine);
}

} // namespace corvane::haldend
