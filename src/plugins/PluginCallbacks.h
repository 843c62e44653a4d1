#pragma once

#include <exception>
#include <memory>
#include <string>

#include "plugins/PluginAPIImplementor.h"
#include "plugins/ReceivedText.h"

namespace corvane::plugins {

/// Calls into a plug-in that come later than the call which asked for them. What its code throws ends here
/// and is shown to the user, like a failure of any other operation. Main thread.
class PluginCallbacks {
public:
    PluginCallbacks(std::shared_ptr<PluginAPIImplementor> implementor, std::string pluginName)
        : implementor_(std::move(implementor)), pluginName_(std::move(pluginName)) {}

    template <typename Body>
    void run(const char* operation, Body body) const {
        const receivedText::Caller caller(pluginName_);
        try {
            body();
        } catch (const std::exception& failure) {
            implementor_->services().pluginFailed(pluginName_, operation, failure.what());
        } catch (...) {
            implementor_->services().pluginFailed(pluginName_, operation, "an unknown exception");
        }
    }
    [[nodiscard]] PluginAPIImplementor& host() const { return *implementor_; }
    [[nodiscard]] const std::string& pluginName() const { return pluginName_; }

private:
    std::shared_ptr<PluginAPIImplementor> implementor_;
    std::string pluginName_;
};

} // namespace corvane::plugins
