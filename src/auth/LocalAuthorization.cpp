#include "auth/LocalAuthorization.h"

#include "util/TextFormat.h"

namespace corvane::auth {

using platform::AuthorizationView;
namespace flag = platform::AuthorizationFlag;

LocalAuthorization::LocalAuthorization(platform::Environment& environment, DirectoryConnection& connection,
                                       AuthorizationView& view, DirectoryEditor& editor, Needs& needs)
    : environment_(environment), connection_(connection), view_(view), editor_(editor), needs_(needs) {}

platform::AuthorizationRights LocalAuthorization::rights() {
    return {{"system.services.directory.configure", "", 0}, {"system.preferences", "", 0}};
}

void LocalAuthorization::setUpLockControl() {
    view_.setDelegate(this);
    view_.setAuthorizationRights(rights());
    authorization_ = view_.authorization();
    setUnlocked(haveAuthRights());
    view_.updateStatus();
}

void LocalAuthorization::setUnlocked(bool unlocked) {
    unlocked_ = unlocked;
    needs_.lockStateChanged(unlocked);
}

platform::AuthorizationRef LocalAuthorization::authorizationRef() const {
    return authorization_ ? authorization_->authorizationRef() : 0;
}

bool LocalAuthorization::haveAuthRights() const {
    return authorization_ && authorization_->obtainRights(rights(), flag::extendRights | flag::preAuthorize);
}

bool LocalAuthorization::preflightAuthRights() {
    return connection_.isRemote() ? preflightRemoteRights() : preflightLocalRights();
}

bool LocalAuthorization::preflightRemoteRights() {
    const auto held = [this] {
        return connection_.remoteAuth() && connection_.remoteAuth()->haveAuthRights();
    };
    if (connection_.haldenSession() && held()) return true;
    if (!needs_.runPasswordDialog()) return false;
    needs_.authAccepted();
    view_.updateStatus();
    return held();
}

// There is always a session to renew here, because asking for it takes the default one. That every preflight
// takes a fresh reference is on purpose: a service that was restarted is noticed before anything is written.
bool LocalAuthorization::preflightLocalRights() {
    if (connection_.haldenSession()) connection_.renewDefaultSession();
    constexpr auto flags = flag::interactionAllowed | flag::extendRights | flag::preAuthorize;
    if (!authorization_ || !authorization_->obtainRights(rights(), flags)) return false;
    view_.updateStatus();
    return true;
}

bool LocalAuthorization::preflightDSRef() {
    if (connection_.haldenSession()) return true;
    if (connection_.isRemote()) {
        if (!needs_.runPasswordDialog()) return false;
        needs_.invalidatePanesUnlessEdited();
        needs_.authAccepted();
    } else {
        connection_.setHaldenSession(nullptr); // the next request for the session takes the default one
    }
    return connection_.haldenSession() != nullptr;
}

std::int32_t LocalAuthorization::makeAuthExternalForm(util::AuthorizationExternalForm& form) {
    if (!connection_.isRemote())
        return environment_.authorizationService.makeExternalForm(authorizationRef(), form);
    constexpr std::int32_t noRemoteAuthorization = -1;
    return connection_.remoteAuth() ? connection_.remoteAuth()->makeExternalForm(form)
                                    : noRemoteAuthorization;
}

void LocalAuthorization::authToLocalNode() {
    const bool local = !connection_.isRemote();
    if (local && authedToLocalNode_) return;
    if (local && view_.authorizationState() != platform::AuthorizationViewState::unlocked) return;
    util::AuthorizationExternalForm form;
    const auto status = makeAuthExternalForm(form);
    if (status == 0) return setCredentials(form);
    environment_.log.log(
        util::formatted("-[MainController authToLocalNode]: Got error %d while externalizing the authRef!",
                        {std::to_string(status)}));
}

void LocalAuthorization::setCredentials(const util::AuthorizationExternalForm& form) {
    const auto node = connection_.localHaldenNode();
    if (!node) return;
    const auto view = form.view();
    const util::Array items{util::Data(util::Bytes(view.begin(), view.end()))};
    util::Array continueItems;
    std::shared_ptr<void> context;
    halden::Error error;
    (void)node->setCredentials(halden::recordType::users,
                               halden::authenticationType::authorizationExternalForm, items, &continueItems,
                               &context, &error);
    if (!error) {
        authedToLocalNode_ = true;
        return;
    }
    environment_.log.log(
        util::formatted("-[MainController authToLocalNode]: Got error %ld attempting to auth to local node!",
                        {std::to_string(error.code)}));
}

void LocalAuthorization::udpateAuthStatus() { view_.updateStatus(); }

void LocalAuthorization::authorizationViewCreatedAuthorization(AuthorizationView& view) {
    authorization_ = view.authorization();
}

void LocalAuthorization::authorizationViewDidAuthorize(AuthorizationView& view) {
    setUnlocked(true);
    view.updateStatus();
    authToLocalNode();
    editor_.setAuthForLocalNode(authorization_);
}

void LocalAuthorization::authorizationViewDidDeauthorize(AuthorizationView& view) {
    setUnlocked(false);
    view.updateStatus();
    deauthToLocalNode();
    editor_.setAuthForLocalNode(nullptr);
}

bool LocalAuthorization::authorizationViewShouldDeauthorize(AuthorizationView& /*view*/) {
    return needs_.applicationShouldSaveChangesBeforeLocking();
}

void LocalAuthorization::authorizationViewReleasedAuthorization(AuthorizationView& /*view*/) {
    authorization_.reset();
}

} // namespace corvane::auth
