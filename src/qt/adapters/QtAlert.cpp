#include "qt/adapters/QtAlert.h"

#include <QApplication>
#include <QMenu>
#include <QTimer>

#include "qt/Text.h"
#include "qt/adapters/QtWindow.h"

namespace corvane::qt {

namespace {

/// Over the window that the user works in; over none before there is one.
QWidget* windowToCover() {
    if (auto* active = QApplication::activeWindow()) return active;
    for (auto* each : QApplication::topLevelWidgets())
        if (each->isVisible() && !qobject_cast<QMenu*>(each)) return each;
    return nullptr;
}

} // namespace

QtAlert::QtAlert(HandlerGuard& guard) : guard_(guard), panel_(std::make_unique<AlertPanel>()) {}

QtAlert::~QtAlert() {
    if (parentShell_) parent_->detachSheet(*panel_);
}

void QtAlert::setMessageText(std::string_view text) { panel_->setMessageText(fromUtf8(text)); }

void QtAlert::setInformativeText(std::string_view text) { panel_->setInformativeText(fromUtf8(text)); }

void QtAlert::setSpokenText(std::string_view text) { panel_->setAccessibleDescription(fromUtf8(text)); }

void QtAlert::addButton(std::string_view title) { panel_->addButton(fromUtf8(title)); }

void QtAlert::arrange() {
    if (!std::exchange(arranged_, true)) panel_->arrange();
}

// Without a window manager nobody gives the keyboard to a new window, nor back to the old one: asked for
// here.
int QtAlert::runModal() {
    arrange();
    const QPointer<QWidget> cover = windowToCover();
    if (cover) panel_->setParent(cover.data(), panel_->windowFlags() | Qt::Dialog);
    panel_->setWindowModality(Qt::ApplicationModal);
    QTimer::singleShot(0, panel_.get(), &QWidget::activateWindow);
    const int answer = panel_->exec();
    panel_->setParent(nullptr);
    if (cover && cover->isVisible()) cover->activateWindow();
    return answer;
}

void QtAlert::beginSheet(toolkit::Window& parent, std::function<void(int answer)> ended) {
    auto* window = dynamic_cast<QtWindow*>(&parent);
    if (!window || parentShell_) return;
    arrange();
    parent_ = window;
    parentShell_ = &window->shell();
    ended_ = std::move(ended);
    QObject::connect(panel_.get(), &QDialog::finished, &context_, [this](int answer) { finished(answer); });
    window->attachSheet(*panel_);
}

// `ended` may destroy this alert, so that everything needed afterwards is taken out first. The panel is the
// sender of the signal that is being handled, and goes when that is over.
void QtAlert::finished(int answer) {
    if (!parentShell_) return;
    parentShell_.clear();
    QObject::disconnect(panel_.get(), nullptr, &context_, nullptr);
    auto* parent = parent_;
    auto* panel = panel_.release();
    panel_ = std::make_unique<AlertPanel>();
    arranged_ = false;
    auto& guard = guard_;
    const QPointer<QWidget> shell = &parent->shell();
    const auto ended = std::move(ended_);
    parent->sheetEnded(*panel);
    guard.run("a sheet's answer", [&] {
        if (ended) ended(answer);
    });
    if (shell) parent->detachSheet(*panel);
    panel->deleteLater();
}

} // namespace corvane::qt
