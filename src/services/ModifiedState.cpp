#include "services/ModifiedState.h"

#include <algorithm>
#include <exception>

namespace corvane::services {
namespace {

/// The window says so as long as this lives, whichever way the work ends.
class Busy {
public:
    Busy(toolkit::BusyIndicator& indicator, const std::string& text) : indicator_(indicator) {
        indicator_.begin(text);
    }
    Busy(const Busy&) = delete;
    Busy& operator=(const Busy&) = delete;
    ~Busy() { indicator_.end(); }

private:
    toolkit::BusyIndicator& indicator_;
};

} // namespace

ModifiedState::ModifiedState(ServicesList& list, platform::Environment& environment,
                             toolkit::Toolkit& toolkit, Outlets outlets, Needs& needs)
    : list_(list), environment_(environment), toolkit_(toolkit), outlets_(outlets), needs_(needs) {}

void ModifiedState::setPluginModified(bool modified) {
    pluginModified_ = modified;
    updateModifiedState();
}

void ModifiedState::setSearchPolicyModified(bool modified) {
    searchPolicyModified_ = modified;
    updateModifiedState();
}

void ModifiedState::updateModifiedState() {
    const bool modified = pluginModified_ || searchPolicyModified_;
    outlets_.window.setDocumentEdited(modified);
    outlets_.applyButton.setEnabled(modified);
}

bool ModifiedState::isDirty() const {
    const bool marked = outlets_.window.isDocumentEdited();
    if (quitting_) return false;
    if (list_.count() == 0 || marked) return marked;
    return std::ranges::any_of(*list_.items(), [](const auto& item) { return item->isDirty(); });
}

bool ModifiedState::save() {
    const auto title = environment_.strings.localized("An unexpected error occurred");
    const auto button = environment_.strings.localized("OK");
    cancelled_ = false;
    try {
        cancelled_ = !needs_.agreesToDirectoriesLeaving();
        if (cancelled_) return false;
        const bool ok = saveEverything();
        outlets_.selectPlugIn.reloadData();
        if (ok) setPluginModified(false);
        return ok;
    } catch (const std::exception& failure) {
        showUnexpectedError(title, button, failure.what());
        return false;
    }
}

bool ModifiedState::saveEverything() {
    const Busy busy(outlets_.busy, environment_.strings.localized("Saving…"));
    return needs_.saveSearchPolicies() && saveItems();
}

bool ModifiedState::saveItems() {
    if (list_.count() == 0) return true;
    const auto items = *list_.items(); // a plug-in may have the list rebuilt while it saves
    return std::ranges::all_of(items, [](const auto& item) { return item->saveChanges(); });
}

void ModifiedState::showUnexpectedError(const std::string& title, const std::string& button,
                                        const std::string& reason) {
    const auto alert = toolkit_.makeAlert();
    alert->setMessageText(title);
    alert->setInformativeText(reason);
    alert->addButton(button);
    (void)alert->runModal();
}

void ModifiedState::revertAction() {
    if (!outlets_.window.isDocumentEdited() || !needs_.preflightDSRef()) return;
    showProgress();
    needs_.rereadEditedSearchPolicies();
    if (const auto* items = list_.items())
        for (const auto& item : PluginItemList(*items))
            item->revertChanges();
    list_.buildDSConfigPaneData();
    setSearchPolicyModified(false);
    setPluginModified(false);
    needs_.hideProgressBar();
}

void ModifiedState::showProgress() {
    outlets_.progressBar.setIndeterminate(true);
    outlets_.progressBar.display();
    needs_.showProgressBar();
}

bool ModifiedState::applicationWillQuitSavingChanges(bool save) {
    if (list_.count() == 0) return true;
    bool answer = true;
    for (const auto& item : PluginItemList(*list_.items()))
        answer = item->applicationWillQuitSavingChanges(save);
    return answer;
}

bool ModifiedState::applicationWillLockSavingChanges(bool save) {
    if (list_.count() == 0) return true;
    const auto items = *list_.items();
    return std::ranges::all_of(
        items, [&](const auto& item) { return item->applicationWillLockSavingChanges(save); });
}

void ModifiedState::loadConfigWithSheet() {
    if (list_.isLoaded()) return;
    showProgress();
    list_.buildDSConfigPaneData();
    needs_.hideProgressBar();
}

} // namespace corvane::services
