#include "connectors/ldap/ServerDialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

#include "connectors/ldap/AddressField.h"
#include "connectors/ldap/CheckDialog.h"
#include "connectors/ldap/FieldRules.h"
#include "connectors/ldap/Widgets.h"
#include "qt/widgets/Announcement.h"
#include "qt/widgets/GrowingArea.h"
#include "sdk/LdapServerCalls.h"

namespace corvane::connectors::ldap {
namespace {

namespace security = sdk::ldap::security;
namespace schema = sdk::ldap::schema;

constexpr auto storedNumbers = "stored";
constexpr auto computedNumbers = "computed";
constexpr int pollInterval = 120;   // milliseconds
constexpr int longestTimeout = 120; // seconds
constexpr int largestPort = 65535;

void addChoice(QComboBox& box, const QString& title, const char* value) {
    box.addItem(title, QString(value));
}

/// A value that isn't on offer, written by another hand, is offered as it is: it must not change unasked.
void choose(QComboBox& box, const std::string& value) {
    if (!value.empty() && box.findData(text(value)) < 0) box.addItem(text(value), text(value));
    box.setCurrentIndex(std::max(0, box.findData(text(value))));
}

std::string chosen(const QComboBox& box) { return box.currentData().toString().toStdString(); }

void makeNarrow(QLineEdit& field) {
    field.setMinimumWidth(0);
    field.setMaximumWidth(field.fontMetrics().averageCharWidth() * 12);
}

/// A field with its unit behind it.
QWidget* withUnit(QLineEdit* field, const QString& unit) {
    auto* row = new QWidget(field->parentWidget());
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(field);
    layout->addWidget(new QLabel(unit, row));
    layout->addStretch();
    makeNarrow(*field);
    row->setFocusProxy(field);
    return row;
}

/// The longest time-out that can be typed: a longer one that is saved already may stay.
int longest(int saved) { return std::max(longestTimeout, saved); }

/// A time-out as it was typed, in seconds; 0 when it is none.
int seconds(const QLineEdit& field, int saved) {
    bool isNumber = false;
    const int number = field.text().trimmed().toInt(&isNumber);
    const bool isKept = isNumber && number == saved;
    return isKept || (isNumber && number >= 1 && number <= longestTimeout) ? number : 0;
}

/// Without a scheme, a port, a path or blanks. Several colons make an IPv6 address.
bool isAddressAlone(const std::string& address) {
    return address.find_first_of("/@, \t") == std::string::npos && std::ranges::count(address, ':') != 1;
}

} // namespace

ServerDialog::ServerDialog(const sdk::Host& host, const ServerList& list, const Server& server,
                           std::size_t index, QWidget* parent)
    : QDialog(parent), host_(host), list_(list), original_(server), index_(index) {
    setObjectName("serverDialog");
    setWindowTitle(server.savedName.empty() ? "New LDAP Server" : text(server.title()));
    setWindowModality(Qt::WindowModal);
    build();
    fill();
    basesTimer_.setInterval(pollInterval);
    connect(&basesTimer_, &QTimer::timeout, this, &ServerDialog::pollBases);
}

// The field loses the keyboard while the window goes, and nobody is left to hear of it.
ServerDialog::~ServerDialog() { addresses_->entered = nullptr; }

void ServerDialog::build() {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 20, 24, 16);
    layout->setSpacing(14);
    layout->addWidget(heading(windowTitle(), *this));
    auto* fields = new QWidget(this);
    auto* inside = new QVBoxLayout(fields);
    inside->setContentsMargins(0, 0, 0, 0);
    inside->setSpacing(14);
    form_ = new QFormLayout;
    form_->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    addServerFields(*form_);
    addDirectoryFields(*form_);
    inside->addLayout(form_);
    inside->addWidget(more_ = new QToolButton(this));
    inside->addWidget(moreBox_ = moreFields());
    inside->addStretch();
    more_->setObjectName("more");
    more_->setText("&More settings");
    more_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    more_->setAutoRaise(true);
    connect(more_, &QToolButton::clicked, this, [this] { setMoreShown(moreBox_->isHidden()); });
    layout->addWidget(area_ = new qt::GrowingArea(fields, this), 1);
    area_->setObjectName("serverFields");
    problem_ = paragraph("", *this);
    problem_->setObjectName("problem");
    setAlarming(*problem_, true);
    qt::makeAnnouncer(*problem_);
    problem_->hide();
    layout->addWidget(problem_);
    layout->addWidget(buttonRow());
    setMinimumWidth(540);
    setMoreShown(false);
}

