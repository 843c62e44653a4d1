#pragma once

#include <concepts>
#include <string>
#include <string_view>
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

} // namespace corvane::sdk
