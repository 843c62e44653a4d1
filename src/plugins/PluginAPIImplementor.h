#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "directory/HaldenNodeConfig.h"
#include "formatters/IPv4AddressFormatter.h"
#include "formatters/NumberEnforcer.h"
#include "formatters/ValidCharacterFormatter.h"
#include "halden/Session.h"
#include "platform/Authorization.h"
#include "platform/PropertyListCodec.h"
#include "plugins/PluginSurroundings.h"
#include "util/AuthorizationExternalForm.h"

namespace corvane::plugins {

/// An object of a plug-in's that will run something against the directory service.
class HaldenCAction {
public:
    virtual ~HaldenCAction() = default;
    virtual void setAuth(std::shared_ptr<platform::Authorization> authorization) = 0;
    /// Borrowed for the length of the call.
    virtual void setRemoteAuthExtForm(const util::AuthorizationExternalForm& form) = 0;
};

/// The one object through which plug-ins call the host. It holds no state of its own: every answer is that of
/// the moment, of the window's present connection. Results that are new objects say so; everything else is
/// the host's, and shared. Main thread.
class PluginAPIImplementor {
public:
    /// The program behind the interface; the names are the main controller's.
    struct Host : formatters::ValidCharacterFormatter::Needs {
        [[nodiscard]] virtual bool preflightDSRef() = 0;
        [[nodiscard]] virtual bool preflightAuthRights() = 0;
        [[nodiscard]] virtual std::int32_t makeAuthExternalForm(util::AuthorizationExternalForm& form) = 0;
        [[nodiscard]] virtual std::shared_ptr<halden::Session> haldenSession() = 0;
        [[nodiscard]] virtual std::shared_ptr<platform::Authorization> authorization() = 0;
        [[nodiscard]] virtual platform::AuthorizationRef authorizationRef() = 0;
        [[nodiscard]] virtual std::shared_ptr<directory::HaldenNodeConfig> haldenConfigNode() = 0;
        [[nodiscard]] virtual util::Array networkSets() = 0;
        [[nodiscard]] virtual util::Dictionary currentNetworkSet() = 0;
        [[nodiscard]] virtual std::string hostName() = 0;
        [[nodiscard]] virtual bool isRemote() = 0;
        virtual void reloadPluginTable() = 0;
        virtual void reloadSearchPolicies() = 0;
        [[nodiscard]] virtual bool saveSearchPolicies() = 0;
        [[nodiscard]] virtual bool isNodeOnAuthSearchPolicy(const std::string& nodeName) = 0;
        [[nodiscard]] virtual bool isNodeOnContactsSearchPolicy(const std::string& nodeName) = 0;
        virtual void addNodeToAuthSearchPolicy(const std::string& nodeName) = 0;
        virtual void addNodeToContactsSearchPolicy(const std::string& nodeName) = 0;
        virtual void deleteNodeFromAuthSearchPolicy(const std::string& nodeName) = 0;
        virtual void deleteNodeFromContactsSearchPolicy(const std::string& nodeName) = 0;
        virtual void deleteNodesFromAuthSearchPolicyWithPrefix(const std::string& prefix) = 0;
        virtual void deleteNodesFromContactsSearchPolicyWithPrefix(const std::string& prefix) = 0;
        virtual void nodeNameChanged(const std::optional<std::string>& from,
                                     const std::optional<std::string>& to) = 0;
        virtual void setPluginModified(bool modified) = 0;
        [[nodiscard]] virtual std::optional<std::string>
        pluginVersionWithPrefix(const std::string& prefix) = 0;
        [[nodiscard]] virtual std::optional<std::string> osVersion() = 0;
        [[nodiscard]] virtual bool legacyDS() = 0;
        [[nodiscard]] virtual bool isPluginEnabled(const std::string& prefix) = 0;
        virtual void setPluginEnabled(const std::string& prefix, bool enabled) = 0;

        /// A plug-in's code failed unexpectedly.
        virtual void pluginFailed(const std::string& plugin, const std::string& operation,
                                  const std::string& reason) = 0;
        virtual void log(const std::string& line) = 0;
        [[nodiscard]] virtual const platform::LocalizedStrings& strings() = 0;
        [[nodiscard]] virtual const platform::PropertyListCodec& propertyLists() = 0;
        [[nodiscard]] virtual PluginSurroundings surroundings() = 0;
    };

    explicit PluginAPIImplementor(Host& host) : host_(host) {}