// Texts that wrap come and go: the window is as high as they need.
void ServerDialog::fitHeight() { qt::fitHeight(*this, *area_, true); }

void ServerDialog::showProblem(const QString& wrong) {
    problem_->setText(wrong);
    qt::announce(*problem_, wrong);
    problem_->setVisible(!wrong.isEmpty());
    fitHeight();
}

void ServerDialog::addServerFields(QFormLayout& form) {
    addresses_ = new AddressField(this);
    addresses_->setObjectName("addresses");
    addresses_->setTabChangesFocus(true);
    addresses_->setPlaceholderText("ldap.example.com");
    addresses_->setFixedHeight(addresses_->fontMetrics().lineSpacing() * 3 + 14);
    addresses_->setToolTip(
        "One host name or address per line. They are asked in this order: the next one when "
        "one doesn’t answer.");
    addresses_->entered = [this] { takeUrisApart(); };
    form.addRow("&Servers, one per line:", addresses_);
    security_ = new QComboBox(this);
    security_->setObjectName("security");
    addChoice(*security_, "StartTLS (recommended)", security::startTLS);
    addChoice(*security_, "LDAPS", security::ldaps);
    addChoice(*security_, "None: not encrypted", security::none);
    form.addRow("&Encryption:", security_);
    securityWarning_ = hint("", *this);
    securityWarning_->setObjectName("securityWarning");
    qt::makeAnnouncer(*securityWarning_);
    setAlarming(*securityWarning_, true);
    form.addRow("", securityWarning_);
    port_ = namedField("port", "", *this);
    makeNarrow(*port_);
    acceptNumbers(*port_, host_, 0, largestPort);
    form.addRow("&Port:", port_);
    caFile_ = namedField("caFile", "the system’s own authorities", *this);
    caFile_->setAccessibleName("CA certificates");
    caFile_->setToolTip("A file on the machine that is configured, with the certificates of the authorities "
                        "that may sign the server’s.");
    auto* browse = new QPushButton("Br&owse…", this);
    browse->setObjectName("browse");
    browse->setEnabled(!host_.isRemote());
    connect(browse, &QPushButton::clicked, this, &ServerDialog::browseForCaFile);
    form.addRow("&CA certificates:", besideEachOther(caFile_, browse));
    connect(security_, &QComboBox::currentIndexChanged, this, &ServerDialog::securityChanged);
}

void ServerDialog::addDirectoryFields(QFormLayout& form) {
    baseDN_ = namedField("baseDN", "as the server says", *this);
    baseDN_->setAccessibleName("Search base");
    askBases_ = new QPushButton("As&k Server", this);
    askBases_->setObjectName("askBases");
    askBases_->setToolTip("Ask the server for its search bases.");
    connect(askBases_, &QPushButton::clicked, this, &ServerDialog::askForBases);
    form.addRow("Search &base:", besideEachOther(baseDN_, askBases_));
    basesNote_ = hint("", *this);
    basesNote_->setObjectName("basesNote");
    qt::makeAnnouncer(*basesNote_);
    form.addRow("", basesNote_);
    form.setRowVisible(basesNote_, false);
    bindDN_ = namedField("bindDN", "anonymous", *this);
    connect(bindDN_, &QLineEdit::textChanged, this, &ServerDialog::bindNameChanged);
    form.addRow("Sign in &as (DN):", bindDN_);
    password_ = namedField("password", "", *this);
    password_->setEchoMode(QLineEdit::Password);
    form.addRow("Pass&word:", password_);
    passwordNote_ = hint("It is saved as plain text in sssd.conf, which only root can read.", *this);
    passwordNote_->setObjectName("passwordNote");
    form.addRow("", passwordNote_);
    schema_ = new QComboBox(this);
    schema_->setObjectName("schema");
    addChoice(*schema_, "RFC 2307: members listed by name", schema::rfc2307);
    addChoice(*schema_, "RFC 2307bis: members listed by DN", schema::rfc2307bis);
    addChoice(*schema_, "Active Directory", schema::activeDirectory);
    form.addRow("Sc&hema:", schema_);
    connect(schema_, &QComboBox::currentIndexChanged, this, &ServerDialog::schemaChanged);
    numbers_ = new QComboBox(this);
    numbers_->setObjectName("numbers");
    addChoice(*numbers_, "As the directory stores them", storedNumbers);
    addChoice(*numbers_, "Computed by SSSD", computedNumbers);
    connect(numbers_, &QComboBox::currentIndexChanged, this, &ServerDialog::schemaChanged);
    form.addRow("User &numbers:", numbers_);
    numbersNote_ = hint("", *this);
    numbersNote_->setObjectName("numbersNote");
    form.addRow("", numbersNote_);
}

