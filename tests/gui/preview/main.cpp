// The window with made-up data: what it looks like, without a machine behind it.
//
//   corvane-preview [--dark] [--open] [--pane services|search|contacts|editor] [--mode 1|2|3]
//                   [--show sheet|alert|progress|refusal|about|help|menu] [--picture FILE]
#include <QApplication>
#include <QCommandLineParser>
#include <QKeyEvent>
#include <QMainWindow>
#include <QMenuBar>
#include <QTimer>
#include <algorithm>
#include <iostream>

#include "qt/Appearance.h"
#include "qt/MainWindowInterface.h"
#include "qt/QtToolkit.h"
#include "qt/Text.h"

using namespace corvane;

namespace {

class StandardErrorLog final : public util::ProcessLog {
public:
    void log(std::string_view line) override { std::cerr << line << '\n'; }
};

class SampleAuthorization final : public platform::Authorization {
public:
    bool held = false;
    bool refuses = false;
    bool obtainRights(const platform::AuthorizationRights&, std::uint32_t flags) override {
        if ((flags & platform::AuthorizationFlag::interactionAllowed) && !refuses) held = true;
        return held;
    }
    [[nodiscard]] std::string refusalReason() const override {
        return "The user “guest” may not administer this machine. Log in as an administrator, or ask one to "
               "add “guest” to the group “sudo”, then try again.";
    }
    void destroyRights() override { held = false; }
    [[nodiscard]] platform::AuthorizationRef authorizationRef() const override { return 1; }
};

class SampleService final : public platform::AuthorizationService {
public:
    std::shared_ptr<SampleAuthorization> authorization = std::make_shared<SampleAuthorization>();
    std::shared_ptr<platform::Authorization> createAuthorization() override { return authorization; }
    std::int32_t makeExternalForm(platform::AuthorizationRef, util::AuthorizationExternalForm&) override {
        return 0;
    }
};

class SampleRows final : public toolkit::TableDataSource, public toolkit::TableDelegate {
public:
    struct Row {
        std::string text;
        toolkit::TextColor color = toolkit::TextColor::black;
    };
    std::vector<Row> rows;
    bool locked = true;

