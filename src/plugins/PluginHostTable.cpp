#include "plugins/PluginHostTable.h"

#include <algorithm>
#include <exception>

namespace corvane::plugins {
namespace {

std::string textOrNone(const char* text) { return text == nullptr ? "" : text; }

} // namespace

/// Every entry has the same three steps: find the object behind the context, call it, and answer `otherwise`
/// with a line in the log when the host itself fails.
struct PluginHostTable::Entry {
    static PluginHostTable& at(void* context) { return *static_cast<PluginHostTable*>(context); }

    template <typename Result, typename Body>
    static Result run(void* context, Result otherwise, Body body) noexcept {
        auto& self = at(context);
        try {
            return body(*self.implementor_);
        } catch (const std::exception& failure) {
            self.implementor_->log("call of plug-in " + self.pluginName_ + " failed: " + failure.what());
        }
        return otherwise;
    }
};

PluginHostTable::PluginHostTable(std::shared_ptr<PluginAPIImplementor> implementor, std::string pluginName)
    : implementor_(std::move(implementor)), pluginName_(std::move(pluginName)) {
    table_.size = sizeof table_;
    table_.version = CORVANE_PLUGIN_VERSION;
    table_.context = this;
    fillMessages();
    fillAuthorization();
    fillEnabledState();
}

void PluginHostTable::fillMessages() {
    table_.log = [](void* context, const char* line) {
        Entry::run(context, 0, [&](PluginAPIImplementor& api) {
            return api.log(Entry::at(context).pluginName_ + ": " + textOrNone(line)), 0;
        });
    };
    table_.pluginFailed = [](void* context, const char* operation, const char* reason) {
        Entry::run(context, 0, [&](PluginAPIImplementor& api) {
            return api.pluginFailed(Entry::at(context).pluginName_, textOrNone(operation),
                                    textOrNone(reason)),
                   0;
        });
    };
    table_.markDirty = [](void* context) {
        Entry::run(context, 0, [](PluginAPIImplementor& api) { return api.markDirty(), 0; });
    };
}

void PluginHostTable::fillAuthorization() {
    table_.isRemote = [](void* context) {
        return Entry::run(context, int8_t{0},
                          [](PluginAPIImplementor& api) { return int8_t{api.isRemote()}; });
    };
    table_.preflightAuthRights = [](void* context) {
        return Entry::run(context, int8_t{0},
                          [](PluginAPIImplementor& api) { return int8_t{api.preflightAuthRights()}; });
    };
    table_.makeAuthExternalForm = [](void* context, uint8_t* octets) {
        return Entry::run(context, int32_t{-1}, [&](PluginAPIImplementor& api) {
            util::AuthorizationExternalForm form;
            const auto status = api.makeAuthExternalForm(form);
            std::ranges::copy(form.bytes, octets);
            return status;
        });
    };
}

void PluginHostTable::fillEnabledState() {
    table_.pluginEnableStateChanged = [](void* context, const char* name, int8_t enabled) {
        Entry::run(context, 0, [&](PluginAPIImplementor& api) {
            return api.pluginEnableStateChanged(textOrNone(name), enabled != 0), 0;
        });
    };
    table_.isPluginEnabled = [](void* context, const char* prefix) {
        return Entry::run(context, int8_t{0}, [&](PluginAPIImplementor& api) {
            return int8_t{api.isPluginEnabled(textOrNone(prefix))};
        });
    };
    table_.setPluginEnabled = [](void* context, const char* prefix, int8_t enabled) {
        Entry::run(context, 0, [&](PluginAPIImplementor& api) {
            return api.setPluginEnabled(textOrNone(prefix), enabled != 0), 0;
        });
    };
}

} // namespace corvane::plugins
