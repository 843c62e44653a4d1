#include "plugins/Plugin.h"

#include <cstddef>
#include <exception>

#include "plugins/ReceivedText.h"

namespace corvane::plugins {

bool Plugin::accepts(const CorvanePlugin* table, std::string* reason) {
    const auto refused = [reason](std::string why) {
        if (reason != nullptr) *reason = std::move(why);
        return false;
    };
    if (table == nullptr) return refused("it has no function table for plug-in version " + versions());
    // Size and version come first in every version of the table, so they can be read before it is trusted.
    if (table->version < oldestVersion || table->version > newestVersion)
        return refused(otherVersion(table->version));
    constexpr auto smallest = offsetof(CorvanePlugin, destroy) + sizeof(CorvanePlugin::destroy);
    if (table->size < smallest) return refused("its function table is too short");
    if (table->create == nullptr || table->destroy == nullptr)
        return refused("its function table has no create or no destroy");
    return true;
}

std::string Plugin::otherVersion(std::uint32_t version) {
    return "it was built for plug-in version " + std::to_string(version) +
           ", and this program takes version " + versions();
}

std::string Plugin::versions() {
    const auto newest = std::to_string(newestVersion);
    return oldestVersion == newestVersion ? newest : std::to_string(oldestVersion) + " to " + newest;
}

std::unique_ptr<Plugin> Plugin::create(const CorvanePlugin& table, const std::string& name,
                                       std::string& reason) {
    const receivedText::Caller caller(name);
    void* self = nullptr;
    const auto take = [](void* context, const char* text) {
        if (text != nullptr) *static_cast<std::string*>(context) = receivedText::repaired(text);
    };
    try {
        self = table.create(take, &reason);
        if (self == nullptr && reason.empty()) reason = "it answered no object, and no reason";
    } catch (const std::exception& failure) {
        reason = failure.what();
    } catch (...) {
        reason = "an unknown exception";
    }
    return self == nullptr ? nullptr : std::unique_ptr<Plugin>(new Plugin(table, self, name));
}

Plugin::~Plugin() {
    contain("destroy", [this] { table_.destroy(self_); });
}

void Plugin::setFailureReporter(FailureReporter reporter) { reporter_ = std::move(reporter); }

std::optional<std::string> Plugin::pluginName() const {
    if (!implements(&CorvanePlugin::pluginName)) return std::nullopt;
    std::optional<std::string> name;
    contain("pluginName", [&] {
        if (const char* text = table_.pluginName(self_)) name = receivedText::repaired(text);
    });
    return name;
}

std::vector<std::string> Plugin::nodesToRemove() const {
    constexpr std::uint32_t most = 10'000; // a plug-in that never comes to an end
    std::vector<std::string> names;
    if (!implements(&CorvanePlugin::nodesToRemove)) return names;
    contain("nodesToRemove", [&] {
        while (names.size() < most) {
            const char* name = table_.nodesToRemove(self_, static_cast<std::uint32_t>(names.size()));
            if (name == nullptr) break;
            names.push_back(receivedText::repaired(name));
        }
    });
    return names;
}

void Plugin::contain(const char* operation, const std::function<void()>& call) const {
    const receivedText::Caller caller(name_);
    try {
        call();
    } catch (const std::exception& failure) {
        if (reporter_) reporter_(operation, failure.what());
    } catch (...) {
        if (reporter_) reporter_(operation, "an unknown exception");
    }
}

} // namespace corvane::plugins
