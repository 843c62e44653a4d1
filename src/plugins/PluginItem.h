#pragma once

#include <memory>
#include <string>

#include "platform/Environment.h"
#include "plugins/Plugin.h"
#include "plugins/PluginAPIImplementor.h"
#include "plugins/PluginController.h"
#include "plugins/PluginHostTable.h"
#include "toolkit/Controls.h"
#include "toolkit/Toolkit.h"
#include "util/Containers.h"

namespace corvane::plugins {

/// One connector of the services list. It is asked instead of the plug-in: what the plug-in implements is
/// forwarded, everything else is answered from the connector's description. A connector without a plug-in
/// works with the defaults alone. `location` arguments are handed to the plug-in unchanged; the host passes
/// null. Owned by the services list; main thread.
class PluginItem {
public:
    /// What every item works with; all outlive it.
    struct Context {
        PluginController& plugins;
        toolkit::Toolkit& toolkit;
        platform::Environment& environment;
    };

    /// Copies the description and makes the plug-in object of that name, if there is one.
    PluginItem(Context context, const util::Dictionary& description);
    PluginItem(const PluginItem&) = delete;
    PluginItem& operator=(const PluginItem&) = delete;
    ~PluginItem();

    /// Kept, and handed on to the plug-in. A plug-in that made no object is reported through it.
    void setPluginAPIImplementor(std::shared_ptr<PluginAPIImplementor> implementor);

    [[nodiscard]] std::string pluginName() const;
    [[nodiscard]] const std::string& pluginPrefix() const { return mPrefix; }
    [[nodiscard]] std::string pluginVersion() const;

    /// The user's wish, not yet what the service does.
    [[nodiscard]] bool isEnabled() const;
    /// What the service does.
    [[nodiscard]] bool isActive() const;
    [[nodiscard]] bool isEnabledForLocation(const char* location) const;
    [[nodiscard]] bool canSetEnabledForLocation(const char* location) const;
    void setEnabledForLocation(bool enabled, const char* location);
    void setEnabled(bool enabled);

    [[nodiscard]] bool canConfigure() const;
    /// Opens the plug-in's configuration, or the external program that the description names. Failures are
    /// shown in a sheet on the sender's window.
    void configureButtonClicked(toolkit::Control* sender);

    /// Destroys the plug-in object, which may still call the host. This item answers its defaults from then
    /// on.
    void destroyPlugin();

    [[nodiscard]] bool canSelfTest() const;
    /// Ask `canSelfTest` first: without a test the answer is false.
    [[nodiscard]] bool selfTest();
    /// The same without waiting, where the plug-in can do that: `finished` is called once, perhaps at once,
    /// unless this item is destroyed before.
    void beginSelfTest(std::function<void(bool passed)> finished);

    [[nodiscard]] bool isDirty() const;
    /// The plug-in's changes, then the enabled state. False leaves the enabled state unsaved.
    [[nodiscard]] bool saveChanges();
    /// Writes a changed enabled state to the service. False when the authorization can't be externalized
    /// (even if nothing has changed) or the service refuses.
    [[nodiscard]] bool saveEnableState();
    /// The directory nodes that `saveChanges` will take away.
    [[nodiscard]] std::vector<std::string> nodesToRemove() const;
    bool revertChanges();
    [[nodiscard]] bool applicationWillQuitSavingChanges(bool save);
    [[nodiscard]] bool applicationWillLockSavingChanges(bool save);
    [[nodiscard]] bool shouldAllowNodeNameOnSearchPolicy(const std::string& nodeName) const;

    /// One "OK" button, on the sender's window.
    void showSheetWithTitle(const std::string& title, const std::string& message, toolkit::Control* sender);
    /// Takes the sheet away; the answer doesn't matter.
    void sheetDidEnd(int returnCode);

private:
    [[nodiscard]] std::string descriptionText(std::string_view key) const {
        return mDictionary.textForKey(key);
    }
    [[nodiscard]] std::string localized(std::string_view key) const;
    [[nodiscard]] bool isRemote() const;
    /// The message of what went wrong; "" when the program was started.
    [[nodiscard]] std::string openExternalConfiguration(const std::string& application,
                                                        const std::string& file);
    [[nodiscard]] std::string openApplicationAlone(const std::string& application);
    [[nodiscard]] std::string openFileWithApplication(const std::string& application,
                                                      const std::string& file);

    Context context_;
    util::Dictionary mDictionary;
    std::string mPrefix;          ///< the description's, which is asked for with each of the service's nodes
    std::string creationFailure_; ///< why there is no plug-in object though there is a plug-in; "" otherwise
    std::unique_ptr<Plugin> mPlugin;
    std::shared_ptr<PluginAPIImplementor> mAPIImplementor;
    std::unique_ptr<PluginHostTable> hostTable_;
    std::unique_ptr<toolkit::Alert> sheet_;
    std::function<void(bool)> selfTestFinished_;
};

} // namespace corvane::plugins
