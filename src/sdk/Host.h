#pragma once

#include <array>
#include <optional>
#include <type_traits>

#include "Object.h"

namespace corvane::sdk {

/// The authorization's external form: as good as a password, so it is overwritten when it is destroyed.
class AuthorizationForm {
public:
    AuthorizationForm() = default;
    AuthorizationForm(const AuthorizationForm&) = delete;
    AuthorizationForm& operator=(const AuthorizationForm&) = delete;
    ~AuthorizationForm() {
        for (auto& byte : bytes_)
            const_cast<volatile std::uint8_t&>(byte) = 0;
    }
    [[nodiscard]] std::uint8_t* data() { return bytes_.data(); }
    [[nodiscard]] const std::uint8_t* data() const { return bytes_.data(); }

private:
    std::array<std::uint8_t, 32> bytes_{};
};

/// The host as a C++ object: each operation of CorvaneHost under the same name. A small handle; copy it
/// freely, for as long as the plug-in object lives. Operations on nodes throw `CallError`; an operation that
/// the running host is too old for answers its nothing. Main thread.
class Host {
public:
    Host() = default;
    explicit Host(const CorvaneHost& host) : host_(&host) {}
    explicit operator bool() const { return host_ != nullptr; }
    [[nodiscard]] const CorvaneHost& table() const { return *host_; }
    /// The running host knows this entry of its own table, or of one of those that it points to.
    template <typename Table, typename Function>
    [[nodiscard]] bool offers(Function Table::*entry) const {
        if (host_ == nullptr) return false;
        if constexpr (isLater<Table>)
            if (!sdk::offers(*host_, pointerTo<Table>())) return false;
        return sdk::offers(tableWith(entry), entry);
    }

    // Values
    [[nodiscard]] Object string(std::string_view text) const {
        return value(objects().makeString(text.data(), text.size()));
    }
    [[nodiscard]] Object integer(std::int64_t number) const { return value(objects().makeInteger(number)); }
    [[nodiscard]] Object real(double number) const { return value(objects().makeReal(number)); }
    [[nodiscard]] Object boolean(bool truth) const { return value(objects().makeBoolean(truth ? 1 : 0)); }
    [[nodiscard]] Object date(double secondsSince1970) const {
        return value(objects().makeDate(secondsSince1970));
    }
    /// Copied; the copy is overwritten when its last reference is released.
    [[nodiscard]] Object data(std::span<const std::uint8_t> bytes) const {
        return value(objects().makeData(bytes.data(), bytes.size()));
    }
    [[nodiscard]] Object array() const { return value(objects().makeArray()); }
    [[nodiscard]] Object array(const std::vector<std::string>& texts) const {
        auto made = array();
        for (const auto& text : texts)
            made.append(string(text));
        return made;
    }
    [[nodiscard]] Object dictionary() const { return value(objects().makeDictionary()); }

    // Messages
    void log(const std::string& line) const { tell(&CorvaneHost::log, line.c_str()); }
    void markDirty(void* sender = nullptr) const { tell(&CorvaneHost::markDirty, sender); }
    void pluginEnableStateChanged(const std::string& name, bool to) const {
        tell(&CorvaneHost::pluginEnableStateChanged, name.c_str(), truth(to));
    }

    // Authorization
    [[nodiscard]] bool preflightDSRef() const { return ask(&CorvaneHost::preflightDSRef); }
    [[nodiscard]] bool preflightAuthRights() const { return ask(&CorvaneHost::preflightAuthRights); }
    /// 0 on success.
    [[nodiscard]] std::int32_t makeAuthExternalForm(AuthorizationForm& form) const {
        return answer(std::int32_t{-1}, &CorvaneHost::makeAuthExternalForm, form.data());
    }
    void setAuthorizationForHaldenCAction(const CorvaneAction& action) const {
        tell(&CorvaneHost::setAuthorizationForHaldenCAction, &action);
    }
    [[nodiscard]] Object authorization() const { return get(&CorvaneHost::authorization); }
    [[nodiscard]] std::uint64_t authorizationRef() const {
        return answer(std::uint64_t{0}, &CorvaneHost::authorizationRef);
    }

    // The directory service
    [[nodiscard]] Object haldenSession() const { return get(&CorvaneHost::haldenSession); }
    [[nodiscard]] Object haldenConfigNode() const { return get(&CorvaneHost::haldenConfigNode); }
    [[nodiscard]] std::uint32_t dsRef() const { return answer(std::uint32_t{0}, &CorvaneHost::dsRef); }
    [[nodiscard]] std::uint32_t configureNodeRef() const {
        return answer(std::uint32_t{0}, &CorvaneHost::configureNodeRef);
    }
    [[nodiscard]] bool isRemote() const { return ask(&CorvaneHost::isRemote); }

