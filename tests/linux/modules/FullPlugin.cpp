#include "sdk/PluginWrapper.h"

namespace {

/// Has every method there is, and tells the host's log of each call.
class FullPlugin {
public:
    void setPluginAPIImplementor(const CorvaneHost& host) {
        host_ = &host;
        say("setPluginAPIImplementor");
    }
    std::string pluginName() { return say("pluginName"), "Full Name"; }
    bool isEnabledForLocation(const char* location) { return say("isEnabledForLocation", location), true; }
    bool canSetEnabledForLocation(const char* location) {
        return say("canSetEnabledForLocation", location), true;
    }
    void setEnabledForLocation(bool enabled, const char* location) {
        say(enabled ? "setEnabledForLocation on" : "setEnabledForLocation off", location);
    }
    bool canConfigure() { return say("canConfigure"), true; }
    void configureButtonClicked(void* sender) {
        say("configureButtonClicked", sender == nullptr ? "null" : "sender");
    }
    bool selfTest() { return say("selfTest"), true; }
    bool isDirty() { return say("isDirty"), true; }
    bool saveChanges() { return say("saveChanges"), true; }
    bool revertChanges() { return say("revertChanges"), true; }
    bool applicationWillQuitSavingChanges(bool save) {
        return say("applicationWillQuitSavingChanges", save ? "save" : "discard"), true;
    }
    bool applicationWillLockSavingChanges(bool save) {
        return say("applicationWillLockSavingChanges", save ? "save" : "discard"), true;
    }
    bool shouldAllowNodeNameOnSearchPolicy(std::string_view nodeName) {
        return say("shouldAllowNodeNameOnSearchPolicy", std::string(nodeName).c_str()), true;
    }

private:
    void say(const char* operation, const char* detail = nullptr) {
        const auto line = detail == nullptr ? std::string(operation) : std::string(operation) + " " + detail;
        host_->log(host_->context, line.c_str());
    }
    const CorvaneHost* host_ = nullptr;
};

} // namespace

CORVANE_PLUGIN(FullPlugin)
