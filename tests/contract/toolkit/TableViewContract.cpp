#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "contract/toolkit/ToolkitDriver.h"

namespace corvane::contract {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A list of names, of which some may not be selected, each with a switch.
class Names final : public toolkit::TableDataSource, public toolkit::TableDelegate {
public:
    std::vector<std::string> names = {"ash", "beech", "cedar", "elm"};
    std::set<int> switchedOn;
    std::set<int> unselectable;
    int asked = 0;
    int changes = 0;
    std::vector<int> selectionAtLastChange;

    int numberOfRowsInTableView(const toolkit::TableView&) override { return int(names.size()); }
    toolkit::ObjectValue objectValueForTableColumn(const toolkit::TableView&,
                                                   const toolkit::TableColumn& column, int row) override {
        if (column.identifier() == "Name") return row < int(names.size()) ? names[std::size_t(row)] : "none";
        auto cell = column.dataCell();
        cell->on = switchedOn.contains(row);
        return cell;
    }
    void setObjectValue(const toolkit::TableView&, bool value, const toolkit::TableColumn&,
                        int row) override {
        if (value)
            switchedOn.insert(row);
        else
            switchedOn.erase(row);
    }
    void willDisplayCell(const toolkit::TableView&, toolkit::Cell&, const toolkit::TableColumn&,
                         int) override {}
    bool shouldSelectRow(const toolkit::TableView&, int row) override {
        ++asked;
        return !unselectable.contains(row);
    }
    void tableViewSelectionDidChange(const toolkit::TableView& table) override {
        ++changes;
        selectionAtLastChange = table.selectedRows();
    }
};

class TableViewContract : public testing::Test {
protected:
    TableViewContract() {
        table_.setDelegate(&names_);
        table_.setDataSource(&names_);
        table_.reloadData();
    }

