#include "directory/NetworkLocations.h"

#include "halden/Calls.h"
#include "util/TextComparison.h"
#include "util/TextFormat.h"

namespace corvane::directory {
namespace {

constexpr const char* clientName = "com.velmora.Corvane";

// Keys of the network configuration.
constexpr const char* setsKey = "Sets";
constexpr const char* currentSetKey = "CurrentSet";
constexpr const char* userDefinedNameKey = "UserDefinedName";
constexpr const char* localHostNameKey = "LocalHostName";
constexpr const char* hostNamesPath = "/System/Network/HostNames";

std::string errorText(const halden::Error& error) {
    return error ? error.description + " (" + std::to_string(error.code) + ")" : "(null)";
}

} // namespace

NetworkLocations::NetworkLocations(platform::Environment& environment, Needs& needs)
    : environment_(environment), needs_(needs) {}

platform::NetworkPreferences& NetworkLocations::scPrefs() {
    if (!_scPrefs) _scPrefs = environment_.networkConfiguration.create(clientName);
    return *_scPrefs;
}

util::Dictionary NetworkLocations::dictionaryForNetworkSet(const platform::NetworkSet& set) {
    auto entries = util::Dictionary::makeMutable();
    // The list of pairs ends at the first value that is missing; who reads it copes with what is left.
    if (!set.name) return entries;
    entries.set("name", *set.name);
    if (!set.identifier) return entries;
    entries.set("id", *set.identifier);
    entries.set("path", util::formatted("/Sets/%@", {*set.identifier}));
    return entries;
}

util::Array NetworkLocations::networkSets() {
    if (needs_.isRemote()) return remoteNetworkSets();
    auto sets = util::Array::makeMutable();
    for (const auto& set : scPrefs().allSets())
        sets.append(dictionaryForNetworkSet(set));
    return sets;
}

util::Dictionary NetworkLocations::currentNetworkSet() {
    if (needs_.isRemote()) return remoteCurrentNetworkSet();
    const auto current = scPrefs().currentSet();
    return current ? dictionaryForNetworkSet(*current) : util::Dictionary(std::shared_ptr<util::Object>());
}

std::string NetworkLocations::hostName() {
    return needs_.isRemote() ? remoteHostName() : environment_.networkConfiguration.hostName();
}

std::shared_ptr<HaldenNodeConfig> NetworkLocations::configNodeFor(const char* operation) {
    auto node = needs_.haldenConfigNode();
    // There is no error object at this point: the line says "(null)" for it.
    if (!node)
        log(util::formatted("-[MainController %@]: got error trying to access config node: %@",
                            {operation, "(null)"}));
    return node;
}

// Without a node the reply is empty, as it is when a request has failed.
util::Bytes NetworkLocations::remoteValue(HaldenNodeConfig* node, std::int32_t code, const std::string& key,
                                          halden::Error& error) {
    if (node == nullptr) return {};
    return node->customCall(code, util::bytesFromText(key), &error).value_or(util::Bytes());
}

util::Dictionary NetworkLocations::remoteDictionary(util::BytesView reply) const {
    if (reply.empty()) return util::Dictionary(std::shared_ptr<util::Object>());
    return environment_.propertyLists.parse(reply, nullptr).as<util::Dictionary>();
}

util::Array NetworkLocations::remoteNetworkSets() {
    const auto node = configNodeFor("networkSets");
    const auto path = util::formatted("/%@", {setsKey});
    halden::Error error;
    const auto reply = remoteValue(node.get(), halden::callCode::keyPathValue, path, error);
    if (reply.empty())
        log(util::formatted("-[MainController networkSets]: got zero length data from "
                            "eDSCustomCallConfigureSCGetKeyPathValueData.for path \"%@\" error is %@",
                            {path, errorText(error)}));
    auto sets = util::Array::makeMutable();
    for (const auto& [identifier, entry] : remoteDictionary(reply).entries()) {
        platform::NetworkSet set{std::nullopt, identifier};
        if (const auto name = entry.as<util::Dictionary>().valueForKey(userDefinedNameKey).as<util::String>())
            set.name = name.text();
        sets.append(dictionaryForNetworkSet(set));
    }
    return sets;
}

util::Dictionary NetworkLocations::remoteCurrentNetworkSet() {
    const auto node = configNodeFor("currentNetworkSet");
    halden::Error error;
    const auto reply = remoteValue(node.get(), halden::callCode::keyValue, currentSetKey, error);
    if (reply.empty())
        log(util::formatted("-[MainController currentNetworkSet]: got zero length data from "
                            "eDSCustomCallConfigureSCGetKeyValueData.for key \"%@\" error is %@",
                            {currentSetKey, errorText(error)}));
    const auto path = util::textFromBytes(reply);
    const auto sets = networkSets();
    for (const auto& element : sets.elements()) {
        const auto set = element.as<util::Dictionary>();
        if (set.containsKey("path") && set.textForKey("path") == path) return set;
    }
    if (sets.isEmpty()) return util::Dictionary(std::shared_ptr<util::Object>());
    log(util::formatted("-[MainController currentNetworkSet]: no matching current set. path is \"%@\"",
                        {path}));
    return sets.at(0).as<util::Dictionary>();
}

std::string NetworkLocations::remoteHostName() {
    const auto node = needs_.haldenConfigNode();
    halden::Error error;
    const auto reply = remoteValue(node.get(), halden::callCode::keyPathValue, hostNamesPath, error);
    const auto name = remoteDictionary(reply).textForKey(localHostNameKey);
    return name.empty() ? needs_.ipAddress() : name;
}

std::optional<std::string> NetworkLocations::osVersion() {
    const auto node = needs_.openedConfigNode();
    if (!node) return std::nullopt;
    const std::string key(halden::attribute::operatingSystemVersion);
    const auto details = node->nodeDetails(std::vector{key}, nullptr);
    const auto values = details.valueForKey(key).as<util::Array>();
    if (values.isEmpty()) return std::nullopt;
    return values.textAt(values.count() - 1);
}

bool NetworkLocations::legacyDS() {
    const auto version = osVersion();
    return !version || util::compareNumerically(*version, "10.7") < 0;
}

void NetworkLocations::log(const std::string& line) { environment_.log.log(line); }

} // namespace corvane::directory
