#include "connectors/ldap/ServerEditor.h"

#include <algorithm>

#include "connectors/ldap/CommonUris.h"
#include "sdk/LdapServerCalls.h"

namespace corvane::connectors::ldap {
namespace {

namespace security = sdk::ldap::security;
namespace schema = sdk::ldap::schema;
using sdk::FormButton;
using sdk::FormItem;

constexpr auto storedNumbers = "stored";
constexpr auto computedNumbers = "computed";
constexpr int longestTimeout = 120; // seconds
constexpr int largestPort = 65535;

std::string trimmed(const std::string& text) {
    constexpr auto blanks = " \t\r\n";
    const auto first = text.find_first_not_of(blanks);
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    for (std::size_t start = 0; start <= text.size();) {
        const auto end = std::min(text.find('\n', start), text.size());
        if (auto line = trimmed(text.substr(start, end - start)); !line.empty()) lines.push_back(line);
        start = end + 1;
    }
    return lines;
}

std::string joinedLines(const std::vector<std::string>& lines) {
    std::string text;
    for (const auto& line : lines)
        text += (text.empty() ? "" : "\n") + line;
    return text;
}

/// Without a scheme, a port, a path or blanks. Several colons make an IPv6 address.
bool isAddressAlone(const std::string& address) {
    return address.find_first_of("/@, \t") == std::string::npos && std::ranges::count(address, ':') != 1;
}

/// A time-out that is saved already may stay longer than any that can be typed.
FormItem timeout(const std::string& name, const std::string& label, int saved) {
    return FormItem::number(name, label, 1, std::max(longestTimeout, saved))
        .value(saved)
        .unit("seconds")
        .accessibleName(label.substr(0, label.size() - 1) + ", in seconds")
        .required("A time-out is from 1 to " + std::to_string(longestTimeout) + " seconds.");
}

} // namespace

ServerEditor::ServerEditor(const sdk::Host& host, const ServerList& list, const Server& server,
                           std::size_t index, Accepted accepted)
    : host_(host), list_(list), original_(server), index_(index), accepted_(std::move(accepted)),
      form_(host, described()) {
    securityChanged();
    bindNameChanged();
    schemaChanged();
}

sdk::FormWindow ServerEditor::described() {
    sdk::FormWindow window("serverEditor",
                           original_.savedName.empty() ? "New LDAP Server" : original_.title());
    addServerFields(window);
    addSignInFields(window);
    addSchemaFields(window);
    window.add(moreFields());
    window.button(FormButton("test", "&Test…", [this] { test(); }).checksFields());
    window.button(FormButton::ok([this] { accept(); }, "serverOk"));
    window.button(FormButton::cancel("serverCancel"));
    window.onClosed([this] { bases_.reset(); });
    return window;
}

void ServerEditor::addServerFields(sdk::FormWindow& window) {
    window.add(FormItem::text("addresses", "&Servers, one per line:")
                   .lines(3)
                   .value(joinedLines(original_.addresses))
                   .placeholder("ldap.example.com")
                   .help("One host name or address per line. They are asked in this order: the next one when "
                         "one doesn’t answer.")
                   .required("Name at least one server.")
                   .onEntered([this] { takeUrisApart(); }));
    window.add(FormItem::choice("security", "&Encryption:")
                   .addChoice(security::startTLS, "StartTLS (recommended)")
                   .addChoice(security::ldaps, "LDAPS")
                   .addChoice(security::none, "None: not encrypted")
                   .value(original_.security)
                   .onChange([this] { securityChanged(); }));
    window.add(
        FormItem::paragraph("Anybody on the network can read and change what the server says, and read "
                            "the password below. Users are found, but nobody can log in: SSSD doesn’t "
                            "check their passwords without encryption.",
                            "securityWarning", "warning")
            .announced()
            .hidden());
    auto port = FormItem::number("port", "&Port:", 0, largestPort)
                    .set("complaint", "The port is a number from 1 to 65535, or leave it empty for the "
                                      "default.");
    if (original_.port != 0) port.value(original_.port);
    window.add(port);
    window.add(FormItem::file("caFile", "&CA certificates:")
                   .value(original_.caFile)
                   .placeholder("the system’s own authorities")
                   .set("folder", "/etc/ssl/certs")
                   .set("fileKinds", "Certificates (*.pem *.crt *.cer);;All files (*)")
                   .set("browsable", !host_.isRemote())
                   .help("A file on the machine that is configured, with the certificates of the authorities "
                         "that may sign the server’s."));
}

void ServerEditor::addSignInFields(sdk::FormWindow& window) {
    window.add(FormItem::text("baseDN", "Search &base:")
                   .value(original_.baseDN)
                   .placeholder("as the server says")
                   .button(FormButton("askBases", "As&k Server", [this] {
                               askForBases();
                           }).help("Ask the server for its search bases.")));
    window.add(FormItem::paragraph("", "basesNote", "hint").announced().hidden());
    window.add(FormItem::text("bindDN", "Sign in &as (DN):")
                   .value(original_.bindDN)
                   .placeholder("anonymous")
                   .onChange([this] { bindNameChanged(); }));
    window.add(FormItem::password("password", "Pass&word:").value(original_.password.value_or("")));
    window.add(FormItem::paragraph("It is saved as plain text in sssd.conf, which only root can read.",
                                   "passwordNote", "hint"));
}

void ServerEditor::addSchemaFields(sdk::FormWindow& window) {
    window.add(FormItem::choice("schema", "Sc&hema:")
                   .addChoice(schema::rfc2307, "RFC 2307: members listed by name")
                   .addChoice(schema::rfc2307bis, "RFC 2307bis: members listed by DN")
                   .addChoice(schema::activeDirectory, "Active Directory")
                   .value(original_.schema)
                   .onChange([this] { schemaChanged(); }));
    window.add(FormItem::choice("numbers", "User &numbers:")
                   .addChoice(storedNumbers, "As the directory stores them")
                   .addChoice(computedNumbers, "Computed by SSSD")
                   .value(original_.computesNumbers ? computedNumbers : storedNumbers)
                   .onChange([this] { schemaChanged(); }));
    window.add(FormItem::paragraph("", "numbersNote", "hint"));
}

FormItem ServerEditor::moreFields() {
    auto more = FormItem::group("more", "&More settings").folded();
    more.add(FormItem::text("name", "Name &in the configuration:")
                 .value(original_.name)
                 .placeholder("made of the first server’s name")
                 .help("Section name in sssd.conf."));
    more.add(timeout("connectTimeout", "Wait for a connection:", original_.connectTimeout));
    more.add(timeout("searchTimeout", "Wait for an answer:", original_.searchTimeout));
    return more;
}

void ServerEditor::securityChanged() const {
    const auto mode = form_.text("security");
    form_.set("port", "placeholder", std::to_string(mode == security::ldaps ? ldapsPort : plainPort));
    form_.setEnabled("caFile", mode != security::none);
    form_.setVisible("securityWarning", mode == security::none);
}

void ServerEditor::bindNameChanged() const {
    const bool binds = !typed("bindDN").empty();
    form_.setEnabled("password", binds);
    form_.set("password", "placeholder",
              std::string(binds && original_.hasPassword ? "saved; never shown" : ""));
    form_.setVisible("passwordNote", binds);
}

void ServerEditor::schemaChanged() const {
    const bool mayCompute = form_.text("schema") == schema::activeDirectory;
    form_.setVisible("numbers", mayCompute);
    form_.setVisible("numbersNote", mayCompute);
    form_.setText(
        "numbersNote",
        form_.text("numbers") == computedNumbers
            ? "SSSD computes each number from the account’s security identifier (SID), the same on "
              "every machine with SSSD’s usual ranges. Numbers stored in the directory are ignored: "
              "files of users who had other numbers until now no longer belong to them."
            : "Only users and groups to whom the directory gives numbers (uidNumber, gidNumber) are "
              "found. In most domains nobody has one.");
}

std::string ServerEditor::typed(const std::string& item) const { return trimmed(form_.text(item)); }

std::vector<std::string> ServerEditor::typedAddresses() const { return linesOf(form_.text("addresses")); }

Server ServerEditor::server() const {
    Server made = original_;
    made.addresses = typedAddresses();
    made.security = form_.text("security");
    made.port = static_cast<int>(form_.number("port").value_or(0));
    made.caFile = typed("caFile");
    made.baseDN = typed("baseDN");
    made.bindDN = typed("bindDN");
    made.schema = form_.text("schema");
    const bool mayCompute = made.schema == schema::activeDirectory || made.schema == original_.schema;
    made.computesNumbers = mayCompute && form_.text("numbers") == computedNumbers;
    made.connectTimeout = static_cast<int>(form_.number("connectTimeout").value_or(0));
    made.searchTimeout = static_cast<int>(form_.number("searchTimeout").value_or(0));
    made.name = typed("name");
    if (made.name.empty()) made.name = list_.freeName(made.title());
    if (made.bindDN.empty()) {
        // An anonymous bind needs no password: a saved one is removed with the name.
        made.password = original_.hasPassword ? std::optional<std::string>("") : std::nullopt;
    } else {
        // An empty field keeps the saved one, also when the name was cleared before and is back now.
        if (made.password) wipe(*made.password);
        made.password.reset();
        if (auto secret = form_.secret("password"); !secret.empty()) made.password = std::move(secret);
    }
    return made;
}

bool ServerEditor::isInOrder() const {
    const auto now = server();
    const auto complain = [this](const char* item, const std::string& about) {
        form_.complain(item, about);
        return false;
    };
    // What is in the configuration already may look otherwise, and stays as it is.
    const auto odd = std::ranges::find_if_not(now.addresses, isAddressAlone);
    if (odd != now.addresses.end() && now.addresses != original_.addresses)
        return complain("addresses",
                        "“" + *odd +
                            "” is more than a host name or address. Encryption and port have fields "
                            "of their own.");
    if (!now.caFile.empty() && now.caFile.front() != '/')
        return complain("caFile", "The CA certificates are a file’s full path starting with “/”.");
    if (!now.bindDN.empty() && !now.hasPassword && !now.password)
        return complain("password", "Signing in needs a password. Leave the DN empty to bind anonymously.");
    const auto isKept = [](int timeout, int saved) { return timeout <= longestTimeout || timeout == saved; };
    const bool waitsTooLong = !isKept(now.connectTimeout, original_.connectTimeout);
    if (waitsTooLong || !isKept(now.searchTimeout, original_.searchTimeout))
        return complain(waitsTooLong ? "connectTimeout" : "searchTimeout",
                        "A time-out is from 1 to " + std::to_string(longestTimeout) + " seconds.");
    if (list_.isNameTaken(now.name, index_))
        return complain("name", "Another server is called “" + now.name + "” already.");
    return true;
}

void ServerEditor::takeUrisApart() const {
    const auto lines = typedAddresses();
    if (lines.empty() || lines == original_.addresses) return;
    const auto uris = commonUris(lines);
    if (!uris) return;
    form_.setValue("addresses", joinedLines(uris->hosts));
    if (uris->isLdaps)
        form_.setValue("security", std::string(security::ldaps));
    else if (form_.text("security") == security::ldaps)
        form_.setValue("security", std::string(security::startTLS));
    securityChanged();
    form_.setValue("port", uris->port == 0 ? sdk::FormValue() : std::int64_t{uris->port});
}

void ServerEditor::accept() {
    takeUrisApart(); // what was typed and never left
    if (isInOrder()) accepted_(server());
}

void ServerEditor::test() {
    takeUrisApart();
    if (isInOrder()) test_ = std::make_unique<TestWindow>(host_, server());
}

void ServerEditor::askForBases() {
    takeUrisApart();
    if (typedAddresses().empty()) return endOfBases("Name a server first.");
    try {
        bases_ = std::make_unique<ServerTest>(host_, ServerTest::Kind::bases, server(), "", "");
        form_.set("askBases", "enabled", false);
        showBasesNote("Asking the server…");
        bases_->follow([this](const TestReport& report) { showBases(report); },
                       [this](const sdk::CallError& error) {
                           endOfBases(std::string(error.what()) + " " + error.recovery());
                       });
    } catch (const sdk::CallError& error) {
        endOfBases(std::string(error.what()) + " " + error.recovery());
    }
}

// One base is taken over; of several the user chooses one.
void ServerEditor::showBases(const TestReport& report) {
    if (!report.finished) return;
    if (report.failed) return endOfBases(report.failure.cause + " " + report.failure.nextStep);
    if (report.bases.empty())
        return endOfBases("The server doesn’t list its naming contexts. Ask its administrator.");
    endOfBases("The server keeps its entries below " + report.defaultBase + ".");
    if (report.bases.size() == 1)
        form_.setValue("baseDN", report.defaultBase);
    else
        form_.suggest("baseDN", report.bases);
}

void ServerEditor::endOfBases(const std::string& message) {
    bases_.reset();
    form_.set("askBases", "enabled", true);
    showBasesNote(message);
}

void ServerEditor::showBasesNote(const std::string& message) const {
    form_.setText("basesNote", message);
    form_.setVisible("basesNote", true);
}

} // namespace corvane::connectors::ldap