    int numberOfRowsInTableView(const toolkit::TableView&) override { return int(rows.size()); }
    toolkit::ObjectValue objectValueForTableColumn(const toolkit::TableView&, const toolkit::TableColumn&,
                                                   int row) override {
        return rows.at(std::size_t(row)).text;
    }
    void setObjectValue(const toolkit::TableView&, bool, const toolkit::TableColumn&, int) override {}
    void willDisplayCell(const toolkit::TableView&, toolkit::Cell& cell, const toolkit::TableColumn&,
                         int row) override {
        cell.textColor = locked ? toolkit::TextColor::gray : rows.at(std::size_t(row)).color;
    }
    bool shouldSelectRow(const toolkit::TableView&, int row) override {
        return !locked && rows.at(std::size_t(row)).color != toolkit::TextColor::gray;
    }
    void tableViewSelectionDidChange(const toolkit::TableView&) override {}
};

class Panes final : public toolkit::TabViewDelegate,
                    public toolkit::ToolbarDelegate,
                    public platform::AuthorizationViewDelegate {
public:
    Panes(qt::MainWindowInterface& interface, qt::QtToolkit& toolkit) : ui(interface), tools(toolkit) {
        fill();
        group();
        toolbar = tools.makeToolbar("preview");
        toolbar->setDelegate(this);
        ui.window.setToolbar(*toolbar);
        toolbar->setVisible(true);
        ui.authorizationView.setDelegate(this);
        setUnlocked(false);
        choose("kServices");
    }

    void choose(const std::string& identifier) {
        toolbar->setSelectedItemIdentifier(identifier);
        const bool editor = identifier == "kDebug";
        ui.mainVsDirectoryEditorTabView.selectTabViewItemWithIdentifier(editor ? "directoryEditor" : "main");
        if (!editor) ui.mainTabView.selectTabViewItemWithIdentifier(identifier == "kServices" ? "1" : "20");
        const toolkit::Size size = editor ? toolkit::Size{790, 600} : toolkit::Size{590, 365};
        const auto old = ui.window.frame();
        const toolkit::Point origin{old.origin.x, old.origin.y + old.size.height - size.height - 78};
        ui.window.setFrame(ui.window.frameRectForContentRect({origin, size}), true, true);
        ui.window.setContentMinSize(editor ? toolkit::Size{600, 500} : size);
        ui.window.setContentMaxSize(editor ? toolkit::Size{80000, 80000} : size);
    }

    void setMode(int mode) {
        ui.selectSearchPolicy.selectItemAtIndex(mode - 1);
        for (toolkit::View* each :
             {static_cast<toolkit::View*>(&ui.addNode), static_cast<toolkit::View*>(&ui.deleteNode),
              static_cast<toolkit::View*>(&ui.dragMessage)})
            each->setHidden(mode != 3);
        const bool custom = mode == 3;
        using toolkit::TextColor;
        nodes.rows = {{"/Local/Accounts", TextColor::gray}, {"/BSD/Files", TextColor::gray}};
        if (mode != 2)
            nodes.rows.push_back(
                {"/LDAP/ldap.orchard.example", custom ? TextColor::black : TextColor::gray});
        if (custom) nodes.rows.push_back({"/AD/ORCHARD/All Domains", TextColor::red});
        ui.selectNode.reloadData();
    }

    void setUnlocked(bool unlocked) {
        services.locked = nodes.locked = !unlocked;
        for (toolkit::Control* each : std::initializer_list<toolkit::Control*>{
                 &ui.configPlugIn, &ui.applyButton, &ui.selectSearchPolicy, &ui.addNode, &ui.deleteNode})
            each->setEnabled(unlocked);
        ui.selectPlugIn.reloadData();
        if (unlocked) ui.selectPlugIn.selectRow(2, false);
    }

    bool shouldSelectTabViewItem(toolkit::TabView&, const toolkit::TabViewItem&) override { return true; }
    void willSelectTabViewItem(toolkit::TabView&, const toolkit::TabViewItem&) override {}
    void didSelectTabViewItem(toolkit::TabView&, const toolkit::TabViewItem&) override {}

    std::vector<std::string> toolbarDefaultItemIdentifiers(const toolkit::Toolbar&) override {
        return {"kServices", "kSearchPaths", "kDebug"};
    }
    std::vector<std::string> toolbarAllowedItemIdentifiers(const toolkit::Toolbar& bar) override {
        return toolbarDefaultItemIdentifiers(bar);
    }
    std::vector<std::string> toolbarSelectableItemIdentifiers(const toolkit::Toolbar& bar) override {
        return toolbarDefaultItemIdentifiers(bar);
    }
    toolkit::ToolbarItem itemForItemIdentifier(const toolkit::Toolbar&, const std::string& identifier,
                                               bool) override {
        const auto action = [this](const toolkit::ToolbarItem& item) { choose(item.identifier); };
        if (identifier == "kServices") return {identifier, "Services", "Services_32", action};
        if (identifier == "kSearchPaths") return {identifier, "Search Policy", "SearchPaths_32", action};
        return {identifier, "Directory Editor", "Halden_32", action};
    }
    bool validateToolbarItem(const toolkit::ToolbarItem&) override { return true; }

    void authorizationViewCreatedAuthorization(platform::AuthorizationView&) override {}
    void authorizationViewDidAuthorize(platform::AuthorizationView&) override { setUnlocked(true); }
    void authorizationViewDidDeauthorize(platform::AuthorizationView&) override { setUnlocked(false); }
    bool authorizationViewShouldDeauthorize(platform::AuthorizationView&) override { return true; }
    void authorizationViewReleasedAuthorization(platform::AuthorizationView&) override {}

    std::shared_ptr<toolkit::TabView> policies;

private:
    void fill() {
        services.rows = {{"AD"}, {"BSD"}, {"LDAP"}, {"Local"}, {"Search"}, {"Contacts"}};
        for (const char* name : {"Version", "On-Off"})
            ui.selectPlugIn.removeTableColumn(*ui.selectPlugIn.tableColumnWithIdentifier(name));
        for (auto* table : {&ui.selectNode, &ui.selectNodeContact})
            table->setAllowsMultipleSelection(true);
        const auto show = [](qt::QtTableView& table, SampleRows& rows) {
            table.setDelegate(&rows);
            table.setDataSource(&rows);
        };
        show(ui.selectPlugIn, services);
        show(ui.selectNode, nodes);
        show(ui.selectNodeContact, nodes);
        setMode(1);
    }

    void group() {
        policies = tools.makeTabView({});
        policies->setAutoresizingMask(toolkit::TabView::widthSizable | toolkit::TabView::heightSizable);
        ui.mainTabView.addTabViewItem(tools.makeTabViewItem("20", policies));
        for (const char* identifier : {"2", "3"}) {
            const auto item = ui.mainTabView.tabViewItemWithIdentifier(identifier);
            ui.mainTabView.removeTabViewItem(*item);
            policies->addTabViewItem(item);
        }
    }

    qt::MainWindowInterface& ui;
    qt::QtToolkit& tools;
    std::shared_ptr<toolkit::Toolbar> toolbar;
    SampleRows services;
    SampleRows nodes;
};

std::unique_ptr<toolkit::Alert> savePrompt(qt::QtToolkit& toolkit) {
    auto alert = toolkit.makeAlert();
    alert->setMessageText("Save Changes?");
    alert->setInformativeText("Do you want to save changes before quitting?");
    for (const char* title : {"Save", "Donʼt Save", "Cancel"})
        alert->addButton(title);
    return alert;
}

} // namespace

