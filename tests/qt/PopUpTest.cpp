#include <QAbstractItemView>
#include <QComboBox>
#include <QScrollBar>
#include <QVBoxLayout>
#include <QWheelEvent>

#include "qt/QtHarness.h"

namespace corvane::qt {
namespace {

class PopUpTest : public testing::Test {
protected:
    PopUpTest() {
        box_.addItems({"One", "Two", "Three"});
        box_.show();
        box_.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&box_));
        box_.setFocus();
    }
    static void turnWheelOver(QWidget& widget) {
        const QPointF middle = widget.rect().center();
        QWheelEvent event(middle, widget.mapToGlobal(middle), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(&widget, &event);
    }

    QComboBox box_;
};

TEST_F(PopUpTest, theWheelOverAClosedPopUp_choosesNothing) {
    turnWheelOver(box_);
    EXPECT_EQ(box_.currentIndex(), 0);
}

TEST_F(PopUpTest, theWheelOverAnOpenList_scrollsItAndChoosesNothing) {
    for (int i = 0; i < 60; ++i)
        box_.addItem(QString::number(i));
    box_.showPopup();
    auto& list = *box_.view();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(list.window()));
    ASSERT_EQ(list.verticalScrollBar()->value(), 0);
    turnWheelOver(*list.viewport());
    EXPECT_GT(list.verticalScrollBar()->value(), 0);
    EXPECT_TRUE(list.isVisible());
    EXPECT_EQ(box_.currentIndex(), 0);
}

TEST_F(PopUpTest, theArrowKeys_stillChoose) {
    QTest::keyClick(&box_, Qt::Key_Down);
    EXPECT_EQ(box_.currentIndex(), 1);
}

} // namespace
} // namespace corvane::qt
