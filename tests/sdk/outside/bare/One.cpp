// One of two plug-ins by authors who have never heard of each other and have both named their class
// Connector.
#include <corvane/PluginWrapper.h>

class Connector {
public:
    std::string pluginName() { return "the plug-in One"; }
};
CORVANE_PLUGIN(Connector)
