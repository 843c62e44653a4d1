#include "plugins/ReceivedText.h"

#include <set>

#include "plugins/PluginAPIImplementor.h"
#include "util/CharacterSet.h"

namespace corvane::plugins::receivedText {
namespace {

struct Reports {
    std::weak_ptr<PluginAPIImplementor> log;
    std::set<std::string> plugins; ///< which have been reported
};
Reports& reports() {
    static Reports all;
    return all;
}
const std::string* running = nullptr;

void report(const std::string& plugin) {
    const auto log = reports().log.lock();
    if (!log || !reports().plugins.insert(plugin).second) return;
    log->log((plugin.empty() ? std::string("a plug-in") : "plug-in " + plugin) +
             " passed a text that isn't UTF-8; each byte that begins no character is replaced by U+FFFD");
}

} // namespace

void logTo(const std::shared_ptr<PluginAPIImplementor>& implementor) {
    if (reports().log.lock() != implementor) reports() = {implementor, {}};
}

void log(const std::string& line) {
    const auto caller = Caller::name();
    if (const auto log = reports().log.lock()) log->log((caller.empty() ? "" : caller + ": ") + line);
}

std::string repaired(std::string_view text, const std::string& plugin) {
    auto result = util::wellFormedText(text);
    if (result != text) report(plugin);
    return result;
}

std::string repaired(const char* text) {
    return text == nullptr ? "" : repaired(std::string_view(text), Caller::name());
}

Caller::Caller(const std::string& plugin) : before_(running) { running = &plugin; }
Caller::~Caller() { running = before_; }
std::string Caller::name() { return running == nullptr ? "" : *running; }

} // namespace corvane::plugins::receivedText
