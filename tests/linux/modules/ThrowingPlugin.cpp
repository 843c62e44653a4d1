#include <stdexcept>

#include "sdk/PluginWrapper.h"

namespace {

[[noreturn]] void fail() { throw std::runtime_error("out of order"); }

class ThrowingPlugin {
public:
    void setPluginAPIImplementor(const CorvaneHost& /*host*/) { fail(); }
    std::string pluginName() { fail(); }
    bool isEnabledForLocation(const char* /*location*/) { fail(); }
    bool canSetEnabledForLocation(const char* /*location*/) { fail(); }
    void setEnabledForLocation(bool /*enabled*/, const char* /*location*/) { fail(); }
    bool canConfigure() { fail(); }
    void configureButtonClicked(void* /*sender*/) { fail(); }
    bool selfTest() { fail(); }
    bool isDirty() { fail(); }
    bool saveChanges() { fail(); }
    bool revertChanges() { throw "no exception class at all"; }
    bool applicationWillQuitSavingChanges(bool /*save*/) { fail(); }
    bool applicationWillLockSavingChanges(bool /*save*/) { fail(); }
    bool shouldAllowNodeNameOnSearchPolicy(std::string_view /*nodeName*/) { fail(); }
};

} // namespace

CORVANE_PLUGIN(ThrowingPlugin)
