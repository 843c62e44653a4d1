#include <corvane/PluginWrapper.h>

#include <stdexcept>

class Throws {
public:
    bool canConfigure() { throw std::runtime_error("out of order"); }
    std::string pluginName() { throw 7; }
};
CORVANE_PLUGIN(Throws)
