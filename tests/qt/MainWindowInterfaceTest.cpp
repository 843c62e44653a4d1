#include <gmock/gmock.h>

#include <QImage>
#include <QLabel>
#include <QMainWindow>
#include <QToolButton>

#include "fakes/FakePlatform.h"
#include "qt/QtHarness.h"
#include "qt/adapters/QtToolkit.h"
#include "qt/widgets/SheetOverlay.h"
#include "qt/windows/MainWindowInterface.h"

namespace corvane::qt {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// An authorization service that grants or refuses as told.
class Rights final : public platform::AuthorizationService {
public:
    class Grant final : public platform::Authorization {
    public:
        bool obtainRights(const platform::AuthorizationRights&, std::uint32_t flags) override {
            lastFlags = flags;
            if (fails) throw std::runtime_error("no agent");
            if ((flags & platform::AuthorizationFlag::interactionAllowed) && grants) held = true;
            return held;
        }
        [[nodiscard]] std::string refusalReason() const override { return reason; }
        void destroyRights() override { held = false; }
        [[nodiscard]] platform::AuthorizationRef authorizationRef() const override { return 7; }
        bool grants = true;
        bool held = false;
        bool fails = false;
        std::string reason;
        std::uint32_t lastFlags = 0;
    };
    std::shared_ptr<platform::Authorization> createAuthorization() override {
        return reachable ? grant : nullptr;
    }
    std::int32_t makeExternalForm(platform::AuthorizationRef, util::AuthorizationExternalForm&) override {
        return 0;
    }

    std::shared_ptr<Grant> grant = std::make_shared<Grant>();
    bool reachable = true;
};

class MainWindowInterfaceTest : public testing::Test, public platform::AuthorizationViewDelegate {
protected:
    void load() {
        ui_ = std::make_unique<MainWindowInterface>(qt_.application, rights_, qt_.settings, qt_.guard);
        ui_->authorizationView.setDelegate(this);
        ui_->window.setFrame(ui_->window.frameRectForContentRect({{100, 200}, {590, 365}}), true, false);
        ui_->window.makeKeyAndOrderFront();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&ui_->shell()));
    }
    void SetUp() override { load(); }

    void authorizationViewCreatedAuthorization(platform::AuthorizationView&) override {
        calls_.emplace_back("created");
    }
    void authorizationViewDidAuthorize(platform::AuthorizationView& view) override {
        calls_.emplace_back("did authorize");
        view.updateStatus();
    }
    void authorizationViewDidDeauthorize(platform::AuthorizationView& view) override {
        calls_.emplace_back("did deauthorize");
        view.updateStatus();
    }
    bool authorizationViewShouldDeauthorize(platform::AuthorizationView&) override {
        calls_.emplace_back("should deauthorize");
        return mayLock_;
    }
    void authorizationViewReleasedAuthorization(platform::AuthorizationView&) override {}

    template <typename Widget>
    Widget& named(const char* name) {
        return *ui_->shell().findChild<Widget*>(name);
    }
    QToolButton& lock() { return named<QToolButton>("authorizationView"); }
    void clickLock() { QTest::mouseClick(&lock(), Qt::LeftButton); }

    QtHarness qt_;
    Rights rights_;
    std::unique_ptr<MainWindowInterface> ui_;
    std::vector<std::string> calls_;
    bool mayLock_ = true;
};

using LockControl = MainWindowInterfaceTest;
using MainMenuTest = MainWindowInterfaceTest;
using SheetTest = MainWindowInterfaceTest;

TEST_F(LockControl, AClickObtainsTheRightsAndTellsTheDelegate) {
    EXPECT_EQ(ui_->authorizationView.authorizationState(), platform::AuthorizationViewState::startup);
    EXPECT_EQ(lock().text(), "Click the lock to make changes.");
    clickLock();
    EXPECT_EQ(rights_.grant->held, true);
    EXPECT_EQ(ui_->authorizationView.authorizationState(), platform::AuthorizationViewState::unlocked);
    EXPECT_EQ(lock().text(), "Click the lock to prevent further changes.");
    EXPECT_THAT(calls_, ElementsAre("did authorize"));
}

TEST_F(LockControl, AClickOnAnOpenLockAsksGivesTheRightsBackAndTells) {
    clickLock();
    calls_.clear();
    clickLock();
    EXPECT_FALSE(rights_.grant->held);
    EXPECT_EQ(ui_->authorizationView.authorizationState(), platform::AuthorizationViewState::locked);
    EXPECT_THAT(calls_, ElementsAre("should deauthorize", "did deauthorize"));
}

