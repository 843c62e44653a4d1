#include "sdk/PluginWrapper.h"

namespace {

class PluginOfTomorrow {
public:
    bool canConfigure() { return true; }
};

} // namespace

extern "C" __attribute__((visibility("default"))) const CorvanePlugin* corvane_plugin() {
    static CorvanePlugin table = *corvane::sdk::tableFor<PluginOfTomorrow>();
    table.version = CORVANE_PLUGIN_VERSION + 1;
    return &table;
}
