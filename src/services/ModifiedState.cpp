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

ModifiedState::ModifiedState(Parts parts, platform::Environment& environment, toolkit::Toolkit& toolkit,
                             Outlets outlets, Needs& needs)
    : parts_(parts), environment_(environment), toolkit_(toolkit), outlets_(outlets), needs_(needs) {}

void ModifiedState::setPluginModified(bool modified) {
    markPluginModified(modified);
    parts_.table.modificationMarked();
}

void ModifiedState::markPluginModified(bool modified) {
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

bool ModifiedState::mayLeaveUnsaved(bool quitting) {
    return quitting_ || needs_.agreesToLeaveUnsaved(quitting);
}

bool ModifiedState::isDirty() const {
    const bool marked = outlets_.window.isDocumentEdited();
    if (quitting_) return false;
    if (parts_.list.count() == 0 || marked) return marked;
    return std::ranges::any_of(*parts_.list.items(), [](const auto& item) { return item->isDirty(); });
}

bool ModifiedState::save() {
    const auto title = environment_.strings.localized("An unexpected error occurred");
    const auto button = environment_.strings.localized("OK");
    cancelled_ = false;
    try {
        cancelled_ = !needs_.agreesToDirectoriesLeaving();
        if (cancelled_) return false;
        const bool ok = saveEverything();
        parts_.table.reloadPluginTable();
        if (ok) markPluginModified(false);
        return ok;
    } catch (const std::exception& failure) {
        showUnexpectedError(title, button, failure.what());
        parts_.table.showState();
        return false;
    }
}

bool ModifiedState::saveEverything() {
    const Busy busy(outlets_.busy, environment_.strings.localized("Saving…"));
    return parts_.policies.saveSearchPolicies() && saveItems();
}

bool ModifiedState::saveItems() {
    if (parts_.list.count() == 0) return true;
    const auto items = *parts_.list.items(); // a plug-in may have the list rebuilt while it saves
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
    if (!outlets_.window.isDocumentEdited() || !parts_.authorizer.preflightDSRef()) return;
    showProgress();
    needs_.rereadEditedSearchPolicies();
    if (const auto* items = parts_.list.items())
        for (const auto& item : ServicesList::List(*items))
            item->revertChanges();
    parts_.list.buildDSConfigPaneData();
    setSearchPolicyModified(false);
    markPluginModified(false);
    needs_.hideProgressBar();
}

void ModifiedState::showProgress() {
    outlets_.progressBar.setIndeterminate(true);
    outlets_.progressBar.display();
    needs_.showProgressBar();
}

bool ModifiedState::applicationWillQuitSavingChanges(bool save) {
    if (parts_.list.count() == 0) return true;
    bool answer = true;
    for (const auto& item : ServicesList::List(*parts_.list.items()))
        answer = item->applicationWillQuitSavingChanges(save);
    return answer;
}

bool ModifiedState::applicationWillLockSavingChanges(bool save) {
    if (parts_.list.count() == 0) return true;
    const auto items = *parts_.list.items();
    return std::ranges::all_of(
        items, [&](const auto& item) { return item->applicationWillLockSavingChanges(save); });
}

void ModifiedState::loadConfigWithSheet() {
    if (parts_.list.isLoaded()) return;
    showProgress();
    parts_.list.buildDSConfigPaneData();
    needs_.hideProgressBar();
}

} // namespace corvane::services
