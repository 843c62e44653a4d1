#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "contract/toolkit/ToolkitDriver.h"

namespace corvane::contract {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class WindowContract : public testing::Test, public toolkit::WindowDelegate {
protected:
    bool windowShouldClose(toolkit::Window&) override {
        calls_.emplace_back("should");
        return mayClose_;
    }
    void windowWillClose(toolkit::Window&) override { calls_.emplace_back("will"); }
    void willEncodeRestorableState(toolkit::Window&, toolkit::StateCoder&) override {}
    void didDecodeRestorableState(toolkit::Window&, const toolkit::StateCoder&) override {}

    std::unique_ptr<ToolkitDriver> driver_ = makeToolkitDriver();
    toolkit::Window& window_ = driver_->window();
    std::vector<std::string> calls_;
    bool mayClose_ = true;
};

TEST_F(WindowContract, KeepsTitleAndMark) {
    window_.setTitle("Corvane [*]");
    EXPECT_EQ(window_.title(), "Corvane [*]");
    EXPECT_FALSE(window_.isDocumentEdited());
    window_.setDocumentEdited(true);
    EXPECT_TRUE(window_.isDocumentEdited());
    EXPECT_EQ(window_.title(), "Corvane [*]");
    window_.setDocumentEdited(false);
    EXPECT_FALSE(window_.isDocumentEdited());
}

TEST_F(WindowContract, TheFrameIsWhatWasSet) {
    const auto frame = window_.frameRectForContentRect({{120, 160}, {400, 300}});
    EXPECT_EQ(frame.origin, (toolkit::Point{120, 160}));
    EXPECT_EQ(frame.size.width, 400);
    EXPECT_GE(frame.size.height, 300);
    window_.setFrame(frame, true, false);
    EXPECT_EQ(window_.frame(), frame);
}

TEST_F(WindowContract, MovingByEitherCornerKeepsTheSize) {
    const auto size = window_.frame().size;
    window_.setFrameOrigin({50, 60});
    EXPECT_EQ(window_.frame(), (toolkit::Rect{{50, 60}, size}));
    window_.setFrameTopLeftPoint({70, 720});
    EXPECT_EQ(window_.frame(), (toolkit::Rect{{70, 720 - size.height}, size}));
}

TEST_F(WindowContract, AGrowingContentKeepsTheUpperEdgeWhereTheProgramPutsIt) {
    window_.setFrame(window_.frameRectForContentRect({{100, 150}, {400, 300}}), true, false);
    const double top = window_.frame().origin.y + window_.frame().size.height;
    auto taller = window_.frameRectForContentRect({{100, 0}, {450, 380}});
    taller.origin.y = top - taller.size.height;
    window_.setFrame(taller, true, false);
    window_.setContentMinSize({450, 380});
    window_.setContentMaxSize({450, 380});
    EXPECT_EQ(window_.frame(), taller);
    window_.setFrame(window_.frameRectForContentRect({{100, 150}, {400, 300}}), true, false);
    EXPECT_EQ(window_.frame().size.width, 400);
}

TEST_F(WindowContract, OrderingInAndOutShowsAndHides) {
    window_.orderOut();
    EXPECT_FALSE(window_.isVisible());
    window_.orderFront();
    EXPECT_TRUE(window_.isVisible());
    window_.orderOut();
    window_.makeKeyAndOrderFront();
    EXPECT_TRUE(window_.isVisible());
    EXPECT_THAT(calls_, IsEmpty());
}

TEST_F(WindowContract, TheUserClosesWhatTheDelegateLetsGo) {
    window_.setDelegate(this);
    EXPECT_TRUE(driver_->clickClose(window_));
    EXPECT_FALSE(window_.isVisible());
    EXPECT_THAT(calls_, ElementsAre("should", "will"));
}

TEST_F(WindowContract, ARefusalKeepsTheWindowOpen) {
    window_.setDelegate(this);
    mayClose_ = false;
    EXPECT_FALSE(driver_->clickClose(window_));
    EXPECT_TRUE(window_.isVisible());
    EXPECT_THAT(calls_, ElementsAre("should"));
}

TEST_F(WindowContract, TheProgramClosesWithoutAsking) {
    window_.setDelegate(this);
    mayClose_ = false;
    window_.close();
    EXPECT_FALSE(window_.isVisible());
    EXPECT_THAT(calls_, ElementsAre("will"));
}

TEST_F(WindowContract, ASheetIsAttachedUntilItEndsAndShownUntilItIsOrderedOut) {
    auto& sheet = driver_->sheet();
    std::vector<int> codes;
    EXPECT_FALSE(sheet.isVisible());
    window_.beginSheet(sheet, [&](toolkit::Window& ended, int code) {
        EXPECT_EQ(&ended, &sheet);
        codes.push_back(code);
        EXPECT_FALSE(window_.hasAttachedSheet());
    });
    EXPECT_TRUE(window_.hasAttachedSheet());
    EXPECT_TRUE(sheet.isVisible());
    window_.endSheet(sheet, 7);
    EXPECT_THAT(codes, ElementsAre(7));
    EXPECT_FALSE(window_.hasAttachedSheet());
    EXPECT_TRUE(sheet.isVisible());
    sheet.orderOut();
    EXPECT_FALSE(sheet.isVisible());
}

TEST_F(WindowContract, ASheetEndsOnceAndCanRunAgain) {
    auto& sheet = driver_->sheet();
    int ends = 0;
    const auto ended = [&](toolkit::Window& it, int) {
        ++ends;
        it.orderOut();
    };
    window_.endSheet(sheet, 1);
    EXPECT_EQ(ends, 0);
    window_.beginSheet(sheet, ended);
    window_.endSheet(sheet, 1);
    window_.endSheet(sheet, 1);
    EXPECT_EQ(ends, 1);
    window_.beginSheet(sheet, ended);
    EXPECT_TRUE(window_.hasAttachedSheet());
    window_.endSheet(sheet, 1);
    EXPECT_EQ(ends, 2);
}

TEST_F(WindowContract, ControlsKeepTheirStateWhileASheetCoversThem) {
    auto& button = driver_->button();
    auto& sheet = driver_->sheet();
    window_.beginSheet(sheet, [](toolkit::Window& it, int) { it.orderOut(); });
    EXPECT_TRUE(button.isEnabled());
    button.setEnabled(false);
    EXPECT_FALSE(button.isEnabled());
    window_.endSheet(sheet, 0);
    EXPECT_FALSE(button.isEnabled());
}

class AlertContract : public testing::Test {
protected:
    std::unique_ptr<toolkit::Alert> saveQuestion() {
        auto alert = driver_->toolkit().makeAlert();
        alert->setMessageText("Save Changes?");
        alert->setInformativeText("Do you want to save changes before quitting?");
        for (const char* title : {"Save", "Don't Save", "Cancel"})
            alert->addButton(title);
        return alert;
    }