    // The machine
    [[nodiscard]] Object networkSets() const { return get(&CorvaneHost::networkSets); }
    [[nodiscard]] Object currentNetworkSet() const { return get(&CorvaneHost::currentNetworkSet); }
    [[nodiscard]] std::string hostName() const { return get(&CorvaneHost::hostName).text(); }
    [[nodiscard]] std::optional<std::string> osVersion() const {
        return optional(get(&CorvaneHost::osVersion));
    }
    [[nodiscard]] bool legacyDS() const { return ask(&CorvaneHost::legacyDS); }

    // Formatters
    [[nodiscard]] Object numberFormatEnforcer() const { return get(&CorvaneHost::numberFormatEnforcer); }
    [[nodiscard]] Object ipv4AddressFormatter() const { return get(&CorvaneHost::ipv4AddressFormatter); }
    [[nodiscard]] Object validCharacterFormatter(const std::string& characters) const {
        return get(&CorvaneHost::validCharacterFormatter, characters.c_str());
    }
    [[nodiscard]] Object characterRangeFormatter(const std::vector<CorvaneCharacterRange>& ranges) const {
        return get(&CorvaneHost::characterRangeFormatter, ranges.data(),
                   static_cast<std::uint32_t>(ranges.size()));
    }

    // Search policies
    void reloadSearchPolicies() const { tell(&CorvaneHost::reloadSearchPolicies); }
    [[nodiscard]] bool saveSearchPolicies() const { return ask(&CorvaneHost::saveSearchPolicies); }
    [[nodiscard]] bool isNodeOnAuthSearchPolicy(const std::string& node) const {
        return ask(&CorvaneHost::isNodeOnAuthSearchPolicy, node.c_str());
    }
    [[nodiscard]] bool isNodeOnContactsSearchPolicy(const std::string& node) const {
        return ask(&CorvaneHost::isNodeOnContactsSearchPolicy, node.c_str());
    }
    void addNodeToAuthSearchPolicy(const std::string& node) const {
        tell(&CorvaneHost::addNodeToAuthSearchPolicy, node.c_str());
    }
    void addNodeToContactsSearchPolicy(const std::string& node) const {
        tell(&CorvaneHost::addNodeToContactsSearchPolicy, node.c_str());
    }
    void deleteNodeFromAuthSearchPolicy(const std::string& node) const {
        tell(&CorvaneHost::deleteNodeFromAuthSearchPolicy, node.c_str());
    }
    void deleteNodeFromContactsSearchPolicy(const std::string& node) const {
        tell(&CorvaneHost::deleteNodeFromContactsSearchPolicy, node.c_str());
    }
    void deleteNodesFromAuthSearchPolicyWithPrefix(const std::string& prefix) const {
        tell(&CorvaneHost::deleteNodesFromAuthSearchPolicyWithPrefix, prefix.c_str());
    }
    void deleteNodesFromContactsSearchPolicyWithPrefix(const std::string& prefix) const {
        tell(&CorvaneHost::deleteNodesFromContactsSearchPolicyWithPrefix, prefix.c_str());
    }
    void nodeNameChanged(const std::string& from, const std::string& to) const {
        tell(&CorvaneHost::nodeNameChanged, from.c_str(), to.c_str());
    }

    // Connectors
    [[nodiscard]] std::optional<std::string> pluginVersionWithPrefix(const std::string& prefix) const {
        return optional(get(&CorvaneHost::pluginVersionWithPrefix, prefix.c_str()));
    }
    [[nodiscard]] bool isPluginEnabled(const std::string& prefix) const {
        return ask(&CorvaneHost::isPluginEnabled, prefix.c_str());
    }
    void setPluginEnabled(const std::string& prefix, bool enabled) const {
        tell(&CorvaneHost::setPluginEnabled, prefix.c_str(), truth(enabled));
    }