QWidget* ServerDialog::moreFields() {
    auto* box = new QWidget(this);
    auto* form = new QFormLayout(box);
    form->setContentsMargins(16, 0, 0, 0);
    name_ = namedField("name", "made of the first server’s name", *box);
    name_->setToolTip("Section name in sssd.conf.");
    form->addRow("Name &in the configuration:", name_);
    connectTimeout_ = namedField("connectTimeout", "", *box);
    connectTimeout_->setAccessibleName("Wait for a connection, in seconds");
    form->addRow("Wait for a connection:", withUnit(connectTimeout_, "seconds"));
    searchTimeout_ = namedField("searchTimeout", "", *box);
    searchTimeout_->setAccessibleName("Wait for an answer, in seconds");
    form->addRow("Wait for an answer:", withUnit(searchTimeout_, "seconds"));
    acceptNumbers(*connectTimeout_, host_, 1, longest(original_.connectTimeout));
    acceptNumbers(*searchTimeout_, host_, 1, longest(original_.searchTimeout));
    return box;
}

QWidget* ServerDialog::buttonRow() {
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    auto* test = buttons->addButton("&Test…", QDialogButtonBox::ActionRole);
    test->setObjectName("test");
    buttons->button(QDialogButtonBox::Ok)->setObjectName("serverOk");
    buttons->button(QDialogButtonBox::Cancel)->setObjectName("serverCancel");
    connect(test, &QPushButton::clicked, this, &ServerDialog::test);
    connect(buttons, &QDialogButtonBox::accepted, this, &ServerDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &ServerDialog::reject);
    return buttons;
}

QWidget* ServerDialog::besideEachOther(QWidget* field, QWidget* button) {
    auto* row = new QWidget(this);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(field, 1);
    layout->addWidget(button);
    row->setFocusProxy(field);
    return row;
}

void ServerDialog::fill() {
    QStringList lines;
    for (const auto& address : original_.addresses)
        lines << text(address);
    addresses_->setPlainText(lines.join('\n'));
    choose(*security_, original_.security);
    port_->setText(original_.port == 0 ? "" : QString::number(original_.port));
    caFile_->setText(text(original_.caFile));
    baseDN_->setText(text(original_.baseDN));
    bindDN_->setText(text(original_.bindDN));
    if (original_.password) password_->setText(text(*original_.password));
    choose(*schema_, original_.schema);
    choose(*numbers_, original_.computesNumbers ? computedNumbers : storedNumbers);
    name_->setText(text(original_.name));
    connectTimeout_->setText(QString::number(original_.connectTimeout));
    searchTimeout_->setText(QString::number(original_.searchTimeout));
    securityChanged();
    bindNameChanged();
    schemaChanged();
    watchFields();
    addresses_->setFocus();
}

void ServerDialog::securityChanged() {
    const auto mode = chosen(*security_);
    port_->setPlaceholderText(mode == security::ldaps ? "636" : "389");
    caFile_->parentWidget()->setEnabled(mode != security::none);
    securityWarning_->setText(
        mode == security::none ? "Anybody on the network can read and change what the server says, and read "
                                 "the password below. Users are found, but nobody can log in: SSSD doesn’t "
                                 "check their passwords without encryption."
                               : "");
    qt::announce(*securityWarning_, securityWarning_->text());
    form_->setRowVisible(securityWarning_, mode == security::none);
    fitHeight();
}

