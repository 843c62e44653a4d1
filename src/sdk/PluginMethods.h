#pragma once

#if __cplusplus < 202002L
#error "Corvane's C++ headers need C++20: compile with -std=c++20. PluginTable.h is also C++17 and C11."
#endif

#include <concepts>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "PluginTable.h"

/// What a plug-in's class may have, in the shape that PluginWrapper.h wants it in.
namespace corvane::sdk {

/// A plug-in's name, version, author and home page.
struct About : CorvaneAbout {
    constexpr About(const char* itsName, const char* itsVersion, const char* itsAuthor,
                    const char* itsHomePage)
        : CorvaneAbout{sizeof(CorvaneAbout), itsName, itsVersion, itsAuthor, itsHomePage} {}
};

template <typename P>
concept HasIsEnabledForLocation = requires(P& p, const char* l) {
    { p.isEnabledForLocation(l) } -> std::same_as<bool>;
};
template <typename P>
concept HasCanSetEnabled = requires(P& p, const char* l) {
    { p.canSetEnabledForLocation(l) } -> std::same_as<bool>;
};
template <typename P>
concept HasSetEnabled = requires(P& p, const char* l) {
    { p.setEnabledForLocation(true, l) } -> std::same_as<void>;
};
template <typename P>
concept HasPluginName = requires(P& p) {
    { p.pluginName() } -> std::same_as<std::string>;
};
template <typename P>
concept HasConfigureButtonClicked = requires(P& p, void* s) {
    { p.configureButtonClicked(s) } -> std::same_as<void>;
};
template <typename P>
concept HasSetHost = requires(P& p, const CorvaneHost& h) {
    { p.setPluginAPIImplementor(h) } -> std::same_as<void>;
};
template <typename P>
concept HasQuitAnswer = requires(P& p) {
    { p.applicationWillQuitSavingChanges(true) } -> std::same_as<bool>;
};
template <typename P>
concept HasLockAnswer = requires(P& p) {
    { p.applicationWillLockSavingChanges(true) } -> std::same_as<bool>;
};
template <typename P>
concept HasAdmission = requires(P& p, std::string_view n) {
    { p.shouldAllowNodeNameOnSearchPolicy(n) } -> std::same_as<bool>;
};

template <typename P>
concept HasNodesToRemove = requires(P& p) {
    { p.nodesToRemove() } -> std::same_as<std::vector<std::string>>;
};

template <typename P>
concept HasAbout = requires {
    { P::about } -> std::same_as<const About&>;
};

/// Takes the outcome of a self-test that was begun: to be called once.
struct TruthTaker {
    CorvaneTruthTaker take = nullptr;
    void* context = nullptr;
    void operator()(bool answer) const { take(context, answer ? 1 : 0); }
};
template <typename P>
concept HasBeginSelfTest = requires(P& p, TruthTaker t) {
    { p.beginSelfTest(t) } -> std::same_as<void>;
};

/// What a final class is replaced by where it would have to be inherited from.
struct Nameless {};
template <typename P>
using Inheritable = std::conditional_t<std::is_final_v<P>, Nameless, P>;

// The class has nothing of that name: neither private, nor overloaded, nor a template. If it had, `Both`
// would inherit the name twice, and its address couldn't be taken. (Of a final class only what is public is
// seen.)
#define CORVANE_SDK_NONE(name, message)                                                                      \
    struct Named {                                                                                           \
        int name;                                                                                            \
    };                                                                                                       \
    struct Both : Inheritable<P>, Named {};                                                                  \
    static_assert(                                                                                           \
        requires { &Both::name; } && !requires { &P::name; }, message)

#define CORVANE_SDK_LACKS(name) CORVANE_SDK_NONE(name, #name ": wrong signature, or not public")

// A method that nobody would ever call: its name is nearly one of the table's.
#define CORVANE_SDK_MISSPELT(wrong, right)                                                                   \
    { CORVANE_SDK_NONE(wrong, #wrong ": did you mean " #right "?"); }

template <typename P>
constexpr void refuseMisspeltMethods() {
    CORVANE_SDK_MISSPELT(setPluginApiImplementor, setPluginAPIImplementor)
    CORVANE_SDK_MISSPELT(setPlugInAPIImplementor, setPluginAPIImplementor)
    CORVANE_SDK_MISSPELT(setPluginAPIImplementer, setPluginAPIImplementor)
    CORVANE_SDK_MISSPELT(plugInName, pluginName)
    CORVANE_SDK_MISSPELT(pluginname, pluginName)
    CORVANE_SDK_MISSPELT(isEnabledAtLocation, isEnabledForLocation)
    CORVANE_SDK_MISSPELT(isEnabledforLocation, isEnabledForLocation)
    CORVANE_SDK_MISSPELT(canSetEnabledAtLocation, canSetEnabledForLocation)
    CORVANE_SDK_MISSPELT(setEnabledAtLocation, setEnabledForLocation)
    CORVANE_SDK_MISSPELT(setEnabledforLocation, setEnabledForLocation)
    CORVANE_SDK_MISSPELT(canConfig, canConfigure)
    CORVANE_SDK_MISSPELT(canconfigure, canConfigure)
    CORVANE_SDK_MISSPELT(configureButtonClick, configureButtonClicked)
    CORVANE_SDK_MISSPELT(configureButtonPressed, configureButtonClicked)
    CORVANE_SDK_MISSPELT(configureClicked, configureButtonClicked)
    CORVANE_SDK_MISSPELT(configButtonClicked, configureButtonClicked)
    CORVANE_SDK_MISSPELT(selftest, selfTest)
    CORVANE_SDK_MISSPELT(startSelfTest, beginSelfTest)
    CORVANE_SDK_MISSPELT(isdirty, isDirty)
    CORVANE_SDK_MISSPELT(saveChange, saveChanges)
    CORVANE_SDK_MISSPELT(savechanges, saveChanges)
    CORVANE_SDK_MISSPELT(revertChange, revertChanges)
    CORVANE_SDK_MISSPELT(revertchanges, revertChanges)
    CORVANE_SDK_MISSPELT(applicationWillQuit, applicationWillQuitSavingChanges)
    CORVANE_SDK_MISSPELT(applicationWillQuitSavingChange, applicationWillQuitSavingChanges)
    CORVANE_SDK_MISSPELT(applicationWillLock, applicationWillLockSavingChanges)
    CORVANE_SDK_MISSPELT(applicationWillLockSavingChange, applicationWillLockSavingChanges)
    CORVANE_SDK_MISSPELT(shouldAllowNodeOnSearchPolicy, shouldAllowNodeNameOnSearchPolicy)
    CORVANE_SDK_MISSPELT(shouldAllowNodeNameOnSearchPolicies, shouldAllowNodeNameOnSearchPolicy)
    CORVANE_SDK_MISSPELT(nodeToRemove, nodesToRemove)
    CORVANE_SDK_MISSPELT(nodesToBeRemoved, nodesToRemove)
}

#undef CORVANE_SDK_MISSPELT

} // namespace corvane::sdk
