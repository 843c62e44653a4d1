#include "plugins/PluginHostTable.h"

#include <algorithm>
#include <exception>

#include "plugins/HostObject.h"
#include "plugins/ReceivedText.h"

namespace corvane::plugins {
namespace {

CorvaneObject* reference(const std::optional<std::string>& text) {
    return text ? newReference(util::String(*text)) : nullptr;
}

/// A plug-in's action, behind its table.
class TableAction final : public HaldenCAction {
public:
    explicit TableAction(const CorvaneAction& action) : action_(action) {}
    void setAuth(std::shared_ptr<platform::Authorization> authorization) override {
        // Released even when the plug-in's setter throws.
        const std::unique_ptr<CorvaneObject, void (*)(CorvaneObject*)> passed(
            newReference(std::move(authorization)), hostObjectsTable().release);
        action_.setAuth(action_.self, passed.get());
    }
    void setRemoteAuthExtForm(const util::AuthorizationExternalForm& form) override {
        action_.setRemoteAuthExtForm(action_.self, form.bytes.data());
    }
    [[nodiscard]] static bool accepts(const CorvaneAction* action) {
        // Not the whole table's size: a plug-in may be older than its latest entries.
        return action != nullptr && CORVANE_OFFERS(CorvaneAction, action, setAuth) &&
               CORVANE_OFFERS(CorvaneAction, action, setRemoteAuthExtForm);
    }

private:
    const CorvaneAction& action_;
};

/// None for a range that is none.
std::optional<util::CharacterSet> setOf(const CorvaneCharacterRange* ranges, uint32_t count) {
    constexpr uint32_t lastCharacter = 0x10FFFF;
    util::CharacterSet set;
    for (uint32_t i = 0; ranges != nullptr && i < count; ++i) {
        const auto [first, last] = ranges[i];
        if (first > last || last > lastCharacter) return std::nullopt;
        set = set.unitedWith(util::CharacterSet::range(first, last - first + 1));
    }
    return set;
}

} // namespace

/// Every entry has the same steps: find the object behind the context, see that the caller is on its thread,
/// call it, and answer `otherwise` with a line in the log when the host itself fails.
struct PluginHostTable::Entry {
    static PluginHostTable& at(void* context) { return *static_cast<PluginHostTable*>(context); }
    /// A text of the plug-in's, "" for null.
    static std::string text(void* context, const char* text) {
        return text == nullptr ? "" : receivedText::repaired(std::string_view(text), at(context).pluginName_);
    }
    static std::optional<std::string> optionalText(void* context, const char* text) {
        return text == nullptr ? std::nullopt : std::optional(Entry::text(context, text));
    }

