#include <gmock/gmock.h>

#include "fakes/FakeLayout.h"
#include "fakes/FakePlatform.h"
#include "views/CollapsibleView.h"
#include "views/CollapsibleViewAnimationProxy.h"

using namespace corvane;
using namespace corvane::views;
using testing::ElementsAre;
using testing::IsEmpty;
using toolkit::LayoutAttribute;

namespace {

struct Collapsible : testing::Test {
    std::shared_ptr<fakes::FakeConstraint> constrain(LayoutAttribute attribute, double constant) {
        return constrain(&view, attribute, constant);
    }
    std::shared_ptr<fakes::FakeConstraint> constrain(const toolkit::View* item, LayoutAttribute attribute,
                                                     double constant) {
        const auto made = std::make_shared<fakes::FakeConstraint>(item, attribute, constant);
        view.addConstraint(made);
        return made;
    }
    void setFrameHeight(double height) { view.setFrameForTest({{0, 0}, {300, height}}); }
    fakes::FakeConstraint& added() {
        return static_cast<fakes::FakeConstraint&>(*folding.heightConstraint());
    }

    fakes::Journal journal;
    fakes::FakeRunLoop runLoop;
    fakes::FakeConstrainedView view{journal, "view"};
    CollapsibleView folding{view, runLoop};
};

} // namespace

TEST_F(Collapsible, made_isExpandedAndKnowsNothing) {
    EXPECT_EQ(folding.initialHeight, 0);
    EXPECT_EQ(folding.initialWidth, 0);
    EXPECT_FALSE(folding.heightCollapsed || folding.widthCollapsed || folding.heightConstraintAdded);
    EXPECT_EQ(folding.heightConstraint(), nullptr);
    EXPECT_EQ(folding.widthConstraint(), nullptr);
}

TEST_F(Collapsible, constraints_areTheFirstOfItsOwn) {
    const fakes::FakeView other(journal, "other");
    constrain(&other, LayoutAttribute::height, 1);
    constrain(LayoutAttribute::other, 2);
    const auto width = constrain(LayoutAttribute::width, 3);
    const auto height = constrain(LayoutAttribute::height, 4);
    constrain(LayoutAttribute::height, 5);
    constrain(LayoutAttribute::width, 6);
    EXPECT_EQ(folding.heightConstraint(), height);
    EXPECT_EQ(folding.widthConstraint(), width);
}

TEST_F(Collapsible, height_withAConstraint_isFoldedAndBroughtBack) {
    const auto height = constrain(LayoutAttribute::height, 80);
    folding.collapseHeight();
    EXPECT_THAT(height->changes, ElementsAre("set 0"));
    EXPECT_TRUE(folding.heightCollapsed);
    EXPECT_EQ(folding.initialHeight, 80);
    EXPECT_FALSE(folding.heightConstraintAdded);
    folding.restoreHeight();
    EXPECT_THAT(height->changes, ElementsAre("set 0", "set 80"));
    EXPECT_FALSE(folding.heightCollapsed);
    EXPECT_EQ(folding.heightConstraint(), height) << "it was there before";
}

TEST_F(Collapsible, height_withoutAConstraint_getsOneOfWholePointsForTheTime) {
    setFrameHeight(120.6);
    journal.clear();
    folding.collapseHeight();
    EXPECT_THAT(journal.entries(), ElementsAre("view.V:[view(==120)]", "view.addConstraint"));
    EXPECT_THAT(added().changes, ElementsAre("set 0"));
    EXPECT_EQ(folding.initialHeight, 120.6);
    EXPECT_TRUE(folding.heightConstraintAdded);
    const auto constraint = folding.heightConstraint();
    folding.restoreHeight();
    EXPECT_THAT(static_cast<fakes::FakeConstraint&>(*constraint).changes, ElementsAre("set 0", "set 120.6"));
    EXPECT_TRUE(journal.contains("view.removeConstraint"));
    EXPECT_FALSE(folding.heightConstraintAdded);
    EXPECT_THAT(view.constraints(), IsEmpty());
}

