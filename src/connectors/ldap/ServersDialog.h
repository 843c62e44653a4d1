#pragma once

#include <QDialog>
#include <functional>

#include "connectors/ldap/ServerList.h"

class QCheckBox;
class QLabel;
class QListWidget;
class QPushButton;

namespace corvane::connectors::ldap {

class ServerDialog;

/// The list of configured servers, with what can be done to them. Changes are kept in the list until the
/// user applies them in the main window. Main thread.
class ServersDialog final : public QDialog {
public:
    /// `host` and `list` outlive the dialogue. `isUsed`: the connector's enabled state as the user wishes it.
    ServersDialog(const sdk::Host& host, ServerList& list, bool isUsed, QWidget* parent);
    /// The connector's enabled state as it is wished now.
    [[nodiscard]] bool isUsed() const;

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void build();
    [[nodiscard]] QWidget* buttonColumn();
    [[nodiscard]] QPushButton* button(const QString& title, const char* name,
                                      void (ServersDialog::*action)());
    void reload(std::size_t selected);
    void selectionChanged();
    /// Whether the connector is on, with how many servers, and which of them are the same directory.
    void describeState();
    void fitHeight();
    [[nodiscard]] QString distinctSummary(const Server& server) const;
    [[nodiscard]] std::vector<std::size_t> selection() const;
    void addServer();
    void editServer();
    void duplicateServer();
    void deleteServers();
    void testServer();
    /// Opens the editor on the server at `index`.
    void edit(std::size_t index);
    /// Opens the editor on a new server, which gets that place in the list when the user wants it.
    void editNew(const Server& server, std::size_t index);
    void openEditor(ServerDialog& dialog, std::function<void(const Server&)> take, std::size_t index);
    [[nodiscard]] QStringList titlesOnPolicies(const std::vector<std::size_t>& indexes) const;

    const sdk::Host& host_;
    ServerList& list_;
    QCheckBox* use_ = nullptr;
    QLabel* state_ = nullptr;
    QLabel* duplicates_ = nullptr;
    QListWidget* servers_ = nullptr;
    QPushButton* edit_ = nullptr;
    QPushButton* duplicate_ = nullptr;
    QPushButton* delete_ = nullptr;
    QPushButton* test_ = nullptr;
    bool used_;
};

} // namespace corvane::connectors::ldap
