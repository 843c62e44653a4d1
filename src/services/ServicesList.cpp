#include "services/ServicesList.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "halden/ConnectorNames.h"
#include "plugins/ServiceDescription.h"
#include "util/TextComparison.h"

namespace corvane::services {

namespace attribute = halden::attribute;
namespace connector = halden::connector;
namespace service = plugins::service;

namespace {

/// The attribute's first value, none when it has no values.
std::optional<std::string> firstValue(const halden::Record& record, std::string_view name) {
    const auto values = record.valuesForAttribute(name, nullptr);
    return values.isEmpty() ? std::nullopt : std::optional(values.textAt(0));
}

/// Number of characters of a UTF-8 text.
std::int32_t characterCount(const std::string& text) {
    const auto startsCharacter = [](char byte) {
        return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
    };
    return static_cast<std::int32_t>(std::ranges::count_if(text, startsCharacter));
}

halden::QueryParameters everyConnector() {
    halden::QueryParameters parameters;
    parameters.recordTypes = {std::string(halden::recordType::plugins)};
    parameters.attribute = attribute::recordName;
    parameters.matchType = halden::MatchType::equalTo;
    parameters.values = {std::string(halden::allRecords)};
    parameters.attributesToReturn = {std::string(attribute::all)};
    return parameters;
}

} // namespace

ServicesList::ServicesList(plugins::PluginItem::Context context, Sources sources, Needs& needs)
    : context_(context), sources_(std::move(sources)), needs_(needs) {}

void ServicesList::destroyPlugins() {
    if (!items_) return;
    for (const auto& item : List(*items_))
        item->destroyPlugin();
}

void ServicesList::buildDSConfigPaneData() {
    if (reported_) return; // a plug-in asked for it out of the reading itself, which goes on
    reported_.emplace();
    try {
        readList();
        loaded_ = true;
    } catch (const std::exception&) {
        needs_.hideProgressBar();
    }
    reported_.reset();
    needs_.reloadPluginTable();
}

// All are described before the first plug-in object is made: a plug-in may ask about any of them.
void ServicesList::readList() {
    const auto node = sources_.connection.haldenConfigNode();
    const auto query = node ? node->query(everyConnector(), nullptr) : nullptr;
    const auto records = query ? query->results(false, nullptr) : std::nullopt;
    // The list is in order before the items of the old one are destroyed: they may ask, too.
    std::exchange(items_, List()).reset();
    if (!records) return;
    std::exception_ptr problem;
    try {
        for (const auto& record : *records)
            if (record->recordName() != connector::neverShown) reported_->push_back(describe(*record));
    } catch (const std::exception&) {
        problem = std::current_exception();
    }
    for (const auto& description : *reported_)
        addItem(description);
    if (problem) std::rethrow_exception(problem);
    sortByName();
}

void ServicesList::addItem(const util::Dictionary& description) {
    auto item = std::make_shared<plugins::PluginItem>(context_, description);
    item->setPluginAPIImplementor(sources_.implementor);
    if (sources_.machine.legacyDS() || item->canConfigure()) items_->push_back(std::move(item));
}

util::Dictionary ServicesList::describe(const halden::Record& record) const {
    auto description = util::Dictionary::makeMutable();
    const auto name = record.recordName();
    description.set(service::name,
                    name == connector::formerZeroconf ? std::string(connector::zeroconf) : name);
    const auto state = firstValue(record, attribute::functionalState).value_or(std::string(service::unknown));
    description.set(service::loaded, state);
    description.set(service::userSetLoaded, state);
    const auto version = firstValue(record, attribute::version);
    description.set(service::version, version.value_or(std::string(service::unknown)));
    // The index is the length of the version text, on purpose: the service counts the same way, and the code
    // of the call that changes a connector's state is made from it.
    if (version) description.set(service::index, characterCount(*version));
    const std::string none(service::notAvailable);
    description.set(service::configAvailable, firstValue(record, attribute::configAvailable).value_or(none));
    description.set(service::configFile, firstValue(record, attribute::configFile).value_or(none));
    return description;
}

// Each name is asked for once: a plug-in that answers differently every time must not confuse the sorting.
void ServicesList::sortByName() {
    std::vector<std::pair<std::string, std::shared_ptr<plugins::PluginItem>>> named;
    for (const auto& item : *items_)
        named.emplace_back(item->pluginName(), item);
    std::ranges::stable_sort(named, [](const auto& a, const auto& b) {
        return util::compareCaseInsensitively(a.first, b.first) < 0;
    });
    std::ranges::transform(named, items_->begin(), [](const auto& each) { return each.second; });
}

std::shared_ptr<plugins::PluginItem> ServicesList::pluginWithPrefix(const std::string& prefix) const {
    if (!items_) return nullptr;
    const auto found =
        std::ranges::find_if(*items_, [&](const auto& item) { return item->pluginPrefix() == prefix; });
    return found == items_->end() ? nullptr : *found;
}

std::shared_ptr<plugins::PluginItem> ServicesList::pluginWithName(const std::string& name) const {
    if (!items_) return nullptr;
    const auto found =
        std::ranges::find_if(*items_, [&](const auto& item) { return item->pluginName() == name; });
    return found == items_->end() ? nullptr : *found;
}

std::optional<std::string> ServicesList::pluginVersionWithPrefix(const std::string& prefix) const {
    if (const auto item = pluginWithPrefix(prefix)) return item->pluginVersion();
    const auto* description = reportedWithPrefix(prefix);
    return description == nullptr ? std::nullopt : std::optional(description->textForKey(service::version));
}

bool ServicesList::isPluginEnabled(const std::string& prefix) const {
    if (const auto item = pluginWithPrefix(prefix)) return item->isEnabled();
    const auto* description = reportedWithPrefix(prefix);
    return description != nullptr && description->textForKey(service::userSetLoaded) == service::active;
}

const util::Dictionary* ServicesList::reportedWithPrefix(const std::string& prefix) const {
    if (!reported_) return nullptr;
    const auto found = std::ranges::find_if(
        *reported_, [&](const auto& each) { return each.textForKey(service::name) == prefix; });
    return found == reported_->end() ? nullptr : &*found;
}

void ServicesList::setPluginEnabled(const std::string& prefix, bool enabled) {
    if (const auto item = pluginWithPrefix(prefix)) {
        item->setEnabled(enabled);
        (void)item->saveEnableState(); // callers get no answer; the table shows what was requested
    }
    needs_.reloadPluginTable();
}

} // namespace corvane::services
