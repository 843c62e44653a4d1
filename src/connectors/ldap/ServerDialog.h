#pragma once

#include <QDialog>
#include <QTimer>
#include <memory>

#include "connectors/ldap/ServerCheck.h"
#include "connectors/ldap/ServerList.h"

class QCheckBox;
class QComboBox;
class QFormLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QToolButton;

namespace corvane::qt {
class GrowingArea;
} // namespace corvane::qt

namespace corvane::connectors::ldap {

class AddressField;

/// Edits one server. What it holds when it is accepted is `server()`; nothing is changed before. Main thread.
class ServerDialog final : public QDialog {
public:
    /// `index` of the server in the list, `ServerList::none` for a new one; both outlive the dialogue.
    ServerDialog(const sdk::Host& host, const ServerList& list, const Server& server, std::size_t index,
                 QWidget* parent);
    ~ServerDialog() override;
    /// As the fields say now.
    [[nodiscard]] Server server() const;

    void accept() override;

private:
    void build();
    void addServerFields(QFormLayout& form);
    void addDirectoryFields(QFormLayout& form);
    [[nodiscard]] QWidget* moreFields();
    [[nodiscard]] QWidget* buttonRow();
    [[nodiscard]] QWidget* besideEachOther(QWidget* field, QWidget* button);
    void fill();
    void securityChanged();
    void schemaChanged();
    /// Puts what pasted URIs say into the fields of their own.
    void takeUrisApart();
    void bindNameChanged();
    void setMoreShown(bool shown);
    void fitHeight();
    void showProblem(const QString& wrong);
    void showBasesNote(const QString& message);
    void browseForCaFile();
    void askForBases();
    void pollBases();
    void offerBases(const CheckReport& report);
    void endOfBases(const QString& message);
    void test();
    /// The first thing that is wrong, "" when nothing is; the field gets the keyboard.
    [[nodiscard]] QString problem();
    /// Shows the problem, if there is one.
    [[nodiscard]] bool isInOrder();
    [[nodiscard]] QString complain(QWidget& field, const QString& about);
    /// A field that complained was changed: its message goes.
    void fieldChanged(const QWidget* field);
    void watchFields();
    [[nodiscard]] std::vector<std::string> typedAddresses() const;
    [[nodiscard]] std::string typedPort() const;

    const sdk::Host& host_;
    const ServerList& list_;
    Server original_;
    std::size_t index_;
    std::unique_ptr<ServerCheck> bases_;
    QTimer basesTimer_;

    qt::GrowingArea* area_ = nullptr; ///< everything but the heading, the message and the buttons
    QFormLayout* form_ = nullptr;
    AddressField* addresses_ = nullptr;
    QComboBox* security_ = nullptr;
    QLabel* securityWarning_ = nullptr;
    QLineEdit* port_ = nullptr;
    QLineEdit* caFile_ = nullptr;
    QLineEdit* baseDN_ = nullptr;
    QPushButton* askBases_ = nullptr;
    QLabel* basesNote_ = nullptr;
    QLineEdit* bindDN_ = nullptr;
    QLineEdit* password_ = nullptr;
    QLabel* passwordNote_ = nullptr;
    QComboBox* schema_ = nullptr;
    QComboBox* numbers_ = nullptr;
    QLabel* numbersNote_ = nullptr;
    QWidget* wrong_ = nullptr; ///< the field that the message is about
    QToolButton* more_ = nullptr;
    QWidget* moreBox_ = nullptr;
    QLineEdit* name_ = nullptr;
    QLineEdit* connectTimeout_ = nullptr;
    QLineEdit* searchTimeout_ = nullptr;
    QLabel* problem_ = nullptr;
};

} // namespace corvane::connectors::ldap
