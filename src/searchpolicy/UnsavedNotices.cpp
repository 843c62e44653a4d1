#include "searchpolicy/UnsavedNotices.h"

#include "util/TextFormat.h"

namespace corvane::searchpolicy {
namespace {

/// The mode as its pop-up calls it.
const char* titleOf(Mode mode) {
    switch (mode) {
    case Mode::automatic:
        return "Automatic";
    case Mode::local:
        return "Local directory";
    case Mode::custom:
        return "Custom path";
    case Mode::notYetKnown:
        break;
    }
    return "";
}

} // namespace

UnsavedNotices::UnsavedNotices(SearchPolicy& authentication, Outlets authenticationOutlets,
                               SearchPolicy& contacts, Outlets contactsOutlets,
                               const directory::Authorizer& authorizer, platform::Environment& environment,
                               toolkit::Toolkit& toolkit, Needs& needs)
    : strips_{{{authentication, authenticationOutlets, "Authentication"},
               {contacts, contactsOutlets, "Contacts"}}},
      authorizer_(authorizer), environment_(environment), toolkit_(toolkit), needs_(needs) {
    for (auto& strip : strips_) {
        strip.outlets.tryAgain.setAction([this, &strip](toolkit::Control&) { tryAgain(strip); });
        strip.outlets.showSaved.setAction(
            [this, &strip](toolkit::Control&) { needs_.showSavedPolicy(strip.policy); });
        if (!strip.outlets.notice.isHidden()) strip.outlets.notice.setHidden(true);
    }
}

std::string UnsavedNotices::localized(std::string_view key) const {
    return environment_.strings.localized(key);
}

void UnsavedNotices::update() {
    for (auto& strip : strips_)
        update(strip);
}

// Controls that are as they should be are left alone.
void UnsavedNotices::update(Strip& strip) {
    auto& [notice, tryAgain, showSaved] = strip.outlets;
    const auto* refusal = strip.policy.refusal();
    if (refusal != nullptr) {
        notice.setMessageText(whatIsUnsaved(strip.policy));
        notice.setInformativeText(whyAndWhatNow(refusal->error));
        if (tryAgain.isEnabled() != authorizer_.unlocked()) tryAgain.setEnabled(authorizer_.unlocked());
    }
    const bool shown = !notice.isHidden();
    if (shown != (refusal != nullptr)) notice.setHidden(shown);
}

std::string UnsavedNotices::whatIsUnsaved(const SearchPolicy& policy) const {
    const auto& refusal = *policy.refusal();
    const auto mode = localized(titleOf(policy.selectedMode()));
    if (refusal.customList && refusal.mode)
        return util::formatted(localized("The list of directory domains and the choice “%@” were not saved."),
                               {mode});
    if (refusal.customList) return localized("The list of directory domains was not saved.");
    return util::formatted(localized("The choice “%@” was not saved."), {mode});
}

std::string UnsavedNotices::whyAndWhatNow(const halden::Error& refusal) const {
    const auto next =
        refusal.code == halden::ErrorCode::changedElsewhere
            ? localized("Trying again replaces what the other program has chosen with what you see here.")
            : refusal.recovery;
    return refusal.reason.empty() || next.empty() ? refusal.reason + next : refusal.reason + " " + next;
}

// Another program's change is what the service protects until it has been read. It is read here and the
// user's edit kept: that this replaces it is what the strip says.
void UnsavedNotices::tryAgain(Strip& strip) {
    const auto* refusal = strip.policy.refusal();
    if (refusal != nullptr && refusal->error.code == halden::ErrorCode::changedElsewhere)
        strip.policy.acknowledgeOtherChanges();
    needs_.saveChanges();
}

bool UnsavedNotices::mayLeave(bool quitting) {
    std::string unsaved;
    for (const auto& strip : strips_)
        if (strip.policy.refusal() != nullptr)
            unsaved +=
                util::formatted(localized("%@: %@"), {localized(strip.title), whatIsUnsaved(strip.policy)}) +
                "\n\n";
    if (unsaved.empty()) return true;
    const auto alert = toolkit_.makeAlert();
    alert->setMessageText(quitting ? localized("Quit although not everything is saved?")
                                   : localized("Lock although not everything is saved?"));
    alert->setInformativeText(
        unsaved + (quitting ? localized("It is lost when Corvane quits.")
                            : localized("It stays unsaved, and can be saved when the lock is open again.")));
    alert->addButton(localized("Cancel"));
    alert->addButton(quitting ? localized("Quit Anyway") : localized("Lock Anyway"));
    constexpr int goOn = 2;
    return alert->runModal() == goOn;
}

} // namespace corvane::searchpolicy
