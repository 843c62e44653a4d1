#include "connectors/ldap/CheckDialog.h"

#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

#include "connectors/ldap/Widgets.h"
#include "qt/widgets/Announcement.h"
#include "qt/widgets/GrowingArea.h"
#include "sdk/LdapServerCalls.h"

namespace corvane::connectors::ldap {
namespace {

/// How often the service is asked how far it is, in milliseconds.
constexpr int pollInterval = 120;

struct Mark {
    const char* sign;
    const char* meaning; ///< for those who don't see the sign
};

Mark markOf(CheckReport::State state) {
    switch (state) {
    case CheckReport::State::running:
        return {"…", "in progress"};
    case CheckReport::State::done:
        return {"✓", "succeeded"};
    case CheckReport::State::failed:
        return {"✗", "failed"};
    case CheckReport::State::skipped:
        return {"–", "skipped"};
    case CheckReport::State::waiting:
        break;
    }
    return {"○", "not yet tried"};
}

} // namespace

CheckDialog::CheckDialog(const sdk::Host& host, const Server& server, QWidget* parent)
    : QDialog(parent), host_(host), server_(server) {
    setObjectName("checkDialog");
    setWindowTitle(QString("Test of %1").arg(text(server.title())));
    setWindowModality(Qt::WindowModal);
    build();
    timer_.setInterval(pollInterval);
    connect(&timer_, &QTimer::timeout, this, &CheckDialog::poll);
}

void CheckDialog::open(const sdk::Host& host, const Server& server, QWidget* parent) {
    const auto show = [&host, server, parent] {
        auto* dialog = new CheckDialog(host, server, parent);
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        dialog->open();
    };
    if (!server.showsPassword()) return show();
    auto* box = messageBox("Send the Password Unencrypted?",
                           QString("The connection to %1 isn’t encrypted. Send the password all the same?")
                               .arg(text(server.title())),
                           QMessageBox::NoButton, parent);
    box->setObjectName("clearPasswordQuestion");
    box->setInformativeText(QString("Anybody on the network could read the password of %1. With StartTLS or "
                                    "LDAPS nobody can.")
                                .arg(breakable(text(server.bindDN))));
    auto* no = box->addButton("Don’t Test", QMessageBox::RejectRole);
    auto* yes = box->addButton("Send Password", QMessageBox::DestructiveRole);
    yes->setObjectName("sendPassword");
    box->setDefaultButton(no);
    box->setEscapeButton(no);
    connect(yes, &QPushButton::clicked, parent, show);
    box->open();
}

void CheckDialog::build() {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 20, 24, 16);
    layout->setSpacing(12);
    layout->addWidget(heading(windowTitle(), *this));
    user_ = namedField("checkUser", "any user", *this);
    group_ = namedField("checkGroup", "any group", *this);
    auto* names = new QFormLayout;
    names->addRow("Look up the &user:", user_);
    names->addRow("Look up the &group:", group_);
    layout->addLayout(names);
    auto* report = new QWidget(this);
    auto* inside = new QVBoxLayout(report);
    inside->setContentsMargins(0, 0, 0, 0);
    inside->setSpacing(12);
    steps_ = new QGridLayout;
    steps_->setColumnStretch(2, 1);
    steps_->setVerticalSpacing(8);
    inside->addLayout(steps_);
    progress_ = new QProgressBar(this);
    progress_->setRange(0, 0);
    progress_->setTextVisible(false);
    progress_->setAccessibleName("The test is running");
    inside->addWidget(progress_);
    result_ = paragraph("", *this);
    result_->setObjectName("checkResult");
    result_->setTextFormat(Qt::RichText);
    result_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    qt::makeAnnouncer(*result_);
    inside->addStretch();
    layout->addWidget(area_ = new qt::GrowingArea(report, this), 1);
    layout->addWidget(result_); // always to be seen, whatever the steps need
    auto* buttons = new QDialogButtonBox(this);
    again_ = buttons->addButton("Test &Again", QDialogButtonBox::ActionRole);
    close_ = buttons->addButton("Cancel", QDialogButtonBox::RejectRole);
    close_->setObjectName("checkClose");
    copy_ = buttons->addButton("Co&py Report", QDialogButtonBox::ActionRole);
    copy_->setObjectName("copyReport");
    copy_->setToolTip("Copies everything that this window says.");
    connect(copy_, &QPushButton::clicked, this, &CheckDialog::copyReport);
    connect(again_, &QPushButton::clicked, this, &CheckDialog::start);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
    resize(600, std::min(460, qt::heightOnScreen(*this)));
}

void CheckDialog::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (!check_) start();
}

// Enter in a field asks for a test with what was typed there.
void CheckDialog::keyPressEvent(QKeyEvent* event) {
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isEnter || !(user_->hasFocus() || group_->hasFocus())) return QDialog::keyPressEvent(event);
    if (again_->isEnabled()) start();
}

