#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "haldend/EmbeddedAuthorizationService.h"
#include "haldend/EmbeddedFramework.h"
#include "plist/PropertyListCodec.h"

// Requests to both search nodes of an engine on a temporary folder. The first octet of the input chooses the
// call and the node and whether an authorization that may change things goes in front. After each call the
// files and the policy must agree, and a call without authorization must fail.
namespace {

using namespace corvane;

class SilentLog final : public util::ProcessLog {
public:
    void log(std::string_view) override {}
};

struct World {
    World() {
        std::filesystem::create_directories(root + "/etc/sssd");
        std::ofstream(root + "/etc/nsswitch.conf") << "passwd: files\ngroup: files\n";
        std::ofstream(root + "/etc/sssd/sssd.conf")
            << "[sssd]\ndomains = a\n[domain/a]\nid_provider = ldap\nldap_uri = "
               "ldap://a\n[domain/b]\nid_provider = ad\n";
        engine = std::make_shared<haldend::Engine>(root, codec, log);
        framework = std::make_unique<haldend::EmbeddedFramework>(engine);
        const auto ref = engine->rights().open();
        engine->rights().grant(ref, {std::string(haldend::configureRight)});
        if (!engine->rights().externalForm(ref, form)) std::abort();
    }
    ~World() { std::filesystem::remove_all(root); }

    std::string root =
        (std::filesystem::temp_directory_path() / ("corvane-fuzz-" + std::to_string(::getpid()))).string();
    plist::PropertyListCodec codec;
    SilentLog log;
    std::shared_ptr<haldend::Engine> engine;
    std::unique_ptr<haldend::EmbeddedFramework> framework;
    util::AuthorizationExternalForm form;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static World world;
    if (size == 0) return 0;
    static constexpr int codes[] = {444, 111, 222, 333};
    const bool isAuthorized = (data[0] & 8U) == 0;
    const auto type =
        data[0] & 4U ? halden::NodeType::contactsSearchNode : halden::NodeType::authenticationSearchNode;
    util::Bytes request;
    if (isAuthorized) request.assign(world.form.bytes.begin(), world.form.bytes.end());
    request.insert(request.end(), data + 1, data + size);
    halden::Error error;
    const auto reply = world.framework->defaultSession()
                           ->nodeWithType(type, nullptr)
                           ->customCall(codes[data[0] & 3U], request, &error);
    if (reply.has_value() == (error.code != 0)) std::abort();
    if (!isAuthorized && error.code == 0) std::abort();
    const auto& picture = world.engine->machine().picture();
    if (!haldend::agrees(picture.policy(), picture.ground())) std::abort();
    return 0;
}
