// What the window says and offers after the service has refused a change, in the real window.
#include <QApplication>
#include <QTimer>

#include "gui/policies/PolicyWindow.h"

namespace corvane::gui {
namespace {

class Refused : public PolicyWindow {
protected:
    void chooseAutomaticWhileAnotherProgramWrites() {
        open();
        user().choose("selectSearchPolicy", "Automatic");
        auto text = machine_.folder.read("etc/sssd/sssd.conf");
        machine_.folder.write("etc/sssd/sssd.conf", text + "# changed by another program\n");
        told_ = answered([&] { user().click("applyButton"); }, "OK");
    }
    /// Clicks Apply, agrees to directories that leave, and counts the alerts that come then.
    [[nodiscard]] int refusalsOfApply() {
        int alerts = 0;
        QTimer watch;
        QObject::connect(&watch, &QTimer::timeout, [&] {
            if (QApplication::activeModalWidget() == nullptr) return;
            const bool asks = user().visibleText().contains("off the login policy?");
            alerts += asks ? 0 : 1;
            user().answer(asks ? "Save Anyway" : "OK");
        });
        watch.start(20);
        user().click("applyButton");
        return alerts;
    }
    [[nodiscard]] QString strip() const {
        const auto* strip = stripWidget();
        return strip->isVisible() ? strip->accessibleName() + " " + strip->accessibleDescription()
                                  : QString();
    }
    QString told_;

private:
    [[nodiscard]] const QWidget* stripWidget() const {
        return view(authenticationTable).window()->findChild<QWidget*>("unsaved");
    }
};

TEST_F(Refused, afterAnotherProgramsChange_theStripSaysWhatAndWhichFile) {
    chooseAutomaticWhileAnotherProgramWrites();
    EXPECT_TRUE(strip().contains("The choice “Automatic” was not saved.")) << strip().toStdString();
    EXPECT_TRUE(strip().contains("sssd.conf")) << strip().toStdString();
}

TEST_F(Refused, listAndChoiceAfterAnotherProgramsChange_leaveTheLoginPolicyAsItWas) {
    open();
    user().choose("selectSearchPolicy", "Automatic");
    apply();
    user().choose("selectSearchPolicy", "Custom");
    controller().addNodeToAuthSearchPolicy("/LDAP/bravo.example");
    const auto theirs = machine_.folder.read("etc/sssd/sssd.conf") + "# changed by another program\n";
    machine_.folder.write("etc/sssd/sssd.conf", theirs);
    const auto nsswitch = machine_.folder.read("etc/nsswitch.conf");
    EXPECT_EQ(refusalsOfApply(), 2) << "the list, and the choice that goes with it";
    EXPECT_EQ(machine_.folder.read("etc/sssd/sssd.conf"), theirs);
    EXPECT_EQ(machine_.folder.read("etc/nsswitch.conf"), nsswitch);
    EXPECT_TRUE(
        strip().contains("The list of directory domains and the choice “Custom path” were not saved."))
        << strip().toStdString();
}

TEST_F(Refused, tryAgain_savesWhatTheWindowShows) {
    chooseAutomaticWhileAnotherProgramWrites();
    user().click("tryAgain");
    EXPECT_EQ(strip(), "");
    EXPECT_EQ(machine_.mode(machine_.search()), halden::attribute::automaticSearchPath);
    EXPECT_NE(machine_.folder.read("etc/sssd/sssd.conf").find("# changed by another program"),
              std::string::npos);
}

TEST_F(Refused, showWhatIsSaved_showsTheServicesChoice) {
    chooseAutomaticWhileAnotherProgramWrites();
    user().click("showSaved");
    EXPECT_EQ(strip(), "");
    EXPECT_EQ(nodes(), Names({head1, head2, "charlie", "delta", "echo", ad}));
}

TEST_F(Refused, theLock_asksWhileTheStripIsThere) {
    chooseAutomaticWhileAnotherProgramWrites();
    const auto asked = answered([&] { user().click("authorizationView"); }, "Cancel");
    EXPECT_TRUE(asked.contains("Lock although not everything is saved?")) << asked.toStdString();
    EXPECT_TRUE(controller().unlocked());
}

} // namespace
} // namespace corvane::gui
