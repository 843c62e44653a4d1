#include "qt/forms/QtFormPresenter.h"

#include <QMessageBox>
#include <QPointer>
#include <QPushButton>

#include "qt/Text.h"
#include "qt/forms/FormDialog.h"
#include "qt/forms/FormTexts.h"
#include "qt/look/Icons.h"

namespace corvane::qt {
namespace {

class DialogWindow final : public forms::FormWindow {
public:
    DialogWindow(forms::Form& form, HandlerGuard& guard)
        : dialog_(new FormDialog(form, guard, windowInFront())) {}
    void open() override { dialog_->open(); }
    void raise() override {
        if (!dialog_) return;
        dialog_->raise();
        dialog_->activateWindow();
    }
    void close() override {
        if (dialog_) dialog_->letGo();
    }
    void itemChanged(const forms::Item& item) override {
        if (dialog_) dialog_->showItem(item);
    }
    void buttonsChanged() override {
        if (dialog_) dialog_->showButtons();
    }
    void titleChanged() override {
        if (dialog_) dialog_->showTitle();
    }
    void showProblem(const std::string& itemName, const std::string& text) override {
        if (dialog_) dialog_->showProblem(itemName, text);
    }
    void suggest(const forms::Item& item, const std::vector<std::string>& values) override {
        if (dialog_) dialog_->suggest(item.name, values);
    }

private:
    QPointer<FormDialog> dialog_;
};

QMessageBox::ButtonRole roleOf(forms::Button::Role role) {
    if (role == forms::Button::Role::accept) return QMessageBox::AcceptRole;
    return role == forms::Button::Role::cancel ? QMessageBox::RejectRole : QMessageBox::DestructiveRole;
}

class MessageWindow final : public forms::FormWindow {
public:
    MessageWindow(forms::Form& form, HandlerGuard& guard) : form_(&form), guard_(guard) {
        constexpr int signSize = 48; // as on the program's own alerts
        const auto& described = form.description();
        box_ = new QMessageBox(QMessageBox::NoIcon, fromUtf8(described.title), fromUtf8(described.message),
                               QMessageBox::NoButton, windowInFront());
        box_->setObjectName(fromUtf8(described.name));
        box_->setAttribute(Qt::WA_DeleteOnClose);
        box_->setTextFormat(Qt::PlainText);
        box_->setInformativeText(breakable(fromUtf8(described.details)));
        box_->setIconPixmap(icon("Corvane").pixmap(QSize(signSize, signSize), box_->devicePixelRatioF()));
        for (const auto& button : described.buttons)
            add(button);
        QObject::connect(box_, &QMessageBox::finished, box_, [this] { answered(); });
        // Gone with what it belonged to.
        QObject::connect(box_, &QObject::destroyed, &context_, [this] { form_->windowWentAway(); });
    }
    void open() override { box_->open(); }
    void raise() override {
        if (box_) box_->raise();
    }
    void close() override {
        if (!box_) return;
        box_->disconnect();
        QObject::disconnect(box_, nullptr, &context_, nullptr);
        box_->close();
    }
    void itemChanged(const forms::Item& /*item*/) override {}
    void buttonsChanged() override {
        for (const auto& button : form_->description().buttons)
            if (auto* shown = box_ ? box_->findChild<QPushButton*>(fromUtf8(button.name)) : nullptr)
                showFormButton(*shown, button, *form_);
    }
    void titleChanged() override {}
    void showProblem(const std::string& /*itemName*/, const std::string& /*text*/) override {}
    void suggest(const forms::Item& /*item*/, const std::vector<std::string>& /*values*/) override {}

private:
    void add(const forms::Button& button) {
        auto* made = box_->addButton(fromUtf8(button.title), roleOf(button.role));
        made->setObjectName(fromUtf8(button.name));
        made->setEnabled(form_->canPress(button));
        if (button.isDefault) box_->setDefaultButton(made);
        if (button.role == forms::Button::Role::cancel) box_->setEscapeButton(made);
    }
    /// The form, and this window with it, may be gone afterwards.
    void answered() {
        const auto* clicked = box_->clickedButton();
        const auto name = clicked == nullptr ? std::string() : toUtf8(clicked->objectName());
        guard_.run("an answer", [form = form_->shared_from_this(), name] {
            name.empty() ? form->userDismissed() : form->userPressed(name);
        });
    }

    forms::Form* form_;
    HandlerGuard& guard_;
    QPointer<QMessageBox> box_;
    QObject context_; ///< of what is heard of the box until it is closed
};

} // namespace

std::unique_ptr<forms::FormWindow> QtFormPresenter::present(forms::Form& form) {
    if (form.description().isMessage) return std::make_unique<MessageWindow>(form, guard_);
    return std::make_unique<DialogWindow>(form, guard_);
}

} // namespace corvane::qt
