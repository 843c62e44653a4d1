#include "connectors/ldap/ServersDialog.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

#include "connectors/ldap/CheckDialog.h"
#include "connectors/ldap/ServerDialog.h"
#include "connectors/ldap/ServerTable.h"
#include "connectors/ldap/Widgets.h"
#include "qt/widgets/GrowingArea.h"

namespace corvane::connectors::ldap {

ServersDialog::ServersDialog(const sdk::Host& host, ServerList& list, bool isUsed, QWidget* parent)
    : QDialog(parent), host_(host), list_(list), used_(isUsed) {
    setObjectName("ldapServers");
    setWindowTitle("LDAP Connector");
    setWindowModality(Qt::WindowModal);
    build();
    reload(0);
}

bool ServersDialog::isUsed() const { return use_->isChecked(); }

void ServersDialog::build() {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 20, 24, 16);
    layout->setSpacing(10);
    layout->addWidget(heading(windowTitle(), *this));
    layout->addWidget(
        paragraph("Users and groups of LDAP servers. Each server is one directory, which can be "
                  "put on the search policies.",
                  *this));
    use_ = new QCheckBox("&Use this connector", this);
    use_->setObjectName("useConnector");
    use_->setChecked(used_);
    connect(use_, &QCheckBox::toggled, this, &ServersDialog::describeState);
    use_->setToolTip("Switched off, its servers are no longer queried. Their settings are kept.");
    layout->addWidget(use_);
    auto* row = new QHBoxLayout;
    servers_ = new ServerTable(this);
    connect(servers_, &QListWidget::itemSelectionChanged, this, &ServersDialog::selectionChanged);
    connect(servers_, &QListWidget::itemActivated, this, &ServersDialog::editServer);
    row->addWidget(servers_, 1);
    row->addWidget(buttonColumn());
    layout->addLayout(row, 1);
    layout->addWidget(state_ = paragraph("", *this));
    state_->setObjectName("connectorState");
    layout->addWidget(duplicates_ = paragraph("", *this));
    duplicates_->setObjectName("sameDirectories");
    setAlarming(*duplicates_, true);
    layout->addWidget(
        hint("What you change here is written when you choose Apply in the main window.", *this));
    auto* buttons = new QDialogButtonBox(this);
    auto* done = buttons->addButton("&Done", QDialogButtonBox::AcceptRole);
    done->setObjectName("serversDone");
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    layout->addWidget(buttons);
    resize(560, std::min(460, qt::heightOnScreen(*this)));
    servers_->setFocus();
}

QPushButton* ServersDialog::button(const QString& title, const char* name, void (ServersDialog::*action)()) {
    auto* made = new QPushButton(title, this);
    made->setObjectName(name);
    made->setAutoDefault(false);
    connect(made, &QPushButton::clicked, this, action);
    return made;
}

QWidget* ServersDialog::buttonColumn() {
    auto* column = new QWidget(this);
    auto* layout = new QVBoxLayout(column);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(button("&Add…", "addServer", &ServersDialog::addServer));
    layout->addWidget(edit_ = button("&Edit…", "editServer", &ServersDialog::editServer));
    layout->addWidget(duplicate_ = button("Du&plicate", "duplicateServer", &ServersDialog::duplicateServer));
    layout->addWidget(delete_ = button("De&lete", "deleteServer", &ServersDialog::deleteServers));
    layout->addSpacing(6);
    layout->addWidget(test_ = button("&Test…", "testServer", &ServersDialog::testServer));
    layout->addStretch();
    return column;
}

void ServersDialog::reload(std::size_t selected) {
    servers_->clear();
    for (const auto& server : list_.servers()) {
        auto* item = new QListWidgetItem(text(server.title()), servers_);
        item->setData(ServerTable::summaryRole, distinctSummary(server));
        item->setData(Qt::AccessibleTextRole, text(server.title()) + ", " + distinctSummary(server));
    }
    if (servers_->count() > 0)
        servers_->setCurrentRow(
            static_cast<int>(std::min<std::size_t>(selected, list_.servers().size() - 1)));
    selectionChanged();
    describeState();
    servers_->setFocus();
}

// Two servers of one address and one summary differ in their names alone.
QString ServersDialog::distinctSummary(const Server& server) const {
    const auto isAlike = [&](const Server& other) {
        return other.title() == server.title() && other.summary() == server.summary();
    };
    const auto summary = text(server.summary());
    if (std::ranges::count_if(list_.servers(), isAlike) < 2) return summary;
    return QString("named “%1”, %2").arg(text(server.name), summary);
}

