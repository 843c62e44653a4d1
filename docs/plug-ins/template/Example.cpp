#include <corvane/Host.h>
#include <corvane/PluginWrapper.h>
#include <optional>

/// Configures the connector "Example". Every method is optional; see the guide for all of them.
class Example {
public:
    void setPluginAPIImplementor(const CorvaneHost& host) { host_ = corvane::sdk::Host(host); }

    bool canConfigure() { return true; }
    // A real plug-in opens its window here, and marks the main window edited when something was changed.
    void configureButtonClicked(void* /*sender*/) {
        wanted_ = !host_.isPluginEnabled("Example");
        host_.log(*wanted_ ? "will be switched on" : "will be switched off");
        host_.markDirty();
    }

    bool isDirty() { return wanted_.has_value(); }
    bool saveChanges() {
        if (wanted_) host_.setPluginEnabled("Example", *wanted_);
        wanted_.reset();
        return true;
    }
    bool revertChanges() {
        wanted_.reset();
        return true;
    }

private:
    corvane::sdk::Host host_;
    std::optional<bool> wanted_;
};
CORVANE_PLUGIN(Example)
