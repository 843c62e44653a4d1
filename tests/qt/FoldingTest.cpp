#include "qt/windows/FoldingSection.h"

#include <QLabel>
#include <QStyle>
#include <QVBoxLayout>

#include "qt/QtHarness.h"
#include "qt/adapters/QtConstrainedView.h"
#include "qt/adapters/QtWindow.h"
#include "qt/windows/AboutPanel.h"

namespace corvane::qt {
namespace {

class ConstrainedWidgetTest : public testing::Test {
protected:
    ConstrainedWidgetTest() {
        auto* layout = new QVBoxLayout(&window_);
        layout->addWidget(widget_);
        widget_->setMinimumHeight(20);
        widget_->setMaximumHeight(300);
        window_.resize(200, 200);
        window_.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&window_));
    }
    [[nodiscard]] toolkit::ConstrainedView::Constraint addHeight(const char* format) {
        auto made = view_.constraintsWithVisualFormat(format, {{"view", &view_}}).front();
        view_.addConstraint(made);
        return made;
    }
    void settle() { QCoreApplication::processEvents(); }

    QWidget window_;
    QWidget* widget_ = new QWidget;
    QtConstrainedView view_{*widget_};
};

TEST_F(ConstrainedWidgetTest, AnAddedConstraintHoldsTheWidgetAndARemovedOneLetsItGo) {
    const auto height = addHeight("V:[view(==60)]");
    settle();
    EXPECT_EQ(widget_->height(), 60);
    height->setConstant(0);
    settle();
    EXPECT_EQ(widget_->height(), 0);
    view_.removeConstraint(*height);
    EXPECT_EQ(widget_->minimumHeight(), 20);
    EXPECT_EQ(widget_->maximumHeight(), 300);
    height->setConstant(99);
    settle();
    EXPECT_NE(widget_->height(), 99) << "it holds nothing any more";
}

TEST_F(ConstrainedWidgetTest, TheAnimatorLeadsThereInSteps) {
    const auto height = addHeight("V:[view(==100)]");
    settle();
    height->animator().setConstant(0);
    EXPECT_EQ(widget_->height(), 100) << "not at once";
    EXPECT_TRUE(QTest::qWaitFor([&] { return widget_->height() > 0 && widget_->height() < 100; }));
    EXPECT_TRUE(QTest::qWaitFor([&] { return widget_->height() == 0; }));
}

TEST_F(ConstrainedWidgetTest, SettingTheConstantEndsAnAnimation) {
    const auto height = addHeight("V:[view(==100)]");
    settle();
    height->animator().setConstant(0);
    height->setConstant(80);
    QTest::qWait(2 * widget_->style()->styleHint(QStyle::SH_Widget_Animation_Duration));
    EXPECT_EQ(widget_->height(), 80);
}

TEST(ConstrainedWidget, OnceItsViewIsGoneNothingHoldsIt) {
    QWidget widget;
    widget.setMaximumHeight(300);
    toolkit::ConstrainedView::Constraint height;
    {
        QtConstrainedView view(widget);
        height = view.constraintsWithVisualFormat("V:[view(==60)]", {{"view", &view}}).front();
        view.addConstraint(height);
        EXPECT_EQ(widget.maximumHeight(), 60);
    }
    EXPECT_EQ(widget.maximumHeight(), 300);
}

class FoldingSectionTest : public testing::Test {
protected:
    FoldingSectionTest() {
        auto* layout = new QVBoxLayout(&window_);
        layout->addWidget(section_);
        layout->addStretch(1);
        window_.resize(300, 300);
        window_.show();
        window_.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window_));
    }
    void click() { QTest::mouseClick(&section_->title(), Qt::LeftButton); }
    [[nodiscard]] bool heightBecomes(int height) {
        return QTest::qWaitFor([&] { return section_->panel().height() == height; });
    }

    QtHarness qt_;
    QWidget window_;
    QLabel* details_ = new QLabel("one\ntwo\nthree");
    FoldingSection* section_ = new FoldingSection("Details", details_, qt_.guard);
};

TEST_F(FoldingSectionTest, BeginsFolded) {
    EXPECT_TRUE(section_->isFolded());
    EXPECT_EQ(section_->panel().height(), 0);
    EXPECT_FALSE(details_->isVisible());
}

TEST_F(FoldingSectionTest, TheArrowShowsWhichWayItIs) {
    EXPECT_EQ(section_->title().arrowType(), Qt::RightArrow);
    click();
    EXPECT_EQ(section_->title().arrowType(), Qt::DownArrow);
    click();
    EXPECT_EQ(section_->title().arrowType(), Qt::RightArrow);
}

TEST_F(FoldingSectionTest, AClickUnfoldsItAndAnotherFoldsItAway) {
    click();
    EXPECT_FALSE(section_->isFolded());
    EXPECT_TRUE(QTest::qWaitFor([&] { return section_->panel().height() >= details_->sizeHint().height(); }));
    EXPECT_TRUE(details_->isVisible());
    click();
    EXPECT_TRUE(section_->isFolded());
    EXPECT_TRUE(heightBecomes(0));
    EXPECT_FALSE(details_->isVisible());
}

TEST_F(FoldingSectionTest, UnfoldedForASecondItIsFreeToGrow) {
    click();
    EXPECT_TRUE(QTest::qWaitFor([&] { return section_->panel().maximumHeight() == QWIDGETSIZE_MAX; }));
    EXPECT_TRUE(details_->isVisible());
}

TEST_F(FoldingSectionTest, TheSpaceKeyWorksIt) {
    section_->title().setFocus();
    QTest::keyClick(&section_->title(), Qt::Key_Space);
    EXPECT_FALSE(section_->isFolded());
}

TEST(SecondaryWindows, ComeUpOverTheMiddleOfTheirParent) {
    QtHarness qt;
    QWidget parent;
    parent.setGeometry(100, 80, 600, 400);
    parent.show();
    parent.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&parent));
    const auto middle = parent.frameGeometry().center();
    qt.application.makeAboutPanel = [&](const auto& options) {
        return std::make_unique<AboutPanel>(About{"Corvane", "1.2", "Summary", "Licence", {"Qt"}}, options,
                                            qt.guard);
    };
    const auto windowOf = [](auto isIt) -> QWidget* {
        for (auto* window : QApplication::topLevelWidgets())
            if (window->isVisible() && isIt(window)) return window;
        return nullptr;
    };
    qt.application.orderFrontStandardAboutPanel({});
    auto* about = windowOf([](QWidget* window) { return dynamic_cast<AboutPanel*>(window) != nullptr; });
    ASSERT_NE(about, nullptr);
    EXPECT_LE((about->frameGeometry().center() - middle).manhattanLength(), 4);
    about->close();
    parent.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&parent));
    qt.application.openHelpAnchor("main-window", "Corvane Help");
    auto* help = windowOf([](QWidget* window) { return dynamic_cast<HelpWindow*>(window) != nullptr; });
    ASSERT_NE(help, nullptr);
    EXPECT_LE((help->frameGeometry().center() - middle).manhattanLength(), 4);
    help->move(3, 3);
    qt.application.openHelpAnchor("", "Corvane Help");
    EXPECT_EQ(help->pos(), QPoint(3, 3)) << "what is on the screen stays";
}

} // namespace
} // namespace corvane::qt
