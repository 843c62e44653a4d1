// What the window does when the user goes from pane to pane.
#include <gtest/gtest.h>

#include "fakes/FakeProgram.h"

using namespace corvane;
using Names = std::vector<std::string>;

namespace {

constexpr toolkit::Size fixedSize = {590, 365};
constexpr toolkit::Size editorSize = {790, 600};

struct Navigation : testing::Test {
    [[nodiscard]] fakes::FakeToolbar& toolbar() { return ui.window.toolbar(); }
    [[nodiscard]] fakes::FakeTabView& policyTabs() { return *program.toolkit.madeTabViews.at(0); }
    [[nodiscard]] bool maySelect(const std::string& page) {
        const fakes::FakeTabViewItem item(page);
        return program.controller().mainWindow().shouldSelectTabViewItem(ui.mainTabView, item);
    }
    void loseTheService() {
        program.framework.available = false;
        program.controller().setHaldenSession(nullptr);
    }

    fakes::FakeProgram program;
    fakes::FakeInterface& ui = program.interface;
    fakes::Journal& journal = program.journal;
};

} // namespace

TEST_F(Navigation, searchPolicyAfterContactsWereSelected_readsContactsAlone) {
    program.launch();
    toolbar().clickItem("kSearchPaths");
    policyTabs().clickTab("3");
    toolbar().clickItem("kServices");
    program.controller().reloadSearchPolicies(); // neither is read any longer
    journal.clear();
    toolbar().clickItem("kSearchPaths");
    EXPECT_EQ(policyTabs().selectedTabViewItem()->identifier(), "3");
    EXPECT_TRUE(journal.contains("/Contacts.details"));
    EXPECT_FALSE(journal.contains("/Search.details"));
}

TEST_F(Navigation, fromTheEditorBackToSearchPolicy_theWindowIsAsSmallAsThePane) {
    program.launch();
    toolbar().clickItem("kSearchPaths");
    toolbar().clickItem("kDebug");
    EXPECT_EQ(ui.window.contentSize(), editorSize);
    toolbar().clickItem("kSearchPaths");
    EXPECT_EQ(ui.window.contentSize(), fixedSize);
    EXPECT_FALSE(ui.window.zoomButtonEnabled());
}

TEST_F(Navigation, everyChangeOfSize_isAnimated) {
    program.launch();
    toolbar().clickItem("kDebug");
    toolbar().clickItem("kServices");
    ASSERT_GE(ui.window.resizings().size(), 3U);
    for (const auto& [displays, animates] : ui.window.resizings())
        EXPECT_TRUE(displays && animates);
}

TEST_F(Navigation, remotely_readingEachPaneShowsTheProgressSheet) {
    program.launch();
    program.controller().setIPAddress("server.example.com");
    for (const auto* pane : {"1", "2", "3"}) {
        journal.clear();
        program.controller().loadCurrentTabIfNeeded(pane);
        EXPECT_EQ(journal.count("window.beginSheet"), 1) << pane;
        EXPECT_EQ(journal.count("window.endSheet"), 1) << pane;
        EXPECT_EQ(journal.only({"window.beginSheet", "/Config.query", "/Search.details", "/Contacts.details"})
                      .at(0),
                  "window.beginSheet")
            << "before pane " << pane << " is read";
    }
}

TEST_F(Navigation, thePageOfLocalUsers_isSelectedWhereThereIsASession) {
    program.launch();
    EXPECT_TRUE(maySelect("4"));
    loseTheService();
    EXPECT_FALSE(maySelect("4"));
    EXPECT_TRUE(maySelect("a page of no pane"));
}

TEST_F(Navigation, firstShowing_bringsTheWindowToTheFrontBeforeTheServicesAreRead) {
    program.launch();
    EXPECT_EQ(journal.only({"/Config.query", "window.makeKeyAndOrderFront"}),
              (Names{"/Config.query", // by the delegate, before there is a window
                     "window.makeKeyAndOrderFront", "/Config.query", // when the window is loaded
                     "window.makeKeyAndOrderFront"}));
}

TEST_F(Navigation, errorSheet_hasItsButtonInTheUsersLanguage) {
    program.platform.strings.marks = true;
    program.launch();
    program.controller().showErrorSheetWithTitle("Title", "Message");
    EXPECT_EQ(program.toolkit.alerts().at(0).buttons, Names{"«OK»"});
}

TEST(MainController, sharedInstance_isOneObject) {
    static auto& program = *new fakes::FakeProgram; // for the rest of the process, as the instance is
    fakes::FakeProgram another;
    auto& shared = app::MainController::sharedInstance(program.environment);
    EXPECT_EQ(&app::MainController::sharedInstance(another.environment), &shared);
    EXPECT_EQ(&shared.window(), &program.interface.window);
}
