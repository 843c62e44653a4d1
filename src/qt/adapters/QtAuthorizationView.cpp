#include "qt/adapters/QtAuthorizationView.h"

#include <QApplication>
#include <QToolButton>

#include "qt/Text.h"
#include "qt/adapters/QtView.h"
#include "qt/look/Icons.h"

namespace corvane::qt {

using State = platform::AuthorizationViewState;
namespace flag = platform::AuthorizationFlag;

namespace {

QString tr(const char* text) { return QCoreApplication::translate("AuthorizationView", text); }

} // namespace

QtAuthorizationView::QtAuthorizationView(QToolButton& button, platform::AuthorizationService& service,
                                         HandlerGuard& guard)
    : button_(button), service_(service), guard_(guard), authorization_(service.createAuthorization()) {
    QObject::connect(&button, &QToolButton::clicked, &context_,
                     [this] { guard_.run("the lock", [this] { clicked(); }); });
    show(State::startup);
}

// A click on what still shows an open lock closes it, also when the rights have run out meanwhile.
void QtAuthorizationView::clicked() {
    if (state_ == State::inProgress) return;
    if (shownOpen_)
        close();
    else
        open();
}

void QtAuthorizationView::open() {
    if (!haveAuthorization())
        return explainRefusal(
            toUtf8(tr("The authorization service can't be reached. Check that the directory "
                      "service of this machine is running, then click the lock again.")));
    show(State::inProgress);
    constexpr auto flags = flag::interactionAllowed | flag::extendRights | flag::preAuthorize;
    bool held = false;
    try {
        held = authorization_->obtainRights(rights_, flags);
    } catch (...) {
        show(State::locked);
        throw;
    }
    const auto reason = held ? std::string() : authorization_->refusalReason();
    becomes(held);
    if (!reason.empty()) explainRefusal(reason);
}

void QtAuthorizationView::close() {
    if (delegate_ && !delegate_->authorizationViewShouldDeauthorize(*this)) return;
    if (authorization_) authorization_->destroyRights();
    becomes(false);
}

bool QtAuthorizationView::haveAuthorization() {
    if (authorization_) return true;
    authorization_ = service_.createAuthorization();
    if (authorization_ && delegate_) delegate_->authorizationViewCreatedAuthorization(*this);
    return authorization_ != nullptr;
}

void QtAuthorizationView::updateStatus() {
    if (state_ == State::inProgress) return;
    becomes(authorization_ && authorization_->obtainRights(rights_, flag::extendRights | flag::preAuthorize));
}

// The state is set before the delegate hears of it: it will ask for it, and call `updateStatus` in turn.
void QtAuthorizationView::becomes(bool held) {
    const bool news = held != shownOpen_;
    show(held ? State::unlocked : State::locked);
    if (!news || !delegate_) return;
    if (held)
        delegate_->authorizationViewDidAuthorize(*this);
    else
        delegate_->authorizationViewDidDeauthorize(*this);
}

void QtAuthorizationView::show(State state) {
    state_ = state;
    const bool wait = state == State::inProgress;
    if (!wait) shownOpen_ = state == State::unlocked;
    button_.setIcon(icon(shownOpen_ ? "LockOpen" : "LockClosed"));
    button_.setText(wait         ? tr("Asking for the right to make changes…")
                    : shownOpen_ ? tr("Click the lock to prevent further changes.")
                                 : tr("Click the lock to make changes."));
    button_.setAccessibleName(shownOpen_ ? tr("Lock, open") : tr("Lock, closed"));
    button_.setAccessibleDescription(button_.text());
    if (wait && button_.isVisible()) button_.repaint();
}

void QtAuthorizationView::explainRefusal(const std::string& reason) {
    auto* window = windowOf(button_);
    if (!window) return;
    refusal_ = std::make_unique<QtAlert>(guard_);
    refusal_->setMessageText(toUtf8(tr("The lock could not be opened")));
    refusal_->setInformativeText(reason);
    refusal_->addButton(toUtf8(tr("OK")));
    refusal_->beginSheet(*window, [](int) {});
}

void QtAuthorizationView::setHidden(bool hidden) { button_.setHidden(hidden); }

bool QtAuthorizationView::isHidden() const { return button_.isHidden(); }

} // namespace corvane::qt
