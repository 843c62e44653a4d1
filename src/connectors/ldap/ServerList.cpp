#include "connectors/ldap/ServerList.h"

#include <algorithm>
#include <cctype>

#include "sdk/LdapServerCalls.h"

namespace corvane::connectors::ldap {
namespace {

namespace call = sdk::ldap::call;

/// The longest time-out that the service takes for a new server, in seconds.
constexpr int longestTimeout = 120;

std::string lowered(std::string text) {
    std::ranges::transform(text, text.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

/// What a name may consist of, anything else becomes a hyphen.
std::string nameFrom(const std::string& address) {
    std::string name;
    for (const unsigned char c : address)
        name += std::isalnum(c) != 0 || c == '.' || c == '_' ? static_cast<char>(c) : '-';
    const auto first = name.find_first_not_of("-.");
    return first == std::string::npos ? "server" : name.substr(first);
}

} // namespace

sdk::Object configNode(const sdk::Host& host) {
    auto node = host.haldenConfigNode();
    if (!node) {
        const auto error = host.dictionary();
        error.set("description", host.string("The directory service can’t be reached."));
        error.set("recovery", host.string("Close the window and open it again, or start Corvane again."));
        throw sdk::CallError(error);
    }
    return node;
}

ServerList::Reply ServerList::read(const sdk::Object& reply) const {
    const auto content = host_.propertyListFromData(reply);
    Reply answer{content["revision"].text(), {}, {}};
    const auto list = content["servers"];
    for (std::uint64_t i = 0; i < list.count(); ++i) {
        const auto server = list.at(i);
        answer.servers.push_back(Server::from(server));
        if (server[sdk::ldap::serverKey::onPolicy].boolean())
            answer.onPolicies.insert(answer.servers.back().node);
    }
    return answer;
}

ServerList::Reply ServerList::fetch() const {
    return read(host_.customCall(configNode(host_), call::listServers, {}));
}

void ServerList::readIfClean() {
    if (isDirty()) return;
    adopt(fetch());
}

void ServerList::adopt(Reply&& reply) {
    revision_ = std::move(reply.revision);
    saved_ = reply.servers;
    servers_ = std::move(reply.servers);
    onPolicies_ = std::move(reply.onPolicies);
}

bool ServerList::isOnPolicy(const std::string& node) const {
    return onPolicies_.contains(node) || host_.isNodeOnAuthSearchPolicy(node) ||
           host_.isNodeOnContactsSearchPolicy(node);
}

const Server* ServerList::savedNamed(const std::string& name) const {
    const auto found = std::ranges::find(saved_, name, &Server::name);
    return found == saved_.end() ? nullptr : &*found;
}

std::vector<std::string> ServerList::removedNames() const {
    std::vector<std::string> names;
    for (const auto& server : saved_)
        if (std::ranges::find(servers_, server.name, &Server::savedName) == servers_.end())
            names.push_back(server.name);
    return names;
}

std::vector<std::string> ServerList::nodesToRemove() const {
    std::vector<std::string> nodes;
    for (const auto& name : removedNames())
        if (const auto& node = savedNamed(name)->node; !node.empty()) nodes.push_back(node);
    return nodes;
}

ServerList::Reply ServerList::write(const std::string& revision) const {
    auto put = host_.array();
    for (const auto& server : servers_)
        if (const auto* before = savedNamed(server.savedName); before == nullptr || *before != server)
            put.append(server.dictionary(host_));
    auto request = host_.dictionary();
    request.set("revision", host_.string(revision));
    request.set("put", put);
    request.set("remove", host_.array(removedNames()));
    sdk::AuthorizationForm form;
    // A form that could not be made is all zeros; the service refuses it and says why.
    (void)host_.makeAuthExternalForm(form);
    return read(host_.customCallSendPropertyList(configNode(host_), call::writeServers, request, form));
}

bool ServerList::changesNothingOfOurs(const Reply& now) const {
    return std::ranges::all_of(saved_, [&](const Server& before) {
        const auto mine = std::ranges::find(servers_, before.name, &Server::savedName);
        if (mine != servers_.end() && *mine == before) return true; // not about to be written
        return std::ranges::find(now.servers, before) != now.servers.end();
    });
}

void ServerList::save() {
    if (!isDirty()) return;
    Reply after;
    try {
        after = write(revision_);
    } catch (const sdk::CallError& error) {
        if (error.code() != CORVANE_ERROR_CHANGED_ELSEWHERE) throw;
        const auto now = fetch();
        if (!changesNothingOfOurs(now)) throw;
        after = write(now.revision);
    }
    tellPolicies(after);
    adopt(std::move(after));
}

// The service has changed its policies together with the servers. What the window shows, perhaps with
// unsaved edits, must say the same.
void ServerList::tellPolicies(const Reply& after) const {
    bool changed = false;
    for (const auto& before : saved_) {
        if (before.node.empty()) continue;
        const auto mine = std::ranges::find(servers_, before.name, &Server::savedName);
        const auto now = mine == servers_.end() ? after.servers.end()
                                                : std::ranges::find(after.servers, mine->name, &Server::name);
        const bool isKept = now != after.servers.end();
        if (isKept && now->node == before.node) continue;
        if (!host_.isNodeOnAuthSearchPolicy(before.node) && !host_.isNodeOnContactsSearchPolicy(before.node))
            continue;
        changed = true;
        if (isKept) {
            host_.nodeNameChanged(before.node, now->node);
            continue;
        }
        host_.deleteNodeFromAuthSearchPolicy(before.node);
        host_.deleteNodeFromContactsSearchPolicy(before.node);
    }
    if (changed && !host_.saveSearchPolicies())
        host_.log("the servers are saved, but the search policies that name them are not");
}

void ServerList::insert(const Server& server, std::size_t index) {
    servers_.insert(servers_.begin() + static_cast<std::ptrdiff_t>(index), server);
    host_.markDirty();
}

void ServerList::replace(std::size_t index, const Server& server) {
    servers_.at(index) = server;
    if (isDirty()) host_.markDirty();
}

Server ServerList::copyOf(std::size_t index) const {
    auto copy = servers_.at(index);
    copy.name.clear();
    copy.savedName.clear();
    copy.node.clear();
    copy.hasPassword = false;
    copy.password.reset();
    copy.connectTimeout = std::min(copy.connectTimeout, longestTimeout);
    copy.searchTimeout = std::min(copy.searchTimeout, longestTimeout);
    return copy;
}

void ServerList::removeAt(const std::vector<std::size_t>& indexes) {
    auto falling = indexes;
    std::ranges::sort(falling, std::greater());
    for (const auto index : falling)
        servers_.erase(servers_.begin() + static_cast<std::ptrdiff_t>(index));
    if (isDirty()) host_.markDirty();
}

bool ServerList::isNameTaken(const std::string& name, std::size_t except) const {
    for (std::size_t i = 0; i < servers_.size(); ++i)
        if (i != except && lowered(servers_[i].name) == lowered(name)) return true;
    return false;
}

std::string ServerList::freeName(const std::string& address) const {
    const auto wanted = nameFrom(address);
    if (!isNameTaken(wanted, none)) return wanted;
    int number = 2;
    while (isNameTaken(wanted + "-" + std::to_string(number), none))
        ++number;
    return wanted + "-" + std::to_string(number);
}

} // namespace corvane::connectors::ldap
