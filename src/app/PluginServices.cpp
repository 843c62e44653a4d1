#include "app/PluginServices.h"

#include "util/TextFormat.h"

namespace corvane::app {
namespace {

bool isDoneOverAndOver(const std::string& operation) {
    static const std::set<std::string, std::less<>> operations = {
        "create",  "pluginName", "isEnabledForLocation", "canSetEnabledForLocation", "canConfigure",
        "isDirty", "destroy"};
    return operations.contains(operation);
}

} // namespace

void PluginServices::pluginFailed(const std::string& plugin, const std::string& operation,
                                  const std::string& reason) {
    const bool first = failuresReported_.insert(plugin + " " + operation).second;
    if (!first && isDoneOverAndOver(operation)) return;
    environment_.log.log("plug-in " + plugin + " failed in " + operation + ": " + reason);
    const auto& strings = environment_.strings;
    parts_.window.showErrorSheet(
        util::formatted(strings.localized("The plug-in %@ has failed."), {plugin}),
        util::formatted(
            strings.localized("It failed in “%@”: %@. The operation wasn’t completed; everything else "
                              "continues to work. Try again, or contact its developer."),
            {operation, reason}));
}

} // namespace corvane::app
