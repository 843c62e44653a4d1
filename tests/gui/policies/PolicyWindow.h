#pragma once

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QImage>
#include <functional>
#include <memory>

#include "desktop/Program.h"
#include "gui/steps/WindowUser.h"
#include "haldend/TestMachine.h"

namespace corvane::gui {

using Names = std::vector<std::string>;

constexpr auto authenticationTable = "selectNode";
constexpr auto contactsTable = "selectNodeContact";
constexpr auto panelTable = "panelNodes";

/// The whole program on a machine of its own: six servers and an AD domain. The authentication policy is
/// custom and asks, behind the two local nodes, charlie, delta, echo and the AD domain. The contacts policy
/// is custom too: a local node in its own place, delta, the other local node, echo and the AD domain.
class PolicyWindow : public testing::Test {
protected:
    PolicyWindow();
    ~PolicyWindow() override;

    /// Shows the window with the search policies in front, unlocked unless told otherwise.
    void open(bool unlocked = true);
    void showContacts() { user().clickTab("Contacts"); }

    [[nodiscard]] WindowUser& user() { return *user_; }
    [[nodiscard]] app::MainController& controller() { return program_->controller(); }
    [[nodiscard]] desktop::Program& program() { return *program_; }

    /// The nodes on screen, without what all servers' names have in common.
    [[nodiscard]] Names nodes(const QString& table = authenticationTable) const;
    [[nodiscard]] std::vector<int> selection(const QString& table = authenticationTable) const;
    [[nodiscard]] bool edited() const { return program_->window().window.isDocumentEdited(); }
    [[nodiscard]] bool panelIsOpen() const { return user_->isVisible(panelTable); }
    [[nodiscard]] QAbstractItemView& view(const QString& table) const;
    /// The window has room for five rows.
    void scrollToLastRow(const QString& table = authenticationTable);
    /// What stands in place of rows, as it is read out to those who don't see it.
    [[nodiscard]] QString emptyMessage(const QString& table) const;
    [[nodiscard]] QImage picture(const QString& table, int row) const;

    /// Makes a gesture that ends in a question of its own window, gives the answer, and returns the text on
    /// it.
    [[nodiscard]] QString answered(const std::function<void()>& gesture, const QString& button);

    /// Clicks Apply, and says yes if directories leave the login policy by it.
    void apply();

    static inline const std::string head1 = "/Local/Accounts";
    static inline const std::string head2 = "/BSD/Files";
    static inline const std::string ad = "/AD/corp.example";

    haldend::test::TestMachine machine_;

private:
    std::unique_ptr<desktop::Program> program_;
    std::unique_ptr<WindowUser> user_;
};

} // namespace corvane::gui
