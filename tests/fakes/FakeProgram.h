#pragma once

#include "app/AppDelegate.h"
#include "app/MainController.h"
#include "app/NoConnectionDialog.h"
#include "fakes/FakeDirectory.h"
#include "fakes/FakeForms.h"
#include "fakes/FakePlatform.h"
#include "fakes/FakeToolkit.h"

namespace corvane::fakes {

class FakeDirectoryEditor final : public auth::DirectoryEditor {
public:
    explicit FakeDirectoryEditor(Journal& journal) : journal_(journal) {}
    void setHaldenSession(std::shared_ptr<halden::Session> session) override {
        haldenSession = std::move(session);
        journal_.add("editor.setHaldenSession");
    }
    void setAuthForLocalNode(std::shared_ptr<platform::Authorization> given) override {
        authorization = std::move(given);
        journal_.add(authorization ? "editor.setAuth" : "editor.clearAuth");
    }
    std::shared_ptr<halden::Session> haldenSession;
    std::shared_ptr<platform::Authorization> authorization;

private:
    Journal& journal_;
};

class FakeRemoteAuthorization final : public auth::RemoteAuthorization {
public:
    explicit FakeRemoteAuthorization(Journal& journal) : journal_(journal) {}
    ~FakeRemoteAuthorization() override { journal_.add("remote.destroyRights"); }
    [[nodiscard]] bool haveAuthRights() override { return held; }
    [[nodiscard]] std::int32_t makeExternalForm(util::AuthorizationExternalForm& form) override {
        form.bytes.fill(0xEE);
        return 0;
    }
    bool held = true;

private:
    Journal& journal_;
};

/// The dialog that asks for a server. A test answers it.
class FakeConnectionDialog final : public auth::ConnectionDialog {
public:
    explicit FakeConnectionDialog(Journal& journal) : journal_(journal) {}
    void setAcceptsPasswordOnly(bool passwordOnly) override {
        journal_.add(passwordOnly ? "dialog.passwordOnly" : "dialog.allFields");
    }
    void showWindow(Owner& shownBy) override {
        owner = &shownBy;
        journal_.add("dialog.showWindow");
    }
    [[nodiscard]] int runModal() override {
        journal_.add("dialog.runModal");
        return modalResult;
    }
    void saveFrame() override { journal_.add("dialog.saveFrame"); }
    [[nodiscard]] std::shared_ptr<halden::Session> haldenSession() const override { return session; }
    [[nodiscard]] std::shared_ptr<auth::RemoteAuthorization> remoteAuth() const override {
        return authorization;
    }
    [[nodiscard]] std::string ipAddress() const override { return address; }
    void reset() override {
        session.reset();
        authorization.reset();
        journal_.add("dialog.reset");
    }

    Owner* owner = nullptr;
    int modalResult = 0;
    std::shared_ptr<halden::Session> session;
    std::shared_ptr<auth::RemoteAuthorization> authorization;
    std::string address = "server.example.com";

private:
    Journal& journal_;
};

/// The interface files as a test sees them.
struct FakeInterface final : app::InterfaceLoader {
    FakeInterface(Journal& journal, std::shared_ptr<FakeAuthorization> authorization)
        : journal_(journal), window(journal, "window"), progressSheet(journal, "progressSheet"),
          mainVsDirectoryEditorTabView(journal, "mainVsDirectoryEditorTabView"),
          mainTabView(journal, "mainTabView"), directoryEditor(journal), progressBar(journal, "progressBar"),
          applyButton(journal, "applyButton", &window), helpButton(journal, "helpButton", &window),
          configPlugIn(journal, "configPlugIn", &window), serviceState(journal, "serviceState"),
          selectPlugIn(journal, "selectPlugIn", {"Name", "Version", "On-Off"}),
          selectSearchPolicy(journal, "selectSearchPolicy", {"Automatic", "Local", "Custom"}),
          selectNode(journal, "selectNode", {"NodeName"}), addNode(journal, "addNode", &window),
          deleteNode(journal, "deleteNode", &window), dragMessage(journal, "dragMessage"),
          selectContactPolicy(journal, "selectContactPolicy", {"Automatic", "Local", "Custom"}),
          selectNodeContact(journal, "selectNodeContact", {"NodeName"}),
          addNodeContact(journal, "addNodeContact", &window),
          deleteNodeContact(journal, "deleteNodeContact", &window),
          dragMessageContact(journal, "dragMessageContact"), trialNotice(journal, "trialNotice"),
          busy(journal), unsaved(journal, "unsaved"), tryAgain(journal, "tryAgain", &window),
          showSaved(journal, "showSaved", &window), unsavedContact(journal, "unsavedContact"),
          tryAgainContact(journal, "tryAgainContact", &window),
          showSavedContact(journal, "showSavedContact", &window), remarks(journal, "remarks"),
          remarksContact(journal, "remarksContact"), authorizationView(journal, std::move(authorization)) {
        for (const auto* page : {"1", "2", "3"})
            mainTabView.addTabViewItem(std::make_shared<FakeTabViewItem>(page));
        for (const auto* page : {"main", "directoryEditor"})
            mainVsDirectoryEditorTabView.addTabViewItem(std::make_shared<FakeTabViewItem>(page));
        selectPlugIn.setWindow(&window);
    }

