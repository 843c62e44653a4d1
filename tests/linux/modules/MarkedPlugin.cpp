#include <cstdlib>

#include "sdk/PluginWrapper.h"

namespace {

/// Runs as soon as the module's code is loaded, and leaves a mark that the test can see.
struct Mark {
    Mark() { setenv("loaded " CORVANE_TEST_MODULE, "yes", 1); }
} const mark;

class MarkedPlugin {
public:
    std::string pluginName() { return CORVANE_TEST_MODULE; }
};

} // namespace

CORVANE_PLUGIN(MarkedPlugin)
