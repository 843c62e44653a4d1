#include "sdk/PluginWrapper.h"

namespace {

class PluginOfTomorrow {
public:
    bool canConfigure() { return true; }
};

} // namespace

CORVANE_EXPORT const CorvanePlugin* corvane_plugin_for_host(const CorvaneHandshake* /*host*/) {
    static CorvanePlugin table = *corvane::sdk::tableFor<PluginOfTomorrow>();
    table.version = CORVANE_PLUGIN_VERSION + 1;
    return &table;
}
