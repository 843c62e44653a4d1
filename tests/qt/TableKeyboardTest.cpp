#include <gmock/gmock.h>

#include <set>

#include "qt/QtHarness.h"
#include "qt/adapters/QtTableView.h"

namespace corvane::qt {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Ten rows, of which some may not be selected, with a check box each.
class Rows final : public toolkit::TableDataSource, public toolkit::TableDelegate {
public:
    std::set<int> unselectable;
    std::set<int> on;
    bool locked = false;
    bool fails = false;
    int count = 10;
    int numberOfRowsInTableView(const toolkit::TableView&) override { return count; }
    toolkit::ObjectValue objectValueForTableColumn(const toolkit::TableView&,
                                                   const toolkit::TableColumn& column, int row) override {
        if (fails) throw std::runtime_error("row is gone");
        if (column.identifier() == "Name") return "row " + std::to_string(row);
        column.dataCell()->on = on.contains(row);
        return column.dataCell();
    }
    void setObjectValue(const toolkit::TableView&, bool value, const toolkit::TableColumn&,
                        int row) override {
        value ? void(on.insert(row)) : void(on.erase(row));
    }
    void willDisplayCell(const toolkit::TableView&, toolkit::Cell& cell, const toolkit::TableColumn&,
                         int row) override {
        cell.enabled = !locked;
        cell.textColor = row == 0 ? toolkit::TextColor::red
                         : locked ? toolkit::TextColor::gray
                                  : toolkit::TextColor::black;
    }
    bool shouldSelectRow(const toolkit::TableView&, int row) override { return !unselectable.contains(row); }
    void tableViewSelectionDidChange(const toolkit::TableView&) override {}
};

class TableKeyboardTest : public testing::Test {
protected:
    TableKeyboardTest() {
        const auto box = std::make_shared<toolkit::Cell>();
        box->type = toolkit::CellType::checkBox;
        table_.tableColumnWithIdentifier("On-Off")->setDataCell(box);
        table_.setDelegate(&rows_);
        table_.setDataSource(&rows_);
        widget_.resize(300, 400);
        widget_.show();
        widget_.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&widget_));
        widget_.setFocus();
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(&widget_, key, modifiers);
    }
    [[nodiscard]] QVariant shown(int row, int column, int role) const {
        return widget_.model()->index(row, column).data(role);
    }

    QtHarness qt_;
    Rows rows_;
    TableWidget widget_;
    QtTableView table_{widget_, {{"Name", "Name"}, {"On-Off", "On"}}, qt_.guard};
};

TEST_F(TableKeyboardTest, ArrowsJumpOverRowsThatMayNotBeSelected) {
    table_.selectRow(1, false);
    rows_.unselectable = {2, 3};
    press(Qt::Key_Down);
    EXPECT_THAT(table_.selectedRows(), ElementsAre(4));
    press(Qt::Key_Up);
    EXPECT_THAT(table_.selectedRows(), ElementsAre(1));
}

TEST_F(TableKeyboardTest, HomeAndEndStopAtTheFirstAndLastRowThatMay) {
    rows_.unselectable = {0, 1, 9};
    table_.selectRow(5, false);
    press(Qt::Key_End);
    EXPECT_THAT(table_.selectedRows(), ElementsAre(8));
    press(Qt::Key_Home);
    EXPECT_THAT(table_.selectedRows(), ElementsAre(2));
}

TEST_F(TableKeyboardTest, WhereNothingMayBeSelectedKeysChangeNothing) {
    rows_.unselectable = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
    for (const auto key : {Qt::Key_Down, Qt::Key_Up, Qt::Key_End, Qt::Key_PageDown})
        press(key);
    press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_THAT(table_.selectedRows(), IsEmpty());
}

TEST_F(TableKeyboardTest, SelectingAllTakesWhatMayBeSelected) {
    table_.setAllowsMultipleSelection(true);
    rows_.unselectable = {0, 1, 2, 3, 4, 5};
    press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_THAT(table_.selectedRows(), ElementsAre(6, 7, 8, 9));
}

TEST_F(TableKeyboardTest, SelectingAllJumpsOverSeveralGaps) {
    table_.setAllowsMultipleSelection(true);
    rows_.unselectable = {0, 3, 4, 8};
    press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_THAT(table_.selectedRows(), ElementsAre(1, 2, 5, 6, 7, 9));
}

