#include "benchmark/BigMachine.h"

#include <QApplication>
#include <QMainWindow>
#include <QTest>
#include <cstdio>
#include <stdexcept>

namespace corvane::bench {
namespace {

std::vector<std::string> madeUpNodes(std::size_t count) {
    std::vector<std::string> names;
    for (std::size_t number = 0; number < count; ++number) {
        char name[64];
        std::snprintf(name, sizeof name, "/LDAP/server-%06zu.people.example.com", number);
        names.emplace_back(name);
    }
    return names;
}

/// The machine's own session, but for the list of nodes.
class BigSession final : public halden::Session {
public:
    BigSession(std::shared_ptr<halden::Session> session, const std::vector<std::string>& more)
        : session_(std::move(session)), more_(more) {}
    std::shared_ptr<halden::Node> nodeWithType(halden::NodeType type, halden::Error* error) override {
        return session_->nodeWithType(type, error);
    }
    std::shared_ptr<halden::Node> nodeWithName(const std::string& name, halden::Error* error) override {
        return session_->nodeWithName(name, error);
    }
    util::Array nodeNames(halden::Error* error) override {
        auto names = session_->nodeNames(error).texts();
        names.insert(names.end(), more_.begin(), more_.end());
        return util::Array::ofTexts(names);
    }

private:
    std::shared_ptr<halden::Session> session_;
    const std::vector<std::string>& more_;
};

} // namespace

BigMachine::BigMachine(std::size_t count) : names_(madeUpNodes(count)), machine_("[sssd]\nservices = nss\n") {
    constexpr int custom = 333;
    if (machine_.call(machine_.search(), custom)) throw std::runtime_error("no custom policy");
    const auto files = desktop::InstalledFiles::find(QApplication::applicationFilePath().toStdString());
    program_ = std::make_unique<desktop::Program>(
        *qApp, desktop::Program::Settings{machine_.folder.path(), files, "", false}, machine_.log);
    program_->launch(false);
    if (!QTest::qWaitForWindowExposed(&program_->window().shell()))
        throw std::runtime_error("the window doesn't come up");
    controller().setHaldenSession(std::make_shared<BigSession>(controller().haldenSession(), names_));
    user_ = std::make_unique<gui::WindowUser>(shell());
    user().click("authorizationView");
    user().click("kSearchPaths");
}

BigMachine::~BigMachine() = default;

QWidget& BigMachine::shell() const { return program_->window().shell(); }

void BigMachine::closePanel() { controller().sharedNodePaneController().doneAction(); }

QAbstractItemView& BigMachine::panelTable() const {
    auto* table = shell().findChild<QAbstractItemView*>("panelNodes");
    if (!table) throw std::runtime_error("the panel isn't open");
    return *table;
}

int BigMachine::rowsOfPanel() const { return panelTable().model()->rowCount(); }

int BigMachine::nodesOnPolicy() const { return program_->window().selectNode.numberOfRows(); }

void BigMachine::requireRows(int count) const {
    if (rowsOfPanel() != count)
        throw std::runtime_error("the panel has " + std::to_string(rowsOfPanel()) + " rows");
}

} // namespace corvane::bench