void ServerDialog::bindNameChanged() {
    const bool binds = !bindDN_->text().trimmed().isEmpty();
    password_->setEnabled(binds);
    password_->setPlaceholderText(binds && original_.hasPassword ? "saved; never shown" : "");
    form_->setRowVisible(passwordNote_, binds);
    fitHeight();
}

void ServerDialog::schemaChanged() {
    const bool mayCompute = chosen(*schema_) == schema::activeDirectory;
    const bool computes = chosen(*numbers_) == computedNumbers;
    form_->setRowVisible(numbers_, mayCompute);
    form_->setRowVisible(numbersNote_, mayCompute);
    numbersNote_->setText(
        computes
            ? "SSSD computes each number from the account’s security identifier (SID), the same on every "
              "machine with SSSD’s usual ranges. Numbers stored in the directory are ignored: files of "
              "users who had other numbers until now no longer belong to them."
            : "Only users and groups to whom the directory gives numbers (uidNumber, gidNumber) are found. "
              "In most domains nobody has one.");
    fitHeight();
}

void ServerDialog::setMoreShown(bool shown) {
    more_->setArrowType(shown ? Qt::DownArrow : Qt::RightArrow);
    moreBox_->setVisible(shown);
    fitHeight();
}

void ServerDialog::browseForCaFile() {
    const auto path = QFileDialog::getOpenFileName(this, "CA Certificates", "/etc/ssl/certs",
                                                   "Certificates (*.pem *.crt *.cer);;All files (*)");
    if (!path.isEmpty()) caFile_->setText(path);
}

std::vector<std::string> ServerDialog::typedAddresses() const {
    std::vector<std::string> all;
    for (const auto& line : addresses_->toPlainText().split('\n'))
        if (!line.trimmed().isEmpty()) all.push_back(line.trimmed().toStdString());
    return all;
}

std::string ServerDialog::typedPort() const { return port_->text().trimmed().toStdString(); }

Server ServerDialog::server() const {
    Server made = original_;
    made.addresses = typedAddresses();
    made.security = chosen(*security_);
    made.port = port_->text().trimmed().toInt();
    made.caFile = caFile_->text().trimmed().toStdString();
    made.baseDN = baseDN_->text().trimmed().toStdString();
    made.bindDN = bindDN_->text().trimmed().toStdString();
    made.schema = chosen(*schema_);
    const bool mayCompute = made.schema == schema::activeDirectory || made.schema == original_.schema;
    made.computesNumbers = mayCompute && chosen(*numbers_) == computedNumbers;
    made.connectTimeout = seconds(*connectTimeout_, original_.connectTimeout);
    made.searchTimeout = seconds(*searchTimeout_, original_.searchTimeout);
    made.name = name_->text().trimmed().toStdString();
    if (made.name.empty()) made.name = list_.freeName(made.title());
    if (made.bindDN.empty()) {
        // Who signs in as nobody needs no password: a saved one goes with the name.
        made.password = original_.hasPassword ? std::optional<std::string>("") : std::nullopt;
    } else {
        // An empty field keeps the saved one, also when the name was taken away before and is back now.
        if (made.password) wipe(*made.password);
        made.password.reset();
        if (!password_->text().isEmpty()) made.password = password_->text().toStdString();
    }
    return made;
}

QString ServerDialog::complain(QWidget& field, const QString& about) {
    if (moreBox_->isAncestorOf(&field)) setMoreShown(true);
    field.setFocus();
    area_->ensureWidgetVisible(&field);
    wrong_ = &field;
    return about;
}

QString ServerDialog::problem() {
    const auto now = server();
    if (now.addresses.empty()) return complain(*addresses_, "Name at least one server.");
    // What stands in the configuration already may look otherwise, and stays as it is.
    const auto odd = std::ranges::find_if_not(now.addresses, isAddressAlone);
    if (odd != now.addresses.end() && now.addresses != original_.addresses)
        return complain(*addresses_, QString("“%1” is more than a host name or address. Encryption and port "
                                             "have fields of their own.")
                                         .arg(text(*odd)));
    bool isNumber = true;
    const int port = typedPort().empty() ? 0 : port_->text().trimmed().toInt(&isNumber);
    if (!isNumber || port < 0 || port > largestPort)
        return complain(*port_, "The port is a number from 1 to 65535, or leave it empty for the usual one.");
    if (!now.caFile.empty() && now.caFile.front() != '/')
        return complain(*caFile_, "The CA certificates are a file’s full path starting with “/”.");
    if (!now.bindDN.empty() && !now.hasPassword && !now.password)
        return complain(*password_, "Signing in needs a password. Leave the DN empty to bind anonymously.");
    if (now.connectTimeout == 0 || now.searchTimeout == 0)
        return complain(now.connectTimeout == 0 ? *connectTimeout_ : *searchTimeout_,
                        QString("A time-out is from 1 to %1 seconds.").arg(longestTimeout));
    if (list_.isNameTaken(now.name, index_))
        return complain(*name_, QString("Another server is called “%1” already.").arg(text(now.name)));
    return "";
}

