#pragma once

#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "sdk/PluginWrapper.h"

namespace corvane::fakes {

/// What a plug-in is told to answer, and what it was asked. One for each plug-in class of a test.
struct PluginScript {
    std::map<std::string, bool> answers; ///< by operation; true where nothing is said
    std::string name = "Shown Name";
    std::string throwsIn; ///< the operation that raises an exception
    std::vector<std::string> calls;
    std::vector<std::string> nodesToRemove;
    const CorvaneHost* host = nullptr;
    int alive = 0;
    std::function<void()> whenDestroyed;

    bool answer(const std::string& operation, const std::string& detail = "") {
        note(operation, detail);
        const auto found = answers.find(operation);
        return found == answers.end() || found->second;
    }
    void note(const std::string& operation, const std::string& detail = "") {
        calls.push_back(detail.empty() ? operation : operation + " " + detail);
        if (throwsIn == operation) throw std::runtime_error("the plug-in is out of order");
    }
};

/// Implements every entry. `N` tells the plug-ins of one test apart.
template <int N>
class RecordingPlugin {
public:
    RecordingPlugin() { ++script().alive; }
    RecordingPlugin(const RecordingPlugin&) = delete;
    RecordingPlugin& operator=(const RecordingPlugin&) = delete;
    ~RecordingPlugin() {
        --script().alive;
        if (script().whenDestroyed) script().whenDestroyed();
    }

    static PluginScript& script() {
        static PluginScript theScript;
        return theScript;
    }
    static void* factory() { return reinterpret_cast<void*>(&sdk::tableForHost<RecordingPlugin>); }

    void setPluginAPIImplementor(const CorvaneHost& host) {
        script().host = &host;
        script().note("setPluginAPIImplementor");
    }
    std::string pluginName() {
        script().note("pluginName");
        return script().name;
    }
    bool isEnabledForLocation(const char* location) {
        return script().answer("isEnabledForLocation", text(location));
    }
    bool canSetEnabledForLocation(const char* location) {
        return script().answer("canSetEnabledForLocation", text(location));
    }
    void setEnabledForLocation(bool enabled, const char* location) {
        script().note("setEnabledForLocation", (enabled ? "on " : "off ") + text(location));
    }
    bool canConfigure() { return script().answer("canConfigure"); }
    void configureButtonClicked(void* sender) {
        script().note("configureButtonClicked", sender == nullptr ? "null" : "sender");
    }
    bool selfTest() { return script().answer("selfTest"); }
    bool isDirty() { return script().answer("isDirty"); }
    bool saveChanges() { return script().answer("saveChanges"); }
    bool revertChanges() { return script().answer("revertChanges"); }
    bool applicationWillQuitSavingChanges(bool save) {
        return script().answer("applicationWillQuitSavingChanges", save ? "save" : "discard");
    }
    bool applicationWillLockSavingChanges(bool save) {
        return script().answer("applicationWillLockSavingChanges", save ? "save" : "discard");
    }
    bool shouldAllowNodeNameOnSearchPolicy(std::string_view name) {
        return script().answer("shouldAllowNodeNameOnSearchPolicy", std::string(name));
    }

    std::vector<std::string> nodesToRemove() { return script().nodesToRemove; }

private:
    static std::string text(const char* location) { return location == nullptr ? "null" : location; }
};

/// Implements nothing at all.
class EmptyPlugin {
public:
    static void* factory() { return reinterpret_cast<void*>(&sdk::tableForHost<EmptyPlugin>); }
};

} // namespace corvane::fakes
