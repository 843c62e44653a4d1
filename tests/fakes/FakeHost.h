#pragma once

#include "fakes/FakeDirectory.h"
#include "fakes/FakeForms.h"
#include "fakes/FakePlatform.h"
#include "plugins/PluginAPIImplementor.h"

namespace corvane::fakes {

/// The program behind the plug-ins' host interface: two lists of nodes, answers as a test sets them, and a
/// record of what was done.
struct FakeHost : plugins::PluginAPIImplementor::Host {
    bool preflightDSRef() override { return reachable; }
    bool preflightAuthRights() override { return rights; }
    std::int32_t makeAuthExternalForm(util::AuthorizationExternalForm& form) override {
        if (formStatus == 0) form.bytes.fill(0x42);
        return formStatus;
    }
    std::shared_ptr<halden::Session> haldenSession() override { return session; }
    std::shared_ptr<platform::Authorization> authorization() override { return theAuthorization; }
    platform::AuthorizationRef authorizationRef() override {
        return theAuthorization ? theAuthorization->authorizationRef() : 0;
    }
    std::shared_ptr<directory::HaldenNodeConfig> haldenConfigNode() override { return configNode; }
    util::Array networkSets() override { return sets; }
    util::Dictionary currentNetworkSet() override { return currentSet; }
    std::string hostName() override { return "this-machine"; }
    bool isRemote() override { return remote; }
    void reloadPluginTable() override { done.emplace_back("reload"); }
    void reloadSearchPolicies() override { done.emplace_back("reload policies"); }
    bool saveSearchPolicies() override {
        done.emplace_back("save policies");
        return saves;
    }
    bool isNodeOnAuthSearchPolicy(const std::string& node) override { return authentication.contains(node); }
    bool isNodeOnContactsSearchPolicy(const std::string& node) override { return contacts.contains(node); }
    void addNodeToAuthSearchPolicy(const std::string& node) override { authentication.insert(node); }
    void addNodeToContactsSearchPolicy(const std::string& node) override { contacts.insert(node); }
    void deleteNodeFromAuthSearchPolicy(const std::string& node) override { authentication.erase(node); }
    void deleteNodeFromContactsSearchPolicy(const std::string& node) override { contacts.erase(node); }
    void deleteNodesFromAuthSearchPolicyWithPrefix(const std::string& prefix) override {
        std::erase_if(authentication, [&](const auto& node) { return node.starts_with(prefix); });
    }
    void deleteNodesFromContactsSearchPolicyWithPrefix(const std::string& prefix) override {
        std::erase_if(contacts, [&](const auto& node) { return node.starts_with(prefix); });
    }
    void nodeNameChanged(const std::optional<std::string>& from,
                         const std::optional<std::string>& to) override {
        done.push_back("rename " + from.value_or("null") + " " + to.value_or("null"));
    }
    void setPluginModified(bool modified) override { done.push_back(modified ? "modified" : "clean"); }
    std::optional<std::string> pluginVersionWithPrefix(const std::string& prefix) override {
        return prefix == "LDAP" ? std::optional<std::string>("1.2.3") : std::nullopt;
    }
    std::optional<std::string> osVersion() override { return version; }
    bool legacyDS() override { return !version; }
    bool isPluginEnabled(const std::string& prefix) override { return prefix == "LDAP"; }
    void setPluginEnabled(const std::string& prefix, bool enabled) override {
        done.push_back("set " + prefix + (enabled ? " on" : " off"));
    }
    void pluginFailed(const std::string& plugin, const std::string& operation,
                      const std::string& reason) override {
        done.push_back("failed " + plugin + " " + operation + ": " + reason);
    }
    void log(const std::string& line) override { done.push_back("log " + line); }
    const platform::LocalizedStrings& strings() override { return localizedStrings; }
    const platform::PropertyListCodec& propertyLists() override { return codec; }
    plugins::PluginSurroundings surroundings() override {
        return {formPresenter, {*this, localizedStrings}, runLoop, background};
    }
    void beep() override { done.emplace_back("beep"); }

    bool reachable = true;
    bool rights = true;
    bool remote = false;
    bool saves = true;
    std::int32_t formStatus = 0;
    std::optional<std::string> version = "12";
    std::shared_ptr<halden::Session> session;
    std::shared_ptr<directory::HaldenNodeConfig> configNode;
    std::shared_ptr<platform::Authorization> theAuthorization;
    util::Array sets{util::Dictionary{{"name", "Office"}, {"id", "A"}, {"path", "/Sets/A"}}};
    util::Dictionary currentSet{std::shared_ptr<util::Object>()};
    std::set<std::string> authentication = {"/LDAP/a", "/LDAP/b", "/AD/c"};
    std::set<std::string> contacts = {"/LDAP/b"};
    FakeStrings localizedStrings;
    FakePropertyListCodec codec;
    FakeFormPresenter formPresenter;
    FakeRunLoop runLoop;
    plugins::BackgroundCalls background{runLoop};
    std::vector<std::string> done;
};

} // namespace corvane::fakes
