#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "haldend/EmbeddedFramework.h"
#include "plist/PropertyListCodec.h"
#include "sdk/LdapServerCalls.h"

// Requests to write LDAP servers, to an engine on a temporary folder. A dictionary gets the present revision
// put in, so that it comes as far as its contents allow. After each call sssd.conf must be readable by its
// grammar, files and policy must agree, and a section that is no LDAP server must read as before.
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
               "ldap://a\n[domain/b]\nid_provider = ad\nad_server = dc.example.com\n";
        engine = std::make_shared<haldend::Engine>(root, codec, log);
        framework = std::make_unique<haldend::EmbeddedFramework>(engine);
        const auto ref = engine->rights().open();
        engine->rights().grant(ref, {std::string(haldend::configureRight)});
        if (!engine->rights().externalForm(ref, form)) std::abort();
    }
    ~World() { std::filesystem::remove_all(root); }

    std::string root =
        (std::filesystem::temp_directory_path() / ("corvane-fuzz-servers-" + std::to_string(::getpid())))
            .string();
    plist::PropertyListCodec codec;
    SilentLog log;
    std::shared_ptr<haldend::Engine> engine;
    std::unique_ptr<haldend::EmbeddedFramework> framework;
    util::AuthorizationExternalForm form;
};

util::Bytes withRevision(World& world, util::BytesView input) {
    const auto values = world.codec.parse(input, nullptr).as<util::Dictionary>();
    if (values.isNull()) return {input.begin(), input.end()};
    util::ValueMap map;
    for (const auto& [key, value] : values.entries())
        map.emplace(key, value);
    map.insert_or_assign("revision", world.engine->machine().directoriesRevision());
    return world.codec.xml(util::Dictionary(std::move(map))).value_or(util::Bytes());
}

bool foreignSectionIsWhole(const std::vector<haldend::SssdDomain>& domains) {
    const auto found = std::ranges::find(domains, "b", &haldend::SssdDomain::name);
    return found != domains.end() && found->options.size() == 2 &&
           found->option("ad_server") == "dc.example.com";
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static World world;
    util::Bytes request(world.form.bytes.begin(), world.form.bytes.end());
    const auto payload = withRevision(world, {data, size});
    request.insert(request.end(), payload.begin(), payload.end());
    halden::Error error;
    const auto reply = world.framework->defaultSession()
                           ->nodeWithType(halden::NodeType::configNode, nullptr)
                           ->customCall(sdk::ldap::call::writeServers, request, &error);
    if (reply.has_value() == (error.code != 0)) std::abort();
    const auto& picture = world.engine->machine().picture();
    if (!haldend::agrees(picture.policy(), picture.ground())) std::abort();
    if (!foreignSectionIsWhole(picture.ground().sssd.domains())) std::abort();
    return 0;
}