    Names names_;
    std::unique_ptr<ToolkitDriver> driver_ = makeToolkitDriver();
    toolkit::TableView& table_ = driver_->table();
};

TEST_F(TableViewContract, ShowsWhatTheDataSourceSays) {
    EXPECT_EQ(table_.numberOfRows(), 4);
    EXPECT_EQ(driver_->shownText(table_, 2), "cedar");
}

TEST_F(TableViewContract, RowsAreCountedWhenTheTableIsLoaded) {
    names_.names.emplace_back("fir");
    EXPECT_EQ(table_.numberOfRows(), 4);
    table_.reloadData();
    EXPECT_EQ(table_.numberOfRows(), 5);
}

TEST_F(TableViewContract, ATableWithoutRowsSaysItsMessage_AndOneWithRowsDoesNot) {
    table_.setEmptyMessage("no trees");
    EXPECT_EQ(driver_->shownEmptyMessage(table_), "");
    names_.names.clear();
    table_.reloadData();
    EXPECT_EQ(driver_->shownEmptyMessage(table_), "no trees");
    table_.setEmptyMessage("the trees can't be read");
    EXPECT_EQ(driver_->shownEmptyMessage(table_), "the trees can't be read");
    names_.names = {"ash"};
    table_.reloadData();
    EXPECT_EQ(driver_->shownEmptyMessage(table_), "");
}

TEST_F(TableViewContract, NothingIsSelectedAtFirst) {
    EXPECT_EQ(table_.selectedRow(), -1);
    EXPECT_THAT(table_.selectedRows(), IsEmpty());
}

TEST_F(TableViewContract, TheProgramMaySelectAnyRowUnasked) {
    names_.unselectable = {1};
    table_.selectRow(1, false);
    EXPECT_EQ(table_.selectedRow(), 1);
    EXPECT_EQ(names_.asked, 0);
    EXPECT_EQ(names_.changes, 1);
    EXPECT_THAT(names_.selectionAtLastChange, ElementsAre(1));
}

TEST_F(TableViewContract, SelectingARowThatIsNotThereChangesNothing) {
    table_.selectRow(2, false);
    table_.selectRow(4, false);
    table_.selectRow(-1, false);
    EXPECT_THAT(table_.selectedRows(), ElementsAre(2));
    EXPECT_EQ(names_.changes, 1);
}

TEST_F(TableViewContract, SelectingWhatIsSelectedIsNoChange) {
    table_.selectRow(2, false);
    table_.selectRow(2, false);
    EXPECT_EQ(names_.changes, 1);
}

TEST_F(TableViewContract, SelectingWithoutExtendingReplaces) {
    table_.setAllowsMultipleSelection(true);
    table_.selectRow(0, false);
    table_.selectRow(3, false);
    EXPECT_THAT(table_.selectedRows(), ElementsAre(3));
}

TEST_F(TableViewContract, ExtendingAddsRowsAndTheLastOneIsTheSelectedRow) {
    table_.setAllowsMultipleSelection(true);
    table_.selectRow(3, false);
    table_.selectRow(1, true);
    EXPECT_THAT(table_.selectedRows(), ElementsAre(1, 3));
    EXPECT_EQ(table_.selectedRow(), 1);
}

TEST_F(TableViewContract, ExtendingReplacesWhereOneRowIsTheMost) {
    table_.setAllowsMultipleSelection(false);
    table_.selectRow(3, false);
    table_.selectRow(1, true);
    EXPECT_THAT(table_.selectedRows(), ElementsAre(1));
}

TEST_F(TableViewContract, DeselectingTellsTheDelegateWhenItIsAChange) {
    table_.selectRow(1, false);
    table_.deselectRow(0);
    EXPECT_EQ(names_.changes, 1);
    table_.deselectRow(1);
    EXPECT_EQ(names_.changes, 2);
    EXPECT_EQ(table_.selectedRow(), -1);
    table_.deselectAll();
    EXPECT_EQ(names_.changes, 2);
}

TEST_F(TableViewContract, ReloadingKeepsRowsThatStayAndDropsThoseThatAreGone) {
    table_.setAllowsMultipleSelection(true);
    table_.selectRow(1, false);
    table_.selectRow(3, true);
    table_.reloadData();
    EXPECT_THAT(table_.selectedRows(), ElementsAre(1, 3));
    EXPECT_EQ(names_.changes, 2);
    names_.names.resize(2);
    table_.reloadData();
    EXPECT_THAT(table_.selectedRows(), ElementsAre(1));
    EXPECT_EQ(table_.selectedRow(), 1);
    EXPECT_EQ(names_.changes, 3);
}

TEST_F(TableViewContract, AClickSelectsARowThatMayBeSelected) {
    EXPECT_TRUE(driver_->clickRow(table_, 2));
    EXPECT_GE(names_.asked, 1);
    EXPECT_THAT(table_.selectedRows(), ElementsAre(2));
    EXPECT_EQ(names_.changes, 1);
}

TEST_F(TableViewContract, AClickOnARowThatMayNotBeSelectedLeavesTheSelection) {
    table_.selectRow(0, false);
    names_.unselectable = {2};
    EXPECT_FALSE(driver_->clickRow(table_, 2));
    EXPECT_THAT(table_.selectedRows(), ElementsAre(0));
    EXPECT_EQ(names_.changes, 1);
}

TEST_F(TableViewContract, AnExtendingClickAddsARow) {
    table_.setAllowsMultipleSelection(true);
    EXPECT_TRUE(driver_->clickRow(table_, 0));
    EXPECT_TRUE(driver_->clickRow(table_, 2, true));
    EXPECT_THAT(table_.selectedRows(), ElementsAre(0, 2));
    EXPECT_EQ(table_.selectedRow(), 2);
}

TEST_F(TableViewContract, ADisabledTableIgnoresClicks) {
    table_.setEnabled(false);
    EXPECT_FALSE(driver_->clickRow(table_, 1));
    EXPECT_EQ(table_.selectedRow(), -1);
}

TEST_F(TableViewContract, ADoubleClickSelectsAndRunsTheDoubleAction) {
    int row = -1;
    table_.setDoubleAction([&](toolkit::Control& sender) {
        EXPECT_EQ(&sender, &table_);
        row = table_.selectedRow();
    });
    driver_->doubleClickRow(table_, 3);
    EXPECT_EQ(row, 3);
}

TEST_F(TableViewContract, ADoubleClickOnARowThatMayNotBeSelectedRunsNothing) {
    names_.unselectable = {3};
    table_.setDoubleAction([](toolkit::Control&) { FAIL() << "the row isn't selected"; });
    driver_->doubleClickRow(table_, 3);
    EXPECT_EQ(table_.selectedRow(), -1);
}

TEST_F(TableViewContract, TheDeleteKeyRunsTheDeleteAction_WhateverIsSelected) {
    int runs = 0;
    table_.setDeleteAction([&](toolkit::Control& sender) {
        EXPECT_EQ(&sender, &table_);
        ++runs;
    });
    driver_->pressDelete(table_);
    table_.selectRow(1, false);
    driver_->pressDelete(table_);
    EXPECT_EQ(runs, 2);
    table_.setEnabled(false);
    driver_->pressDelete(table_);
    EXPECT_EQ(runs, 2);
}

TEST_F(TableViewContract, ColumnsAreFoundByIdentifierAndCanBeRemoved) {
    auto* column = table_.tableColumnWithIdentifier("On");
    ASSERT_NE(column, nullptr);
    EXPECT_EQ(column->identifier(), "On");
    EXPECT_EQ(table_.tableColumnWithIdentifier("Version"), nullptr);
    table_.selectRow(1, false);
    table_.removeTableColumn(*column);
    table_.sizeToFit();
    EXPECT_EQ(table_.tableColumnWithIdentifier("On"), nullptr);
    EXPECT_EQ(driver_->shownText(table_, 0), "ash");
    EXPECT_THAT(table_.selectedRows(), ElementsAre(1));
}

TEST_F(TableViewContract, AColumnKeepsTheCellThatItWasGiven) {
    auto* column = table_.tableColumnWithIdentifier("On");
    const auto cell = std::make_shared<toolkit::Cell>();
    cell->type = toolkit::CellType::checkBox;
    column->setDataCell(cell);
    EXPECT_EQ(column->dataCell(), cell);
}

TEST_F(TableViewContract, AClickOnACheckBoxTellsTheDataSource) {
    const auto cell = std::make_shared<toolkit::Cell>();
    cell->type = toolkit::CellType::checkBox;
    table_.tableColumnWithIdentifier("On")->setDataCell(cell);
    table_.reloadData();
    driver_->clickCheckBox(table_, 1);
    EXPECT_EQ(names_.switchedOn, std::set<int>{1});
    driver_->clickCheckBox(table_, 1);
    EXPECT_THAT(names_.switchedOn, IsEmpty());
}

} // namespace
} // namespace corvane::contract