    [[nodiscard]] app::MainWindowOutlets loadMainWindow() override {
        return {window,
                mainVsDirectoryEditorTabView,
                mainTabView,
                directoryEditor,
                progressSheet,
                progressBar,
                applyButton,
                helpButton,
                trialNotice,
                busy,
                selectPlugIn,
                configPlugIn,
                serviceState,
                selectSearchPolicy,
                selectNode,
                addNode,
                deleteNode,
                dragMessage,
                selectContactPolicy,
                selectNodeContact,
                addNodeContact,
                deleteNodeContact,
                dragMessageContact,
                {unsaved, tryAgain, showSaved},
                {unsavedContact, tryAgainContact, showSavedContact},
                remarks,
                remarksContact,
                authorizationView};
    }
    [[nodiscard]] searchpolicy::NodePaneController::Outlets loadAddNodes() override {
        return {panel, panelNodes, panelFilter, panelAdd, panelDone};
    }
    [[nodiscard]] std::unique_ptr<auth::ConnectionDialog> loadAuthDialog() override {
        auto made = std::make_unique<FakeConnectionDialog>(journal_);
        dialog = made.get();
        return made;
    }

private:
    Journal& journal_;

public:
    FakeWindow window;
    FakeWindow progressSheet;
    FakeTabView mainVsDirectoryEditorTabView;
    FakeTabView mainTabView;
    FakeDirectoryEditor directoryEditor;
    FakeProgressIndicator progressBar;
    FakeButton applyButton;
    FakeButton helpButton;
    FakeButton configPlugIn;
    FakeLabel serviceState;
    FakeTableView selectPlugIn;
    FakePopUpButton selectSearchPolicy;
    FakeTableView selectNode;
    FakeButton addNode;
    FakeButton deleteNode;
    FakeView dragMessage;
    FakePopUpButton selectContactPolicy;
    FakeTableView selectNodeContact;
    FakeButton addNodeContact;
    FakeButton deleteNodeContact;
    FakeView dragMessageContact;
    FakeNotice trialNotice;
    FakeBusyIndicator busy;
    FakeNotice unsaved;
    FakeButton tryAgain;
    FakeButton showSaved;
    FakeNotice unsavedContact;
    FakeButton tryAgainContact;
    FakeButton showSavedContact;
    FakeNotice remarks;
    FakeNotice remarksContact;
    FakeAuthorizationView authorizationView;
    FakeWindow panel{journal_, "panel"};
    FakeTableView panelNodes{journal_, "panelNodes", {"NodeName"}};
    FakeTextField panelFilter{journal_, "panelFilter"};
    FakeButton panelAdd{journal_, "panelAdd", &panel};
    FakeButton panelDone{journal_, "panelDone", &panel};
    FakeConnectionDialog* dialog = nullptr;
};

/// The whole program on fakes, not yet started: `launch` does what the start of the real one does. The
/// directory holds two connectors ("BSD" and "LDAP") and both policies in Automatic mode.
class FakeProgram {
public:
    FakeProgram();

    void launch() { delegate.applicationDidFinishLaunching(); }
    /// Launches and opens the lock.
    void launchUnlocked() {
        launch();
        interface.authorizationView.click();
    }
    [[nodiscard]] app::MainController& controller() {
        if (!controller_) controller_ = std::make_unique<app::MainController>(environment);
        return *controller_;
    }
    /// Adds a connector's record; an empty text leaves the attribute out.
    FakeRecord& addConnector(const std::string& name, const std::string& state, const std::string& version);
    void addPlugin(const std::string& name, void* factory) {
        platform.bundles.add("/built-in/PlugIns/", name + ".cvplug", factory);
    }
    void setPolicy(FakeNodeState& node, std::string_view activePath, const std::vector<std::string>& custom);

    Journal journal;
    FakePlatform platform;
    FakeToolkit toolkit;
    FakeFramework framework;
    std::shared_ptr<FakeAuthorization> authorization;
    FakeInterface interface;
    FakeFormPresenter formPresenter;
    app::Environment environment;
    app::AppDelegate delegate;

private:
    std::unique_ptr<plugins::PluginController> plugins_;
    std::unique_ptr<app::MainController> controller_;
};

inline const std::vector<std::string> localNodes = {"/Local/Accounts", "/BSD/Files"};

} // namespace corvane::fakes
