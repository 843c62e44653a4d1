#include "connectors/ldap/CheckDialog.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

#include "connectors/ldap/Widgets.h"

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
        return {"–", "left out"};
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
    steps_ = new QGridLayout;
    steps_->setColumnStretch(2, 1);
    steps_->setVerticalSpacing(8);
    layout->addLayout(steps_);
    progress_ = new QProgressBar(this);
    progress_->setRange(0, 0);
    progress_->setTextVisible(false);
    progress_->setAccessibleName("The test is running");
    layout->addWidget(progress_);
    result_ = paragraph("", *this);
    result_->setObjectName("checkResult");
    result_->setTextFormat(Qt::RichText);
    result_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    layout->addWidget(result_);
    layout->addStretch();
    auto* buttons = new QDialogButtonBox(this);
    again_ = buttons->addButton("Test &Again", QDialogButtonBox::ActionRole);
    close_ = buttons->addButton("Cancel", QDialogButtonBox::RejectRole);
    close_->setObjectName("checkClose");
    connect(again_, &QPushButton::clicked, this, &CheckDialog::start);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
    resize(520, 460);
}

void CheckDialog::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (!check_) start();
}

void CheckDialog::start() {
    result_->clear();
    check_.reset();
    try {
        check_ = std::make_unique<ServerCheck>(host_, ServerCheck::Kind::test, server_,
                                               user_->text().trimmed().toStdString(),
                                               group_->text().trimmed().toStdString());
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
    row.detail->setText(text(step.detail));
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
    if (!report.finished) return;
    setRunning(false);
    // What was seen stands beside the step already, where the step itself has failed.
    const bool isSaid = std::ranges::any_of(report.steps, [&](const CheckReport::Step& step) {
        return step.state == CheckReport::State::failed && step.detail == report.failure.evidence;
    });
    if (report.failed)
        showFailure(report.failure.cause, isSaid ? "" : report.failure.evidence, report.failure.nextStep);
    else
        result_->setText("<b>The server works.</b> Users and groups can be looked up with these settings.");
}

void CheckDialog::showFailure(const std::string& cause, const std::string& evidence,
                              const std::string& nextStep) {
    QString message = "<b>" + text(cause).toHtmlEscaped() + "</b>";
    for (const auto& part : {evidence, nextStep})
        if (!part.empty()) message += "<p style='margin-top:6px'>" + text(part).toHtmlEscaped() + "</p>";
    result_->setText(message);
}

} // namespace corvane::connectors::ldap
