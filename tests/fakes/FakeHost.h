#pragma once

#include "fakes/FakeDirectory.h"
#include "fakes/FakeForms.h"
#include "fakes/FakePlatform.h"
#include "plugins/PluginAPIImplementor.h"

namespace corvane::fakes {

/// A search policy as a set of nodes.
struct FakePolicy final : plugins::HostPolicy {
    explicit FakePolicy(std::set<std::string> list) : nodes(std::move(list)) {}
    bool isNodeOnSearchPolicy(const std::string& node) override { return nodes.contains(node); }
    void addNode(const std::string& node) override { nodes.insert(node); }
    void deleteNode(const std::string& node) override { nodes.erase(node); }
    void deleteNodesWithPrefix(const std::string& prefix) override {
        std::erase_if(nodes, [&](const auto& node) { return node.starts_with(prefix); });
    }
    std::set<std::string> nodes;
};

/// The program behind the plug-ins' host interface: two lists of nodes, answers as a test sets them, and a
/// record of what was done.
struct FakeHost : directory::Connection,
                  directory::Authorizer,
                  directory::MachineFacts,
                  plugins::HostPolicies,
                  plugins::HostServices,
                  formatters::ValidCharacterFormatter::Needs,
                  util::ProcessLog {
    [[nodiscard]] std::shared_ptr<plugins::PluginAPIImplementor> makeImplementor() {
        return std::make_shared<plugins::PluginAPIImplementor>(
            plugins::PluginAPIImplementor::Parts{*this, *this, *this, *this, *this},
            plugins::PluginAPIImplementor::Tools{*this, localizedStrings, codec, *this, shownBy(), loop(),
                                                 calls()});
    }
    /// Where windows and time come from; another host may have real ones.
    virtual forms::FormPresenter& shownBy() { return formPresenter; }
    virtual platform::RunLoop& loop() { return runLoop; }
    virtual plugins::BackgroundCalls& calls() { return background; }

    bool isRemote() override { return remote; }
    std::shared_ptr<halden::Session> haldenSession() override { return session; }
    std::shared_ptr<directory::HaldenNodeConfig> haldenConfigNode() override { return configNode; }

    bool unlocked() const override { return rights; }
    bool preflightDSRef() override { return reachable; }
    bool preflightAuthRights() override { return rights; }
    std::int32_t makeAuthExternalForm(util::AuthorizationExternalForm& form) override {
        if (formStatus == 0) form.bytes.fill(0x42);
        return formStatus;
    }
    std::shared_ptr<platform::Authorization> authorization() const override { return theAuthorization; }
    platform::AuthorizationRef authorizationRef() const override {
        return theAuthorization ? theAuthorization->authorizationRef() : 0;
    }

    util::Array networkSets() override { return sets; }
    util::Dictionary currentNetworkSet() override { return currentSet; }
    std::string hostName() override { return "this-machine"; }
    std::optional<std::string> osVersion() override { return version; }
    bool legacyDS() override { return !version; }

    FakePolicy& authenticationPolicy() override { return authentication_; }
    FakePolicy& contactsPolicy() override { return contacts_; }
    void reloadSearchPolicies() override { done.emplace_back("reload policies"); }
    bool saveSearchPolicies() override {
        done.emplace_back("save policies");
        return saves;
    }
    void nodeNameChanged(const std::optional<std::string>& from,
                         const std::optional<std::string>& to) override {
        done.push_back("rename " + from.value_or("null") + " " + to.value_or("null"));
    }

    void setPluginModified(bool modified) override { done.push_back(modified ? "modified" : "clean"); }
    void reloadPluginTable() override { done.emplace_back("reload"); }
    std::optional<std::string> pluginVersionWithPrefix(const std::string& prefix) override {
        return prefix == "LDAP" ? std::optional<std::string>("1.2.3") : std::nullopt;
    }
    bool isPluginEnabled(const std::string& prefix) override { return prefix == "LDAP"; }
    void setPluginEnabled(const std::string& prefix, bool enabled) override {
        done.push_back("set " + prefix + (enabled ? " on" : " off"));
    }
    void pluginFailed(const std::string& plugin, const std::string& operation,
                      const std::string& reason) override {
        done.push_back("failed " + plugin + " " + operation + ": " + reason);
    }

    void beep() override { done.emplace_back("beep"); }
    void log(std::string_view line) override { done.push_back("log " + std::string(line)); }

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
    FakeStrings localizedStrings;
    FakePropertyListCodec codec;
    FakeFormPresenter formPresenter;
    FakeRunLoop runLoop;
    plugins::BackgroundCalls background{runLoop};
    std::vector<std::string> done;

private:
    FakePolicy authentication_{{"/LDAP/a", "/LDAP/b", "/AD/c"}};
    FakePolicy contacts_{{"/LDAP/b"}};

public:
    std::set<std::string>& authentication = authentication_.nodes;
    std::set<std::string>& contacts = contacts_.nodes;
};

} // namespace corvane::fakes
