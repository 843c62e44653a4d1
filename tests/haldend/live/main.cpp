#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "haldend/EmbeddedFramework.h"
#include "plist/PropertyListCodec.h"
#include "sdk/LdapServerCalls.h"

// corvane-server-calls FOLDER add NAME ADDRESS SECURITY BASE BINDDN PASSWORDFILE
// corvane-server-calls FOLDER remove NAME
// corvane-server-calls FOLDER mode 111|222
// One request to an engine on a machine folder ("/" for the machine itself), the same that a plug-in or the
// window would make. BINDDN and PASSWORDFILE may be "". Ends with status 1 and the error's words when it
// fails.
namespace {

using namespace corvane;
namespace key = sdk::ldap::serverKey;

class ErrorLog final : public util::ProcessLog {
public:
    void log(std::string_view line) override {
        std::fprintf(stderr, "%.*s\n", static_cast<int>(line.size()), line.data());
    }
};

util::Bytes contentOf(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

class Caller {
public:
    explicit Caller(const std::string& root)
        : engine_(std::make_shared<haldend::Engine>(root, codec_, log_)), framework_(engine_) {
        const auto ref = engine_->rights().open();
        engine_->rights().grant(ref, {std::string(haldend::configureRight)});
        (void)engine_->rights().externalForm(ref, form_);
    }

    int call(halden::NodeType type, int code, const util::Bytes& payload) {
        util::Bytes request(form_.bytes.begin(), form_.bytes.end());
        request.insert(request.end(), payload.begin(), payload.end());
        halden::Error error;
        (void)framework_.defaultSession()->nodeWithType(type, nullptr)->customCall(code, request, &error);
        if (error) std::fprintf(stderr, "%s\n%s\n", error.description.c_str(), error.details().c_str());
        return error ? 1 : 0;
    }
    int write(const util::Array& put, const util::Array& remove) {
        const util::Dictionary values{
            {"revision", engine_->machine().directoriesRevision()}, {"put", put}, {"remove", remove}};
        return call(halden::NodeType::configNode, sdk::ldap::call::writeServers, *codec_.xml(values));
    }

private:
    plist::PropertyListCodec codec_;
    ErrorLog log_;
    std::shared_ptr<haldend::Engine> engine_;
    haldend::EmbeddedFramework framework_;
    util::AuthorizationExternalForm form_;
};

int run(const std::vector<std::string>& words) {
    const std::string what = words.size() > 2 ? words[1] : "";
    const util::Array nothing(util::ValueList{});
    if (what == "mode")
        return Caller(words[0]).call(halden::NodeType::authenticationSearchNode, std::stoi(words[2]), {});
    if (what == "remove") return Caller(words[0]).write(nothing, {words[2]});
    if (what != "add" || words.size() != 8) return 2;
    util::ValueMap server{{key::name, words[2]},
                          {key::addresses, util::Array{words[3]}},
                          {key::security, words[4]},
                          {key::baseDN, words[5]},
                          {key::bindDN, words[6]}};
    if (!words[7].empty()) server.emplace(key::password, util::Data(contentOf(words[7])));
    return Caller(words[0]).write({util::Dictionary(std::move(server))}, nothing);
}

} // namespace

int main(int count, char** words) { return run({words + 1, words + count}); }
