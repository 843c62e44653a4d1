// What the window says while a change keeps it from answering.
#include <QAccessible>
#include <QLabel>
#include <QMainWindow>
#include <QTest>

#include "gui/policies/PolicyWindow.h"

namespace corvane::gui {
namespace {

class Busy : public PolicyWindow {
protected:
    [[nodiscard]] QString note() const {
        return view(authenticationTable).window()->findChild<QLabel*>("busyNote")->text();
    }
    void changeTheMachine(haldend::PolicyMode mode) {
        auto& machine = program().engine().machine();
        machine.noteThatPolicyWasRead(haldend::Machine::View::contacts);
        machine.change(haldend::Machine::View::contacts,
                       [mode](haldend::MachinePolicy& policy) { policy.contacts.mode = mode; });
    }
};

TEST_F(Busy, changeOfTheMachine_saysSoOnceItHasLastedAMoment) {
    open();
    auto& busy = program().window().busy;
    busy.begin("Saving…");
    changeTheMachine(haldend::PolicyMode::localOnly);
    EXPECT_EQ(note(), "");
    QTest::qWait(static_cast<int>(qt::QtBusyIndicator::aMoment.count()) + 1);
    changeTheMachine(haldend::PolicyMode::automatic);
    EXPECT_EQ(note(), "Saving…");
    auto* label = view(authenticationTable).window()->findChild<QLabel*>("busyNote");
    EXPECT_EQ(QAccessible::queryAccessibleInterface(label)->role(), QAccessible::Notification);
    EXPECT_TRUE(user().isVisible("busyNote"));
    EXPECT_LE(label->fontMetrics().horizontalAdvance(note()), label->width()) << "there is room for it";
    busy.end();
    EXPECT_EQ(note(), "");
}

TEST_F(Busy, quickSave_saysNothingAndKeepsThePointer) {
    open();
    user().choose("selectSearchPolicy", "Automatic");
    apply();
    EXPECT_EQ(note(), "");
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

} // namespace
} // namespace corvane::gui
