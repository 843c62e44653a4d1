#include <algorithm>

#include "fuzz/FuzzWorld.h"
#include "sdk/LdapServerCalls.h"

// Requests to write LDAP servers, to an engine on a temporary folder. A dictionary gets the present revision
// put in, so that it comes as far as its contents allow. After each call sssd.conf must be readable by its
// grammar, files and policy must agree, and a section that is no LDAP server must read as before.
namespace {

using namespace corvane;

using fuzz::World;

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
    (void)world.call(halden::NodeType::configNode, sdk::ldap::call::writeServers, request);
    const auto& snapshot = world.engine->machine().snapshot();
    if (!foreignSectionIsWhole(snapshot.inputs().sssd.domains())) std::abort();
    return 0;
}
