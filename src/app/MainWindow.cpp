#include "app/MainWindow.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "app/TabTable.h"
#include "util/TextFormat.h"

namespace corvane::app {
namespace {

constexpr const char* toolbarIdentifier = "com.velmora.Corvane.toolbar";
constexpr const char* frameName = "MainWindow1";
constexpr const char* firstLaunch = "FirstLaunch";
constexpr const char* helpBook = "Corvane Help";
constexpr const char* helpAnchor = "main-window";
constexpr double authStatusSeconds = 300.0;

constexpr toolkit::Size fixedContent = {590, 365};
constexpr toolkit::Size editorContent = {790, 600};
constexpr toolkit::Size editorMinimum = {600, 500};
constexpr toolkit::Size editorMaximum = {80000, 80000};
/// Height of title bar and toolbar together.
constexpr double chromeHeight = 78;

namespace page {
constexpr const char* main = "main";
constexpr const char* directoryEditor = "directoryEditor";
constexpr const char* services = "1";
constexpr const char* authentication = "2";
constexpr const char* contacts = "3";
constexpr const char* localUsers = "4";
constexpr const char* editorTab = "11";
constexpr const char* searchPaths = "20";
constexpr const char* advanced = "advanced";
} // namespace page

std::optional<Pane> paneOf(const std::string& identifier) {
    if (identifier == page::services) return Pane::services;
    if (identifier == page::authentication) return Pane::authenticationPolicy;
    if (identifier == page::contacts) return Pane::contactsPolicy;
    if (identifier == page::localUsers) return Pane::localUsers;
    return std::nullopt;
}

std::string identifierOf(const std::shared_ptr<toolkit::TabViewItem>& item) {
    return item ? item->identifier() : "";
}

std::string textOf(double number) {
    std::array<char, 32> buffer{};
    return {buffer.data(), std::to_chars(buffer.data(), buffer.data() + buffer.size(), number).ptr};
}

/// "{x, y}" and back; none for anything else.
std::string textOf(const toolkit::Point& point) {
    return "{" + textOf(point.x) + ", " + textOf(point.y) + "}";
}

std::optional<double> numberAt(const char*& position, const char* end) {
    double number = 0;
    const auto [after, problem] = std::from_chars(position, end, number);
    if (problem != std::errc()) return std::nullopt;
    position = after;
    return number;
}

std::optional<toolkit::Point> pointFromText(const std::string& text) {
    if (!text.starts_with('{') || !text.ends_with('}')) return std::nullopt;
    const char* position = text.data() + 1;
    const char* end = text.data() + text.size() - 1;
    const auto x = numberAt(position, end);
    position = std::find_if_not(position, end, [](char c) { return c == ',' || c == ' '; });
    const auto y = numberAt(position, end);
    if (!x || !y || position != end) return std::nullopt;
    return toolkit::Point{*x, *y};
}

} // namespace

MainWindow::MainWindow(Environment& environment, const MainWindowOutlets& outlets, Parts parts)
    : environment_(environment), outlets_(outlets), parts_(parts) {
    outlets_.window.setDelegate(this);
    outlets_.mainTabView.setDelegate(this);
    outlets_.mainVsDirectoryEditorTabView.setDelegate(this);
}

std::string MainWindow::localized(std::string_view key) const {
    return environment_.platform.strings.localized(key);
}

void MainWindow::setUpNavigation() {
    outlets_.mainTabView.selectTabViewItemWithIdentifier(page::services);
    buildGroupedTabs();
    useToolbarInsteadOfTableView();
    loadCurrentTabIfNeeded(selectedTabItemIdentifier());
    parts_.authorization.udpateAuthStatus();
}

void MainWindow::startAuthStatusTimerIfActive() {
    if (environment_.toolkit.application().isActive()) scheduleAuthStatusTimer();
}

void MainWindow::buildGroupedTabs() {
    searchPathsTabView_ = environment_.toolkit.makeTabView(toolkit::Rect{}); // its page gives it its size
    searchPathsTabView_->setAutoresizingMask(toolkit::TabView::widthSizable |
                                             toolkit::TabView::heightSizable);
    searchPathsTabView_->setDelegate(this);
    outlets_.mainTabView.addTabViewItem(
        environment_.toolkit.makeTabViewItem(page::searchPaths, searchPathsTabView_));
    movePage(page::authentication, *searchPathsTabView_);
    movePage(page::contacts, *searchPathsTabView_);
}

void MainWindow::movePage(const char* identifier, toolkit::TabView& target) {
    const auto item = outlets_.mainTabView.tabViewItemWithIdentifier(identifier);
    if (!item) return;
    outlets_.mainTabView.removeTabViewItem(*item);
    target.addTabViewItem(item);
}

void MainWindow::createAdvancedPanel() {
    const auto advanced = environment_.toolkit.makeTabView(outlets_.mainTabView.frame());
    outlets_.mainTabView.addTabViewItem(environment_.toolkit.makeTabViewItem(page::advanced, advanced));
    for (const auto* identifier : {page::services, page::authentication, page::contacts})
        movePage(identifier, *advanced);
}

void MainWindow::useToolbarInsteadOfTableView() {
    toolbar_ = environment_.toolkit.makeToolbar(toolbarIdentifier);
    toolbar_->setDelegate(this);
    toolbar_->setAutosavesConfiguration(true);
    toolbar_->setAllowsUserCustomization(false);
    outlets_.window.setToolbar(*toolbar_);
    outlets_.window.setShowsToolbarButton(false);
    toolbar_->setVisible(true);
    toolbar_->setSelectedItemIdentifier(tabtable::identifierForTabID(selectedTabItemIdentifier()));
    if (const auto item = outlets_.mainTabView.selectedTabViewItem())
        didSelectTabViewItem(outlets_.mainTabView, *item);
}

std::string MainWindow::selectedTabItemIdentifier() const {
    return identifierOf(outlets_.mainTabView.selectedTabViewItem());
}

bool MainWindow::isServicesPaneShown() const { return selectedTabItemIdentifier() == page::services; }

void MainWindow::invalidatePanesUnlessEdited() {
    if (!outlets_.window.isDocumentEdited()) parts_.panes.invalidate();
}

void MainWindow::showMachineInTitle(const std::string& name) {
    outlets_.window.setTitle(util::formatted(localized("Corvane: %@"), {name}));
}

void MainWindow::toolbarItemClicked(const toolkit::ToolbarItem& item) {
    const auto tab = tabtable::tabIDOf(item.identifier);
    if (tab == page::editorTab) {
        outlets_.mainVsDirectoryEditorTabView.selectTabViewItemWithIdentifier(page::directoryEditor);
        outlets_.directoryEditorView.setHaldenSession(parts_.connection.haldenSession());
        return;
    }
    outlets_.mainVsDirectoryEditorTabView.selectTabViewItemWithIdentifier(page::main);
    outlets_.mainTabView.selectTabViewItemWithIdentifier(tab);
}

void MainWindow::selectToolbarItem(const std::string& identifier) {
    if (tabtable::tabIDOf(identifier).empty()) return;
    toolbar_->setSelectedItemIdentifier(identifier);
    clickItem(identifier);
}

void MainWindow::clickItem(const std::string& identifier) {
    const auto items = toolbar_->items();
    const auto found =
        std::ranges::find_if(items, [&](const auto& item) { return item.identifier == identifier; });
    if (found != items.end()) toolbarItemClicked(*found);
}

void MainWindow::loadCurrentTabIfNeeded(const std::optional<std::string>& identifier) {
    const bool remote = parts_.connection.isRemote();
    auto wanted = identifier.value_or(selectedTabItemIdentifier());
    if (wanted == page::searchPaths && searchPathsTabView_)
        wanted = identifierOf(searchPathsTabView_->selectedTabViewItem());
    const auto pane = paneOf(wanted);
    if (!pane || *pane == Pane::localUsers || parts_.panes.isLoaded(*pane)) return;
    loadPaneWithProgress(*pane, remote);
}

void MainWindow::loadPaneWithProgress(Pane pane, bool remote) {
    if (!remote) return parts_.panes.load(pane);
    outlets_.progressBar.setIndeterminate(true);
    outlets_.progressBar.display();
    showProgressBar();
    parts_.panes.load(pane);
    hideProgressBar();
}

bool MainWindow::shouldSelectTabViewItem(toolkit::TabView& /*tabView*/, const toolkit::TabViewItem& item) {
    const auto pane = paneOf(item.identifier());
    return !pane || parts_.panes.isLoaded(*pane) || parts_.authorization.preflightDSRef();
}

void MainWindow::willSelectTabViewItem(toolkit::TabView& /*tabView*/, const toolkit::TabViewItem& item) {
    loadCurrentTabIfNeeded(item.identifier());
}

void MainWindow::didSelectTabViewItem(toolkit::TabView& /*tabView*/, const toolkit::TabViewItem& item) {
    sizeForPage(item.identifier());
}

void MainWindow::sizeForPage(const std::string& identifier) {
    const auto pane = paneOf(identifier);
    if (identifier == page::searchPaths) {
        if (searchPathsTabView_) sizeForPage(identifierOf(searchPathsTabView_->selectedTabViewItem()));
    } else if (identifier == page::main) {
        sizeForPage(selectedTabItemIdentifier());
    } else if (identifier == page::editorTab || identifier == page::directoryEditor) {
        setContentSize(editorContent, true);
    } else if (pane && *pane != Pane::localUsers) {
        setContentSize(fixedContent, false);
    }
}

void MainWindow::setContentSize(const toolkit::Size& size, bool resizable) {
    auto& window = outlets_.window;
    const auto old = window.frame();
    // The top edge stays where it is.
    const toolkit::Point origin = {old.origin.x, old.origin.y + old.size.height - size.height - chromeHeight};
    window.setFrame(window.frameRectForContentRect({origin, size}), true, true);
    window.setShowsResizeIndicator(resizable);
    window.setZoomButtonEnabled(resizable);
    window.setContentMinSize(resizable ? editorMinimum : size);
    window.setContentMaxSize(resizable ? editorMaximum : size);
    outlets_.applyButton.setHidden(false);
}

void MainWindow::windowDidLoad() {
    auto& defaults = environment_.platform.userDefaults;
    if (defaults.boolForKey(firstLaunch)) outlets_.window.center();
    defaults.setBool(firstLaunch, false);
    outlets_.window.makeKeyAndOrderFront();
    outlets_.window.makeFirstResponder(nullptr);
    parts_.panes.load(Pane::services);
}

void MainWindow::showWindow() { outlets_.window.makeKeyAndOrderFront(); }

void MainWindow::showProgressBar() {
    outlets_.progressBar.setNeedsDisplay();
    outlets_.window.beginSheet(outlets_.progressSheet, [](toolkit::Window& sheet, int) { sheet.orderOut(); });
    if (outlets_.progressBar.isIndeterminate()) outlets_.progressBar.startAnimation();
    outlets_.progressBar.display();
}

void MainWindow::hideProgressBar() {
    if (outlets_.progressBar.isIndeterminate()) outlets_.progressBar.stopAnimation();
    outlets_.window.endSheet(outlets_.progressSheet, 0);
}

void MainWindow::showErrorSheet(const std::string& title, const std::string& message) {
    auto sheet = environment_.toolkit.makeAlert();
    sheet->setMessageText(title);
    sheet->setInformativeText(message);
    sheet->addButton(localized("OK"));
    errorSheets_.push_back(std::move(sheet));
    if (errorSheets_.size() == 1) showFirstErrorSheet();
}

void MainWindow::showFirstErrorSheet() {
    errorSheets_.front()->beginSheet(outlets_.window, [this](int) { errorSheetDidEnd(); });
}

void MainWindow::errorSheetDidEnd() {
    errorSheets_.pop_front();
    if (!errorSheets_.empty()) showFirstErrorSheet();
}

void MainWindow::explainRootUser() {
    showErrorSheet(localized("The root user can’t be changed here yet."),
                   localized("This version shows whether root may log in, and changes nothing. Use "
                             "“passwd root” in a terminal to set its password, and “passwd --lock "
                             "root” to lock it."));
}

void MainWindow::mainWindowHelpButtonHit() {
    environment_.toolkit.application().openHelpAnchor(helpAnchor, helpBook);
}

void MainWindow::localNodeWindowHelpButtonHit() {
    environment_.platform.log.log("local node window help button hit");
}

void MainWindow::scheduleAuthStatusTimer() {
    if (authStatusTimer_) authStatusTimer_->invalidate();
    authStatusTimer_ = environment_.platform.runLoop.scheduleRepeatingTimer(
        authStatusSeconds, [this] { parts_.authorization.udpateAuthStatus(); });
}

void MainWindow::applicationDidBecomeActive() {
    parts_.authorization.udpateAuthStatus();
    scheduleAuthStatusTimer();
}

void MainWindow::applicationDidResignActive() {
    parts_.authorization.udpateAuthStatus();
    if (authStatusTimer_) authStatusTimer_->invalidate();
    authStatusTimer_.reset();
}

std::vector<std::string> MainWindow::toolbarDefaultItemIdentifiers(const toolkit::Toolbar& toolbar) {
    // The only other toolbar is that of the secondary window, which has no items.
    return &toolbar == toolbar_.get() ? tabtable::sortedIdentifiers() : std::vector<std::string>();
}

std::vector<std::string> MainWindow::toolbarAllowedItemIdentifiers(const toolkit::Toolbar& toolbar) {
    return toolbarDefaultItemIdentifiers(toolbar);
}

std::vector<std::string> MainWindow::toolbarSelectableItemIdentifiers(const toolkit::Toolbar& toolbar) {
    return toolbarDefaultItemIdentifiers(toolbar);
}

toolkit::ToolbarItem MainWindow::itemForItemIdentifier(const toolkit::Toolbar& /*toolbar*/,
                                                       const std::string& identifier,
                                                       bool /*willBeInserted*/) {
    return {identifier, localized(tabtable::labelKeyOf(identifier)), tabtable::imageNameOf(identifier),
            [this](const toolkit::ToolbarItem& item) { toolbarItemClicked(item); }};
}

bool MainWindow::validateToolbarItem(const toolkit::ToolbarItem& /*item*/) { return true; }

bool MainWindow::windowShouldClose(toolkit::Window& /*window*/) {
    return parts_.owner.applicationShouldTerminate();
}

void MainWindow::windowWillClose(toolkit::Window& window) {
    window.saveFrameUsingName(frameName);
    parts_.modified.setQuitting();
    environment_.toolkit.application().terminate();
}

void MainWindow::willEncodeRestorableState(toolkit::Window& window, toolkit::StateCoder& coder) {
    if (&window != &outlets_.window || !toolbar_) return;
    if (const auto selected = toolbar_->selectedItemIdentifier())
        coder.encodeString("selectedToolbarItem", *selected);
    const auto frame = window.frame();
    coder.encodeString("windowTopLeft",
                       textOf(toolkit::Point{frame.origin.x, frame.origin.y + frame.size.height}));
}

void MainWindow::didDecodeRestorableState(toolkit::Window& window, const toolkit::StateCoder& coder) {
    if (&window != &outlets_.window || !toolbar_) return;
    const auto selected = coder.decodeString("selectedToolbarItem");
    if (selected) {
        toolbar_->setSelectedItemIdentifier(selected);
        clickItem(*selected);
    }
    const auto topLeft = coder.decodeString("windowTopLeft");
    if (const auto point = topLeft ? pointFromText(*topLeft) : std::nullopt)
        window.setFrameTopLeftPoint(*point);
}

} // namespace corvane::app
