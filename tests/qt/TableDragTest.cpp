// Which rows a press and a move of the mouse take along.
#include <gmock/gmock.h>

#include "qt/QtHarness.h"
#include "qt/adapters/QtTableView.h"

namespace corvane::qt {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Six rows, of which the first two can't be selected. Remembers what was to be dragged, and refuses it: a
/// drag that began would wait for the window system.
class Rows final : public toolkit::TableDataSource,
                   public toolkit::TableDelegate,
                   public toolkit::TableDragHandler {
public:
    std::vector<std::vector<int>> drags;

    int numberOfRowsInTableView(const toolkit::TableView&) override { return 6; }
    toolkit::ObjectValue objectValueForTableColumn(const toolkit::TableView&, const toolkit::TableColumn&,
                                                   int row) override {
        return "row " + std::to_string(row);
    }
    void setObjectValue(const toolkit::TableView&, bool, const toolkit::TableColumn&, int) override {}
    void willDisplayCell(const toolkit::TableView&, toolkit::Cell&, const toolkit::TableColumn&,
                         int) override {}
    bool shouldSelectRow(const toolkit::TableView&, int row) override { return row >= 2; }
    void tableViewSelectionDidChange(const toolkit::TableView&) override {}
    bool writeRows(toolkit::TableView&, const std::vector<int>& rows, toolkit::Pasteboard&) override {
        drags.push_back(rows);
        return false;
    }
    toolkit::DragOperation validateDrop(toolkit::TableView&, const toolkit::DraggingInfo&, int,
                                        toolkit::DropOperation) override {
        return toolkit::DragOperation::none;
    }
    bool acceptDrop(toolkit::TableView&, const toolkit::DraggingInfo&, int, toolkit::DropOperation) override {
        return false;
    }
};

class TableDragTest : public testing::Test {
protected:
    TableDragTest() {
        table_.setDelegate(&rows_);
        table_.setDataSource(&rows_);
        table_.setDragHandler(&rows_);
        table_.setAllowsMultipleSelection(true);
        widget_.resize(300, 400);
        widget_.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&widget_));
    }
    void pullFrom(QPoint from) {
        auto* paper = widget_.viewport();
        QTest::mousePress(paper, Qt::LeftButton, {}, from);
        for (int step = 1; step <= 4; ++step)
            QTest::mouseMove(paper, from + QPoint(0, step * QApplication::startDragDistance()));
        QTest::mouseRelease(paper, Qt::LeftButton, {}, from + QPoint(0, 60));
    }
    void pullRow(int row) { pullFrom(widget_.visualRect(widget_.model()->index(row, 0)).center()); }

    QtHarness qt_;
    Rows rows_;
    TableWidget widget_;
    QtTableView table_{widget_, {{"Name", "Name"}}, qt_.guard};
};

TEST_F(TableDragTest, aRowThatCantBeSelected_isItselfWhatIsDragged) {
    table_.selectRow(4, false);
    pullRow(1);
    EXPECT_THAT(rows_.drags, testing::Each(ElementsAre(1)));
    EXPECT_FALSE(rows_.drags.empty());
    EXPECT_THAT(table_.selectedRows(), ElementsAre(4));
}

TEST_F(TableDragTest, anUnselectedRow_isSelectedAndDraggedAlone) {
    table_.selectRow(4, false);
    pullRow(3);
    EXPECT_THAT(rows_.drags, testing::Each(ElementsAre(3)));
    EXPECT_FALSE(rows_.drags.empty());
}

TEST_F(TableDragTest, oneOfSeveralSelectedRows_takesAllOfThemAlong) {
    table_.selectRow(2, false);
    table_.selectRow(4, true);
    pullRow(4);
    EXPECT_THAT(rows_.drags, testing::Each(ElementsAre(2, 4)));
    EXPECT_FALSE(rows_.drags.empty());
}

TEST_F(TableDragTest, theSpaceBelowTheRows_dragsNothing) {
    table_.selectRow(4, false);
    pullFrom({100, 380});
    EXPECT_THAT(rows_.drags, IsEmpty());
}

} // namespace
} // namespace corvane::qt
