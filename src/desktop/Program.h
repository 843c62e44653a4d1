#pragma once

#include <memory>
#include <string>

#include "app/AppDelegate.h"
#include "app/DSApplication.h"
#include "desktop/DesktopInterface.h"
#include "desktop/InstalledFiles.h"
#include "haldend/EmbeddedAuthorizationService.h"
#include "haldend/EmbeddedDynamicStore.h"
#include "haldend/EmbeddedFramework.h"
#include "haldend/trial/SampleDirectory.h"
#include "linux/NetworkFiles.h"
#include "linux/SharedObjectLoader.h"
#include "plist/PropertyListCodec.h"
#include "qt/adapters/QtToolkit.h"
#include "qt/forms/QtFormPresenter.h"
#include "qt/platform/QtLocalizedStrings.h"
#include "qt/platform/QtRunLoop.h"
#include "qt/platform/QtUserDefaults.h"
#include "qt/platform/QtWorkspace.h"

namespace corvane::desktop {

/// The whole program on real things: Qt, an embedded directory service on a machine folder, plug-ins from
/// disk. Lives as long as the process but for tests, which make one after the other. Main thread.
class Program {
public:
    struct Settings {
        std::string machineFolder;
        InstalledFiles files;
        std::optional<QString> settingsFile; ///< none: the user's own; "": nothing is stored
        /// A test makes its own main controller and plug-in controller; the real program uses the shared
        /// ones.
        bool sharedController = true;
    };

    /// Makes the machine folder where it is missing and opens the service on it. Throws `halden::Exception`
    /// when that can't be done at all.
    Program(QApplication& application, const Settings& settings, util::ProcessLog& log);
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;
    ~Program();

    /// Shows the main window, with its state of the last time if `restoreState`. The folder's sample
    /// directory is started after that; a sheet says so when it can't be.
    void launch(bool restoreState);
    /// Shows one of the panes "services", "search" and "editor".
    void showPane(const std::string& name);

    [[nodiscard]] qt::MainWindowInterface& window() { return window_; }
    [[nodiscard]] app::MainController& controller();
    [[nodiscard]] app::AppDelegate& delegate() { return delegate_; }
    [[nodiscard]] haldend::Engine& engine() { return *engine_; }

private:
    [[nodiscard]] static std::shared_ptr<haldend::Engine>
    openEngine(const Settings& settings, const platform::PropertyListCodec& codec, util::ProcessLog& log);
    void startSampleDirectory();
    void followSampleDirectory();
    void connectApplication();
    void tellStartProblem(const std::string& problem);

    Settings settings_;
    util::ProcessLog& log_;
    qt::HandlerGuard guard_;
    qt::SettingsFile settingsFile_;
    qt::QtApplication application_;
    qt::QtToolkit toolkit_;
    qt::QtRunLoop runLoop_;
    qt::QtUserDefaults defaults_;
    qt::QtWorkspace workspace_;
    qt::QtLocalizedStrings strings_;
    plist::PropertyListCodec codec_;
    linux_::SharedObjectLoader bundles_;
    linux_::NetworkFiles networkFiles_;
    util::NotificationCenter notifications_;
    std::shared_ptr<haldend::Engine> engine_;
    std::unique_ptr<haldend::SampleDirectory> sampleDirectory_;
    haldend::EmbeddedFramework framework_;
    haldend::EmbeddedAuthorizationService authorizationService_;
    QObject postContext_;
    haldend::EmbeddedDynamicStore dynamicStore_;
    platform::Environment platform_;
    qt::MainWindowInterface window_;
    DesktopInterface interfaces_;
    qt::QtFormPresenter formPresenter_{guard_};
    app::Environment environment_;
    std::unique_ptr<plugins::PluginController> ownPlugins_;
    std::unique_ptr<app::MainController> ownController_;
    app::AppDelegate delegate_;
    std::unique_ptr<app::DSApplication> dsApplication_;
    std::unique_ptr<platform::Timer> changePoll_;
    std::unique_ptr<platform::Timer> sampleStart_;
};

} // namespace corvane::desktop
