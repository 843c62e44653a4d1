#include "qt/adapters/QtBusyIndicator.h"

#include <QAccessible>
#include <QLabel>
#include <QMessageBox>
#include <QTimer>

#include "qt/QtHarness.h"
#include "qt/widgets/Announcement.h"

namespace corvane::qt {
namespace {

using namespace std::chrono_literals;

QStringList announced;

class BusyIndicator : public testing::Test {
protected:
    BusyIndicator() {
        announced.clear();
        setAnnouncementListener([](const QString& text) { announced << text; });
        note_.setParent(&window_);
        window_.resize(300, 60);
        note_.resize(300, 30);
        window_.show();
    }
    ~BusyIndicator() override { setAnnouncementListener({}); }

    [[nodiscard]] static bool waitPointer() {
        const auto* shape = QGuiApplication::overrideCursor();
        return shape != nullptr && shape->shape() == Qt::WaitCursor;
    }

    QWidget window_;
    QLabel note_;
};

TEST_F(BusyIndicator, workThatLastsLongerThanAMoment_isSaidAndReadOut) {
    QtBusyIndicator busy(note_, 0ms);
    busy.begin("Saving…");
    EXPECT_EQ(note_.text(), "") << "not before the work says that it goes on";
    busy.stillBusy();
    busy.stillBusy();
    EXPECT_EQ(note_.text(), "Saving…");
    EXPECT_TRUE(waitPointer());
    EXPECT_EQ(announced, QStringList{"Saving…"}) << "once";
    const auto* spoken = QAccessible::queryAccessibleInterface(&note_);
    EXPECT_EQ(spoken->role(), QAccessible::Notification);
    EXPECT_EQ(spoken->text(QAccessible::Name), "Saving…");
    busy.end();
    EXPECT_EQ(note_.text(), "");
    EXPECT_FALSE(waitPointer());
}

TEST_F(BusyIndicator, theLine_isDrawnWithoutAnEvent) {
    QTest::qWait(0);
    struct Paints final : QObject {
        bool eventFilter(QObject*, QEvent* event) override {
            count += event->type() == QEvent::Paint;
            return false;
        }
        int count = 0;
    } paints;
    QtBusyIndicator busy(note_, 0ms);
    busy.begin("Saving…");
    note_.installEventFilter(&paints);
    busy.stillBusy();
    EXPECT_EQ(paints.count, 1);
}

TEST_F(BusyIndicator, shortWork_showsNothing) {
    QtBusyIndicator busy(note_, 1h);
    busy.begin("Saving…");
    busy.stillBusy();
    EXPECT_EQ(note_.text(), "");
    EXPECT_FALSE(waitPointer());
    busy.end();
}

TEST_F(BusyIndicator, workThatNobodyWaitsFor_showsNothing) {
    QtBusyIndicator busy(note_, 0ms);
    busy.stillBusy();
    busy.begin("Saving…");
    busy.end();
    busy.stillBusy();
    EXPECT_EQ(note_.text(), "");
    EXPECT_FALSE(waitPointer());
}

TEST_F(BusyIndicator, questionInTheMiddle_isAnsweredWithTheOrdinaryPointer) {
    QtBusyIndicator busy(note_, 0ms);
    busy.begin("Saving…");
    busy.stillBusy();
    QMessageBox question(&window_);
    QTimer::singleShot(0, &question, [&] {
        busy.stillBusy();
        EXPECT_EQ(note_.text(), "");
        EXPECT_FALSE(waitPointer());
        question.accept();
    });
    question.exec();
    busy.stillBusy();
    EXPECT_EQ(note_.text(), "Saving…") << "the work goes on afterwards";
    busy.end();
    EXPECT_FALSE(waitPointer());
}

} // namespace
} // namespace corvane::qt
