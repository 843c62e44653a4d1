#include "connectors/ldap/LdapPlugin.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include "connectors/ldap/ServerCheck.h"
#include "connectors/ldap/Widgets.h"

namespace corvane::connectors::ldap {

void LdapPlugin::configureButtonClicked(void* /*sender*/) {
    if (window_ && window_->isVisible()) {
        window_->raise();
        window_->activateWindow();
        return;
    }
    try {
        list_.readIfClean();
    } catch (const sdk::CallError& error) {
        return showError(windowInFront(), "LDAP Connector", error);
    }
    delete window_;
    window_ = new ServersDialog(host_, list_, isEnabledForLocation(nullptr), windowInFront());
    QObject::connect(window_.data(), &QDialog::finished, window_.data(), [this] { windowClosed(); });
    window_->open();
}

void LdapPlugin::windowClosed() {
    wanted_ = window_->isUsed();
    if (isDirty()) host_.markDirty();
}

bool LdapPlugin::saveChanges() {
    try {
        list_.save();
    } catch (const sdk::CallError& error) {
        showError(windowInFront(), "The LDAP servers were not saved.", error);
        return false;
    }
    if (wanted_ && *wanted_ != isEnabled()) host_.setPluginEnabled("LDAP", *wanted_);
    wanted_.reset();
    return true;
}

bool LdapPlugin::revertChanges() {
    list_.revert();
    wanted_.reset();
    return true;
}

bool LdapPlugin::works(const Server& server) const {
    constexpr int pollInterval = 120;           // milliseconds
    constexpr qint64 longestWait = 60LL * 1000; // milliseconds
    ServerCheck check(host_, ServerCheck::Kind::test, server, "", "");
    QElapsedTimer clock;
    clock.start();
    while (!check.poll().finished && clock.elapsed() < longestWait) {
        QEventLoop pause;
        QTimer::singleShot(pollInterval, &pause, &QEventLoop::quit);
        pause.exec(QEventLoop::ExcludeUserInputEvents);
    }
    const auto& report = check.report();
    if (report.failed)
        host_.log(server.title() + ": " + report.failure.cause + " " + report.failure.evidence);
    return report.finished && !report.failed;
}

bool LdapPlugin::selfTest() {
    list_.readIfClean();
    bool all = true;
    for (const auto& server : list_.servers())
        all = works(server) && all;
    return all;
}

} // namespace corvane::connectors::ldap
