#include "plugins/PluginItem.h"

#include <utility>

#include "directory/CustomCalls.h"
#include "halden/Calls.h"
#include "halden/ConnectorNames.h"
#include "plugins/ServiceDescription.h"
#include "util/TextFormat.h"

namespace corvane::plugins {

namespace connector = halden::connector;

PluginItem::PluginItem(Context context, const util::Dictionary& description)
    : context_(context), mDictionary(description.mutableCopy().as<util::Dictionary>()),
      mPrefix(descriptionText(service::name)),
      mPlugin(context.plugins.newPluginNamed(mPrefix, &creationFailure_)) {
    if (!mPlugin) return;
    mPlugin->setFailureReporter([this](const std::string& operation, const std::string& reason) {
        if (mAPIImplementor) mAPIImplementor->services().pluginFailed(pluginPrefix(), operation, reason);
    });
}

PluginItem::~PluginItem() { destroyPlugin(); }

// The plug-in object is destroyed while the host table that it may call is still there.
void PluginItem::destroyPlugin() {
    mPlugin.reset();
    hostTable_.reset();
}

void PluginItem::setPluginAPIImplementor(std::shared_ptr<PluginAPIImplementor> implementor) {
    mAPIImplementor = std::move(implementor);
    auto table = std::make_unique<PluginHostTable>(mAPIImplementor, pluginPrefix());
    if (mPlugin)
        mPlugin->tell("setPluginAPIImplementor", &CorvanePlugin::setPluginAPIImplementor, &table->table());
    hostTable_ = std::move(table);
    if (!creationFailure_.empty())
        mAPIImplementor->services().pluginFailed(pluginPrefix(), "create", creationFailure_);
}

std::string PluginItem::pluginName() const {
    const auto name = mPlugin ? mPlugin->pluginName() : std::nullopt;
    return name ? *name : descriptionText(service::name);
}

std::string PluginItem::pluginVersion() const { return descriptionText(service::version); }

bool PluginItem::isEnabled() const { return descriptionText(service::userSetLoaded) == service::active; }

bool PluginItem::isActive() const { return descriptionText(service::loaded) == service::active; }

bool PluginItem::isEnabledForLocation(const char* location) const {
    const auto answer =
        mPlugin ? mPlugin->ask("isEnabledForLocation", &CorvanePlugin::isEnabledForLocation, location)
                : std::nullopt;
    return answer.value_or(isEnabled());
}

bool PluginItem::canSetEnabledForLocation(const char* location) const {
    const auto answer =
        mPlugin ? mPlugin->ask("canSetEnabledForLocation", &CorvanePlugin::canSetEnabledForLocation, location)
                : std::nullopt;
    if (answer) return *answer;
    // These three may be switched on but never off.
    const auto name = descriptionText(service::name);
    const bool neverOff = name == connector::local || name == connector::bsd || name == connector::zeroconf;
    return neverOff ? !isEnabled() : true;
}

void PluginItem::setEnabledForLocation(bool enabled, const char* location) {
    const bool told = mPlugin && mPlugin->tell("setEnabledForLocation", &CorvanePlugin::setEnabledForLocation,
                                               static_cast<int8_t>(enabled), location);
    if (!told) setEnabled(enabled);
}

void PluginItem::setEnabled(bool enabled) {
    mDictionary.set(service::userSetLoaded, enabled ? service::active : service::makeInactive);
}

bool PluginItem::canConfigure() const {
    if (mPlugin) {
        if (const auto answer = mPlugin->ask("canConfigure", &CorvanePlugin::canConfigure)) return *answer;
        if (mPlugin->implements(&CorvanePlugin::configureButtonClicked)) return true;
    }
    if (descriptionText(service::configAvailable) == service::notAvailable) return false;
    // An external program can only be started for this very machine.
    return !isRemote();
}

void PluginItem::configureButtonClicked(toolkit::Control* sender) {
    void* opaqueSender = sender;
    if (mPlugin &&
        mPlugin->tell("configureButtonClicked", &CorvanePlugin::configureButtonClicked, opaqueSender))
        return;
    const auto application = descriptionText(service::configAvailable);
    if (application == service::notAvailable)
        return showSheetWithTitle(descriptionText(service::name),
                                  localized("This plug-in does not require configuration."), sender);
    if (isRemote()) return;
    const auto message = openExternalConfiguration(application, descriptionText(service::configFile));
    if (!message.empty()) showSheetWithTitle(localized("Plug-in Configure Failed"), message, sender);
}

std::string PluginItem::openExternalConfiguration(const std::string& application, const std::string& file) {
    const bool noFile = file == service::notAvailable;
    const bool applicationExists = context_.environment.workspace.fileExists(application);
    if (noFile && applicationExists) return openApplicationAlone(application);
    if (noFile)
        return util::formatted(localized("Plug-in configuration application: %@ is missing."), {application});
    if (applicationExists) return openFileWithApplication(application, file);
    return util::formatted(
        localized("Plug-in configuration application %@ is missing. Try editing the configuration file %@."),
        {application, file});
}

std::string PluginItem::openApplicationAlone(const std::string& application) {
    if (context_.environment.workspace.launchApplication(application)) return "";
    return util::formatted(localized("Plug-in configuration application %@ could not be opened."),
                           {application});
}

std::string PluginItem::openFileWithApplication(const std::string& application, const std::string& file) {
    auto& workspace = context_.environment.workspace;
    if (!workspace.fileExists(file))
        return util::formatted(localized("Plug-in configuration file %@ is missing."), {file});
    if (workspace.openFile(file, application)) return "";
    return util::formatted(
        localized("Plug-in configuration application %@ or configuration file %@ could not be opened."),
        {application, file});
}

bool PluginItem::canSelfTest() const {
    return mPlugin && (mPlugin->implements(&CorvanePlugin::selfTest) ||
                       mPlugin->implements(&CorvanePlugin::beginSelfTest));
}
bool PluginItem::selfTest() {
    return mPlugin && mPlugin->ask("selfTest", &CorvanePlugin::selfTest).value_or(false);
}

void PluginItem::beginSelfTest(std::function<void(bool)> finished) {
    selfTestFinished_ = std::move(finished);
    const auto take = [](void* context, int8_t answer) {
        auto& item = *static_cast<PluginItem*>(context);
        if (const auto tell = std::exchange(item.selfTestFinished_, {})) tell(answer != 0);
    };
    if (mPlugin && mPlugin->tell("beginSelfTest", &CorvanePlugin::beginSelfTest,
                                 static_cast<CorvaneTruthTaker>(take), static_cast<void*>(this)))
        return;
    take(this, selfTest() ? 1 : 0);
}

bool PluginItem::isDirty() const {
    return mPlugin && mPlugin->ask("isDirty", &CorvanePlugin::isDirty).value_or(false);
}

bool PluginItem::saveChanges() {
    if (mPlugin && !mPlugin->ask("saveChanges", &CorvanePlugin::saveChanges).value_or(true)) return false;
    return saveEnableState();
}

bool PluginItem::saveEnableState() {
    if (!mAPIImplementor) return false;
    const auto node = mAPIImplementor->connection().haldenConfigNode();
    util::AuthorizationExternalForm form;
    if (mAPIImplementor->authorization().makeAuthExternalForm(form) != 0) return false;
    const auto desired = descriptionText(service::userSetLoaded);
    if (desired == descriptionText(service::loaded)) return true;
    const auto index = mDictionary.valueForKey(service::index).as<util::Number>();
    if (!index) return true; // no index, no call that could be made
    if (!node) return false;
    // The call names no direction: it flips the state, which is why it is sent only when the two differ.
    halden::Error error;
    const auto code = halden::callCode::flipConnectorBase + static_cast<std::int32_t>(index.integerValue());
    (void)directory::customCall(*node, code, form, &error);
    if (error) return false;
    mDictionary.set(service::loaded, desired);
    return true;
}

std::vector<std::string> PluginItem::nodesToRemove() const {
    return mPlugin ? mPlugin->nodesToRemove() : std::vector<std::string>();
}

bool PluginItem::revertChanges() {
    return !mPlugin || mPlugin->ask("revertChanges", &CorvanePlugin::revertChanges).value_or(true);
}

bool PluginItem::applicationWillQuitSavingChanges(bool save) {
    constexpr auto entry = &CorvanePlugin::applicationWillQuitSavingChanges;
    return !mPlugin ||
           mPlugin->ask("applicationWillQuitSavingChanges", entry, static_cast<int8_t>(save)).value_or(true);
}

bool PluginItem::applicationWillLockSavingChanges(bool save) {
    constexpr auto entry = &CorvanePlugin::applicationWillLockSavingChanges;
    return !mPlugin ||
           mPlugin->ask("applicationWillLockSavingChanges", entry, static_cast<int8_t>(save)).value_or(true);
}

bool PluginItem::shouldAllowNodeNameOnSearchPolicy(const std::string& nodeName) const {
    constexpr auto entry = &CorvanePlugin::shouldAllowNodeNameOnSearchPolicy;
    return !mPlugin ||
           mPlugin->ask("shouldAllowNodeNameOnSearchPolicy", entry, nodeName.c_str()).value_or(true);
}

void PluginItem::showSheetWithTitle(const std::string& title, const std::string& message,
                                    toolkit::Control* sender) {
    auto* window = sender == nullptr ? nullptr : sender->window();
    if (window == nullptr) return; // a sheet hangs on a window
    sheet_ = context_.toolkit.makeAlert();
    sheet_->setMessageText(title);
    sheet_->setInformativeText(message);
    sheet_->addButton(localized("OK"));
    sheet_->beginSheet(*window, [this](int returnCode) { sheetDidEnd(returnCode); });
}

void PluginItem::sheetDidEnd(int /*returnCode*/) { sheet_.reset(); }

std::string PluginItem::localized(std::string_view key) const {
    return context_.environment.strings.localized(key);
}
bool PluginItem::isRemote() const { return mAPIImplementor && mAPIImplementor->connection().isRemote(); }

} // namespace corvane::plugins
