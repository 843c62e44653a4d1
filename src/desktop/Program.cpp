#include "desktop/Program.h"

#include <QMainWindow>
#include <QMetaObject>
#include <QThread>

#include "haldend/trial/MachineFolderMaker.h"
#include "qt/windows/AboutPanel.h"

namespace corvane::desktop {
namespace {

/// How often other programs' edits of the machine's files are looked for.
constexpr double changePollSeconds = 1.0;
/// How often the start of the sample directory goes on.
constexpr double samplePollSeconds = 0.02;

qt::About about() {
    return {"Corvane",
            CORVANE_VERSION,
            "Directory services of a Linux machine, managed in one window",
            "Apache License 2.0",
            {std::string("Qt ") + qVersion() + " (LGPL 3)", "OpenLDAP libraries (OpenLDAP Public License)",
             "libini_config (LGPL 3)", "libsss_idmap (LGPL 3)", "GnuTLS (LGPL 2.1)", "Expat (MIT)",
             "systemd library (LGPL 2.1)"}};
}

} // namespace

std::shared_ptr<haldend::Engine> Program::openEngine(const Settings& settings,
                                                     const platform::PropertyListCodec& codec,
                                                     util::ProcessLog& log) {
    if (settings.machineFolder != "/")
        haldend::MachineFolderMaker("/", settings.files.sampleDirectory, log)
            .makeIfMissing(settings.machineFolder);
    auto engine = std::make_shared<haldend::Engine>(settings.machineFolder, codec, log);
    // A plug-in that somebody has installed brings a connector of its own along, on a private folder as well.
    engine->connectorCatalog().addGuestsFrom(plugins::PluginController::systemPlugInsPath);
    return engine;
}

Program::Program(QApplication& application, const Settings& settings, util::ProcessLog& log)
    : settings_(settings), log_(log), guard_(log),
      settingsFile_(settings.settingsFile ? *settings.settingsFile : qt::SettingsFile(log).path(), log),
      application_(application, guard_), toolkit_(application_, guard_), runLoop_(guard_),
      defaults_(settingsFile_), bundles_(settings.files.plugIns, log), networkFiles_(settings.machineFolder),
      engine_(openEngine(settings, codec_, log)), framework_(engine_), authorizationService_(engine_),
      dynamicStore_(engine_,
                    [this](std::function<void()> work) {
                        QMetaObject::invokeMethod(
                            &postContext_, [this, work = std::move(work)] { guard_.run("a change", work); },
                            Qt::QueuedConnection);
                    }),
      platform_{
          runLoop_, defaults_,     workspace_,     strings_, authorizationService_, dynamicStore_, codec_,
          bundles_, networkFiles_, notifications_, log},
      window_(application_, authorizationService_, settingsFile_, guard_),
      interfaces_(window_, toolkit_, strings_, settingsFile_, guard_),
      environment_{platform_,   toolkit_,       framework_,
                   interfaces_, formPresenter_, !engine_->machine().folder().isLiveMachine(),
                   false,       false},
      delegate_(environment_, [this]() -> app::MainController& { return controller(); }) {
    if (!settings.sharedController) ownPlugins_ = std::make_unique<plugins::PluginController>(platform_);
    defaults_.registerBool("FirstLaunch", true);
    application_.makeAboutPanel = [this](const auto& options) {
        return std::make_unique<qt::AboutPanel>(about(), options, guard_);
    };
    // A request in the background keeps nobody waiting.
    engine_->setWaitListener([this] {
        if (QThread::currentThread() == postContext_.thread()) window_.busy.stillBusy();
    });
    connectApplication();
}

Program::~Program() {
    changePoll_.reset();
    sampleStart_.reset();
    engine_->setWaitListener({});
    application_.sendEvent = {};
    application_.activeChanged = {};
}

app::MainController& Program::controller() {
    if (settings_.sharedController) return app::MainController::sharedInstance(environment_);
    if (!ownController_) ownController_ = std::make_unique<app::MainController>(environment_);
    return *ownController_;
}

void Program::startSampleDirectory() {
    if (engine_->machine().folder().isLiveMachine()) return;
    try {
        sampleDirectory_ =
            haldend::SampleDirectory::begin(settings_.machineFolder, settings_.files.sampleDirectory, log_);
    } catch (const halden::Exception& problem) {
        tellStartProblem(problem.reason());
    }
    if (sampleDirectory_)
        sampleStart_ =
            runLoop_.scheduleRepeatingTimer(samplePollSeconds, [this] { followSampleDirectory(); });
}

void Program::followSampleDirectory() {
    try {
        if (sampleDirectory_->proceed()) sampleStart_.reset();
    } catch (const halden::Exception& problem) {
        sampleStart_.reset();
        tellStartProblem(problem.reason());
    }
}

void Program::connectApplication() {
    application_.shouldTerminate = [this] { return delegate_.applicationShouldTerminate(); };
    application_.willTerminate = [this] { delegate_.applicationWillTerminate(); };
    application_.activeChanged = [this](bool active) {
        active ? controller().applicationDidBecomeActive() : controller().applicationDidResignActive();
    };
    dsApplication_ = std::make_unique<app::DSApplication>([this] { controller().toggleDebugMenu(); });
    application_.sendEvent = [this](const toolkit::Event& event) { return dsApplication_->sendEvent(event); };
    window_.menu.validateMenuItem = [this](toolkit::MenuItem& item) {
        return delegate_.validateMenuItem(item);
    };
    window_.menu.performMenuItem = [this](toolkit::MenuItem& item) { delegate_.performMenuItem(item); };
}

void Program::launch(bool restoreState) {
    delegate_.applicationDidFinishLaunching();
    if (restoreState) {
        window_.window.restoreState();
        application_.keepsStateOf(window_.window);
    }
    changePoll_ = runLoop_.scheduleRepeatingTimer(changePollSeconds, [this] { engine_->pollForChanges(); });
    startSampleDirectory();
}

void Program::tellStartProblem(const std::string& problem) {
    log_.log(problem);
    const auto firstParagraph = problem.find("\n\n");
    const auto details =
        firstParagraph == std::string::npos ? std::string() : problem.substr(firstParagraph + 2);
    controller().showErrorSheetWithTitle(problem.substr(0, firstParagraph), details);
}

void Program::showPane(const std::string& name) {
    const std::string identifier = name == "search"   ? "kSearchPaths"
                                   : name == "editor" ? "kDebug"
                                                      : "kServices";
    controller().mainWindow().selectToolbarItem(identifier);
}

} // namespace corvane::desktop
