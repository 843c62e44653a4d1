#pragma once

#include <memory>
#include <optional>

#include "connectors/ldap/ServersWindow.h"
#include "sdk/PluginMethods.h"

namespace corvane::connectors::ldap {

/// The LDAP connector's configuration, as the plug-in protocol wants it: it keeps what the user has changed
/// until the changes are saved. Main thread.
class LdapPlugin {
public:
    LdapPlugin() = default;
    LdapPlugin(const LdapPlugin&) = delete;
    LdapPlugin& operator=(const LdapPlugin&) = delete;

    void setPluginAPIImplementor(const CorvaneHost& host) { host_ = sdk::Host(host); }
    bool canConfigure() { return true; }
    bool isEnabledForLocation(const char* /*location*/) { return wanted_.value_or(isEnabled()); }
    bool isDirty() { return list_.isDirty() || (wanted_ && *wanted_ != isEnabled()); }
    /// Opens the list of servers; an error in reading them is shown instead.
    void configureButtonClicked(void* sender);
    /// False when the service refuses; the user has seen why, and the changes are kept.
    bool saveChanges();
    bool revertChanges();
    std::vector<std::string> nodesToRemove() { return list_.nodesToRemove(); }
    /// Tests every server, with any user and group, one after the other: true when all of them work. Waits
    /// as long as that takes, a minute for each server at most.
    bool selfTest();
    /// The same without waiting.
    void beginSelfTest(sdk::TruthTaker finished);

private:
    [[nodiscard]] bool isEnabled() const { return host_.isPluginEnabled("LDAP"); }
    /// What the last report says; a failure is logged.
    [[nodiscard]] bool works(const Server& server, const TestReport& report) const;
    [[nodiscard]] TestReport waitForReport(const Server& server) const;
    void testNext();
    void windowClosed();

    /// A self-test that is under way.
    struct SelfTest {
        sdk::TruthTaker finished;
        std::vector<Server> waiting; ///< the next one last
        bool allWork = true;
        std::unique_ptr<ServerTest> test;
    };

    sdk::Host host_;
    ServerList list_{host_};
    std::optional<bool> wanted_; ///< the enabled state that the user wishes and nobody has saved
    std::unique_ptr<ServersWindow> window_;
    std::unique_ptr<SelfTest> selfTest_;
};

} // namespace corvane::connectors::ldap