    template <typename Result, typename Body>
    static Result run(void* context, Result otherwise, Body body) noexcept {
        auto& self = at(context);
        try {
            if (self.thread_ == std::this_thread::get_id()) return body(*self.implementor_);
            self.implementor_->log("plug-in " + self.pluginName_ +
                                   " called from another thread than the main one, and was refused");
        } catch (const std::exception& failure) {
            self.implementor_->log("call of plug-in " + self.pluginName_ + " failed: " + failure.what());
        } catch (...) { // out of an action of the plug-in's
            self.implementor_->log("call of plug-in " + self.pluginName_ + " failed: unknown exception");
        }
        return otherwise;
    }
    template <typename Body>
    static CorvaneObject* get(void* context, Body body) noexcept {
        return run<CorvaneObject*>(context, nullptr, body);
    }
    template <typename Body>
    static int8_t ask(void* context, Body body) noexcept {
        return run(context, int8_t{0}, [&](PluginAPIImplementor& api) { return int8_t{body(api)}; });
    }
    template <typename Body>
    static void tell(void* context, Body body) noexcept {
        run(context, 0, [&](PluginAPIImplementor& api) { return body(api), 0; });
    }
};

PluginHostTable::PluginHostTable(std::shared_ptr<PluginAPIImplementor> implementor, std::string pluginName)
    : implementor_(std::move(implementor)), pluginName_(std::move(pluginName)) {
    receivedText::logTo(implementor_);
    table_.size = sizeof table_;
    table_.version = CORVANE_PLUGIN_VERSION;
    table_.context = this;
    table_.objects = &hostObjectsTable();
    table_.directory = &hostDirectoryTable();
    table_.formatters = &hostFormattersTable();
    table_.forms = &hostFormsTable();
    table_.tasks = &hostTasksTable();
    table_.settings = &hostSettingsTable();
    fillMessages();
    fillAuthorization();
    fillDirectory();
    fillMachine();
    fillFormatters();
    fillPolicyQuestions();
    fillPolicyChanges();
    fillEnabledState();
    fillVersions();
}

void PluginHostTable::fillMessages() {
    table_.log = [](void* context, const char* line) {
        Entry::tell(context, [&](PluginAPIImplementor& api) {
            api.log(Entry::at(context).pluginName_ + ": " + Entry::text(context, line));
        });
    };
    table_.pluginFailed = [](void* context, const char* operation, const char* reason) {
        Entry::tell(context, [&](PluginAPIImplementor& api) {
            api.services().pluginFailed(Entry::at(context).pluginName_, Entry::text(context, operation),
                                        Entry::text(context, reason));
        });
    };
    table_.markDirty = [](void* context, void* /*sender*/) {
        Entry::tell(context, [](PluginAPIImplementor& api) { api.services().setPluginModified(true); });
    };
    table_.propertyListFromData = [](void* context, const CorvaneObject* data, CorvaneObject** error) {
        return Entry::get(context, [&](PluginAPIImplementor& api) {
            std::string reason;
            const auto bytes = valueOf(data).as<util::Data>();
            const auto value = api.propertyLists().parse(bytes.bytes(), &reason);
            if (value.isNull())
                report({halden::ErrorCode::parameter, "The data isn't a property list.", reason, ""}, error);
            return newReference(value);
        });
    };
}

void PluginHostTable::fillAuthorization() {
    table_.preflightDSRef = [](void* context) {
        return Entry::ask(context,
                          [](PluginAPIImplementor& api) { return api.authorization().preflightDSRef(); });
    };
    table_.preflightAuthRights = [](void* context) {
        return Entry::ask(
            context, [](PluginAPIImplementor& api) { return api.authorization().preflightAuthRights(); });
    };
    table_.makeAuthExternalForm = [](void* context, uint8_t* bytes) {
        return Entry::run(context, int32_t{-1}, [&](PluginAPIImplementor& api) {
            util::AuthorizationExternalForm form;
            const auto status = api.authorization().makeAuthExternalForm(form);
            std::ranges::copy(form.bytes, bytes);
            return status;
        });
    };
    table_.setAuthorizationForHaldenCAction = [](void* context, const CorvaneAction* action) {
        Entry::tell(context, [&](PluginAPIImplementor& api) {
            if (!TableAction::accepts(action))
                return api.log("plug-in " + Entry::at(context).pluginName_ +
                               " passed an action that can't take an authorization");
            TableAction wrapped(*action);
            api.setAuthorizationForHaldenCAction(wrapped);
        });
    };
    table_.authorization = [](void* context) {
        return Entry::get(context, [](PluginAPIImplementor& api) {
            return newReference(api.authorization().authorization());
        });
    };
    table_.authorizationRef = [](void* context) {
        return Entry::run(context, uint64_t{0}, [](PluginAPIImplementor& api) {
            return uint64_t{api.authorization().authorizationRef()};
        });
    };
}

void PluginHostTable::fillDirectory() {
    table_.haldenSession = [](void* context) {
        return Entry::get(context, [](PluginAPIImplementor& api) {
            return newReference(HostSession{api.connection().haldenSession(), &api.propertyLists()});
        });
    };
    table_.haldenConfigNode = [](void* context) {
        return Entry::get(context, [](PluginAPIImplementor& api) {
            return newReference(HostNode{api.connection().haldenConfigNode(), &api.propertyLists()});
        });
    };
    // For plug-ins written against an older directory interface, which this program doesn't have.
    table_.dsRef = [](void* context) {
        return Entry::run(context, uint32_t{0}, [](PluginAPIImplementor& /*api*/) { return uint32_t{0}; });
    };
    table_.configureNodeRef = table_.dsRef;
    table_.isRemote = [](void* context) {
        return Entry::ask(context, [](PluginAPIImplementor& api) { return api.connection().isRemote(); });
    };
}

void PluginHostTable::fillMachine() {
    table_.networkSets = [](void* context) {
        return Entry::get(
            context, [](PluginAPIImplementor& api) { return newReference(api.machine().networkSets()); });
    };
    table_.currentNetworkSet = [](void* context) {
        return Entry::get(context, [](PluginAPIImplementor& api) {
            return newReference(api.machine().currentNetworkSet());
        });
    };
    table_.hostName = [](void* context) {
        return Entry::get(context, [](PluginAPIImplementor& api) {
            return newReference(util::String(api.machine().hostName()));
        });
    };
}

void PluginHostTable::fillFormatters() {
    table_.numberFormatEnforcer = [](void* context) {
        return Entry::get(context, [](PluginAPIImplementor& api) {
            return newReference(std::shared_ptr<toolkit::Formatter>(api.numberFormatEnforcer()));
        });
    };
    table_.ipv4AddressFormatter = [](void* context) {
        return Entry::get(context, [](PluginAPIImplementor& api) {
            return newReference(std::shared_ptr<toolkit::Formatter>(api.ipv4AddressFormatter()));
        });
    };
    table_.validCharacterFormatter = [](void* context, const char* characters) {
        return Entry::get(context, [&](PluginAPIImplementor& api) {
            auto set = std::make_shared<const util::CharacterSet>(
                util::CharacterSet::charactersOf(Entry::text(context, characters)));
            return newReference(std::shared_ptr<toolkit::Formatter>(api.validCharacterFormatter(set)));
        });
    };
    table_.characterRangeFormatter = [](void* context, const CorvaneCharacterRange* ranges, uint32_t count) {
        return Entry::get(context, [&](PluginAPIImplementor& api) -> CorvaneObject* {
            auto set = setOf(ranges, count);
            if (!set) return nullptr;
            return newReference(std::shared_ptr<toolkit::Formatter>(
                api.validCharacterFormatter(std::make_shared<const util::CharacterSet>(std::move(*set)))));
        });
    };
}

void PluginHostTable::fillPolicyQuestions() {
    table_.reloadSearchPolicies = [](void* context) {
        Entry::tell(context, [](PluginAPIImplementor& api) { api.policies().reloadSearchPolicies(); });
    };
    table_.saveSearchPolicies = [](void* context) {
        return Entry::ask(context,
                          [](PluginAPIImplementor& api) { return api.policies().saveSearchPolicies(); });
    };
    table_.isNodeOnAuthSearchPolicy = [](void* context, const char* nodeName) {
        return Entry::ask(context, [&](PluginAPIImplementor& api) {
            return api.policies().authenticationPolicy().isNodeOnSearchPolicy(Entry::text(context, nodeName));
        });
    };
    table_.isNodeOnContactsSearchPolicy = [](void* context, const char* nodeName) {
        return Entry::ask(context, [&](PluginAPIImplementor& api) {
            return api.policies().contactsPolicy().isNodeOnSearchPolicy(Entry::text(context, nodeName));
        });
    };
}

// A null name or prefix changes nothing: an empty prefix would fit every node.
void PluginHostTable::fillPolicyChanges() {
    table_.addNodeToAuthSearchPolicy = [](void* context, const char* nodeName) {
        Entry::tell(context, [&](PluginAPIImplementor& api) {
            if (nodeName != nullptr)
                api.policies().authenticationPolicy().addNode(Entry::text(context, nodeName));
        });
    };
    table_.addNodeToContactsSearchPolicy = [](void* context, const char* nodeName) {
        Entry::tell(context, [&](PluginAPIImplementor& api) {
            if (nodeName != nullptr) api.policies().contactsPolicy().addNode(Entry::text(context, nodeName));
        });
    };
    table_.deleteNodeFromAuthSearchPolicy = [](void* context, const char* nodeName) {
        Entry::tell(context, [&](PluginAPIImplementor& api) {
            if (nodeName != nullptr)
                api.policies().authenticationPolicy().deleteNode(Entry::text(context, nodeName));
        });
    };
    table_.deleteNodeFromContactsSearchPolicy = [](void* context, const char* nodeName) {
        Entry::tell(context, [&](PluginAPIImplementor& api) {
            if (nodeName != nullptr)
                api.policies().contactsPolicy().deleteNode(Entry::text(context, nodeName));
        });
    };
    table_.deleteNodesFromAuthSearchPolicyWithPrefix = [](void* context, const char* prefix) {
        Entry::tell(context, [&](PluginAPIImplementor& api) {
            if (prefix != nullptr)
                api.policies().authenticationPolicy().deleteNodesWithPrefix(Entry::text(context, prefix));
        });
    };
    table_.deleteNodesFromContactsSearchPolicyWithPrefix = [](void* context, const char* prefix) {
        Entry::tell(context, [&](PluginAPIImplementor& api) {
            if (prefix != nullptr)
                api.policies().contactsPolicy().deleteNodesWithPrefix(Entry::text(context, prefix));
        });
    };
    table_.nodeNameChanged = [](void* context, const char* from, const char* to) {
        Entry::tell(context, [&](PluginAPIImplementor& api) {
            api.policies().nodeNameChanged(Entry::optionalText(context, from),
                                           Entry::optionalText(context, to));
        });
    };
}

void PluginHostTable::fillEnabledState() {
    // Whatever the arguments say, the services table is shown anew.
    table_.pluginEnableStateChanged = [](void* context, const char* /*name*/, int8_t /*enabled*/) {
        Entry::tell(context, [](PluginAPIImplementor& api) { api.services().reloadPluginTable(); });
    };
    table_.isPluginEnabled = [](void* context, const char* prefix) {
        return Entry::ask(context, [&](PluginAPIImplementor& api) {
            return api.services().isPluginEnabled(Entry::text(context, prefix));
        });
    };
    table_.setPluginEnabled = [](void* context, const char* prefix, int8_t enabled) {
        Entry::tell(context, [&](PluginAPIImplementor& api) {
            api.services().setPluginEnabled(Entry::text(context, prefix), enabled != 0);
        });
    };
}

void PluginHostTable::fillVersions() {
    table_.pluginVersionWithPrefix = [](void* context, const char* prefix) {
        return Entry::get(context, [&](PluginAPIImplementor& api) {
            return reference(api.services().pluginVersionWithPrefix(Entry::text(context, prefix)));
        });
    };
    table_.osVersion = [](void* context) {
        return Entry::get(context,
                          [](PluginAPIImplementor& api) { return reference(api.machine().osVersion()); });
    };
    table_.legacyDS = [](void* context) {
        return Entry::ask(context, [](PluginAPIImplementor& api) { return api.machine().legacyDS(); });
    };
}

} // namespace corvane::plugins
