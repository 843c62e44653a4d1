#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace corvane::plugins {

class PluginAPIImplementor;

/// Texts that come from plug-ins, which promise UTF-8 and may break that promise. Main thread.
namespace receivedText {

/// Where lines about broken texts go, and anew from here on for another `implementor`.
void logTo(const std::shared_ptr<PluginAPIImplementor>& implementor);

/// Writes a line there, with the name of the plug-in that is being called in front.
void log(const std::string& line);

/// The text with U+FFFD for each byte that begins no character of UTF-8. The first such text of each plug-in
/// is logged. `plugin` is "" where it isn't known who made the text.
[[nodiscard]] std::string repaired(std::string_view text, const std::string& plugin);
/// The same for a text of the plug-in that is being called now; "" for null.
[[nodiscard]] std::string repaired(const char* text);

/// Names the plug-in that is being called, for as long as it lives.
class Caller {
public:
    explicit Caller(const std::string& plugin);
    Caller(const Caller&) = delete;
    Caller& operator=(const Caller&) = delete;
    ~Caller();
    /// "" while no plug-in is being called, as when a plug-in's own window calls the host.
    [[nodiscard]] static std::string name();

private:
    const std::string* before_;
};

} // namespace receivedText
} // namespace corvane::plugins
