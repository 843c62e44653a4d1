#include "haldend/DomainNodes.h"

#include <algorithm>

namespace corvane::haldend {
namespace {

/// Host, and port unless it is the scheme's usual one, of a URI like "ldaps://host:636/"; "" when it has no
/// host, as a socket path or a service record hasn't.
std::string serverOf(std::string_view uri) {
    const auto scheme = uri.substr(0, uri.find("://"));
    if (scheme != "ldap" && scheme != "ldaps") return {};
    auto server = uri.substr(scheme.size() + 3);
    server = server.substr(0, server.find_first_of("/? \t"));
    const std::string_view usualPort = scheme == "ldap" ? ":389" : ":636";
    if (server.ends_with(usualPort)) server.remove_suffix(usualPort.size());
    return std::string(server);
}

std::string ldapName(const SssdDomain& domain) {
    const auto uris = commaSeparated(domain.option("ldap_uri"));
    const auto server = uris.empty() ? std::string() : serverOf(uris.front());
    return "/LDAP/" + (server.empty() ? domain.name : server);
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
        const auto provider = domain.option("id_provider");
        if (provider != "ldap" && provider != "ad") continue;
        auto name = provider == "ldap" ? ldapName(domain) : "/AD/" + domain.name;
        if (isTaken(nodes, name)) name += "/" + domain.name;
        nodes.push_back({name, provider == "ldap" ? "LDAP" : "AD", domain});
    }
    return nodes;
}

std::string connectorOf(std::string_view nodeName) {
    if (nodeName.starts_with('/')) nodeName.remove_prefix(1);
    return std::string(nodeName.substr(0, nodeName.find('/')));
}

} // namespace corvane::haldend