TEST_F(Collapsible, height_animated_usesTheAnimatorAndTheConstraintIsRemovedASecondLater) {
    setFrameHeight(50);
    const auto proxy = folding.animationProxy();
    proxy->collapseHeight();
    const auto constraint = folding.heightConstraint();
    const auto& changes = static_cast<fakes::FakeConstraint&>(*constraint).changes;
    EXPECT_THAT(changes, ElementsAre("animate 0"));
    proxy->restoreHeight();
    EXPECT_THAT(changes, ElementsAre("animate 0", "animate 50"));
    EXPECT_FALSE(folding.heightCollapsed);
    EXPECT_THAT(runLoop.intervals(), ElementsAre(1.0));
    runLoop.advance(0.9);
    EXPECT_TRUE(folding.heightConstraintAdded);
    EXPECT_EQ(view.constraints().size(), 1U);
    runLoop.advance(0.2);
    EXPECT_FALSE(folding.heightConstraintAdded);
    EXPECT_THAT(view.constraints(), IsEmpty());
    EXPECT_THAT(runLoop.intervals(), IsEmpty());
}

TEST_F(Collapsible, height_foldedAgainWithinTheSecond_keepsItsConstraint) {
    setFrameHeight(50);
    folding.collapseHeight();
    folding.restoreHeightWithAnimation(true);
    runLoop.advance(0.5);
    setFrameHeight(33);
    folding.collapseHeight();
    runLoop.advance(5);
    ASSERT_EQ(view.constraints().size(), 1U);
    EXPECT_EQ(added().constant(), 0);
    EXPECT_TRUE(folding.heightConstraintAdded);
    EXPECT_EQ(folding.initialHeight, 50) << "recorded once";
    folding.restoreHeight();
    EXPECT_THAT(view.constraints(), IsEmpty());
}

TEST_F(Collapsible, height_foldedLater_remembersTheFrameOfThatTime) {
    setFrameHeight(50);
    folding.collapseHeight();
    folding.restoreHeight();
    setFrameHeight(70);
    folding.collapseHeight();
    EXPECT_EQ(folding.initialHeight, 70) << "without a constraint, the frame is what there is";
    folding.initialHeight = 0;
    folding.restoreHeight();
    EXPECT_FALSE(folding.heightCollapsed);
    EXPECT_TRUE(folding.heightConstraintAdded);
    ASSERT_NE(folding.heightConstraint(), nullptr);
    EXPECT_EQ(added().constant(), 0) << "nothing known, nothing brought back, nothing taken away";
}

TEST_F(Collapsible, height_foldedByAnotherConstraint_leavesThePendingRemovalOfTheFirst) {
    setFrameHeight(50);
    folding.collapseHeight();
    const auto first = folding.heightConstraint();
    folding.restoreHeightWithAnimation(true);
    view.removeConstraint(*first);
    const auto own = constrain(LayoutAttribute::height, 80);
    folding.collapseHeight();
    EXPECT_THAT(runLoop.intervals(), ElementsAre(1.0));
    runLoop.advance(1);
    EXPECT_FALSE(folding.heightConstraintAdded);
    folding.restoreHeight();
    EXPECT_THAT(view.constraints(), ElementsAre(own));
}

TEST_F(Collapsible, removeAddedHeightConstraint_takesThatConstraintAndTheMark) {
    const auto height = constrain(LayoutAttribute::height, 80);
    folding.heightConstraintAdded = true;
    folding.removeAddedHeightConstraint(height);
    EXPECT_FALSE(folding.heightConstraintAdded);
    EXPECT_THAT(view.constraints(), IsEmpty());
}

TEST_F(Collapsible, height_ofZeroBefore_isNotKnownAndOnlyTheFlagComesBack) {
    const auto height = constrain(LayoutAttribute::height, 0);
    folding.collapseHeight();
    EXPECT_EQ(folding.initialHeight, 0);
    folding.restoreHeight();
    EXPECT_THAT(height->changes, ElementsAre("set 0"));
    EXPECT_FALSE(folding.heightCollapsed);
}

TEST_F(Collapsible, height_recordedOnce_isNeverOverwritten) {
    const auto height = constrain(LayoutAttribute::height, 80);
    folding.initialHeight = 25;
    folding.collapseHeight();
    folding.restoreHeight();
    EXPECT_EQ(height->constant(), 25);
    height->setConstant(90);
    folding.collapseHeight();
    EXPECT_EQ(folding.initialHeight, 25);
}

TEST_F(Collapsible, folding_twice_changesNothingTheSecondTime) {
    const auto height = constrain(LayoutAttribute::height, 80);
    const auto width = constrain(LayoutAttribute::width, 200);
    for (int i = 0; i < 2; ++i) {
        folding.collapseHeight();
        folding.collapseWidth();
    }
    EXPECT_THAT(height->changes, ElementsAre("set 0"));
    EXPECT_THAT(width->changes, ElementsAre("set 0"));
}

