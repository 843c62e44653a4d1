#include "connectors/ldap/ServersWindow.h"

#include <algorithm>

namespace corvane::connectors::ldap {
namespace {

std::string joined(const std::vector<std::string>& texts) {
    std::string all;
    for (const auto& text : texts)
        all += (all.empty() ? "" : ", ") + text;
    return all;
}

} // namespace

ServersWindow::ServersWindow(const sdk::Host& host, ServerList& list, bool isUsed,
                             std::function<void()> closed)
    : host_(host), list_(list), form_(host, described(isUsed, std::move(closed))) {
    reload(0);
}

sdk::FormWindow ServersWindow::described(bool isUsed, std::function<void()> closed) {
    sdk::FormWindow window("ldapServers", "LDAP Connector");
    window.size(560, 460);
    window.add(sdk::FormItem::paragraph("Users and groups of LDAP servers. Each server is one directory, "
                                        "which can be put on the search policies."));
    window.add(sdk::FormItem::check("useConnector", "&Use this connector")
                   .value(isUsed)
                   .help("When it is off, its servers are no longer queried. Their settings are kept.")
                   .onChange([this] { describeState(); }));
    window.add(serverList());
    window.add(sdk::FormItem::paragraph("", "connectorState"));
    window.add(sdk::FormItem::paragraph("", "sameDirectories", "warning").hidden());
    window.add(sdk::FormItem::paragraph(
        "What you change here is written when you choose Apply in the main window.", "", "hint"));
    window.button(sdk::FormButton("serversDone", "&Done", {}, "accept"));
    window.onClosed(std::move(closed));
    return window;
}

sdk::FormItem ServersWindow::serverList() {
    using sdk::FormButton;
    auto list = sdk::FormItem::list("servers", "LDAP servers").emptyMessage("No servers");
    list.addButton(
        FormButton("addServer", "&Add…", [this] { editNew(Server::fresh(), list_.servers().size()); }));
    list.addButton(
        FormButton("editServer", "&Edit…", [this] { editServer(); }).needs("oneRow").key("activate"));
    list.addButton(
        FormButton("duplicateServer", "Du&plicate", [this] { duplicateServer(); }).needs("oneRow"));
    list.addButton(
        FormButton("deleteServer", "De&lete", [this] { deleteServers(); }).needs("someRows").key("delete"));
    list.addButton(FormButton("testServer", "&Test…", [this] { testServer(); }).needs("oneRow").separated());
    return list;
}

void ServersWindow::reload(std::size_t selected) {
    std::vector<sdk::FormRow> rows;
    for (const auto& server : list_.servers())
        rows.push_back({server.title(), distinctSummary(server)});
    form_.setRows("servers", rows);
    if (!rows.empty()) form_.select("servers", {std::min(selected, rows.size() - 1)});
    describeState();
}

// Two servers of one address and one summary differ in their names alone.
std::string ServersWindow::distinctSummary(const Server& server) const {
    const auto isAlike = [&](const Server& other) {
        return other.title() == server.title() && other.summary() == server.summary();
    };
    if (std::ranges::count_if(list_.servers(), isAlike) < 2) return server.summary();
    return "named “" + server.name + "”, " + server.summary();
}

std::string ServersWindow::stateText() const {
    const auto count = list_.servers().size();
    const auto servers = count == 1 ? "one server" : std::to_string(count) + " servers";
    if (isUsed())
        return "The connector is on, " + (count == 0 ? "without a server." : "with " + servers + ".");
    if (count == 0) return "The connector is off.";
    return "The connector is off. Its " + servers + (count == 1 ? " isn’t" : " aren’t") + " used.";
}

std::string ServersWindow::duplicatesText() const {
    std::vector<std::string> pairs;
    const auto& all = list_.servers();
    for (std::size_t i = 0; i < all.size(); ++i)
        for (std::size_t k = i + 1; k < all.size(); ++k)
            if (all[i].isSameDirectory(all[k]))
                pairs.push_back("“" + all[i].name + "” and “" + all[k].name + "”");
    if (pairs.empty()) return "";
    return joined(pairs) +
           " are the same directory: it would be queried twice. Change or delete one of them.";
}

void ServersWindow::describeState() {
    form_.setText("connectorState", stateText());
    const auto duplicates = duplicatesText();
    form_.setText("sameDirectories", duplicates);
    form_.setVisible("sameDirectories", !duplicates.empty());
}

void ServersWindow::editServer() {
    const auto rows = selection();
    if (rows.size() != 1) return;
    const auto index = rows.front();
    editor_ = std::make_unique<ServerEditor>(host_, list_, list_.servers().at(index), index,
                                             [this, index](const Server& server) {
                                                 list_.replace(index, server);
                                                 reload(index);
                                             });
}

// A copy is of no use before something about it was changed, and it has no password: so it is edited first.
void ServersWindow::duplicateServer() {
    const auto rows = selection();
    if (rows.size() == 1) editNew(list_.copyOf(rows.front()), rows.front() + 1);
}

void ServersWindow::editNew(const Server& server, std::size_t index) {
    editor_ = std::make_unique<ServerEditor>(host_, list_, server, ServerList::none,
                                             [this, index](const Server& made) {
                                                 list_.insert(made, index);
                                                 reload(index);
                                             });
}

std::vector<std::string> ServersWindow::titlesOnPolicies(const std::vector<std::size_t>& rows) const {
    std::vector<std::string> titles;
    for (const auto row : rows) {
        const auto& server = list_.servers().at(row);
        if (!server.node.empty() && list_.isOnPolicy(server.node)) titles.push_back(server.title());
    }
    return titles;
}

void ServersWindow::remove(const std::vector<std::size_t>& rows) {
    list_.removeAt(rows);
    reload(rows.front());
}

void ServersWindow::deleteServers() {
    const auto rows = selection();
    if (rows.empty()) return;
    const auto onPolicies = titlesOnPolicies(rows);
    onPolicies.empty() ? remove(rows) : askBeforeDeleting(rows, onPolicies);
}

void ServersWindow::askBeforeDeleting(const std::vector<std::size_t>& rows,
                                      const std::vector<std::string>& onPolicies) {
    const bool isOne = onPolicies.size() == 1;
    auto question = sdk::FormWindow::message(
        "deleteQuestion", "Delete Servers",
        joined(onPolicies) + (isOne ? " is on a search policy." : " are on a search policy."),
        isOne
            ? "Deleting the server also removes it from the policy. Its users can no longer log in once you "
              "apply the change."
            : "Deleting the servers also removes them from the policy. Their users can no longer log in once "
              "you apply the change.");
    question.button(sdk::FormButton::cancel().isDefault());
    question.button(sdk::FormButton(
        "reallyDelete", "Delete", [this, rows] { remove(rows); }, "destructive"));
    question_ = sdk::Form(host_, question);
}

void ServersWindow::testServer() {
    const auto rows = selection();
    if (rows.size() == 1) test_ = std::make_unique<TestWindow>(host_, list_.servers().at(rows.front()));
}

} // namespace corvane::connectors::ldap
