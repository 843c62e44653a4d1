#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "sdk/PluginTable.h"

namespace corvane::plugins {

/// One plug-in object, made through a module's function table. Whatever its code throws ends here: the
/// failure goes to the reporter and the answer is false (or no name). Owned by its `PluginItem`. Main thread.
class Plugin {
public:
    /// Told which operation failed and why.
    using FailureReporter = std::function<void(const std::string& operation, const std::string& reason)>;

    /// The versions of the table that this program can use, both included.
    static constexpr std::uint32_t oldestVersion = 2;
    static constexpr std::uint32_t newestVersion = CORVANE_PLUGIN_VERSION;

    /// True when the table is whole and of a version that can be used. `reason`, when given, says what is
    /// wrong.
    [[nodiscard]] static bool accepts(const CorvanePlugin* table, std::string* reason);
    /// Why a module of a version that can't be used is refused.
    [[nodiscard]] static std::string otherVersion(std::uint32_t version);
    /// Null when the module makes no object; `reason` then says why. `table` was accepted and stays valid for
    /// good.
    [[nodiscard]] static std::unique_ptr<Plugin> create(const CorvanePlugin& table, const std::string& name,
                                                        std::string& reason);

    Plugin(const Plugin&) = delete;
    Plugin& operator=(const Plugin&) = delete;
    ~Plugin();

    void setFailureReporter(FailureReporter reporter);

    /// Is the entry there: inside the table's own size, and not null?
    template <typename Function>
    [[nodiscard]] bool implements(Function CorvanePlugin::*entry) const {
        const auto* place = reinterpret_cast<const char*>(&(table_.*entry));
        const auto end =
            place - reinterpret_cast<const char*>(&table_) + static_cast<std::ptrdiff_t>(sizeof(Function));
        return end <= static_cast<std::ptrdiff_t>(table_.size) && table_.*entry != nullptr;
    }

    /// Calls an entry that answers a truth value; none when it isn't implemented.
    template <typename... Parameters, typename... Arguments>
    [[nodiscard]] std::optional<bool> ask(const char* operation,
                                          int8_t (*CorvanePlugin::*entry)(void*, Parameters...),
                                          Arguments... arguments) const {
        if (!implements(entry)) return std::nullopt;
        bool answer = false;
        contain(operation, [&] { answer = (table_.*entry)(self_, arguments...) != 0; });
        return answer;
    }

    /// Calls an entry that answers nothing. False when it isn't implemented.
    template <typename... Parameters, typename... Arguments>
    bool tell(const char* operation, void (*CorvanePlugin::*entry)(void*, Parameters...),
              Arguments... arguments) const {
        if (!implements(entry)) return false;
        contain(operation, [&] { (table_.*entry)(self_, arguments...); });
        return true;
    }

    /// None when it isn't implemented, fails, or gives no text.
    [[nodiscard]] std::optional<std::string> pluginName() const;
    /// None when it isn't implemented or fails.
    [[nodiscard]] std::vector<std::string> nodesToRemove() const;

private:
    [[nodiscard]] static std::string versions();
    Plugin(const CorvanePlugin& table, void* self, std::string name)
        : table_(table), self_(self), name_(std::move(name)) {}
    void contain(const char* operation, const std::function<void()>& call) const;

    const CorvanePlugin& table_;
    void* self_;
    std::string name_; ///< the connector's, for the log
    FailureReporter reporter_;
};

} // namespace corvane::plugins
