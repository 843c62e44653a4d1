#pragma once

#include <QObject>
#include <QPointer>
#include <memory>

#include "platform/AuthorizationView.h"
#include "qt/HandlerGuard.h"
#include "qt/adapters/QtAlert.h"

class QToolButton;

namespace corvane::qt {

/// The padlock at the foot of the window.
class QtAuthorizationView final : public platform::AuthorizationView {
public:
    /// `button` and `service` outlive the view.
    QtAuthorizationView(QToolButton& button, platform::AuthorizationService& service, HandlerGuard& guard);
    QtAuthorizationView(const QtAuthorizationView&) = delete;
    QtAuthorizationView& operator=(const QtAuthorizationView&) = delete;

    void setDelegate(platform::AuthorizationViewDelegate* delegate) override { delegate_ = delegate; }
    void setAuthorizationRights(const platform::AuthorizationRights& rights) override { rights_ = rights; }
    [[nodiscard]] std::shared_ptr<platform::Authorization> authorization() const override {
        return authorization_;
    }
    [[nodiscard]] platform::AuthorizationViewState authorizationState() const override { return state_; }
    void updateStatus() override;
    void setHidden(bool hidden) override;
    [[nodiscard]] bool isHidden() const override;

private:
    void clicked();
    void open();
    void close();
    /// Asks the service for an authorization where there is none yet.
    [[nodiscard]] bool haveAuthorization();
    /// Shows `state` and, when that differs from what was shown, tells the delegate.
    void becomes(bool held);
    void show(platform::AuthorizationViewState state);
    void explainRefusal(const std::string& reason);

    QToolButton& button_;
    platform::AuthorizationService& service_;
    HandlerGuard& guard_;
    platform::AuthorizationViewDelegate* delegate_ = nullptr;
    platform::AuthorizationRights rights_;
    std::shared_ptr<platform::Authorization> authorization_;
    platform::AuthorizationViewState state_ = platform::AuthorizationViewState::startup;
    bool shownOpen_ = false;
    std::unique_ptr<QtAlert> refusal_;
    QObject context_;
};

} // namespace corvane::qt
