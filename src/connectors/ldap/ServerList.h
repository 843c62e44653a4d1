#pragma once

#include <functional>
#include <set>

#include "connectors/ldap/Server.h"

namespace corvane::connectors::ldap {

/// The directory service's configuration node. Throws `sdk::CallError` when the service can't be reached.
[[nodiscard]] sdk::Object configNode(const sdk::Host& host);

/// The servers that are configured, and what the user has made of them since they were read. Everything goes
/// through the host; nothing is written before `save`. Main thread.
class ServerList {
public:
    explicit ServerList(const sdk::Host& host) : host_(host) {}
    ServerList(const ServerList&) = delete;
    ServerList& operator=(const ServerList&) = delete;

    [[nodiscard]] const std::vector<Server>& servers() const { return servers_; }
    /// Something was changed and not saved.
    [[nodiscard]] bool isDirty() const { return servers_ != saved_; }

    /// The nodes of the servers that are deleted with the next `save`.
    [[nodiscard]] std::vector<std::string> nodesToRemove() const;

    /// One of the search policies uses the node: as the service has them, in whichever mode, or as they are
    /// edited in the window.
    [[nodiscard]] bool isOnPolicy(const std::string& node) const;

    /// Reads the servers unless there are unsaved changes. Throws `sdk::CallError`.
    void readIfClean();
    /// Forgets the changes.
    void revert() { servers_ = saved_; }
    /// Writes the changes, all or none, and lets the search policies follow renamed and removed nodes. Where
    /// another program has written in between, but not on the same servers, that is no hindrance. Throws
    /// `sdk::CallError`; the changes are kept then.
    void save();

    /// Each marks the window as edited.
    void add(const Server& server) { insert(server, servers_.size()); }
    /// `index` may be the count.
    void insert(const Server& server, std::size_t index);
    void replace(std::size_t index, const Server& server);
    void removeAt(const std::vector<std::size_t>& indexes);

    /// A new server with the settings of an old one, without its password and its name.
    [[nodiscard]] Server copyOf(std::size_t index) const;
    /// A name that none of the servers has, made from an address.
    [[nodiscard]] std::string freeName(const std::string& address) const;
    /// Whether another server than `except` has this name; capitals don't count.
    [[nodiscard]] bool isNameTaken(const std::string& name, std::size_t except) const;
    static constexpr std::size_t none = static_cast<std::size_t>(-1);

private:
    struct Reply {
        std::string revision;
        std::vector<Server> servers;
        std::set<std::string> onPolicies; ///< nodes
    };
    void adopt(Reply&& reply);
    [[nodiscard]] Reply fetch() const;
    [[nodiscard]] Reply read(const sdk::Object& reply) const;
    [[nodiscard]] Reply write(const std::string& revision) const;
    /// The servers that are about to be written are still what they were when they were read.
    [[nodiscard]] bool changesNothingOfOurs(const Reply& now) const;
    [[nodiscard]] std::vector<std::string> removedNames() const;
    [[nodiscard]] const Server* savedNamed(const std::string& name) const;
    void tellPolicies(const Reply& after) const;

    const sdk::Host& host_;
    std::string revision_;
    std::vector<Server> saved_;
    std::vector<Server> servers_;
    std::set<std::string> onPolicies_; ///< nodes that a policy asked when the servers were read
};

} // namespace corvane::connectors::ldap
