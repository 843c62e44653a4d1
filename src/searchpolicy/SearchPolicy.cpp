#include "searchpolicy/SearchPolicy.h"

#include <exception>

#include "directory/CustomCalls.h"
#include "halden/Calls.h"

namespace corvane::searchpolicy {

namespace attribute = halden::attribute;
namespace code = halden::callCode;

namespace {

/// 0 for a mode that can't be switched to.
std::int32_t codeOf(Mode mode) {
    switch (mode) {
    case Mode::automatic:
        return code::automaticPolicy;
    case Mode::local:
        return code::localPolicy;
    case Mode::custom:
        return code::customPolicy;
    case Mode::notYetKnown:
        break;
    }
    return 0;
}

} // namespace

SearchPolicy::SearchPolicy(const SearchPolicyTraits& traits, directory::Connection& connection,
                           platform::Environment& environment, toolkit::Toolkit& toolkit, Outlets outlets,
                           Needs& needs)
    : traits_(traits), connection_(connection), environment_(environment), toolkit_(toolkit),
      outlets_(outlets), needs_(needs) {}

void SearchPolicy::buildPaneData() {
    const auto message = environment_.strings.localized("An unexpected error occurred");
    const auto button = environment_.strings.localized("OK");
    try {
        readDetails();
        readMode();
        showRemarks();
        outlets_.nodeTable.setEmptyMessage(environment_.strings.localized("No directory domains"));
        selectModeInChooser();
        outlets_.nodeTable.reloadData();
        outlets_.modeChooser.synchronizeTitleAndSelectedItem();
        loaded_ = true;
        refusal_.reset(); // the edits that it was about are gone
    } catch (const std::exception& failure) {
        loaded_ = false;
        outlets_.nodeTable.setEmptyMessage(
            environment_.strings.localized("This search policy can’t be read"));
        outlets_.nodeTable.reloadData(); // rows of a policy that could be read once
        needs_.hideProgressBar();
        showAlert(message, failure.what(), button);
    }
}

void SearchPolicy::forgetDetails() {
    setDetails({});
    refusal_.reset();
}

void SearchPolicy::setDetails(util::Dictionary details) {
    details_ = std::move(details);
    needs_.customListReplaced(*this);
}

void SearchPolicy::readDetails() {
    halden::Error error;
    const auto node = openSearchNode(&error);
    if (!node) throw halden::Exception(error);
    setDetails({});
    const auto details = node->nodeDetails(std::nullopt, &error);
    if (!details) throw halden::Exception(error);
    setDetails(util::deepMutableCopy(details));
    savedCustomList_ = util::Array::ofTexts(customList().texts());
}

void SearchPolicy::readIfStale() {
    if (loaded_ || hasUnsavedEdits()) return;
    try {
        readDetails();
        readMode();
        showRemarks();
        selectModeInChooser();
    } catch (const std::exception&) {
        setDetails({});
    }
    outlets_.nodeTable.reloadData();
}

void SearchPolicy::showRemarks() {
    const auto remarks = list(attribute::remarks).texts();
    const bool isOne = remarks.size() == 1; // leaves the list more room
    std::string text;
    for (const auto& remark : remarks)
        text += (text.empty() ? "" : "\n") + remark;
    outlets_.remarks.setMessageText(
        isOne ? text : environment_.strings.localized("Part of this machine’s configuration isn’t used"));
    outlets_.remarks.setInformativeText(isOne ? "" : text);
    outlets_.remarks.setHidden(remarks.empty());
}

void SearchPolicy::readMode() {
    const auto active = list(attribute::searchPolicy).textAt(0);
    if (active == attribute::automaticSearchPath) pastMode_ = Mode::automatic;
    if (active == attribute::localOnlySearchPath) pastMode_ = Mode::local;
    if (active == attribute::customSearchPath) pastMode_ = Mode::custom;
    selectedMode_ = pastMode_;
}

void SearchPolicy::selectModeInChooser() {
    outlets_.modeChooser.selectItemAtIndex(static_cast<int>(selectedMode_) - 1);
    outlets_.modeChooser.synchronizeTitleAndSelectedItem();
}

std::shared_ptr<halden::Node> SearchPolicy::openSearchNode(halden::Error* error) {
    if (const auto session = connection_.haldenSession())
        return session->nodeWithType(traits_.searchNode, error);
    *error = {halden::ErrorCode::nodeUnreachable, "The directory service can't be reached.",
              "No session with it could be opened.", "Check that the service is running, then try again."};
    return nullptr;
}

util::Array SearchPolicy::list(std::string_view attribute) const {
    return details_.valueForKey(attribute).as<util::Array>();
}

util::Array SearchPolicy::automaticList() const { return list(attribute::automaticSearchPath); }
util::Array SearchPolicy::localOnlyList() const { return list(attribute::localOnlySearchPath); }
util::Array SearchPolicy::customList() const { return list(attribute::customSearchPath); }

util::Array SearchPolicy::shownList() const { return listOf(selectedMode_); }

util::Array SearchPolicy::listInService() const {
    return pastMode_ == Mode::custom && details_ ? savedCustomList_ : listOf(pastMode_);
}

util::Array SearchPolicy::listOf(Mode mode) const {
    switch (mode) {
    case Mode::automatic:
        return automaticList();
    case Mode::local:
        return localOnlyList();
    case Mode::custom:
        return customList();
    case Mode::notYetKnown:
        break;
    }
    return {};
}

void SearchPolicy::readIfNeeded() {
    if (!details_) buildPaneData();
    // A service that keeps no custom list yet still lets one be made.
    if (details_ && !customList()) details_.set(attribute::customSearchPath, util::Array::makeMutable());
}

void SearchPolicy::markCustomListEdited() {
    needs_.setSearchPolicyModified(true);
    customListChanged_ = true;
}

bool SearchPolicy::isNodeOnSearchPolicy(const std::string& nodeName) {
    readIfNeeded();
    return customList().contains(nodeName);
}

void SearchPolicy::addNode(const std::string& nodeName) {
    readIfNeeded();
    if (!details_) return; // the alert has said why it can't be read
    if (!customList().contains(nodeName)) {
        customList().append(nodeName);
        markCustomListEdited();
    }
    if (selectedMode_ != Mode::custom) {
        selectedMode_ = Mode::custom;
        selectModeInChooser();
        needs_.setSearchPolicyModified(true);
    }
    outlets_.nodeTable.reloadData();
}

void SearchPolicy::deleteNode(const std::string& nodeName) {
    readIfNeeded();
    if (customList().contains(nodeName)) {
        customList().removeAllEqualTo(nodeName);
        markCustomListEdited();
    }
    outlets_.nodeTable.reloadData();
}

void SearchPolicy::deleteNodesWithPrefix(const std::string& prefix) {
    readIfNeeded();
    util::ValueList kept;
    for (const auto& node : customList().elements())
        if (!node.as<util::String>().text().starts_with(prefix)) kept.push_back(node);
    if (kept.size() < customList().count()) {
        customList().setElements(std::move(kept));
        markCustomListEdited();
    }
    outlets_.nodeTable.reloadData();
}

void SearchPolicy::renameNode(const std::string& oldName, const std::string& newName) {
    if (!isNodeOnSearchPolicy(oldName)) return;
    customList().replace(*customList().indexOf(oldName), newName);
    markCustomListEdited();
}

bool SearchPolicy::save(const util::AuthorizationExternalForm& authForm) {
    if (!hasUnsavedEdits()) return true;
    halden::Error error;
    const auto node = openSearchNode(&error);
    if (!node) {
        (void)succeeded(error);
        return false;
    }
    refusal_.reset();
    // The edited list is gone when another session has come since: then there is nothing to write, and least
    // of all an empty list over the one that the service has.
    const auto list = customListToWrite();
    if (customListChanged_ && list && saveSearchPolicy(*node, authForm, list)) {
        customListChanged_ = false;
        savedCustomList_ = util::Array::ofTexts(customList().texts());
    }
    if (selectedMode_ != pastMode_) saveMode(*node, authForm);
    return true;
}

util::Array SearchPolicy::customListToWrite() const {
    if (!traits_.stripsLocalNodesOnSave || !customList()) return customList();
    auto list = util::Array::makeMutable();
    const auto localNodes = localOnlyList();
    for (const auto& node : customList().elements())
        if (!localNodes.contains(node)) list.append(node);
    return list;
}

void SearchPolicy::saveMode(halden::Node& node, const util::AuthorizationExternalForm& authForm) {
    const auto code = codeOf(selectedMode_);
    if (code != 0 && changePolicy(code, authForm, node)) pastMode_ = selectedMode_;
}

bool SearchPolicy::saveSearchPolicy(halden::Node& node, const util::AuthorizationExternalForm& authForm,
                                    const util::Array& custom) {
    halden::Error error;
    const auto list = environment_.propertyLists.binary(custom);
    if (!list) throw halden::Exception("The list of nodes holds something that isn't text.");
    auto request = directory::authorizedRequest(authForm, list->size());
    request.insert(request.end(), list->begin(), list->end());
    (void)node.customCall(code::replaceCustomList, request, &error);
    util::wipe(request);
    return wasTaken(error, &Refusal::customList);
}

bool SearchPolicy::changePolicy(std::int32_t code, const util::AuthorizationExternalForm& authForm,
                                halden::Node& node) {
    halden::Error error;
    (void)directory::customCall(node, code, authForm, &error);
    return wasTaken(error, &Refusal::mode);
}

bool SearchPolicy::succeeded(const halden::Error& error) {
    if (!error) return true;
    showAlert(error.description, error.details(), environment_.strings.localized("OK"));
    return false;
}

bool SearchPolicy::wasTaken(const halden::Error& error, bool Refusal::*part) {
    if (succeeded(error)) return true;
    if (!refusal_) refusal_ = Refusal{.error = error};
    (*refusal_).*part = true;
    return false;
}

const SearchPolicy::Refusal* SearchPolicy::refusal() const {
    const bool unsaved = refusal_ && ((refusal_->customList && customListChanged_) ||
                                      (refusal_->mode && selectedMode_ != pastMode_));
    return unsaved ? &*refusal_ : nullptr;
}

void SearchPolicy::acknowledgeOtherChanges() {
    try {
        halden::Error ignored;
        if (const auto node = openSearchNode(&ignored)) (void)node->nodeDetails(std::nullopt, &ignored);
    } catch (const std::exception&) {
        return;
    }
}

void SearchPolicy::dropEdits() {
    buildPaneData();
    if (loaded_) customListChanged_ = false;
}

void SearchPolicy::showAlert(const std::string& message, const std::string& information,
                             const std::string& button) {
    const auto alert = toolkit_.makeAlert();
    alert->setMessageText(message);
    alert->setInformativeText(information);
    alert->addButton(button);
    (void)alert->runModal();
}

} // namespace corvane::searchpolicy