void ServerDialog::watchFields() {
    for (auto* field : findChildren<QLineEdit*>())
        connect(field, &QLineEdit::textChanged, this, [this, field] { fieldChanged(field); });
    connect(addresses_, &AddressField::textChanged, this, [this] { fieldChanged(addresses_); });
}

void ServerDialog::fieldChanged(const QWidget* field) {
    if (field != wrong_) return;
    wrong_ = nullptr;
    showProblem("");
}

void ServerDialog::takeUrisApart() {
    const auto typed = typedAddresses();
    if (typed.empty() || typed == original_.addresses) return;
    const auto uris = commonUris(typed);
    if (!uris) return;
    QStringList lines;
    for (const auto& each : uris->hosts)
        lines << text(each);
    addresses_->setPlainText(lines.join('\n'));
    if (uris->isLdaps)
        choose(*security_, security::ldaps);
    else if (chosen(*security_) == security::ldaps)
        choose(*security_, security::startTLS);
    port_->setText(uris->port == 0 ? "" : QString::number(uris->port));
}

bool ServerDialog::isInOrder() {
    takeUrisApart(); // what was typed and never left
    wrong_ = nullptr;
    const auto wrong = problem();
    showProblem(wrong);
    return wrong.isEmpty();
}

void ServerDialog::accept() {
    if (isInOrder()) QDialog::accept();
}

void ServerDialog::test() {
    if (!isInOrder()) return;
    CheckDialog::open(host_, server(), this);
}

void ServerDialog::askForBases() {
    takeUrisApart();
    if (typedAddresses().empty()) return endOfBases("Name a server first.");
    try {
        bases_ = std::make_unique<ServerCheck>(host_, ServerCheck::Kind::bases, server(), "", "");
        askBases_->setEnabled(false);
        showBasesNote("Asking the server…");
        basesTimer_.start();
    } catch (const sdk::CallError& error) {
        endOfBases(QString::fromUtf8(error.what()) + " " + text(error.recovery()));
    }
}

void ServerDialog::pollBases() {
    try {
        const auto& report = bases_->poll();
        if (!report.finished) return;
        if (report.failed)
            return endOfBases(text(report.failure.cause) + " " + text(report.failure.nextStep));
        offerBases(report);
    } catch (const sdk::CallError& error) {
        endOfBases(QString::fromUtf8(error.what()) + " " + text(error.recovery()));
    }
}

// One base is taken over; of several the user chooses one.
void ServerDialog::offerBases(const CheckReport& found) {
    const auto report = found; // the check goes before the menu is answered
    if (report.bases.empty()) return endOfBases("The server doesn’t say its bases. Ask its administrator.");
    endOfBases(QString("The server keeps its entries below %1.").arg(text(report.defaultBase)));
    if (report.bases.size() == 1) return baseDN_->setText(text(report.defaultBase));
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (const auto& base : report.bases)
        menu->addAction(text(base), this, [this, base] { baseDN_->setText(text(base)); });
    menu->popup(askBases_->mapToGlobal(QPoint(0, askBases_->height())));
}

void ServerDialog::endOfBases(const QString& message) {
    basesTimer_.stop();
    bases_.reset();
    askBases_->setEnabled(true);
    showBasesNote(message);
}

void ServerDialog::showBasesNote(const QString& message) {
    basesNote_->setText(message);
    qt::announce(*basesNote_, message);
    form_->setRowVisible(basesNote_, true);
    fitHeight();
}

} // namespace corvane::connectors::ldap
