#pragma once

#include <string>
#include <type_traits>
#include <vector>

#include "Guard.h"
#include "PluginMethods.h"

// A module keeps its copies to itself, whatever options it is built with: statics of templates are otherwise
// one for the whole process, and two plug-ins with the same class name would share a table.
#pragma GCC visibility push(hidden)

/// Makes a function table out of a plain C++ class by looking at what it has. A method with the right name
/// and the wrong signature fails to compile; exceptions stay inside and are reported to the host.
///
///     class MyConnector {
///     public:
///         void setPluginAPIImplementor(const CorvaneHost& host);
///         bool canConfigure();
///     };
///     CORVANE_PLUGIN(MyConnector)
///
/// Methods a class may have: void setPluginAPIImplementor(const CorvaneHost&), std::string pluginName(),
/// bool isEnabledForLocation(const char*), bool canSetEnabledForLocation(const char*),
/// void setEnabledForLocation(bool, const char*), bool canConfigure(), void configureButtonClicked(void*),
/// bool selfTest(), void beginSelfTest(corvane::sdk::TruthTaker), bool isDirty(), bool saveChanges(), bool
/// revertChanges(), bool applicationWillQuitSavingChanges(bool), bool applicationWillLockSavingChanges(bool),
/// bool shouldAllowNodeNameOnSearchPolicy(std::string_view), std::vector<std::string> nodesToRemove(). All
/// are called on the main thread.
///
/// It may have a field that says what it is:
///     static constexpr corvane::sdk::About about{"Example", "1.0", "Jane Doe", "https://example.com"};
namespace corvane::sdk {

/// The object behind `self`.
template <typename P>
struct Instance {
    P plugin{};
    const CorvaneHost* host = nullptr;
    std::string returnedName;
    std::vector<std::string> returnedNodes;
};

template <typename P>
Instance<P>& as(void* self) noexcept {
    return *static_cast<Instance<P>*>(self);
}

// One entry of the table: filled when the class has the method in the right shape, left null when it hasn't
// the method at all, and a compile-time error in between.
#define CORVANE_SDK_ENTRY(name, condition, lambda)                                                           \
    if constexpr (condition) {                                                                               \
        table.name = lambda;                                                                                 \
    } else {                                                                                                 \
        CORVANE_SDK_LACKS(name);                                                                             \
    }

#define CORVANE_SDK_ANSWER(name, call)                                                                       \
    [](void* self) noexcept -> int8_t {                                                                      \
        return guard(as<P>(self).host, #name, int8_t{0}, [&] { return int8_t{as<P>(self).plugin.call}; });   \
    }

template <typename P>
void fillAbout(CorvanePlugin& table) {
    if constexpr (HasAbout<P>) {
        // A copy of the module's own: the class's field may be one for the whole process.
        static constexpr CorvaneAbout kept = P::about;
        table.about = &kept;
    } else {
        CORVANE_SDK_LACKS(about);
    }
}

template <typename P>
void fillLifetime(CorvanePlugin& table) {
    table.create = [](CorvaneReasonTaker takeReason, void* context) noexcept -> void* {
        try {
            return new Instance<P>();
        } catch (const std::exception& failure) {
            takeReason(context, failure.what());
        } catch (...) {
            takeReason(context, "an unknown exception");
        }
        return nullptr;
    };
    table.destroy = [](void* self) noexcept { delete static_cast<Instance<P>*>(self); };
    // Always there: the guard itself needs the host to report to.
    table.setPluginAPIImplementor = [](void* self, const CorvaneHost* host) noexcept {
        as<P>(self).host = host;
        if constexpr (HasSetHost<P>) {
            guard(host, "setPluginAPIImplementor", 0,
                  [&] { return as<P>(self).plugin.setPluginAPIImplementor(*host), 0; });
        } else {
            CORVANE_SDK_LACKS(setPluginAPIImplementor);
        }
    };
}

template <typename P>
void fillEnabledState(CorvanePlugin& table) {
    CORVANE_SDK_ENTRY(
        isEnabledForLocation, HasIsEnabledForLocation<P>, ([](void* self, const char* location) noexcept {
            return guard(as<P>(self).host, "isEnabledForLocation", int8_t{0},
                         [&] { return int8_t{as<P>(self).plugin.isEnabledForLocation(location)}; });
        }));
    CORVANE_SDK_ENTRY(
        canSetEnabledForLocation, HasCanSetEnabled<P>, ([](void* self, const char* location) noexcept {
            return guard(as<P>(self).host, "canSetEnabledForLocation", int8_t{0},
                         [&] { return int8_t{as<P>(self).plugin.canSetEnabledForLocation(location)}; });
        }));
    CORVANE_SDK_ENTRY(
        setEnabledForLocation, HasSetEnabled<P>, ([](void* self, int8_t on, const char* location) noexcept {
            guard(as<P>(self).host, "setEnabledForLocation", 0,
                  [&] { return as<P>(self).plugin.setEnabledForLocation(on != 0, location), 0; });
        }));
}

template <typename P>
void fillConfiguration(CorvanePlugin& table) {
    CORVANE_SDK_ENTRY(pluginName, HasPluginName<P>, ([](void* self) noexcept {
                          auto& instance = as<P>(self);
                          constexpr const char* none = nullptr;
                          return guard(instance.host, "pluginName", none, [&] {
                              return (instance.returnedName = instance.plugin.pluginName()).c_str();
                          });
                      }));
    CORVANE_SDK_ENTRY(
        canConfigure,
        requires(P & p) {
            { p.canConfigure() } -> std::same_as<bool>;
        },
        (CORVANE_SDK_ANSWER(canConfigure, canConfigure())))
    CORVANE_SDK_ENTRY(configureButtonClicked, HasConfigureButtonClicked<P>,
                      ([](void* self, void* sender) noexcept {
                          guard(as<P>(self).host, "configureButtonClicked", 0,
                                [&] { return as<P>(self).plugin.configureButtonClicked(sender), 0; });
                      }));
    CORVANE_SDK_ENTRY(
        selfTest,
        requires(P & p) {
            { p.selfTest() } -> std::same_as<bool>;
        },
        (CORVANE_SDK_ANSWER(selfTest, selfTest())))
    CORVANE_SDK_ENTRY(beginSelfTest, HasBeginSelfTest<P>,
                      ([](void* self, CorvaneTruthTaker finished, void* context) noexcept {
                          guard(as<P>(self).host, "beginSelfTest", 0, [&] {
                              return as<P>(self).plugin.beginSelfTest(TruthTaker{finished, context}), 0;
                          });
                      }));
}

template <typename P>
void fillSaving(CorvanePlugin& table) {
    CORVANE_SDK_ENTRY(
        isDirty,
        requires(P & p) {
            { p.isDirty() } -> std::same_as<bool>;
        },
        (CORVANE_SDK_ANSWER(isDirty, isDirty())))
    CORVANE_SDK_ENTRY(
        saveChanges,
        requires(P & p) {
            { p.saveChanges() } -> std::same_as<bool>;
        },
        (CORVANE_SDK_ANSWER(saveChanges, saveChanges())))
    CORVANE_SDK_ENTRY(
        revertChanges,
        requires(P & p) {
            { p.revertChanges() } -> std::same_as<bool>;
        },
        (CORVANE_SDK_ANSWER(revertChanges, revertChanges())))
    CORVANE_SDK_ENTRY(applicationWillQuitSavingChanges, HasQuitAnswer<P>,
                      ([](void* self, int8_t save) noexcept {
                          return guard(as<P>(self).host, "applicationWillQuitSavingChanges", int8_t{0}, [&] {
                              return int8_t{as<P>(self).plugin.applicationWillQuitSavingChanges(save != 0)};
                          });
                      }));
    CORVANE_SDK_ENTRY(applicationWillLockSavingChanges, HasLockAnswer<P>,
                      ([](void* self, int8_t save) noexcept {
                          return guard(as<P>(self).host, "applicationWillLockSavingChanges", int8_t{0}, [&] {
                              return int8_t{as<P>(self).plugin.applicationWillLockSavingChanges(save != 0)};
                          });
                      }));
    CORVANE_SDK_ENTRY(
        shouldAllowNodeNameOnSearchPolicy, HasAdmission<P>, ([](void* self, const char* name) noexcept {
            return guard(as<P>(self).host, "shouldAllowNodeNameOnSearchPolicy", int8_t{0},
                         [&] { return int8_t{as<P>(self).plugin.shouldAllowNodeNameOnSearchPolicy(name)}; });
        }));
}

template <typename P>
void fillRemoval(CorvanePlugin& table) {
    CORVANE_SDK_ENTRY(nodesToRemove, HasNodesToRemove<P>, ([](void* self, uint32_t index) noexcept {
                          auto& instance = as<P>(self);
                          constexpr const char* none = nullptr;
                          return guard(instance.host, "nodesToRemove", none, [&] {
                              if (index == 0) instance.returnedNodes = instance.plugin.nodesToRemove();
                              const auto& nodes = instance.returnedNodes;
                              return index < nodes.size() ? nodes[index].c_str() : none;
                          });
                      }));
}

#undef CORVANE_SDK_ENTRY
#undef CORVANE_SDK_ANSWER
#undef CORVANE_SDK_LACKS
#undef CORVANE_SDK_NONE

/// The class's table, made on first use and kept for the life of the process.
template <std::default_initializable P>
const CorvanePlugin* tableFor() noexcept {
    static const CorvanePlugin table = [] {
        CorvanePlugin made{};
        made.size = sizeof made;
        made.version = CORVANE_PLUGIN_VERSION;
        refuseMisspeltMethods<P>();
        fillAbout<P>(made);
        fillLifetime<P>(made);
        fillEnabledState<P>(made);
        fillConfiguration<P>(made);
        fillSaving<P>(made);
        fillRemoval<P>(made);
        return made;
    }();
    return &table;
}

/// The same for a host that can use it; null for any other.
template <std::default_initializable P>
const CorvanePlugin* tableForHost(const CorvaneHandshake* host) noexcept {
    const bool fits =
        host->oldestVersion <= CORVANE_PLUGIN_VERSION && CORVANE_PLUGIN_VERSION <= host->newestVersion;
    return fits ? tableFor<P>() : nullptr;
}

} // namespace corvane::sdk
#pragma GCC visibility pop

/// Exports `Class` as the plug-in of this module. Once per module, at file scope.
#define CORVANE_PLUGIN(Class)                                                                                \
    CORVANE_EXPORT const CorvanePlugin* corvane_plugin_for_host(const CorvaneHandshake* host) {              \
        return corvane::sdk::tableForHost<Class>(host);                                                      \
    }
