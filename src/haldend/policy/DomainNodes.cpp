#include "haldend/policy/DomainNodes.h"

#include <algorithm>
#include <map>

#include "haldend/files/LdapUri.h"

namespace corvane::haldend {

namespace connector = halden::connector;

namespace {

/// "" for what has no host, as a socket path or a service record hasn't.
std::string serverOf(std::string_view text) {
    const auto uri = LdapUri::from(text);
    return uri.scheme.empty() ? std::string() : uri.hostAndPort();
}

std::string ldapName(const SssdDomain& domain) {
    const auto uris = commaSeparated(domain.option("ldap_uri"));
    const auto server = uris.empty() ? std::string() : serverOf(uris.front());
    return "/" + std::string(connector::ldap) + "/" + (server.empty() ? domain.name : server);
}

/// The first part of the node's name.
std::string connectorFor(const SssdDomain& domain) {
    static const std::map<std::string, std::string> names{{"ldap", std::string(connector::ldap)},
                                                          {"ad", std::string(connector::activeDirectory)},
                                                          {"ipa", "IPA"},
                                                          {"files", "Files"},
                                                          {"proxy", "Proxy"}};
    if (domain.isApplication) return "Application";
    const auto found = names.find(domain.option("id_provider"));
    return found == names.end() ? std::string() : found->second;
}

bool isTaken(const std::vector<DomainNode>& nodes, const std::string& name) {
    return std::ranges::find(nodes, name, &DomainNode::name) != nodes.end();
}

} // namespace

const std::vector<std::string>& localNodeNames() {
    static const std::vector<std::string> names{std::string(localNodeName), std::string(filesNodeName)};
    return names;
}

std::vector<DomainNode> domainNodes(const SssdFile& sssd) {
    std::vector<DomainNode> nodes;
    for (const auto& domain : sssd.domains()) {
        const auto kind = connectorFor(domain);
        if (kind.empty() || !domain.obstacle().empty()) continue;
        auto name = kind == connector::ldap ? ldapName(domain) : "/" + kind + "/" + domain.name;
        if (isTaken(nodes, name)) name += "/" + domain.name;
        nodes.push_back({name, kind, domain});
    }
    return nodes;
}

std::vector<std::string> skippedDomains(const SssdFile& sssd) {
    std::vector<std::string> sentences;
    for (const auto& domain : sssd.domains())
        if (const auto why = domain.obstacle(); !why.empty())
            sentences.push_back("[domain/" + domain.name + "] can't be used: " + why + ".");
    for (const auto& name : sssd.listedDomains())
        if (!sssd.domainNamed(name))
            sentences.push_back("\"" + name + "\" is listed but has no section [domain/" + name + "].");
    return sentences;
}

std::string connectorOf(std::string_view nodeName) {
    if (nodeName.starts_with('/')) nodeName.remove_prefix(1);
    return std::string(nodeName.substr(0, nodeName.find('/')));
}

} // namespace corvane::haldend