void ServersDialog::describeState() {
    const auto count = list_.servers().size();
    const auto servers = count == 1 ? QString("one server") : QString("%1 servers").arg(count);
    const QString idle =
        count == 0 ? "" : QString(" Its %1 %2 used.").arg(servers, count == 1 ? "isn’t" : "aren’t");
    if (use_->isChecked())
        state_->setText("The connector is on, " +
                        (count == 0 ? QString("without a server.") : "with " + servers + "."));
    else
        state_->setText("The connector is off." + idle);
    QStringList pairs;
    const auto& all = list_.servers();
    for (std::size_t i = 0; i < all.size(); ++i)
        for (std::size_t k = i + 1; k < all.size(); ++k)
            if (all[i].isSameDirectory(all[k]))
                pairs << QString("“%1” and “%2”").arg(text(all[i].name), text(all[k].name));
    duplicates_->setText(pairs.isEmpty()
                             ? ""
                             : pairs.join(", ") + " are the same directory: it would be asked twice. "
                                                  "Change or delete one of them.");
    duplicates_->setVisible(!pairs.isEmpty());
    fitHeight();
}

// Texts that wrap come and go: nothing beside them may be squeezed.
void ServersDialog::fitHeight() {
    layout()->activate();
    const int wanted = std::max(height(), layout()->totalHeightForWidth(width()));
    resize(width(), std::min(wanted, qt::heightOnScreen(*this)));
}

std::vector<std::size_t> ServersDialog::selection() const {
    std::vector<std::size_t> rows;
    for (const auto* item : servers_->selectedItems())
        rows.push_back(static_cast<std::size_t>(servers_->row(item)));
    std::ranges::sort(rows);
    return rows;
}

void ServersDialog::selectionChanged() {
    const auto count = selection().size();
    edit_->setEnabled(count == 1);
    duplicate_->setEnabled(count == 1);
    test_->setEnabled(count == 1);
    delete_->setEnabled(count > 0);
}

void ServersDialog::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Delete) && servers_->hasFocus()) return deleteServers();
    QDialog::keyPressEvent(event);
}

void ServersDialog::addServer() { editNew(Server::fresh(), list_.servers().size()); }

void ServersDialog::editServer() {
    const auto rows = selection();
    if (rows.size() == 1) edit(rows.front());
}

// A copy is of no use before something about it was changed, and it has no password: so it is edited first.
void ServersDialog::duplicateServer() {
    const auto rows = selection();
    if (rows.size() == 1) editNew(list_.copyOf(rows.front()), rows.front() + 1);
}

void ServersDialog::edit(std::size_t index) {
    openEditor(
        *new ServerDialog(host_, list_, list_.servers().at(index), index, this),
        [this, index](const Server& server) { list_.replace(index, server); }, index);
}

void ServersDialog::editNew(const Server& server, std::size_t index) {
    openEditor(
        *new ServerDialog(host_, list_, server, ServerList::none, this),
        [this, index](const Server& made) { list_.insert(made, index); }, index);
}

void ServersDialog::openEditor(ServerDialog& dialog, std::function<void(const Server&)> take,
                               std::size_t index) {
    dialog.setAttribute(Qt::WA_DeleteOnClose);
    connect(&dialog, &QDialog::accepted, this, [this, &dialog, take = std::move(take), index] {
        take(dialog.server());
        reload(index);
    });
    dialog.open();
}

QStringList ServersDialog::titlesOnPolicies(const std::vector<std::size_t>& indexes) const {
    QStringList titles;
    for (const auto index : indexes) {
        const auto& server = list_.servers().at(index);
        if (!server.node.empty() && list_.isOnPolicy(server.node)) titles << text(server.title());
    }
    return titles;
}

void ServersDialog::deleteServers() {
    const auto rows = selection();
    const auto remove = [this, rows] {
        list_.removeAt(rows);
        reload(rows.front());
    };
    const auto onPolicies = titlesOnPolicies(rows);
    if (!rows.empty() && onPolicies.isEmpty()) remove();
    if (onPolicies.isEmpty()) return;
    auto* box = messageBox(
        "Delete Servers",
        QString(onPolicies.size() == 1 ? "%1 is on a search policy." : "%1 are on a search policy.")
            .arg(onPolicies.join(", ")),
        QMessageBox::Cancel, this);
    box->setInformativeText(onPolicies.size() == 1
                                ? "Deleting the server also removes it from the policy. Its users can no "
                                  "longer log in once you apply the change."
                                : "Deleting the servers also removes them from the policy. Their users "
                                  "can no longer log in once you apply the change.");
    auto* yes = box->addButton("Delete", QMessageBox::DestructiveRole);
    yes->setObjectName("reallyDelete");
    box->setDefaultButton(QMessageBox::Cancel);
    connect(yes, &QPushButton::clicked, this, remove);
    box->open();
}

void ServersDialog::testServer() {
    const auto rows = selection();
    if (rows.size() != 1) return;
    CheckDialog::open(host_, list_.servers().at(rows.front()), this);
}

} // namespace corvane::connectors::ldap