TEST_F(LockControl, TheDelegateMayKeepTheLockOpen) {
    clickLock();
    calls_.clear();
    mayLock_ = false;
    clickLock();
    EXPECT_TRUE(rights_.grant->held);
    EXPECT_EQ(ui_->authorizationView.authorizationState(), platform::AuthorizationViewState::unlocked);
    EXPECT_THAT(calls_, ElementsAre("should deauthorize"));
}

TEST_F(LockControl, LookingAtTheStatusAsksNobodyAndTellsOfNewsAlone) {
    ui_->authorizationView.updateStatus();
    EXPECT_EQ(rights_.grant->lastFlags, 18U);
    EXPECT_EQ(ui_->authorizationView.authorizationState(), platform::AuthorizationViewState::locked);
    EXPECT_THAT(calls_, IsEmpty());
    rights_.grant->held = true;
    ui_->authorizationView.updateStatus();
    ui_->authorizationView.updateStatus();
    rights_.grant->held = false;
    ui_->authorizationView.updateStatus();
    EXPECT_THAT(calls_, ElementsAre("did authorize", "did deauthorize"));
}

TEST_F(LockControl, ARefusalIsExplainedInASheet) {
    rights_.grant->grants = false;
    rights_.grant->reason = "You are not an administrator. Ask one.";
    clickLock();
    EXPECT_THAT(calls_, IsEmpty());
    EXPECT_TRUE(ui_->window.hasAttachedSheet());
    auto* panel = dynamic_cast<AlertPanel*>(ui_->shell().findChild<QDialog*>());
    ASSERT_NE(panel, nullptr);
    EXPECT_EQ(panel->messageText(), "The lock could not be opened");
    EXPECT_EQ(panel->informativeText(), "You are not an administrator. Ask one.");
    QTest::keyClick(&ui_->shell(), Qt::Key_Escape);
    QTest::keyClick(panel, Qt::Key_Return);
    EXPECT_FALSE(ui_->window.hasAttachedSheet());
}

TEST_F(LockControl, AUserWhoGivesUpSeesNoSheet) {
    rights_.grant->grants = false;
    clickLock();
    EXPECT_FALSE(ui_->window.hasAttachedSheet());
}

TEST_F(LockControl, AServiceThatFailsLeavesAClosedLockThatCanBeTriedAgain) {
    rights_.grant->fails = true;
    clickLock();
    EXPECT_EQ(ui_->authorizationView.authorizationState(), platform::AuthorizationViewState::locked);
    EXPECT_THAT(qt_.log.lines, ElementsAre("Exception while handling the lock: no agent"));
    rights_.grant->fails = false;
    clickLock();
    EXPECT_EQ(ui_->authorizationView.authorizationState(), platform::AuthorizationViewState::unlocked);
}

TEST_F(LockControl, AServiceThatComesLateIsAskedForItsAuthorizationOnTheNextClick) {
    rights_.reachable = false;
    load();
    EXPECT_EQ(ui_->authorizationView.authorization(), nullptr);
    clickLock();
    auto* panel = dynamic_cast<AlertPanel*>(ui_->shell().findChild<QDialog*>());
    ASSERT_NE(panel, nullptr);
    EXPECT_THAT(panel->informativeText().toStdString(), HasSubstr("can't be reached"));
    QTest::keyClick(panel, Qt::Key_Return);
    rights_.reachable = true;
    clickLock();
    EXPECT_THAT(calls_, ElementsAre("created", "did authorize"));
}

TEST_F(MainMenuTest, EveryOperationOfTheProgramHasItsItem) {
    for (const char* action : {"showAboutWindow", "connect", "disconnect", "saveChanges", "revertAction",
                               "enableRootUser", "changeRootPassword", "mainWindowHelpButtonHit"})
        EXPECT_NE(ui_->menu.itemNamed(action), nullptr) << action;
    EXPECT_EQ(ui_->menu.itemNamed("saveChanges")->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_S));
}

