#pragma once

#include <QDialog>
#include <QTimer>
#include <memory>
#include <vector>

#include "connectors/ldap/ServerCheck.h"

class QGridLayout;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;

namespace corvane::qt {
class GrowingArea;
} // namespace corvane::qt

namespace corvane::connectors::ldap {

/// Tries a server step by step while the user looks on, and says in plain words what failed. Begins when it
/// is shown; closing it gives up. Main thread.
class CheckDialog final : public QDialog {
public:
    /// `host` outlives the dialogue.
    CheckDialog(const sdk::Host& host, const Server& server, QWidget* parent);
    /// Shows one on `parent`; where a password would be sent unencrypted, only after the user has agreed.
    static void open(const sdk::Host& host, const Server& server, QWidget* parent);
    using QDialog::open;

protected:
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    struct Row {
        QLabel* mark;
        QLabel* title;
        QLabel* detail;
    };
    void build();
    void start();
    void poll();
    void show(const CheckReport& report);
    void showStep(const CheckReport::Step& step, Row& row);
    void showFailure(const std::string& cause, const std::string& evidence, const std::string& nextStep);
    void showSuccess();
    void showResult(const QStringList& parts);
    void copyReport();
    void fitHeight();
    void setRunning(bool running);
    [[nodiscard]] Row& rowAt(std::size_t index);

    const sdk::Host& host_;
    Server server_;
    std::unique_ptr<ServerCheck> check_;
    QTimer timer_;
    std::vector<Row> rows_;
    QLineEdit* user_ = nullptr;
    QLineEdit* group_ = nullptr;
    qt::GrowingArea* area_ = nullptr; ///< the steps
    QGridLayout* steps_ = nullptr;
    QLabel* result_ = nullptr;
    QProgressBar* progress_ = nullptr;
    QPushButton* again_ = nullptr;
    QPushButton* copy_ = nullptr;
    QStringList said_; ///< the result's paragraphs as they are
    QPushButton* close_ = nullptr;
};

} // namespace corvane::connectors::ldap
