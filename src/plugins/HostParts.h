#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace corvane::plugins {

class PluginItem;

/// One search policy, as plug-ins edit it. Only the custom list counts, whatever the mode.
class HostPolicy {
public:
    virtual ~HostPolicy() = default;
    [[nodiscard]] virtual bool isNodeOnSearchPolicy(const std::string& nodeName) = 0;
    /// Appends the node if it isn't there, and switches to Custom in any case.
    virtual void addNode(const std::string& nodeName) = 0;
    /// Removes every occurrence; the mode stays.
    virtual void deleteNode(const std::string& nodeName) = 0;
    virtual void deleteNodesWithPrefix(const std::string& prefix) = 0;
};

/// The search policies, for plug-ins and for everything that saves.
class HostPolicies {
public:
    virtual ~HostPolicies() = default;
    [[nodiscard]] virtual HostPolicy& authenticationPolicy() = 0;
    [[nodiscard]] virtual HostPolicy& contactsPolicy() = 0;
    /// Both are read again: the one on screen now, the other one when it is next shown.
    virtual void reloadSearchPolicies() = 0;
    [[nodiscard]] virtual bool saveSearchPolicies() = 0;
    /// Nothing happens when a name is missing or both are equal. The modes stay.
    virtual void nodeNameChanged(const std::optional<std::string>& from,
                                 const std::optional<std::string>& to) = 0;
};

/// The services pane, as plug-ins reach it.
class HostServices {
public:
    virtual ~HostServices() = default;
    virtual void setPluginModified(bool modified) = 0;
    virtual void reloadPluginTable() = 0;
    /// None when there is no such connector.
    [[nodiscard]] virtual std::optional<std::string> pluginVersionWithPrefix(const std::string& prefix) = 0;
    [[nodiscard]] virtual bool isPluginEnabled(const std::string& prefix) = 0;
    /// Written at once; a failure isn't reported.
    virtual void setPluginEnabled(const std::string& prefix, bool enabled) = 0;
    /// A plug-in's code failed unexpectedly.
    virtual void pluginFailed(const std::string& plugin, const std::string& operation,
                              const std::string& reason) = 0;
};

/// The list of connectors, as others look things up in it.
class PluginItems {
public:
    using List = std::vector<std::shared_ptr<PluginItem>>;

    virtual ~PluginItems() = default;
    /// Null before the list was first read.
    [[nodiscard]] virtual const List* items() const = 0;
    /// The first item with exactly this prefix; null when there is none.
    [[nodiscard]] virtual std::shared_ptr<PluginItem> pluginWithPrefix(const std::string& prefix) const = 0;
};

} // namespace corvane::plugins
