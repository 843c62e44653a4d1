#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "contract/toolkit/ToolkitDriver.h"

namespace corvane::contract {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class TabViewContract : public testing::Test, public toolkit::TabViewDelegate {
protected:
    bool shouldSelectTabViewItem(toolkit::TabView&, const toolkit::TabViewItem& item) override {
        calls_.push_back("should " + item.identifier());
        return item.identifier() != refused_;
    }
    void willSelectTabViewItem(toolkit::TabView&, const toolkit::TabViewItem& item) override {
        calls_.push_back("will " + item.identifier() + " from " + selected());
    }
    void didSelectTabViewItem(toolkit::TabView&, const toolkit::TabViewItem& item) override {
        calls_.push_back("did " + item.identifier() + " at " + selected());
    }

    void addPages(const std::vector<std::string>& identifiers) {
        tabs_->setAutoresizingMask(toolkit::TabView::widthSizable | toolkit::TabView::heightSizable);
        tabs_->setDelegate(this);
        for (const auto& identifier : identifiers)
            tabs_->addTabViewItem(driver_->toolkit().makeTabViewItem(identifier, driver_->makePageView()));
        driver_->showTabView(tabs_);
    }
    [[nodiscard]] std::string selected() const {
        const auto item = tabs_->selectedTabViewItem();
        return item ? item->identifier() : "none";
    }

    std::unique_ptr<ToolkitDriver> driver_ = makeToolkitDriver();
    std::shared_ptr<toolkit::TabView> tabs_ = driver_->toolkit().makeTabView({{0, 0}, {300, 200}});
    std::vector<std::string> calls_;
    std::string refused_;
};

TEST_F(TabViewContract, WithoutPagesNothingIsSelected) { EXPECT_EQ(tabs_->selectedTabViewItem(), nullptr); }

TEST_F(TabViewContract, TheFirstPageAddedIsSelectedAndNobodyHearsOfIt) {
    addPages({"a", "b"});
    EXPECT_EQ(selected(), "a");
    EXPECT_THAT(calls_, IsEmpty());
}

TEST_F(TabViewContract, SelectingAsksTellsBeforeAndTellsAfter) {
    addPages({"a", "b"});
    tabs_->selectTabViewItemWithIdentifier("b");
    EXPECT_THAT(calls_, ElementsAre("should b", "will b from a", "did b at b"));
}

TEST_F(TabViewContract, AClickOnATabIsAskedAndToldTheSameWay) {
    addPages({"a", "b"});
    driver_->clickTab(*tabs_, "b");
    EXPECT_EQ(selected(), "b");
    EXPECT_THAT(calls_, ElementsAre("should b", "will b from a", "did b at b"));
}

TEST_F(TabViewContract, ARefusalLeavesThePage) {
    addPages({"a", "b"});
    refused_ = "b";
    driver_->clickTab(*tabs_, "b");
    tabs_->selectTabViewItemWithIdentifier("b");
    EXPECT_EQ(selected(), "a");
    EXPECT_THAT(calls_, ElementsAre("should b", "should b"));
    refused_.clear();
    driver_->clickTab(*tabs_, "b");
    EXPECT_EQ(selected(), "b");
}

TEST_F(TabViewContract, TheSelectedPageAndAnUnknownOneAreNotSelectedAgain) {
    addPages({"a", "b"});
    tabs_->selectTabViewItemWithIdentifier("a");
    tabs_->selectTabViewItemWithIdentifier("z");
    EXPECT_THAT(calls_, IsEmpty());
    EXPECT_EQ(selected(), "a");
}

TEST_F(TabViewContract, PagesAreFoundByIdentifier) {
    addPages({"a", "b"});
    ASSERT_NE(tabs_->tabViewItemWithIdentifier("b"), nullptr);
    EXPECT_EQ(tabs_->tabViewItemWithIdentifier("b")->identifier(), "b");
    EXPECT_EQ(tabs_->tabViewItemWithIdentifier("z"), nullptr);
}

TEST_F(TabViewContract, RemovingTheSelectedPageSelectsItsNeighbourUnheard) {
    addPages({"a", "b", "c"});
    tabs_->removeTabViewItem(*tabs_->tabViewItemWithIdentifier("a"));
    EXPECT_EQ(selected(), "b");
    tabs_->removeTabViewItem(*tabs_->tabViewItemWithIdentifier("c"));
    EXPECT_EQ(selected(), "b");
    tabs_->removeTabViewItem(*tabs_->tabViewItemWithIdentifier("b"));
    EXPECT_EQ(selected(), "none");
    EXPECT_THAT(calls_, IsEmpty());
}

TEST_F(TabViewContract, RemovingAnEarlierPageKeepsTheSelectedOne) {
    addPages({"a", "b", "c"});
    tabs_->selectTabViewItemWithIdentifier("c");
    tabs_->removeTabViewItem(*tabs_->tabViewItemWithIdentifier("a"));
    EXPECT_EQ(selected(), "c");
    driver_->clickTab(*tabs_, "b");
    EXPECT_EQ(selected(), "b");
}

TEST_F(TabViewContract, APageCanMoveToAnotherTabView) {
    addPages({"a", "b"});
    const auto page = tabs_->tabViewItemWithIdentifier("b");
    const auto other = driver_->toolkit().makeTabView({});
    tabs_->removeTabViewItem(*page);
    other->addTabViewItem(page);
    EXPECT_EQ(other->selectedTabViewItem(), page);
    EXPECT_EQ(tabs_->tabViewItemWithIdentifier("b"), nullptr);
}

class ToolbarContract : public testing::Test, public toolkit::ToolbarDelegate {
protected:
    ToolbarContract() {
        toolbar_->setDelegate(this);
        toolbar_->setAutosavesConfiguration(true);
        toolbar_->setAllowsUserCustomization(false);
        driver_->window().setToolbar(*toolbar_);
        driver_->window().setShowsToolbarButton(false);
        toolbar_->setVisible(true);
    }
    std::vector<std::string> toolbarDefaultItemIdentifiers(const toolkit::Toolbar&) override {
        return {"one", "two", "plain"};
    }
    std::vector<std::string> toolbarAllowedItemIdentifiers(const toolkit::Toolbar& bar) override {
        return toolbarDefaultItemIdentifiers(bar);
    }
    std::vector<std::string> toolbarSelectableItemIdentifiers(const toolkit::Toolbar&) override {
        return {"one", "two"};
    }
    toolkit::ToolbarItem itemForItemIdentifier(const toolkit::Toolbar&, const std::string& identifier,
                                               bool) override {
        return {identifier, "Label " + identifier, "", [this](const toolkit::ToolbarItem& item) {
                    clicks_.push_back(item.identifier + " at " +
                                      toolbar_->selectedItemIdentifier().value_or("none"));
                }};
    }
    bool validateToolbarItem(const toolkit::ToolbarItem&) override { return true; }

