#pragma once

#include "app/Environment.h"

namespace corvane::app {

/// Stands where the connection dialog will be: says in plain words that this version administers this machine
/// alone, and reports a cancellation. Main thread.
class NoConnectionDialog final : public auth::ConnectionDialog {
public:
    NoConnectionDialog(toolkit::Toolkit& toolkit, platform::LocalizedStrings& strings)
        : toolkit_(toolkit), strings_(strings) {}

    void setAcceptsPasswordOnly(bool /*passwordOnly*/) override {}
    void showWindow(Owner& owner) override {
        sayWhy();
        owner.authCanceled();
    }
    [[nodiscard]] int runModal() override {
        sayWhy();
        return 0;
    }
    void saveFrame() override {}
    [[nodiscard]] std::shared_ptr<halden::Session> haldenSession() const override { return nullptr; }
    [[nodiscard]] std::shared_ptr<auth::RemoteAuthorization> remoteAuth() const override { return nullptr; }
    [[nodiscard]] std::string ipAddress() const override { return ""; }
    void reset() override {}

private:
    void sayWhy() {
        const auto alert = toolkit_.makeAlert();
        alert->setMessageText(strings_.localized("Corvane can’t connect to other machines yet."));
        alert->setInformativeText(
            strings_.localized("This version administers the machine that it runs on. To "
                               "administer another one, start Corvane there, for example "
                               "over SSH with X forwarding."));
        alert->addButton(strings_.localized("OK"));
        (void)alert->runModal();
    }

    toolkit::Toolkit& toolkit_;
    platform::LocalizedStrings& strings_;
};

} // namespace corvane::app