TEST_F(MainMenuTest, AMenuThatOpensShowsWhatMayBeChosenAndTheItemsTitle) {
    ui_->menu.validateMenuItem = [](toolkit::MenuItem& item) {
        if (item.action() == "enableRootUser") item.setTitle("Disable Root User");
        return item.action() != "changeRootPassword";
    };
    auto* item = ui_->menu.itemNamed("changeRootPassword");
    auto* menu = static_cast<QMenu*>(item->parent());
    emit menu->aboutToShow();
    EXPECT_FALSE(item->isEnabled());
    EXPECT_TRUE(ui_->menu.itemNamed("enableRootUser")->isEnabled());
    EXPECT_EQ(ui_->menu.itemNamed("enableRootUser")->text(), "Disable Root User");
    emit menu->aboutToHide();
    EXPECT_TRUE(item->isEnabled());
}

TEST_F(MainMenuTest, AShortcutIsValidatedWhenItIsPressed) {
    std::vector<std::string> performed;
    bool dirty = false;
    ui_->menu.validateMenuItem = [&](toolkit::MenuItem&) { return dirty; };
    ui_->menu.performMenuItem = [&](toolkit::MenuItem& item) { performed.push_back(item.action()); };
    ASSERT_TRUE(QTest::qWaitForWindowActive(&ui_->shell()));
    QTest::keyClick(ui_->shell().windowHandle(), Qt::Key_S, Qt::ControlModifier);
    EXPECT_THAT(performed, IsEmpty());
    dirty = true;
    QTest::keyClick(ui_->shell().windowHandle(), Qt::Key_S, Qt::ControlModifier);
    EXPECT_THAT(performed, ElementsAre("saveChanges"));
}