    [[nodiscard]] bool preflightDSRef() { return host_.preflightDSRef(); }
    [[nodiscard]] bool preflightAuthRights() { return host_.preflightAuthRights(); }
    /// 0 on success.
    [[nodiscard]] std::int32_t makeAuthExternalForm(util::AuthorizationExternalForm& form) {
        return host_.makeAuthExternalForm(form);
    }
    /// Hands the action the authorization itself, or, while a remote server is configured, its external form:
    /// all zeros when that could not be made.
    void setAuthorizationForHaldenCAction(HaldenCAction& action);
    [[nodiscard]] std::shared_ptr<halden::Session> haldenSession() { return host_.haldenSession(); }
    /// Names for an older directory interface, which this program doesn't have: always 0.
    [[nodiscard]] std::uint32_t dsRef() { return 0; }
    [[nodiscard]] std::uint32_t configureNodeRef() { return 0; }
    [[nodiscard]] std::shared_ptr<platform::Authorization> authorization() { return host_.authorization(); }
    [[nodiscard]] platform::AuthorizationRef authorizationRef() { return host_.authorizationRef(); }
    /// The configuration node of the current connection; null when the service can't be reached.
    [[nodiscard]] std::shared_ptr<directory::HaldenNodeConfig> haldenConfigNode() {
        return host_.haldenConfigNode();
    }
    [[nodiscard]] util::Array networkSets() { return host_.networkSets(); }
    /// Null when there is none.
    [[nodiscard]] util::Dictionary currentNetworkSet() { return host_.currentNetworkSet(); }
    [[nodiscard]] std::string hostName() { return host_.hostName(); }

    /// New formatters, the caller's own.
    [[nodiscard]] std::shared_ptr<formatters::NumberEnforcer> numberFormatEnforcer();
    [[nodiscard]] std::shared_ptr<formatters::IPv4AddressFormatter> ipv4AddressFormatter();
    [[nodiscard]] std::shared_ptr<formatters::ValidCharacterFormatter>
    validCharacterFormatter(std::shared_ptr<const util::CharacterSet> characters);

    [[nodiscard]] bool isRemote() { return host_.isRemote(); }
    /// Whatever the arguments say, the services table is shown anew.
    void pluginEnableStateChanged(const std::string& /*name*/, bool /*to*/) { host_.reloadPluginTable(); }

    void reloadSearchPolicies() { host_.reloadSearchPolicies(); }
    [[nodiscard]] bool saveSearchPolicies() { return host_.saveSearchPolicies(); }
    [[nodiscard]] bool isNodeOnAuthSearchPolicy(const std::string& node) {
        return host_.isNodeOnAuthSearchPolicy(node);
    }
    [[nodiscard]] bool isNodeOnContactsSearchPolicy(const std::string& node) {
        return host_.isNodeOnContactsSearchPolicy(node);
    }
    void addNodeToAuthSearchPolicy(const std::string& node) { host_.addNodeToAuthSearchPolicy(node); }
    void addNodeToContactsSearchPolicy(const std::string& node) { host_.addNodeToContactsSearchPolicy(node); }
    void deleteNodeFromAuthSearchPolicy(const std::string& node) {
        host_.deleteNodeFromAuthSearchPolicy(node);
    }
    void deleteNodeFromContactsSearchPolicy(const std::string& node) {
        host_.deleteNodeFromContactsSearchPolicy(node);
    }
    void deleteNodesFromAuthSearchPolicyWithPrefix(const std::string& prefix) {
        host_.deleteNodesFromAuthSearchPolicyWithPrefix(prefix);
    }
    void deleteNodesFromContactsSearchPolicyWithPrefix(const std::string& prefix) {
        host_.deleteNodesFromContactsSearchPolicyWithPrefix(prefix);
    }
    void nodeNameChanged(const std::optional<std::string>& from, const std::optional<std::string>& to) {
        host_.nodeNameChanged(from, to);
    }

    /// `sender` is ignored.
    void markDirty(const void* /*sender*/) { host_.setPluginModified(true); }
    [[nodiscard]] std::optional<std::string> pluginVersionWithPrefix(const std::string& prefix) {
        return host_.pluginVersionWithPrefix(prefix);
    }
    [[nodiscard]] std::optional<std::string> osVersion() { return host_.osVersion(); }
    [[nodiscard]] bool legacyDS() { return host_.legacyDS(); }
    [[nodiscard]] bool isPluginEnabled(const std::string& prefix) { return host_.isPluginEnabled(prefix); }
    void setPluginEnabled(const std::string& prefix, bool enabled) {
        host_.setPluginEnabled(prefix, enabled);
    }

    // Beside the operations for plug-ins' own use
    void pluginFailed(const std::string& plugin, const std::string& operation, const std::string& reason) {
        host_.pluginFailed(plugin, operation, reason);
    }
    void log(const std::string& line) { host_.log(line); }
    [[nodiscard]] const platform::PropertyListCodec& propertyLists() { return host_.propertyLists(); }
    [[nodiscard]] PluginSurroundings surroundings() { return host_.surroundings(); }

private:
    Host& host_;
};

} // namespace corvane::plugins
