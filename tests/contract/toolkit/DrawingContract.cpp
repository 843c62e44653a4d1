#include <gtest/gtest.h>

#include <stdexcept>

#include "contract/toolkit/ToolkitDriver.h"

namespace corvane::contract {
namespace {

class CanvasContract : public testing::Test {
protected:
    [[nodiscard]] toolkit::Size size(const std::string& text, double font) {
        return driver_->canvas().sizeOfText({text, {toolkit::NamedColor::black, font, {}}});
    }
    std::unique_ptr<ToolkitDriver> driver_ = makeToolkitDriver();
};

class LayoutConstraintContract : public testing::Test {
protected:
    using Constraint = toolkit::ConstrainedView::Constraint;
    [[nodiscard]] Constraint make(const std::string& format) {
        const auto made = view_.constraintsWithVisualFormat(format, {{"view", &view_}});
        EXPECT_EQ(made.size(), 1U);
        return made.front();
    }
    std::unique_ptr<ToolkitDriver> driver_ = makeToolkitDriver();
    toolkit::ConstrainedView& view_ = driver_->constrainedView();
};

TEST_F(CanvasContract, ALongerTextIsWiderAndALargerFontIsWiderAndHigher) {
    EXPECT_GT(size("directory", 13).width, size("dir", 13).width);
    EXPECT_EQ(size("directory", 13).height, size("dir", 13).height);
    EXPECT_GT(size("dir", 18).width, size("dir", 13).width);
    EXPECT_GT(size("dir", 18).height, size("dir", 13).height);
}

TEST_F(CanvasContract, AnEmptyTextIsAsHighAsALine) {
    EXPECT_EQ(size("", 13).width, 0);
    EXPECT_EQ(size("", 13).height, size("x", 13).height);
}

TEST_F(CanvasContract, ALineIsAtLeastAsHighAsItsFont) {
    for (const double font : {10.0, 11.0, 13.0, 18.0})
        EXPECT_GE(size("gÅ", font).height, font);
}

TEST_F(LayoutConstraintContract, AVisualFormatNamesItemAttributeAndConstant) {
    const auto height = make("V:[view(==120)]");
    EXPECT_EQ(height->firstItem(), &view_);
    EXPECT_EQ(height->firstAttribute(), toolkit::LayoutAttribute::height);
    EXPECT_EQ(height->constant(), 120);
    EXPECT_EQ(make("H:[view(==7)]")->firstAttribute(), toolkit::LayoutAttribute::width);
    EXPECT_TRUE(view_.constraints().empty()) << "made, and not added";
}

TEST_F(LayoutConstraintContract, AFormatOrANameThatIsntUnderstoodThrows) {
    EXPECT_THROW((void)view_.constraintsWithVisualFormat("V:|view|", {{"view", &view_}}),
                 std::invalid_argument);
    EXPECT_THROW((void)view_.constraintsWithVisualFormat("V:[other(==1)]", {{"view", &view_}}),
                 std::invalid_argument);
}

TEST_F(LayoutConstraintContract, AViewKeepsItsConstraintsInOrderUntilTheyAreRemoved) {
    const auto height = make("V:[view(==50)]");
    const auto width = make("H:[view(==60)]");
    view_.addConstraint(height);
    view_.addConstraint(width);
    EXPECT_EQ(view_.constraints(), (std::vector{height, width}));
    view_.removeConstraint(*height);
    view_.removeConstraint(*height); // harmless
    EXPECT_EQ(view_.constraints(), std::vector{width});
}

TEST_F(LayoutConstraintContract, TheConstantIsWhereAnAnimationLeads) {
    const auto height = make("V:[view(==50)]");
    view_.addConstraint(height);
    height->animator().setConstant(20);
    EXPECT_EQ(height->constant(), 20);
    height->setConstant(10.5);
    EXPECT_EQ(height->constant(), 10.5);
    view_.removeConstraint(*height);
}

} // namespace
} // namespace corvane::contract
