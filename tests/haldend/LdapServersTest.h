#pragma once

#include "haldend/TestMachine.h"
#include "sdk/LdapServerCalls.h"

namespace corvane::haldend::test {

namespace serverKey = sdk::ldap::serverKey;
namespace serverCall = sdk::ldap::call;

/// A server of a request: its name, its first address and what else is said.
inline util::Dictionary server(const std::string& name, util::ValueMap others = {}) {
    others.emplace(serverKey::name, name);
    return util::Dictionary(std::move(others));
}
inline util::Dictionary newServer(const std::string& name, const std::string& address,
                                  util::ValueMap others = {}) {
    others.emplace(serverKey::addresses, util::Array{address});
    return server(name, std::move(others));
}
inline util::Data password(const std::string& text) { return util::Data(util::bytesFromText(text)); }

/// A machine that is asked about its LDAP servers as a plug-in asks.
class ServerMachine : public TestMachine {
public:
    using TestMachine::TestMachine;

    struct Answer {
        halden::Error error;
        util::Dictionary values;
        std::string text;
    };
    [[nodiscard]] Answer ask(int code, const std::optional<util::Dictionary>& payload,
                             bool authorized = true) const {
        auto request = authorized ? form() : util::Bytes();
        if (payload) {
            const auto bytes = *codec.xml(*payload);
            request.insert(request.end(), bytes.begin(), bytes.end());
        }
        Answer answer;
        const auto reply = node(halden::NodeType::configNode)->customCall(code, request, &answer.error);
        if (!reply) return answer;
        answer.text = util::textFromBytes(*reply);
        answer.values = codec.parse(*reply, nullptr).as<util::Dictionary>();
        return answer;
    }
    [[nodiscard]] Answer list() const { return ask(serverCall::listServers, std::nullopt, false); }
    [[nodiscard]] std::string revision() const { return list().values.textForKey("revision"); }
    [[nodiscard]] Answer write(const util::Array& put, const std::vector<std::string>& remove = {}) const {
        return ask(serverCall::writeServers,
                   util::Dictionary{{"revision", revision()},
                                    {"put", put.isNull() ? util::Array(util::ValueList{}) : put},
                                    {"remove", util::Array::ofTexts(remove)}});
    }
    /// The server of that name in the machine's own words, null when it has none.
    [[nodiscard]] util::Dictionary described(const std::string& name) const {
        const auto servers = list().values.valueForKey("servers").as<util::Array>();
        for (const auto& value : servers.elements())
            if (value.as<util::Dictionary>().textForKey(serverKey::name) == name)
                return value.as<util::Dictionary>();
        return {};
    }
    [[nodiscard]] std::string sssd() const { return folder.read("etc/sssd/sssd.conf"); }
    [[nodiscard]] std::string nsswitch() const { return folder.read("etc/nsswitch.conf"); }
};

/// Every file and folder below etc with its content.
inline std::map<std::string, std::string> everythingBelowEtc(const ServerMachine& machine) {
    std::map<std::string, std::string> found;
    const auto root = machine.folder.path() + "/etc";
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
        const auto path = "etc" + entry.path().string().substr(root.size());
        found[path] = entry.is_directory() ? "folder" : machine.folder.read(path);
    }
    return found;
}

} // namespace corvane::haldend::test
