#pragma once

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "haldend/EmbeddedFramework.h"
#include "plist/PropertyListCodec.h"

namespace corvane::fuzz {

class SilentLog final : public util::ProcessLog {
public:
    void log(std::string_view) override {}
};

/// An engine on a temporary folder, and an authorization that may change things. The machine has an LDAP
/// server "a" on its policy and an AD domain "b" that isn't.
struct World {
    World() {
        std::filesystem::create_directories(root + "/etc/sssd");
        std::ofstream(root + "/etc/nsswitch.conf") << "passwd: files\ngroup: files\n";
        std::ofstream(root + "/etc/sssd/sssd.conf")
            << "[sssd]\ndomains = a\n[domain/a]\nid_provider = ldap\nldap_uri = ldap://a\n"
               "[domain/b]\nid_provider = ad\nad_server = dc.example.com\n";
        engine = std::make_shared<haldend::Engine>(root, codec, log);
        framework = std::make_unique<haldend::EmbeddedFramework>(engine);
        const auto ref = engine->rights().open();
        engine->rights().grant(ref, {std::string(haldend::configureRight)});
        if (!engine->rights().externalForm(ref, form)) std::abort();
    }
    World(const World&) = delete;
    World& operator=(const World&) = delete;
    ~World() { std::filesystem::remove_all(root); }

    /// Sends a request to a node; answers its error. There is a reply exactly when there is no error, and
    /// files and policy agree afterwards: else the process ends here.
    [[nodiscard]] halden::Error call(halden::NodeType node, int code, const util::Bytes& request) const {
        halden::Error error;
        const auto reply =
            framework->defaultSession()->nodeWithType(node, nullptr)->customCall(code, request, &error);
        if (reply.has_value() == (error.code != 0)) std::abort();
        const auto& snapshot = engine->machine().snapshot();
        if (haldend::activeDirectories(snapshot.policy(), snapshot.inputs()) !=
            haldend::servedNodes(snapshot.inputs()))
            std::abort();
        return error;
    }

    std::string root =
        (std::filesystem::temp_directory_path() / ("corvane-fuzz-" + std::to_string(::getpid()))).string();
    plist::PropertyListCodec codec;
    SilentLog log;
    std::shared_ptr<haldend::Engine> engine;
    std::unique_ptr<haldend::EmbeddedFramework> framework;
    util::AuthorizationExternalForm form;
};

} // namespace corvane::fuzz
