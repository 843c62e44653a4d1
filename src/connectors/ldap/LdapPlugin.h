#pragma once

#include <QPointer>
#include <optional>

#include "connectors/ldap/ServersDialog.h"

namespace corvane::connectors::ldap {

/// The LDAP connector's configuration, as the plug-in protocol wants it: it keeps what the user has changed
/// until the changes are saved. Main thread.
class LdapPlugin {
public:
    LdapPlugin() = default;
    LdapPlugin(const LdapPlugin&) = delete;
    LdapPlugin& operator=(const LdapPlugin&) = delete;
    ~LdapPlugin() { delete window_; }

    void setPluginAPIImplementor(const CorvaneHost& host) { host_ = sdk::Host(host); }
    bool canConfigure() { return true; }
    bool isEnabledForLocation(const char* /*location*/) { return wanted_.value_or(isEnabled()); }
    bool isDirty() { return list_.isDirty() || (wanted_ && *wanted_ != isEnabled()); }
    /// Opens the list of servers; an error in reading them is shown instead.
    void configureButtonClicked(void* sender);
    /// False when the service refuses; the user has been told, and the changes are kept.
    bool saveChanges();
    bool revertChanges();
    std::vector<std::string> nodesToRemove() { return list_.nodesToRemove(); }
    /// Tries every server, with any user and group: true when all of them work. Blocks as long as that takes,
    /// a minute for each server at most.
    bool selfTest();

private:
    [[nodiscard]] bool isEnabled() const { return host_.isPluginEnabled("LDAP"); }
    [[nodiscard]] bool works(const Server& server) const;
    void windowClosed();

    sdk::Host host_;
    ServerList list_{host_};
    std::optional<bool> wanted_;     ///< the enabled state that the user wishes and nobody has saved
    QPointer<ServersDialog> window_; ///< ours; the window it belongs to may delete it first
};

} // namespace corvane::connectors::ldap