    // Sessions and nodes
    [[nodiscard]] Object nodeWithName(const Object& session, const std::string& name) const {
        return checked(
            [&](CorvaneObject** e) { return directory().nodeWithName(session.get(), name.c_str(), e); });
    }
    [[nodiscard]] std::vector<std::string> nodeNames(const Object& session) const {
        return checked([&](CorvaneObject** e) { return directory().nodeNames(session.get(), e); }).texts();
    }
    /// For one key, or all with an empty one.
    [[nodiscard]] Object nodeDetails(const Object& node, const std::string& key = "") const {
        const char* wanted = key.empty() ? nullptr : key.c_str();
        return checked([&](CorvaneObject** e) { return directory().nodeDetails(node.get(), wanted, e); });
    }
    [[nodiscard]] std::vector<std::string> subnodeNames(const Object& node) const {
        return checked([&](CorvaneObject** e) { return directory().subnodeNames(node.get(), e); }).texts();
    }
    /// `name` "" stands for all records, no `attributes` for all of them, `maximum` 0 for any number.
    [[nodiscard]] Object records(const Object& node, const std::string& recordType, const std::string& name,
                                 const std::vector<std::string>& attributes, std::uint32_t maximum) const {
        const char* wanted = name.empty() ? nullptr : name.c_str();
        const auto names = array(attributes);
        return checked([&](CorvaneObject** e) {
            return directory().records(node.get(), recordType.c_str(), wanted, names.get(), maximum, e);
        });
    }
    /// What the service behind the configuration node knows.
    [[nodiscard]] std::vector<std::string> standardRecordTypes(const Object& configNode) const {
        return listOf(&CorvaneDirectory::standardRecordTypes, configNode);
    }
    [[nodiscard]] std::vector<std::string> standardAttributeTypes(const Object& configNode) const {
        return listOf(&CorvaneDirectory::standardAttributeTypes, configNode);
    }
    /// The reply's bytes as data, or none.
    [[nodiscard]] Object customCall(const Object& node, std::int32_t code,
                                    std::span<const std::uint8_t> request) const {
        return checked([&](CorvaneObject** e) {
            return directory().customCall(node.get(), code, request.data(), request.size(), e);
        });
    }
    [[nodiscard]] Object customCallSendPropertyList(const Object& node, std::int32_t code,
                                                    const Object& propertyList,
                                                    const AuthorizationForm& form) const {
        return checked([&](CorvaneObject** e) {
            return directory().customCallSendPropertyList(node.get(), code, propertyList.get(), form.data(),
                                                          e);
        });
    }
    /// The value that data holds; throws `CallError` when it holds none.
    [[nodiscard]] Object propertyListFromData(const Object& data) const {
        return checked([&](CorvaneObject** e) {
            return offers(&CorvaneHost::propertyListFromData)
                       ? host_->propertyListFromData(host_->context, data.get(), e)
                       : nullptr;
        });
    }

private:
    /// Tables that a host of an earlier release doesn't point to.
    template <typename Table>
    static constexpr bool isLater =
        std::is_same_v<Table, CorvaneForms> || std::is_same_v<Table, CorvaneTasks> ||
        std::is_same_v<Table, CorvaneSettings>;
    template <typename Table>
    [[nodiscard]] static constexpr auto pointerTo() {
        if constexpr (std::is_same_v<Table, CorvaneForms>)
            return &CorvaneHost::forms;
        else if constexpr (std::is_same_v<Table, CorvaneTasks>)
            return &CorvaneHost::tasks;
        else
            return &CorvaneHost::settings;
    }
    template <typename Table, typename Function>
    [[nodiscard]] const Table& tableWith(Function Table::* /*entry*/) const {
        if constexpr (std::is_same_v<Table, CorvaneObjects>)
            return *host_->objects;
        else if constexpr (std::is_same_v<Table, CorvaneDirectory>)
            return *host_->directory;
        else if constexpr (std::is_same_v<Table, CorvaneFormatters>)
            return *host_->formatters;
        else if constexpr (std::is_same_v<Table, CorvaneForms>)
            return *host_->forms;
        else if constexpr (std::is_same_v<Table, CorvaneTasks>)
            return *host_->tasks;
        else if constexpr (std::is_same_v<Table, CorvaneSettings>)
            return *host_->settings;
        else
            return *host_;
    }
    [[nodiscard]] const CorvaneObjects& objects() const { return *host_->objects; }
    [[nodiscard]] const CorvaneDirectory& directory() const { return *host_->directory; }
    [[nodiscard]] Object value(CorvaneObject* taken) const { return {objects(), taken}; }
    [[nodiscard]] static std::int8_t truth(bool is) { return is ? 1 : 0; }
    [[nodiscard]] static std::optional<std::string> optional(const Object& text) {
        return text ? std::optional(text.text()) : std::nullopt;
    }

    template <typename Result, typename... Parameters, typename... Arguments>
    Result answer(Result otherwise, Result (*CorvaneHost::*entry)(void*, Parameters...),
                  Arguments... arguments) const {
        return offers(entry) ? (host_->*entry)(host_->context, arguments...) : otherwise;
    }
    template <typename... Parameters, typename... Arguments>
    bool ask(std::int8_t (*CorvaneHost::*entry)(void*, Parameters...), Arguments... arguments) const {
        return answer(std::int8_t{0}, entry, arguments...) != 0;
    }
    template <typename... Parameters, typename... Arguments>
    void tell(void (*CorvaneHost::*entry)(void*, Parameters...), Arguments... arguments) const {
        if (offers(entry)) (host_->*entry)(host_->context, arguments...);
    }
    template <typename... Parameters, typename... Arguments>
    Object get(CorvaneObject* (*CorvaneHost::*entry)(void*, Parameters...), Arguments... arguments) const {
        return value(answer<CorvaneObject*>(nullptr, entry, arguments...));
    }
    [[nodiscard]] std::vector<std::string> listOf(CorvaneObject* (*CorvaneDirectory::*entry)(CorvaneObject*),
                                                  const Object& node) const {
        return offers(entry) ? value((directory().*entry)(node.get())).texts() : std::vector<std::string>();
    }
    template <typename Call>
    [[nodiscard]] Object checked(Call call) const {
        CorvaneObject* error = nullptr;
        auto answered = value(call(&error));
        if (error != nullptr) throw CallError(value(error));
        return answered;
    }

    const CorvaneHost* host_ = nullptr;
};

} // namespace corvane::sdk