TEST_F(MainMenuTest, AKeyThatTheProgramTakesIsNoShortcutAnyMore) {
    int performed = 0;
    ui_->menu.performMenuItem = [&](toolkit::MenuItem&) { ++performed; };
    qt_.application.sendEvent = [](const toolkit::Event& event) {
        return event.charactersIgnoringModifiers == "s";
    };
    ASSERT_TRUE(QTest::qWaitForWindowActive(&ui_->shell()));
    QTest::keyClick(ui_->shell().windowHandle(), Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(performed, 0);
}

TEST_F(MainMenuTest, AnItemWhoseActionFailsIsLoggedAndTheProgramGoesOn) {
    ui_->menu.performMenuItem = [](toolkit::MenuItem&) { throw std::runtime_error("no session"); };
    ui_->menu.itemNamed("connect")->trigger();
    EXPECT_THAT(qt_.log.lines, ElementsAre("Exception while handling a menu item's action: no session"));
}

TEST_F(SheetTest, TheKeyboardStaysInsideASheetAndReturnsToWhereItWas) {
    ui_->window.makeFirstResponder(&ui_->selectPlugIn);
    QtAlert alert(qt_.guard);
    alert.addButton("Save");
    alert.addButton("Cancel");
    int answered = 0;
    alert.beginSheet(ui_->window, [&](int answer) { answered = answer; });
    auto* panel = ui_->shell().findChild<QDialog*>();
    for (int press = 0; press < 5; ++press) {
        ASSERT_NE(QApplication::focusWidget(), nullptr);
        EXPECT_TRUE(panel->isAncestorOf(QApplication::focusWidget()));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    EXPECT_EQ(answered, toolkit::Alert::closed);
    EXPECT_EQ(QApplication::focusWidget(), &ui_->selectPlugIn.widget());
}

TEST_F(SheetTest, ReturnAnswersTheFirstButton) {
    QtAlert alert(qt_.guard);
    alert.addButton("Save");
    alert.addButton("Cancel");
    int answered = 0;
    alert.beginSheet(ui_->window, [&](int answer) { answered = answer; });
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    EXPECT_EQ(answered, 1);
}

TEST_F(SheetTest, AWindowWithASheetCannotBeClosedByTheUser) {
    ui_->window.beginSheet(ui_->progressSheet, [](toolkit::Window& sheet, int) { sheet.orderOut(); });
    EXPECT_FALSE(ui_->shell().close());
    EXPECT_TRUE(ui_->window.isVisible());
    ui_->window.endSheet(ui_->progressSheet, 0);
    EXPECT_TRUE(ui_->shell().close());
}

TEST_F(SheetTest, FocusGivenWhileASheetRunsArrivesAfterwards) {
    ui_->window.beginSheet(ui_->progressSheet, [](toolkit::Window& sheet, int) { sheet.orderOut(); });
    ui_->window.makeFirstResponder(&ui_->selectPlugIn);
    ui_->window.endSheet(ui_->progressSheet, 0);
    EXPECT_EQ(QApplication::focusWidget(), &ui_->selectPlugIn.widget());
}

TEST_F(MainWindowInterfaceTest, PagesAndColumnsBearTheirIdentifiers) {
    for (const char* page : {"main", "directoryEditor"})
        EXPECT_NE(ui_->mainVsDirectoryEditorTabView.tabViewItemWithIdentifier(page), nullptr) << page;
    for (const char* page : {"1", "2", "3"})
        EXPECT_NE(ui_->mainTabView.tabViewItemWithIdentifier(page), nullptr) << page;
    for (const char* column : {"Name", "Version", "On-Off"})
        EXPECT_NE(ui_->selectPlugIn.tableColumnWithIdentifier(column), nullptr) << column;
    EXPECT_NE(ui_->selectNode.tableColumnWithIdentifier("NodeName"), nullptr);
    EXPECT_NE(ui_->selectNodeContact.tableColumnWithIdentifier("NodeName"), nullptr);
    EXPECT_EQ(ui_->selectSearchPolicy.numberOfItems(), 3);
    EXPECT_EQ(ui_->selectContactPolicy.numberOfItems(), 3);
    EXPECT_EQ(ui_->applyButton.window(), &ui_->window);
}

TEST_F(MainWindowInterfaceTest, ControlsThatShowASignHaveANameForThoseWhoCannotSeeIt) {
    for (const char* name : {"addNode", "deleteNode", "addNodeContact", "deleteNodeContact", "helpButton"}) {
        EXPECT_FALSE(named<QWidget>(name).accessibleName().isEmpty()) << name;
        EXPECT_FALSE(named<QWidget>(name).toolTip().isEmpty()) << name;
    }
}

TEST_F(MainWindowInterfaceTest, ThePopUpsChoiceIsExplained) {
    ui_->selectSearchPolicy.selectItemAtIndex(1);
    EXPECT_EQ(named<QLabel>("policyExplanation").text(), "Looks for users and groups of this machine only.");
    ui_->selectSearchPolicy.selectItemAtIndex(-1);
    EXPECT_EQ(named<QLabel>("policyExplanation").text(), "");
}

TEST_F(MainWindowInterfaceTest, ThePanesFitTheirSize) {
    EXPECT_EQ(named<QWidget>("contentView").size(), QSize(590, 365));
    EXPECT_LE(named<QWidget>("contentView").minimumSizeHint().width(), 590);
    EXPECT_LE(named<QWidget>("contentView").minimumSizeHint().height(), 365);
}

TEST_F(MainWindowInterfaceTest, TheStripAtTheFootIsAsWideAsThePanes) {
    ui_->trialNotice.setMessageText("Trial folder");
    ui_->trialNotice.setHidden(false);
    QTest::qWait(0);
    const auto placeOf = [&](const char* name) {
        auto& each = named<QWidget>(name);
        return QRect(each.mapTo(&ui_->shell(), QPoint()), each.size());
    };
    EXPECT_EQ(placeOf("trialNotice").left(), placeOf("selectPlugIn").left());
    EXPECT_EQ(placeOf("trialNotice").right(), placeOf("selectPlugIn").right());
}

TEST_F(MainWindowInterfaceTest, APlaceOutsideOfEveryScreenIsMovedOntoOne) {
    ui_->window.setFrameTopLeftPoint({-90000, 90000});
    const auto edge = QRect(ui_->shell().pos(), QSize(ui_->shell().width(), 1));
    EXPECT_TRUE(ui_->shell().screen()->availableGeometry().intersects(edge));
}

TEST_F(MainWindowInterfaceTest, APictureShowsTheWindowAtDoubleDensity) {
    const auto path = qt_.folder.filePath("shot.png");
    ASSERT_TRUE(renderToFile(ui_->shell(), path));
    const QImage picture(path);
    EXPECT_EQ(picture.size(), ui_->shell().size() * 2);
    // Dark spots where the heading's text is: a font was found.
    const auto& heading = named<QLabel>("servicesHeading");
    const QRect place(heading.mapTo(&ui_->shell(), QPoint()) * 2, heading.sizeHint() * 2);
    int dark = 0;
    for (int y = place.top(); y < place.bottom(); ++y)
        for (int x = place.left(); x < place.right(); ++x)
            dark += qGray(picture.pixel(x, y)) < 100;
    EXPECT_GT(dark, 200);
    EXPECT_FALSE(renderToFile(ui_->shell(), "/proc/corvane/shot.png"));
}

} // namespace
} // namespace corvane::qt
