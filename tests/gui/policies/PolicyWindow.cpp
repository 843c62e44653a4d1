#include "gui/policies/PolicyWindow.h"

#include <QApplication>
#include <QMainWindow>
#include <QRegularExpression>
#include <QTest>
#include <QTimer>
#include <algorithm>

namespace corvane::gui {
namespace {

std::string sssdOfSevenDirectories() {
    std::string text = "[sssd]\nservices = nss\ndomains = alpha\n";
    for (const std::string name : {"alpha", "bravo", "charlie", "delta", "echo", "foxtrot"})
        text += "\n[domain/" + name + "]\nid_provider = ldap\nldap_uri = ldap://" + name + ".example\n";
    return text + "\n[domain/corp.example]\nid_provider = ad\n";
}

std::string serverNode(const std::string& name) { return "/LDAP/" + name + ".example"; }

} // namespace

PolicyWindow::PolicyWindow() : machine_(sssdOfSevenDirectories()) {
    constexpr int custom = 333;
    EXPECT_FALSE(machine_.setCustom(machine_.search(),
                                    {serverNode("charlie"), serverNode("delta"), serverNode("echo"), ad}));
    EXPECT_FALSE(machine_.call(machine_.search(), custom));
    EXPECT_FALSE(
        machine_.setCustom(machine_.contacts(), {head1, serverNode("delta"), head2, serverNode("echo"), ad}));
    EXPECT_FALSE(machine_.call(machine_.contacts(), custom));
}

PolicyWindow::~PolicyWindow() {
    user_.reset();
    program_.reset();
    for (const auto& line : machine_.log.lines)
        EXPECT_EQ(line.find("Exception while handling"), std::string::npos) << line;
}

void PolicyWindow::open(bool unlocked) {
    const auto files = desktop::InstalledFiles::find(QApplication::applicationFilePath().toStdString());
    program_ = std::make_unique<desktop::Program>(
        *qApp, desktop::Program::Settings{machine_.folder.path(), files, "", false}, machine_.log);
    program_->launch(false);
    auto& shell = program_->window().shell();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&shell));
    user_ = std::make_unique<WindowUser>(shell);
    if (unlocked) user().click("authorizationView");
    user().click("kSearchPaths");
}

QAbstractItemView& PolicyWindow::view(const QString& table) const {
    return *program_->window().shell().findChild<QAbstractItemView*>(table);
}

Names PolicyWindow::nodes(const QString& table) const {
    static const QRegularExpression server("^/LDAP/(\\w+)\\.example$");
    Names names;
    for (auto row : user_->rowsOf(table))
        names.push_back(row.replace(server, "\\1").toStdString());
    return names;
}

std::vector<int> PolicyWindow::selection(const QString& table) const {
    std::vector<int> rows;
    for (const auto& index : view(table).selectionModel()->selectedRows())
        rows.push_back(index.row());
    std::ranges::sort(rows);
    return rows;
}

void PolicyWindow::scrollToLastRow(const QString& table) {
    view(table).scrollToBottom();
    settle();
}

QString PolicyWindow::emptyMessage(const QString& table) const { return view(table).accessibleDescription(); }

QImage PolicyWindow::picture(const QString& table, int row) const {
    auto& items = view(table);
    const auto index = items.model()->index(row, 0);
    items.scrollTo(index);
    return items.viewport()->grab(items.visualRect(index)).toImage();
}

QString PolicyWindow::answered(const std::function<void()>& gesture, const QString& button) {
    QString text;
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, [&] {
        if (QApplication::activeModalWidget() == nullptr) return;
        watch.stop();
        text = user().visibleText();
        user().answer(button);
    });
    watch.start(20);
    gesture();
    return text;
}

void PolicyWindow::apply() {
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, [&] {
        if (user().visibleText().contains("off the login policy?")) user().answer("Save Anyway");
    });
    watch.start(20);
    user().click("applyButton");
}

} // namespace corvane::gui