int main(int count, char** arguments) {
    const std::vector<std::string_view> words(arguments, arguments + count);
    if (std::ranges::count(words, "--picture") > 0) qt::prepareForPictures();
    QApplication application(count, arguments);
    QCommandLineParser options;
    options.addHelpOption();
    options.addOptions({{"dark", "Dark colours."},
                        {"theme", "The desktop's colours."},
                        {"open", "With the lock open."},
                        {"edited", "With unsaved changes."},
                        {"pane", "Which pane.", "name", "services"},
                        {"mode", "Search policy 1, 2 or 3.", "number", "1"},
                        {"show", "sheet, alert, progress, refusal, about, help or menu.", "what"},
                        {"focus", "Presses the tab key so often.", "times", "0"},
                        {"picture", "Saves a picture of the window and ends.", "file"}});
    options.process(application);
    const auto own = options.isSet("dark") ? qt::ColorScheme::dark : qt::ColorScheme::light;
    qt::installAppearance(application, options.isSet("theme") ? qt::ColorScheme::automatic : own);

    StandardErrorLog log;
    qt::HandlerGuard guard(log);
    qt::SettingsFile settings("/dev/null", log);
    qt::QtApplication app(application, guard);
    app.about = {"Corvane",
                 "0.1.0",
                 "Directory services of a Linux machine, decided in one window",
                 "Apache License 2.0",
                 {"Qt " QT_VERSION_STR " (LGPL 3)", "OpenLDAP (OLDAP-2.8)", "Augeas (LGPL 2.1)"}};
    qt::QtToolkit toolkit(app, guard);
    SampleService service;
    qt::MainWindowInterface ui(app, service, settings, guard);
    ui.menu.validateMenuItem = [](toolkit::MenuItem& item) { return item.action() != "disconnect"; };
    Panes panes(ui, toolkit);
    if (options.isSet("open")) {
        service.authorization->held = true;
        ui.authorizationView.updateStatus();
    }
    const auto pane = options.value("pane");
    panes.choose(pane == "services" ? "kServices" : pane == "editor" ? "kDebug" : "kSearchPaths");
    if (pane == "contacts") panes.policies->selectTabViewItemWithIdentifier("3");
    panes.setMode(options.value("mode").toInt());
    ui.window.setDocumentEdited(options.isSet("edited"));
    ui.window.makeKeyAndOrderFront();

    const auto show = options.value("show");
    auto alert = savePrompt(toolkit);
    if (show == "sheet") alert->beginSheet(ui.window, [](int) {});
    if (show == "progress") {
        ui.progressBar.startAnimation();
        ui.window.beginSheet(ui.progressSheet, [](toolkit::Window&, int) {});
    }
    if (show == "refusal") {
        service.authorization->refuses = true;
        ui.shell().findChild<QAbstractButton*>("authorizationView")->click();
    }
    if (show == "about")
        app.orderFrontStandardAboutPanel({{"NoticeStartYear", "2025"}, {"NoticeEndYear", "2026"}});
    if (show == "help") app.openHelpAnchor("main-window", "Corvane Help");
    if (show == "menu")
        ui.shell().menuBar()->actions().at(1)->menu()->popup(ui.shell().mapToGlobal(QPoint(60, 24)));
    if (show == "alert") QTimer::singleShot(0, [&] { (void)alert->runModal(); });

    if (options.isSet("picture"))
        QTimer::singleShot(200, [&] {
            for (int press = options.value("focus").toInt(); press > 0; --press) {
                QKeyEvent tab(QEvent::KeyPress, Qt::Key_Tab, Qt::NoModifier);
                QWidget* to = QApplication::focusWidget() ? QApplication::focusWidget() : &ui.shell();
                QCoreApplication::sendEvent(to, &tab);
            }
            const bool inMain = show.isEmpty() || show == "sheet" || show == "progress" || show == "refusal";
            QWidget* subject = &ui.shell();
            for (auto* each : QApplication::topLevelWidgets())
                if (!inMain && each->isVisible() && each != &ui.shell()) subject = each;
            const bool saved = qt::renderToFile(*subject, options.value("picture"));
            std::_Exit(saved ? 0 : 1);
        });
    return QApplication::exec();
}