    std::unique_ptr<ToolkitDriver> driver_ = makeToolkitDriver();
};

TEST_F(AlertContract, AModalAlertAnswersTheButtonsNumber) {
    for (int button = 1; button <= 3; ++button) {
        driver_->willAnswerModalAlert(button);
        EXPECT_EQ(saveQuestion()->runModal(), button);
    }
}

TEST_F(AlertContract, AModalAlertMayBeClosedWithoutAButton) {
    driver_->willAnswerModalAlert(toolkit::Alert::closed);
    EXPECT_EQ(saveQuestion()->runModal(), toolkit::Alert::closed);
}

TEST_F(AlertContract, ASheetReturnsAtOnceAndAnswersOnce) {
    std::vector<int> answers;
    const auto alert = saveQuestion();
    alert->beginSheet(driver_->window(), [&](int answer) { answers.push_back(answer); });
    EXPECT_THAT(answers, IsEmpty());
    EXPECT_TRUE(driver_->window().hasAttachedSheet());
    EXPECT_TRUE(driver_->alertSheetIsOpen());
    driver_->answerAlertSheet(2);
    EXPECT_THAT(answers, ElementsAre(2));
    EXPECT_FALSE(driver_->window().hasAttachedSheet());
    EXPECT_FALSE(driver_->alertSheetIsOpen());
}

TEST_F(AlertContract, TheInformativeTextIsReadOutUnlessThereIsASpokenOne) {
    const auto plain = saveQuestion();
    plain->setInformativeText("It can't be undone.");
    plain->beginSheet(driver_->window(), [](int) {});
    EXPECT_EQ(driver_->spokenTextOfAlertSheet(), "It can't be undone.");
    driver_->answerAlertSheet(1);
    const auto spoken = saveQuestion();
    spoken->setInformativeText("It can't be undone.");
    spoken->setSpokenText("Ash and beech can't be had back.");
    spoken->beginSheet(driver_->window(), [](int) {});
    EXPECT_EQ(driver_->spokenTextOfAlertSheet(), "Ash and beech can't be had back.");
}

TEST_F(AlertContract, ClosingASheetIsAnAnswer) {
    std::vector<int> answers;
    const auto alert = saveQuestion();
    alert->beginSheet(driver_->window(), [&](int answer) { answers.push_back(answer); });
    driver_->answerAlertSheet(toolkit::Alert::closed);
    EXPECT_THAT(answers, ElementsAre(toolkit::Alert::closed));
    EXPECT_FALSE(driver_->window().hasAttachedSheet());
}

TEST_F(AlertContract, AnAlertMayBeDestroyedByItsAnswer) {
    auto alert = saveQuestion();
    int answered = 0;
    alert->beginSheet(driver_->window(), [&](int answer) {
        answered = answer;
        alert.reset();
    });
    driver_->answerAlertSheet(1);
    EXPECT_EQ(answered, 1);
    EXPECT_FALSE(driver_->window().hasAttachedSheet());
}

TEST_F(AlertContract, AnAnswerMayAskTheNextQuestion) {
    const auto first = saveQuestion();
    const auto second = saveQuestion();
    int answered = 0;
    first->beginSheet(driver_->window(), [&](int) {
        second->beginSheet(driver_->window(), [&](int answer) { answered = answer; });
    });
    driver_->answerAlertSheet(1);
    EXPECT_TRUE(driver_->window().hasAttachedSheet());
    driver_->answerAlertSheet(3);
    EXPECT_EQ(answered, 3);
    EXPECT_FALSE(driver_->window().hasAttachedSheet());
}

TEST_F(AlertContract, AnAlertThatGoesUnansweredTakesItsSheetAlong) {
    auto alert = saveQuestion();
    alert->beginSheet(driver_->window(), [](int) { FAIL() << "nobody answered"; });
    alert.reset();
    EXPECT_FALSE(driver_->window().hasAttachedSheet());
}

} // namespace
} // namespace corvane::contract