TEST_F(TableKeyboardTest, SelectingAllOfAHundredThousandRowsIsNoSeriesOfSingleOnes) {
    rows_.count = 100'000;
    table_.reloadData();
    table_.setAllowsMultipleSelection(true);
    rows_.unselectable = {70'000};
    press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(table_.selectedRows().size(), 99'999U);
    EXPECT_EQ(widget_.selectionModel()->selection().size(), 2);
}

TEST_F(TableKeyboardTest, RowsThatTheProgramHasSelectedStayPartOfAllWhereTheUserMayNotSelectThem) {
    table_.setAllowsMultipleSelection(true);
    rows_.unselectable = {0, 3, 4, 5, 6, 7, 8, 9};
    table_.selectRow(4, false);
    press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_THAT(table_.selectedRows(), ElementsAre(1, 2, 4));
}

TEST_F(TableKeyboardTest, TogglingTheOnlyRowAndAnotherKeepsOneSelectedWhereNoneIsNotAllowed) {
    table_.setAllowsMultipleSelection(true);
    table_.setAllowsEmptySelection(false);
    table_.selectRow(1, false);
    const auto toggle = [this](int first, int last) {
        const auto& model = *widget_.model();
        widget_.selectionModel()->select(QItemSelection(model.index(first, 0), model.index(last, 1)),
                                         QItemSelectionModel::Toggle);
    };
    toggle(1, 2);
    EXPECT_THAT(table_.selectedRows(), ElementsAre(2));
    toggle(2, 2);
    EXPECT_THAT(table_.selectedRows(), ElementsAre(2));
}

TEST_F(TableKeyboardTest, OnlyColumnsOfCheckBoxesCanBeSwitchedAndOnlyWhileEnabled) {
    const auto canSwitch = [this](int column) {
        return bool(widget_.model()->index(2, column).flags() & Qt::ItemIsUserCheckable);
    };
    EXPECT_FALSE(canSwitch(0));
    EXPECT_TRUE(canSwitch(1));
    rows_.locked = true;
    EXPECT_FALSE(canSwitch(1));
}

TEST_F(TableKeyboardTest, ShiftExtendsOverWhatMayBeSelected) {
    table_.setAllowsMultipleSelection(true);
    rows_.unselectable = {3};
    table_.selectRow(2, false);
    press(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_THAT(table_.selectedRows(), ElementsAre(2, 4));
}

TEST_F(TableKeyboardTest, ReturnOnASelectedRowRunsTheDoubleAction) {
    int runs = 0;
    table_.setDoubleAction([&](toolkit::Control&) { ++runs; });
    press(Qt::Key_Return);
    EXPECT_EQ(runs, 0);
    table_.selectRow(1, false);
    press(Qt::Key_Return);
    press(Qt::Key_Enter);
    EXPECT_EQ(runs, 2);
}

TEST_F(TableKeyboardTest, SpaceSwitchesTheRowsCheckBoxUnlessItIsDisabled) {
    table_.selectRow(3, false);
    press(Qt::Key_Space);
    EXPECT_THAT(rows_.on, ElementsAre(3));
    rows_.locked = true;
    press(Qt::Key_Space);
    EXPECT_THAT(rows_.on, ElementsAre(3));
}

TEST_F(TableKeyboardTest, TheLastSelectedRowStaysWhereNoneIsNotAllowed) {
    table_.setAllowsMultipleSelection(true);
    table_.setAllowsEmptySelection(false);
    table_.selectRow(1, false);
    const auto row = widget_.visualRect(widget_.model()->index(1, 0)).center();
    QTest::mouseClick(widget_.viewport(), Qt::LeftButton, Qt::ControlModifier, row);
    EXPECT_THAT(table_.selectedRows(), ElementsAre(1));
    const QPoint below(20, widget_.viewport()->height() - 4);
    QTest::mouseClick(widget_.viewport(), Qt::LeftButton, {}, below);
    EXPECT_THAT(table_.selectedRows(), ElementsAre(1));
    table_.setAllowsEmptySelection(true);
    QTest::mouseClick(widget_.viewport(), Qt::LeftButton, {}, below);
    EXPECT_THAT(table_.selectedRows(), IsEmpty());
}

TEST_F(TableKeyboardTest, ColoursAreTheThemesAndFollowTheLock) {
    const auto color = [&](int row) { return shown(row, 0, Qt::ForegroundRole).value<QBrush>().color(); };
    EXPECT_EQ(color(1), QApplication::palette().color(QPalette::Text));
    EXPECT_NE(color(0), color(1));
    rows_.locked = true;
    EXPECT_EQ(color(1), QApplication::palette().color(QPalette::PlaceholderText));
}

TEST_F(TableKeyboardTest, ADataSourceThatFailsIsLoggedAndTheCellStaysEmpty) {
    rows_.fails = true;
    EXPECT_EQ(shown(0, 0, Qt::DisplayRole).toString(), "");
    ASSERT_FALSE(qt_.log.lines.empty());
    EXPECT_EQ(qt_.log.lines[0], "Exception while handling a table's question: row is gone");
}

} // namespace
} // namespace corvane::qt
