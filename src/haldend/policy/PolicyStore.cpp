#include "haldend/policy/PolicyStore.h"

#include "haldend/storage/Failure.h"
#include "util/Containers.h"

namespace corvane::haldend {
namespace {

constexpr const char* versionKey = "Version";
constexpr const char* authenticationKey = "Authentication";
constexpr const char* contactsKey = "Contacts";
constexpr const char* modeKey = "Mode";
constexpr const char* customKey = "Custom";
constexpr const char* disabledKey = "DisabledConnectors";
constexpr const char* nsswitchKey = "NsswitchFingerprint";
constexpr const char* sssdKey = "SssdFingerprint";
constexpr const char* addedKey = "Added"; // absent in files of earlier versions of the program
constexpr const char* emptyDomainsKey = "EmptyDomainsLine";
constexpr const char* nsswitchBeforeKey = "NsswitchBefore";
constexpr const char* linesKey = "NsswitchLines";
constexpr const char* databaseKey = "Database";
constexpr const char* withoutKey = "Without";
constexpr const char* withKey = "With";
constexpr const char* formerListKey = "FormerDomains";
constexpr const char* optionsKey = "AddedOptions";
constexpr const char* sectionKey = "Section";
constexpr const char* optionKey = "Option";
constexpr const char* valueKey = "Value";
constexpr int version = 1;

constexpr std::pair<const char*, bool MachineAdditions::*> additionNames[] = {
    {"Folder", &MachineAdditions::folder},
    {"File", &MachineAdditions::file},
    {"Section", &MachineAdditions::section},
    {"Services", &MachineAdditions::services},
    {"Domains", &MachineAdditions::domains}};

/// Lines of files are bytes, not always text.
util::Value dataOf(const std::string& bytes) { return util::Data(util::bytesFromText(bytes)); }

void store(const MachineAdditions& added, util::ValueMap& values) {
    std::vector<std::string> names;
    for (const auto& [name, member] : additionNames)
        if (added.*member) names.emplace_back(name);
    if (!names.empty()) values.emplace(addedKey, util::Array::ofTexts(names));
    if (added.emptyDomains) values.emplace(emptyDomainsKey, dataOf(*added.emptyDomains));
    if (added.nsswitch) values.emplace(nsswitchBeforeKey, dataOf(*added.nsswitch));
    util::ValueList lines;
    for (const auto& line : added.lines)
        lines.push_back(util::Dictionary{
            {databaseKey, line.database}, {withoutKey, dataOf(line.without)}, {withKey, dataOf(line.with)}});
    if (!lines.empty()) values.emplace(linesKey, util::Array(std::move(lines)));
    if (!added.formerList.empty()) values.emplace(formerListKey, util::Array::ofTexts(added.formerList));
    util::ValueList options;
    for (const auto& option : added.options)
        options.push_back(util::Dictionary{
            {sectionKey, option.section}, {optionKey, option.key}, {valueKey, option.value}});
    if (!options.empty()) values.emplace(optionsKey, util::Array(std::move(options)));
}

std::optional<std::string> optionalBytes(const util::Dictionary& values, const char* key) {
    const auto value = values.valueForKey(key);
    if (const auto data = value.as<util::Data>(); !data.isNull()) return util::textFromBytes(data.bytes());
    const auto text = value.as<util::String>();
    return text.isNull() ? std::nullopt : std::make_optional(text.text());
}

NsswitchMemory linesFrom(const util::Dictionary& values) {
    NsswitchMemory lines;
    for (const auto& element : values.valueForKey(linesKey).as<util::Array>().elements()) {
        const auto entry = element.as<util::Dictionary>();
        const auto without = optionalBytes(entry, withoutKey), with = optionalBytes(entry, withKey);
        const auto database = entry.valueForKey(databaseKey).as<util::String>();
        if (without && with && !database.isNull()) lines.push_back({database.text(), *without, *with});
    }
    return lines;
}

std::vector<AddedOption> optionsFrom(const util::Dictionary& values) {
    std::vector<AddedOption> options;
    for (const auto& element : values.valueForKey(optionsKey).as<util::Array>().elements()) {
        const auto entry = element.as<util::Dictionary>();
        const auto section = entry.valueForKey(sectionKey).as<util::String>(),
                   key = entry.valueForKey(optionKey).as<util::String>(),
                   value = entry.valueForKey(valueKey).as<util::String>();
        if (!section.isNull() && !key.isNull() && !value.isNull())
            options.push_back({section.text(), key.text(), value.text()});
    }
    return options;
}

/// What isn't understood counts as not added: then it stays.
MachineAdditions additionsFrom(const util::Dictionary& values) {
    MachineAdditions added;
    const auto names = values.valueForKey(addedKey).as<util::Array>();
    for (const auto& [name, member] : additionNames)
        added.*member = names.contains(name);
    added.emptyDomains = optionalBytes(values, emptyDomainsKey);
    added.nsswitch = optionalBytes(values, nsswitchBeforeKey);
    added.lines = linesFrom(values);
    added.formerList = values.valueForKey(formerListKey).as<util::Array>().texts();
    added.options = optionsFrom(values);
    return added;
}

util::Value valueOf(const StoredSearchPolicy& policy) {
    util::ValueMap values{{modeKey, static_cast<int>(policy.mode)}};
    if (policy.hasCustom) values.emplace(customKey, util::Array::ofTexts(policy.custom));
    return util::Dictionary(std::move(values));
}

/// Why a text is none of ours; becomes the reason of the failure.
struct Damage {
    std::string why;
};

util::Value required(const util::Dictionary& values, const char* key, util::Kind kind) {
    const auto value = values.valueForKey(key);
    if (!value.isKind(kind))
        throw Damage{std::string("The entry \"") + key + "\" is missing or of the wrong kind."};
    return value;
}

std::vector<std::string> textsFrom(const util::Dictionary& values, const char* key) {
    const auto list = required(values, key, util::Kind::Array).as<util::Array>();
    for (const auto& element : list.elements())
        if (!element.isKind(util::Kind::String))
            throw Damage{std::string("\"") + key + "\" holds something else than texts."};
    return list.texts();
}

StoredSearchPolicy policyFrom(const util::Dictionary& values, const char* key) {
    const auto entry = required(values, key, util::Kind::Dictionary).as<util::Dictionary>();
    const auto mode = required(entry, modeKey, util::Kind::Number).as<util::Number>().integerValue();
    if (mode < 1 || mode > 3) throw Damage{"A mode is " + std::to_string(mode) + ", not 1, 2 or 3."};
    if (!entry.containsKey(customKey)) return {static_cast<PolicyMode>(mode), {}, false};
    return {static_cast<PolicyMode>(mode), textsFrom(entry, customKey), true};
}

Fingerprint fingerprintFrom(const util::Dictionary& values, const char* key) {
    const auto text = required(values, key, util::Kind::String).as<util::String>().text();
    const auto fingerprint = Fingerprint::fromText(text);
    if (!fingerprint) throw Damage{std::string("\"") + key + "\" isn't a fingerprint."};
    return *fingerprint;
}

StoredPolicy policyFrom(const util::Dictionary& values) {
    if (const auto found = required(values, versionKey, util::Kind::Number).as<util::Number>().integerValue();
        found != version)
        throw Damage{"It was written in version " + std::to_string(found) + " of its form, not " +
                     std::to_string(version) + "."};
    const auto disabled = textsFrom(values, disabledKey);
    return {{policyFrom(values, authenticationKey), policyFrom(values, contactsKey),
             DisabledConnectors(disabled.begin(), disabled.end())},
            fingerprintFrom(values, nsswitchKey),
            fingerprintFrom(values, sssdKey),
            additionsFrom(values)};
}

Failure damaged(const std::string& path, const std::string& why) {
    return {
        halden::ErrorCode::storage, "The stored search policies are damaged.", path + ": " + why,
        "Put an earlier version back from the folder \"generations\" beside it, or remove the file: the "
        "authentication policy is then read from the machine's files and the contacts policy starts anew."};
}

} // namespace

std::string storedText(const StoredPolicy& stored, const platform::PropertyListCodec& codec) {
    const std::vector<std::string> disabled(stored.policy.disabled.begin(), stored.policy.disabled.end());
    util::ValueMap values{{versionKey, version},
                          {authenticationKey, valueOf(stored.policy.authentication)},
                          {contactsKey, valueOf(stored.policy.contacts)},
                          {disabledKey, util::Array::ofTexts(disabled)},
                          {nsswitchKey, stored.nsswitch.text()},
                          {sssdKey, stored.sssd.text()}};
    store(stored.added, values);
    const auto bytes = codec.xml(util::Dictionary(std::move(values)));
    if (!bytes)
        throw Failure(halden::ErrorCode::parameter, "The search policy can't be stored.",
                      "A node name holds characters that no text file can hold.",
                      "Take that node off the list.");
    return util::textFromBytes(*bytes);
}

StoredPolicy storedPolicy(const std::string& text, const std::string& path,
                          const platform::PropertyListCodec& codec) {
    std::string reason;
    const auto value = codec.parse(util::bytesFromText(text), &reason);
    if (value.isNull()) throw damaged(path, reason + ".");
    try {
        if (!value.isKind(util::Kind::Dictionary)) throw Damage{"It isn't a dictionary."};
        return policyFrom(value.as<util::Dictionary>());
    } catch (const Damage& damage) {
        throw damaged(path, damage.why);
    }
}

} // namespace corvane::haldend
