// One of two plug-ins by authors who have never heard of each other and have both named their class
// Connector.
#include <corvane/Host.h>
#include <corvane/PluginWrapper.h>

class Connector {
public:
    static constexpr corvane::sdk::About about{"One", "1.0", "", ""};
    void setPluginAPIImplementor(const CorvaneHost& host) { host_ = corvane::sdk::Host(host); }
    std::string pluginName() { return "the plug-in One"; }

private:
    corvane::sdk::Host host_;
};
CORVANE_PLUGIN(Connector)
