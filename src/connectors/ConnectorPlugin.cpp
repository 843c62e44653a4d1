// The configuration of a connector that has nothing to set but whether it is used. Built once for each such
// connector, under its name.
#include <optional>
#include <string>

#include "sdk/Form.h"
#include "sdk/PluginWrapper.h"

namespace {

using namespace corvane::sdk;

constexpr const char* connectorName = CORVANE_CONNECTOR;

struct Texts {
    const char* what;  ///< what the connector is for
    const char* state; ///< what switching it off means, or why that can't be done
    bool canBeSwitchedOff;
};

Texts textsOf(const std::string& connector) {
    if (connector == "Local")
        return {"The accounts that are kept on this machine itself, and the groups that they belong to.",
                "It can’t be switched off: without it nobody could log in when no server responds.", false};
    if (connector == "BSD")
        return {"The machine’s own files: passwd, group and related files.",
                "It can’t be switched off: the system’s own accounts are stored here.", false};
    return {"Users and groups of a domain that this machine has joined.",
            "When it is off, its domains are no longer queried. Their settings are kept.", true};
}

/// Keeps the user's wish until the changes are saved; the host writes it then.
class ConnectorPlugin {
public:
    void setPluginAPIImplementor(const CorvaneHost& host) { host_ = Host(host); }
    bool canConfigure() { return true; }
    bool isEnabledForLocation(const char* /*location*/) { return wanted_.value_or(isEnabled()); }
    bool isDirty() { return wanted_ && *wanted_ != isEnabled(); }

    void configureButtonClicked(void* /*sender*/) {
        if (form_.isOpen()) return form_.raise();
        const auto texts = textsOf(connectorName);
        const bool isUsed = isEnabledForLocation(nullptr);
        FormWindow window("connector", std::string(connectorName) + " Connector");
        window.size(400, 0).add(FormItem::paragraph(texts.what));
        window.add(FormItem::check("useConnector", "&Use this connector")
                       .value(isUsed)
                       .set("enabled", texts.canBeSwitchedOff || !isUsed));
        window.add(FormItem::paragraph(texts.state));
        window.button(FormButton::ok([this] { wish(form_.isChecked("useConnector")); }));
        window.button(FormButton::cancel());
        form_ = Form(host_, window);
    }
    bool saveChanges() {
        if (isDirty()) host_.setPluginEnabled(connectorName, *wanted_);
        wanted_.reset();
        return true;
    }
    bool revertChanges() {
        wanted_.reset();
        return true;
    }

private:
    void wish(bool enabled) {
        wanted_ = enabled;
        if (isDirty()) host_.markDirty();
    }
    [[nodiscard]] bool isEnabled() const { return host_.isPluginEnabled(connectorName); }

    Host host_;
    std::optional<bool> wanted_;
    Form form_;
};

} // namespace

CORVANE_PLUGIN(ConnectorPlugin)