TEST_F(Collapsible, restoring_whatIsExpanded_changesNothing) {
    const auto height = constrain(LayoutAttribute::height, 80);
    const auto width = constrain(LayoutAttribute::width, 200);
    folding.restoreHeight();
    folding.restoreWidth();
    EXPECT_THAT(height->changes, IsEmpty());
    EXPECT_THAT(width->changes, IsEmpty());
}

TEST_F(Collapsible, restoring_withoutItsConstraint_staysFolded) {
    const auto height = constrain(LayoutAttribute::height, 80);
    const auto width = constrain(LayoutAttribute::width, 200);
    folding.collapseHeight();
    folding.collapseWidth();
    view.removeConstraint(*height);
    view.removeConstraint(*width);
    folding.restoreHeight();
    folding.restoreWidth();
    EXPECT_TRUE(folding.heightCollapsed);
    EXPECT_TRUE(folding.widthCollapsed);
}

TEST_F(Collapsible, width_withoutAConstraint_isNeverFolded) {
    folding.collapseWidth();
    EXPECT_FALSE(folding.widthCollapsed);
    EXPECT_THAT(view.constraints(), IsEmpty());
}

TEST_F(Collapsible, width_broughtBack_isTheRememberedHeight) {
    const auto width = constrain(LayoutAttribute::width, 200);
    folding.initialHeight = 50;
    folding.collapseWidth();
    EXPECT_EQ(folding.initialWidth, 200);
    folding.restoreWidth();
    EXPECT_EQ(width->constant(), 50);
    EXPECT_FALSE(folding.widthCollapsed);
}

TEST_F(Collapsible, width_broughtBackWithoutARememberedHeight_isZero) {
    const auto width = constrain(LayoutAttribute::width, 200);
    const auto proxy = folding.animationProxy();
    proxy->collapseWidth();
    proxy->restoreWidth();
    EXPECT_THAT(width->changes, ElementsAre("animate 0", "animate 0"));
    EXPECT_FALSE(folding.widthCollapsed);
}

TEST_F(Collapsible, width_recordedOnce_isNeverOverwritten) {
    const auto width = constrain(LayoutAttribute::width, 200);
    folding.collapseWidth();
    folding.restoreWidth();
    width->setConstant(90);
    folding.collapseWidth();
    EXPECT_EQ(folding.initialWidth, 200);
}

TEST_F(Collapsible, width_folded_leavesAPendingRemovalAlone) {
    setFrameHeight(50);
    const auto width = constrain(LayoutAttribute::width, 200);
    folding.collapseHeight();
    folding.restoreHeightWithAnimation(true);
    folding.collapseWidth();
    runLoop.advance(1);
    EXPECT_THAT(view.constraints(), ElementsAre(width));
}

TEST_F(Collapsible, proxies_areNewEachTimeAndOutliveTheirView) {
    auto own = std::make_unique<CollapsibleView>(view, runLoop);
    const auto first = own->animationProxy();
    const auto second = own->animationProxy();
    EXPECT_NE(first.get(), second.get());
    EXPECT_EQ(first->collapsibleView(), own.get());
    own.reset();
    EXPECT_EQ(first->collapsibleView(), nullptr);
    first->collapseHeight();
    first->restoreHeight();
    EXPECT_THAT(view.constraints(), IsEmpty());
}

TEST_F(Collapsible, destroyedWithARemovalToCome_isNoLongerCalled) {
    {
        setFrameHeight(50);
        CollapsibleView other(view, runLoop);
        other.collapseHeight();
        other.restoreHeightWithAnimation(true);
    }
    runLoop.advance(2);
    EXPECT_EQ(view.constraints().size(), 1U);
}

TEST(VisualFormat, understood_namesDimensionViewAndLength) {
    const auto height = VisualFormat::fromText("V:[view(==120)]");
    EXPECT_EQ(height.attribute, LayoutAttribute::height);
    EXPECT_EQ(height.viewName, "view");
    EXPECT_EQ(height.constant, 120);
    EXPECT_EQ(VisualFormat::fromText("H:[a_b(==-7)]").attribute, LayoutAttribute::width);
}

TEST(VisualFormat, notUnderstood_throws) {
    for (const auto* bad :
         {"", "V:", "V:[view]", "V:[(==1)]", "V:[view(==)]", "V:[view(==1)", "V:[view(==1)]x",
          "D:[view(==1)]", "[view(==1)]", "V:[view(>=1)]", "V:[view(==99999999999999999999)]"})
        EXPECT_THROW((void)VisualFormat::fromText(bad), std::invalid_argument) << bad;
}
