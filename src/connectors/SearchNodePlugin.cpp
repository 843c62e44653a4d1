// The connectors whose only nodes are the search policies themselves. There is nothing to configure about
// them, and a policy can't be searched by way of a policy. Built once for each of them, under its name.
#include <string_view>

#include "sdk/PluginWrapper.h"

namespace {

class SearchNodePlugin {
public:
    bool canConfigure() { return false; }
    bool shouldAllowNodeNameOnSearchPolicy(std::string_view /*nodeName*/) { return false; }
};

} // namespace

CORVANE_PLUGIN(SearchNodePlugin)
