#pragma once

#include <mutex>

#include "fakes/FakeHost.h"
#include "plugins/PluginHostTable.h"
#include "sdk/Host.h"
#include "sdk/LdapServerCalls.h"

namespace corvane::connectors::ldap {

/// The directory service's side of the calls about LDAP servers, as far as a plug-in can tell: servers by
/// name, a revision that counts writes, and checks whose reports a test prepares.
class ServerService {
public:
    /// `host`: the program that the plug-in talks to.
    explicit ServerService(std::unique_ptr<fakes::FakeHost> host = std::make_unique<fakes::FakeHost>())
        : theHost_(std::move(host)) {
        host_.session = session_;
        host_.configNode = std::make_shared<directory::HaldenNodeConfig>(
            session_->nodeWithType(halden::NodeType::configNode, nullptr));
        session_->config().onCall = [this](const fakes::ReceivedCall& call, halden::Error* error) {
            return answer(call, error);
        };
    }

    [[nodiscard]] fakes::FakeHost& program() { return host_; }
    [[nodiscard]] const CorvaneHost& table() const { return hostTable_.table(); }
    void serve(const std::string& name, const util::ValueMap& more = {}) {
        auto server = util::Dictionary::makeMutable({{"name", name},
                                                     {"node", "/LDAP/" + name},
                                                     {"addresses", util::Array{name}},
                                                     {"port", 0},
                                                     {"security", "startTLS"},
                                                     {"schema", "rfc2307"},
                                                     {"hasPassword", false}});
        for (const auto& [key, value] : more)
            server.set(key, value);
        servers[name] = server;
        ++revision;
    }

    std::map<std::string, util::Dictionary> servers;
    int revision = 1;
    halden::Error refusal;                  ///< of every write, while it says something
    std::vector<util::Dictionary> reports;  ///< of the next check; the last one stays
    std::vector<util::Dictionary> requests; ///< received with property lists, in order
    std::vector<int> cancelled;

private:
    using Reply = std::optional<util::Bytes>;
    [[nodiscard]] Reply write(const util::Value& value) { return host_.codec.xml(value); }
    [[nodiscard]] Reply list() {
        auto all = util::Array::makeMutable();
        for (const auto& [name, server] : servers)
            all.append(server);
        return write(util::Dictionary{{"revision", std::to_string(revision)}, {"servers", all}});
    }
    [[nodiscard]] Reply answer(const fakes::ReceivedCall& call, halden::Error* error) {
        namespace code = sdk::ldap::call;
        const std::lock_guard lock(mutex_); // requests come from the background as well
        if (call.code == code::listServers) return list();
        const util::Bytes octets(call.request.begin() + 32, call.request.end());
        requests.push_back(host_.codec.parse(octets, nullptr).as<util::Dictionary>());
        const auto& request = requests.back();
        if (call.code == code::writeServers) return writeServers(request, error);
        if (call.code == code::startTest) return write(util::Dictionary{{"job", 7}});
        if (call.code == code::testReport) return report();
        cancelled.push_back(static_cast<int>(request.valueForKey("job").as<util::Number>().integerValue()));
        return write(util::Dictionary(util::ValueMap{}));
    }
    [[nodiscard]] Reply report() {
        const auto now = reports.front();
        if (reports.size() > 1) reports.erase(reports.begin());
        return write(now);
    }
    [[nodiscard]] Reply writeServers(const util::Dictionary& request, halden::Error* error) {
        if (refusal) {
            *error = refusal;
            return std::nullopt;
        }
        if (request.textForKey("revision") != std::to_string(revision)) {
            *error = {4300, "Another program has changed the servers.", "", ""};
            return std::nullopt;
        }
        for (const auto& name : request.valueForKey("remove").as<util::Array>().texts())
            servers.erase(name);
        for (const auto& element : request.valueForKey("put").as<util::Array>().elements())
            put(element.as<util::Dictionary>());
        ++revision;
        return list();
    }
    void put(const util::Dictionary& wanted) {
        servers.erase(wanted.textForKey("replaces"));
        auto server = wanted.mutableCopy().as<util::Dictionary>();
        const auto password = wanted.valueForKey("password").as<util::Data>();
        server.set("hasPassword", !password.isNull() && !password.bytes().empty());
        server.remove("password");
        server.remove("replaces");
        server.set("node", "/LDAP/" + server.valueForKey("addresses").as<util::Array>().textAt(0));
        servers[wanted.textForKey("name")] = server;
    }

    std::mutex mutex_;
    fakes::Journal journal_;
    std::unique_ptr<fakes::FakeHost> theHost_;
    fakes::FakeHost& host_ = *theHost_;
    std::shared_ptr<fakes::FakeSession> session_ = std::make_shared<fakes::FakeSession>(journal_);
    plugins::PluginHostTable hostTable_{host_.makeImplementor(), "LDAP"};
};

} // namespace corvane::connectors::ldap