    std::unique_ptr<ToolkitDriver> driver_ = makeToolkitDriver();
    std::shared_ptr<toolkit::Toolbar> toolbar_ = driver_->toolkit().makeToolbar("bar");
    std::vector<std::string> clicks_;
};

TEST_F(ToolbarContract, HoldsTheDefaultItemsInOrder) {
    EXPECT_EQ(toolbar_->identifier(), "bar");
    const auto items = toolbar_->items();
    ASSERT_EQ(items.size(), 3U);
    EXPECT_EQ(items[0].identifier, "one");
    EXPECT_EQ(items[1].label, "Label two");
    EXPECT_EQ(toolbar_->selectedItemIdentifier(), std::nullopt);
}

TEST_F(ToolbarContract, AClickSelectsAndThenRunsTheAction) {
    driver_->clickToolbarItem(*toolbar_, "two");
    EXPECT_EQ(toolbar_->selectedItemIdentifier(), "two");
    EXPECT_THAT(clicks_, ElementsAre("two at two"));
}

TEST_F(ToolbarContract, AClickOnTheSelectedItemKeepsItSelected) {
    driver_->clickToolbarItem(*toolbar_, "two");
    driver_->clickToolbarItem(*toolbar_, "two");
    EXPECT_EQ(toolbar_->selectedItemIdentifier(), "two");
    EXPECT_THAT(clicks_, ElementsAre("two at two", "two at two"));
}

TEST_F(ToolbarContract, AnItemThatCannotBeSelectedRunsItsActionAlone) {
    toolbar_->setSelectedItemIdentifier("one");
    driver_->clickToolbarItem(*toolbar_, "plain");
    EXPECT_THAT(clicks_, ElementsAre("plain at one"));
}

TEST_F(ToolbarContract, SelectingFromTheProgramRunsNothing) {
    toolbar_->setSelectedItemIdentifier("one");
    EXPECT_EQ(toolbar_->selectedItemIdentifier(), "one");
    toolbar_->setSelectedItemIdentifier(std::nullopt);
    EXPECT_EQ(toolbar_->selectedItemIdentifier(), std::nullopt);
    EXPECT_THAT(clicks_, IsEmpty());
}

TEST_F(ToolbarContract, AnUnknownIdentifierLeavesNothingSelected) {
    toolbar_->setSelectedItemIdentifier("one");
    toolbar_->setSelectedItemIdentifier("nine");
    EXPECT_EQ(toolbar_->selectedItemIdentifier(), std::nullopt);
}

} // namespace
} // namespace corvane::contract
