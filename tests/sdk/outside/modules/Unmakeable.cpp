#include <corvane/PluginWrapper.h>

#include <stdexcept>

class Unmakeable {
public:
    static constexpr corvane::sdk::About about{"Unmakeable", "0.1", "Jane Doe", ""};
    Unmakeable() { throw std::runtime_error("no licence was found"); }
    bool canConfigure() { return true; }
};
CORVANE_PLUGIN(Unmakeable)
