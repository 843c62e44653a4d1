// The list of services and what is said below it, in the real window; servers that come and go.
#include <QLabel>

#include "gui/policies/PolicyWindow.h"

namespace corvane::gui {
namespace {

class Services : public PolicyWindow {
protected:
    void openServices() {
        open();
        user().click("kServices");
    }
    [[nodiscard]] QString state() const {
        const auto* label = view(authenticationTable).window()->findChild<QLabel*>("serviceState");
        return label->isVisible() ? label->text() : "hidden";
    }
    void configure(int row) {
        user().clickRow("selectPlugIn", row);
        user().click("configPlugIn");
        settle(200);
    }
    void addServer(const QString& address) {
        configure(ldap);
        user().click("addServer");
        settle(200);
        user().type("addresses", address);
        user().click("serverOk");
        settle(200);
        user().click("serversDone");
        settle(200);
        user().click("applyButton");
    }
    /// The question of the connector's own window, "" where none was asked.
    [[nodiscard]] QString deleteServer(int row) {
        configure(ldap);
        user().clickRow("servers", row);
        user().click("deleteServer");
        settle(200);
        const auto asked = user().isVisible("reallyDelete") ? user().visibleText() : QString();
        if (!asked.isEmpty()) user().click("reallyDelete");
        settle(200);
        user().click("serversDone");
        settle(200);
        return asked;
    }

    static constexpr int ad = 0, ldap = 2;
};

TEST_F(Services, lineBelowTheList_saysWhetherTheConnectorIsOnAndWithHowManyServers) {
    openServices();
    user().clickRow("selectPlugIn", ldap);
    EXPECT_EQ(state(), "LDAP is on, with 6 servers.");
    user().clickRow("selectPlugIn", 1);
    EXPECT_EQ(state(), "BSD is on.");
    configure(ad);
    user().answer("Use this connector");
    user().answer("OK");
    settle(200);
    EXPECT_EQ(state(), "AD is off once you apply the change.");
    apply();
    EXPECT_EQ(state(), "AD is off: none of its directories is used.");
    addServer("golf.example");
    EXPECT_EQ(state(), "LDAP is on, with 7 servers.");
}

// In each of its lives the server is used by the login policy in Automatic mode.
TEST_F(Services, serverThatIsDeletedAgainAndAgain_isAskedAboutEachTime) {
    openServices();
    user().click("kSearchPaths");
    user().choose("selectSearchPolicy", "Automatic");
    apply();
    user().click("kServices");
    for (int life = 1; life <= 3; ++life) {
        SCOPED_TRACE(life);
        addServer("again.example");
        const auto asked = deleteServer(6);
        EXPECT_TRUE(asked.contains("again.example is on a search policy.")) << "life " << life;
        const auto leaving = answered([&] { user().click("applyButton"); }, "Save Anyway");
        EXPECT_TRUE(leaving.contains("/LDAP/again.example")) << "life " << life;
        EXPECT_FALSE(edited()) << "life " << life;
    }
}

} // namespace
} // namespace corvane::gui