void CheckDialog::start() {
    showResult({});
    check_.reset();
    try {
        check_ = std::make_unique<ServerCheck>(
            host_, ServerCheck::Kind::test, server_, user_->text().trimmed().toStdString(),
            group_->text().trimmed().toStdString(), server_.showsPassword());
        setRunning(true);
        poll();
    } catch (const sdk::CallError& error) {
        setRunning(false);
        showFailure(error.what(), error.reason(), error.recovery());
    }
}

void CheckDialog::poll() {
    try {
        show(check_->poll());
    } catch (const sdk::CallError& error) {
        setRunning(false);
        showFailure(error.what(), error.reason(), error.recovery());
    }
}

void CheckDialog::setRunning(bool running) {
    running ? timer_.start() : timer_.stop();
    progress_->setVisible(running);
    again_->setEnabled(!running);
    copy_->setEnabled(!running);
    close_->setText(running ? "Cancel" : "Close");
    close_->setDefault(true);
}

CheckDialog::Row& CheckDialog::rowAt(std::size_t index) {
    while (rows_.size() <= index) {
        Row row{new QLabel(this), new QLabel(this), paragraph("", *this)};
        const int line = static_cast<int>(rows_.size());
        row.mark->setFixedWidth(18);
        row.mark->setAlignment(Qt::AlignTop | Qt::AlignHCenter);
        row.title->setAlignment(Qt::AlignTop | Qt::AlignLeft);
        steps_->addWidget(row.mark, line, 0);
        steps_->addWidget(row.title, line, 1);
        steps_->addWidget(row.detail, line, 2);
        rows_.push_back(row);
    }
    return rows_[index];
}

void CheckDialog::showStep(const CheckReport::Step& step, Row& row) {
    const auto mark = markOf(step.state);
    row.mark->setText(QString::fromUtf8(mark.sign));
    row.mark->setAccessibleName(QString("%1: %2").arg(text(step.title), mark.meaning));
    row.title->setText(text(step.title));
    row.detail->setText(breakable(text(step.detail)));
    auto font = row.title->font();
    font.setBold(step.state == CheckReport::State::running || step.state == CheckReport::State::failed);
    row.title->setFont(font);
    setAlarming(*row.mark, step.state == CheckReport::State::failed);
    const bool quiet = step.state == CheckReport::State::waiting || step.state == CheckReport::State::skipped;
    row.title->setEnabled(!quiet);
    row.mark->setEnabled(!quiet);
}

void CheckDialog::show(const CheckReport& report) {
    for (std::size_t i = 0; i < report.steps.size(); ++i)
        showStep(report.steps[i], rowAt(i));
    fitHeight();
    if (!report.finished) return;
    setRunning(false);
    // What was seen stands beside the step already, where the step itself has failed.
    const bool isSaid = std::ranges::any_of(report.steps, [&](const CheckReport::Step& step) {
        return step.state == CheckReport::State::failed && step.detail == report.failure.evidence;
    });
    if (report.failed)
        showFailure(report.failure.cause, isSaid ? "" : report.failure.evidence, report.failure.nextStep);
    else
        showSuccess();
}

// A server without encryption must not be praised: SSSD refuses every log-in there.
void CheckDialog::showSuccess() {
    if (server_.security == sdk::ldap::security::none)
        showResult({"Users and groups are found, but nobody can log in.",
                    "SSSD doesn’t check passwords over a connection that isn’t encrypted. Choose StartTLS or "
                    "LDAPS so that users can log in."});
    else
        showResult({"The server works.", "Users and groups can be looked up with these settings."});
}

void CheckDialog::showFailure(const std::string& cause, const std::string& evidence,
                              const std::string& nextStep) {
    QStringList parts{text(cause)};
    for (const auto& part : {evidence, nextStep})
        if (!part.empty()) parts << text(part);
    showResult(parts);
}

void CheckDialog::showResult(const QStringList& parts) {
    said_ = parts;
    QString message;
    for (const auto& part : parts) {
        const auto shown = breakable(part).toHtmlEscaped();
        message += message.isEmpty() ? "<b>" + shown + "</b>" : "<p style='margin-top:6px'>" + shown + "</p>";
    }
    result_->setText(message);
    qt::announce(*result_, parts.join("\n"));
    fitHeight();
}

void CheckDialog::copyReport() {
    QStringList lines{windowTitle()};
    for (const auto& step : check_ ? check_->report().steps : std::vector<CheckReport::Step>())
        lines << QString("%1: %2. %3")
                     .arg(text(step.title), markOf(step.state).meaning, text(step.detail))
                     .trimmed();
    QApplication::clipboard()->setText((lines + said_).join('\n'));
}

// Details and results wrap: the window is as high as they need.
void CheckDialog::fitHeight() { qt::fitHeight(*this, *area_, false); }

} // namespace corvane::connectors::ldap
