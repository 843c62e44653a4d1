#include <gtest/gtest.h>

#include <stdexcept>

#include "contract/toolkit/ToolkitDriver.h"

namespace corvane::contract {
namespace {

class ControlsContract : public testing::Test {
protected:
    /// Counts the runs of an action and keeps its last sender.
    toolkit::Control::Action counting() {
        return [this](toolkit::Control& sender) {
            ++runs_;
            sender_ = &sender;
        };
    }

    std::unique_ptr<ToolkitDriver> driver_ = makeToolkitDriver();
    int runs_ = 0;
    toolkit::Control* sender_ = nullptr;
};

using ButtonContract = ControlsContract;
using PopUpButtonContract = ControlsContract;
using TextFieldContract = ControlsContract;
using ProgressIndicatorContract = ControlsContract;
using NoticeContract = ControlsContract;

TEST_F(ButtonContract, ClickRunsTheActionOnceWithTheButtonAsSender) {
    auto& button = driver_->button();
    button.setAction(counting());
    EXPECT_TRUE(driver_->click(button));
    EXPECT_EQ(runs_, 1);
    EXPECT_EQ(sender_, &button);
}

TEST_F(ButtonContract, ClickWithoutAnActionIsHarmless) { EXPECT_TRUE(driver_->click(driver_->button())); }

TEST_F(ButtonContract, ASecondActionReplacesTheFirst) {
    auto& button = driver_->button();
    button.setAction([](toolkit::Control&) { FAIL() << "this action was replaced"; });
    button.setAction(counting());
    EXPECT_TRUE(driver_->click(button));
    EXPECT_EQ(runs_, 1);
}

TEST_F(ButtonContract, ADisabledButtonCannotBeClicked) {
    auto& button = driver_->button();
    button.setAction(counting());
    button.setEnabled(false);
    EXPECT_FALSE(button.isEnabled());
    EXPECT_FALSE(driver_->click(button));
    EXPECT_EQ(runs_, 0);
    button.setEnabled(true);
    EXPECT_TRUE(button.isEnabled());
    EXPECT_TRUE(driver_->click(button));
    EXPECT_EQ(runs_, 1);
}

TEST_F(ButtonContract, AHiddenButtonCannotBeClicked) {
    auto& button = driver_->button();
    button.setAction(counting());
    EXPECT_FALSE(button.isHidden());
    button.setHidden(true);
    EXPECT_TRUE(button.isHidden());
    EXPECT_FALSE(driver_->click(button));
    EXPECT_EQ(runs_, 0);
    button.setHidden(false);
    EXPECT_TRUE(driver_->click(button));
    EXPECT_EQ(runs_, 1);
}

TEST_F(ButtonContract, TitleIsWhatWasSetSignsOfMnemonicsIncluded) {
    auto& button = driver_->button();
    button.setTitle("Save & Quit…");
    EXPECT_EQ(button.title(), "Save & Quit…");
}

TEST_F(ButtonContract, KnowsTheWindowThatShowsIt) {
    EXPECT_EQ(driver_->button().window(), &driver_->window());
}

TEST_F(PopUpButtonContract, ChoosingSelectsTheItemBeforeTheActionRuns) {
    auto& popUp = driver_->popUp();
    int seen = -2;
    popUp.setAction([&](toolkit::Control&) { seen = popUp.indexOfSelectedItem(); });
    EXPECT_TRUE(driver_->choose(popUp, 2));
    EXPECT_EQ(seen, 2);
    EXPECT_EQ(popUp.indexOfSelectedItem(), 2);
}

TEST_F(PopUpButtonContract, SelectingFromTheProgramRunsNoAction) {
    auto& popUp = driver_->popUp();
    popUp.setAction(counting());
    popUp.selectItemAtIndex(1);
    EXPECT_EQ(popUp.indexOfSelectedItem(), 1);
    popUp.synchronizeTitleAndSelectedItem();
    EXPECT_EQ(popUp.indexOfSelectedItem(), 1);
    EXPECT_EQ(runs_, 0);
}

TEST_F(PopUpButtonContract, MinusOneSelectsNothing) {
    auto& popUp = driver_->popUp();
    popUp.selectItemAtIndex(-1);
    EXPECT_EQ(popUp.indexOfSelectedItem(), -1);
}

TEST_F(PopUpButtonContract, AnIndexPastTheEndChangesNothing) {
    auto& popUp = driver_->popUp();
    popUp.selectItemAtIndex(1);
    popUp.selectItemAtIndex(popUp.numberOfItems());
    EXPECT_EQ(popUp.numberOfItems(), 3);
    EXPECT_EQ(popUp.indexOfSelectedItem(), 1);
}

TEST_F(PopUpButtonContract, ADisabledPopUpKeepsItsItem) {
    auto& popUp = driver_->popUp();
    popUp.setAction(counting());
    popUp.setEnabled(false);
    EXPECT_FALSE(driver_->choose(popUp, 2));
    EXPECT_EQ(popUp.indexOfSelectedItem(), 0);
    EXPECT_EQ(runs_, 0);
}

TEST_F(TextFieldContract, ReturnRunsTheActionWithTheTypedText) {
    auto& field = driver_->textField();
    std::string seen;
    field.setAction([&](toolkit::Control&) { seen = field.stringValue(); });
    EXPECT_TRUE(driver_->type(field, "ldap.example"));
    EXPECT_EQ(seen, "ldap.example");
}

TEST_F(TextFieldContract, SettingTheTextRunsNoAction) {
    auto& field = driver_->textField();
    field.setAction(counting());
    field.setStringValue("Grüße");
    EXPECT_EQ(field.stringValue(), "Grüße");
    EXPECT_EQ(runs_, 0);
}

/// Room numbers: digits are typed, the thirteenth room isn't there, and rooms have three digits.
class RoomFormatter final : public toolkit::Formatter {
public:
    std::optional<std::string> stringForObjectValue(const util::Value& value) const override {
        const auto digits = value.description();
        return std::string(digits.size() < 3 ? 3 - digits.size() : 0, '0') + digits;
    }
    bool getObjectValueForString(util::Value* objectValue, std::optional<std::string_view> string,
                                 std::string* errorDescription) override {
        if (string == "13") *errorDescription = "There is no such room.";
        if (string == "13") return false;
        *objectValue = *string;
        return true;
    }
    bool isPartialStringValid(std::string_view partialString, std::optional<std::string>*,
                              std::string*) override {
        return partialString.find_first_not_of("0123456789") == std::string_view::npos;
    }
};

TEST_F(TextFieldContract, AFormatterKeepsRefusedKeysOutAndShowsTheValueInItsWay) {
    auto& field = driver_->textField();
    field.setFormatter(std::make_shared<RoomFormatter>());
    std::string seen;
    field.setAction([&](toolkit::Control&) { seen = field.stringValue(); });
    EXPECT_TRUE(driver_->type(field, "a4-2b"));
    EXPECT_EQ(seen, "042");
    EXPECT_EQ(driver_->shownText(field), "042");
    EXPECT_EQ(driver_->shownDescription(field), "");
}

TEST_F(TextFieldContract, ARefusedTextStaysWithItsReasonAndTheValueStaysToo) {
    auto& field = driver_->textField();
    field.setFormatter(std::make_shared<RoomFormatter>());
    field.setStringValue("007");
    field.setAction(counting());
    driver_->type(field, "13");
    EXPECT_EQ(runs_, 0);
    EXPECT_EQ(driver_->shownText(field), "13");
    EXPECT_EQ(driver_->shownDescription(field), "There is no such room.");
    EXPECT_EQ(field.stringValue(), "007");
    driver_->type(field, "14");
    EXPECT_EQ(runs_, 1);
    EXPECT_EQ(field.stringValue(), "014");
    EXPECT_EQ(driver_->shownDescription(field), "");
}

TEST_F(TextFieldContract, LeavingTheFieldEndsTheEditWithoutTheAction) {
    auto& field = driver_->textField();
    field.setFormatter(std::make_shared<RoomFormatter>());
    field.setAction(counting());
    driver_->typeAndLeave(field, "5");
    EXPECT_EQ(field.stringValue(), "005");
    driver_->typeAndLeave(field, "13");
    EXPECT_EQ(field.stringValue(), "005");
    EXPECT_EQ(driver_->shownDescription(field), "There is no such room.");
    EXPECT_EQ(runs_, 0);
}

TEST_F(TextFieldContract, WhatTheProgramSetsIsTakenAsItIsAndClearsTheReason) {
    auto& field = driver_->textField();
    field.setFormatter(std::make_shared<RoomFormatter>());
    driver_->type(field, "13");
    field.setStringValue("none");
    EXPECT_EQ(field.stringValue(), "none");
    EXPECT_EQ(driver_->shownDescription(field), "");
    field.setFormatter(nullptr);
    EXPECT_TRUE(driver_->type(field, "any text"));
    EXPECT_EQ(field.stringValue(), "any text");
}

TEST_F(NoticeContract, ANoticeShowsItsTextsWhileItIsNotHidden) {
    auto& notice = driver_->notice();
    notice.setMessageText("The list was not saved.");
    EXPECT_EQ(driver_->shownText(notice), "The list was not saved.");
    notice.setInformativeText("The disk is full.");
    EXPECT_EQ(driver_->shownText(notice), "The list was not saved.The disk is full.");
    notice.setHidden(true);
    EXPECT_EQ(driver_->shownText(notice), "");
    notice.setMessageText("The choice was not saved.");
    notice.setInformativeText("");
    EXPECT_EQ(driver_->shownText(notice), "");
    notice.setHidden(false);
    EXPECT_EQ(driver_->shownText(notice), "The choice was not saved.");
}

TEST_F(ProgressIndicatorContract, KeepsItsKindWhileItRunsAndStops) {
    auto& bar = driver_->progressIndicator();
    bar.setUsesThreadedAnimation(true);
    bar.setIndeterminate(true);
    EXPECT_TRUE(bar.isIndeterminate());
    bar.setNeedsDisplay();
    bar.startAnimation();
    bar.display();
    EXPECT_TRUE(bar.isIndeterminate());
    bar.stopAnimation();
    EXPECT_TRUE(bar.isIndeterminate());
    bar.setIndeterminate(false);
    EXPECT_FALSE(bar.isIndeterminate());
}

} // namespace
} // namespace corvane::contract
