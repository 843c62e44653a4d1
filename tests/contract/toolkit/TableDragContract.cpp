#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "contract/toolkit/ToolkitDriver.h"

namespace corvane::contract {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using toolkit::DragOperation;
using toolkit::DropOperation;

constexpr auto type = "name";

class FourRows final : public toolkit::TableDataSource {
public:
    int numberOfRowsInTableView(const toolkit::TableView&) override { return 4; }
    toolkit::ObjectValue objectValueForTableColumn(const toolkit::TableView&, const toolkit::TableColumn&,
                                                   int row) override {
        return "row " + std::to_string(row);
    }
    void setObjectValue(const toolkit::TableView&, bool, const toolkit::TableColumn&, int) override {}
};

/// Says yes to everything unless told otherwise, and remembers what it was asked.
class Handler final : public toolkit::TableDragHandler {
public:
    bool letsDrag = true;
    DragOperation answer = DragOperation::move;
    bool takesDrops = true;

    std::vector<std::vector<int>> drags;
    struct Place {
        toolkit::TableView* table;
        const toolkit::TableView* source;
        int row;
        DropOperation operation;
        bool operator==(const Place&) const = default;
    };
    std::vector<Place> validated;
    std::vector<Place> accepted;
    std::string droppedText;

    bool writeRows(toolkit::TableView&, const std::vector<int>& rows,
                   toolkit::Pasteboard& pasteboard) override {
        drags.push_back(rows);
        if (!letsDrag) return false;
        pasteboard.declareTypes({"forgotten"});
        pasteboard.setString("old", "forgotten");
        pasteboard.declareTypes({type});
        pasteboard.setString("birch é", type);
        return true;
    }
    DragOperation validateDrop(toolkit::TableView& table, const toolkit::DraggingInfo& info, int proposedRow,
                               DropOperation proposedOperation) override {
        validated.push_back({&table, info.source, proposedRow, proposedOperation});
        return answer;
    }
    bool acceptDrop(toolkit::TableView& table, const toolkit::DraggingInfo& info, int row,
                    DropOperation operation) override {
        accepted.push_back({&table, info.source, row, operation});
        EXPECT_THAT(info.pasteboard.types(), ElementsAre(type));
        EXPECT_EQ(info.pasteboard.stringForType("forgotten"), std::nullopt);
        droppedText = info.pasteboard.stringForType(type).value_or("nothing");
        return takesDrops;
    }
};

class TableDragContract : public testing::Test {
protected:
    TableDragContract() {
        for (auto* each : {&table_, &other_}) {
            each->setDataSource(&rows_);
            each->setAllowsMultipleSelection(true);
            each->registerForDraggedTypes({type});
            each->setDragHandler(&handler_);
            each->reloadData();
        }
    }
    bool drag(const std::vector<int>& rows, int place) {
        return driver_->dragRows(table_, rows, table_, place);
    }
    [[nodiscard]] Handler::Place above(int row) { return {&table_, &table_, row, DropOperation::above}; }

    FourRows rows_;
    Handler handler_;
    std::unique_ptr<ToolkitDriver> driver_ = makeToolkitDriver();
    toolkit::TableView& table_ = driver_->table();
    toolkit::TableView& other_ = driver_->otherTable();
};

TEST_F(TableDragContract, WhatWasWrittenArrivesWhereItIsDropped) {
    EXPECT_TRUE(drag({3}, 1));
    EXPECT_THAT(handler_.drags, ElementsAre(std::vector{3}));
    EXPECT_THAT(handler_.accepted, ElementsAre(above(1)));
    EXPECT_EQ(handler_.droppedText, "birch é");
}

TEST_F(TableDragContract, APlaceIsValidatedBeforeADropThere) {
    handler_.answer = DragOperation::none;
    EXPECT_FALSE(drag({0}, 2));
    EXPECT_THAT(handler_.validated, testing::Contains(above(2)));
    EXPECT_THAT(handler_.accepted, IsEmpty());
}

TEST_F(TableDragContract, ADropBehindTheLastRowNamesTheCount) {
    EXPECT_TRUE(drag({0}, 4));
    EXPECT_THAT(handler_.accepted, ElementsAre(above(4)));
}

TEST_F(TableDragContract, SeveralRowsComeInAscendingOrder) {
    EXPECT_TRUE(drag({1, 3}, 0));
    EXPECT_THAT(handler_.drags, ElementsAre((std::vector{1, 3})));
}

TEST_F(TableDragContract, ADragThatIsForbiddenReachesNoTable) {
    handler_.letsDrag = false;
    EXPECT_FALSE(drag({2}, 0));
    EXPECT_EQ(handler_.drags.size(), 1U);
    EXPECT_THAT(handler_.validated, IsEmpty());
    EXPECT_THAT(handler_.accepted, IsEmpty());
}

TEST_F(TableDragContract, ADropOfWhichNothingComesIsNone) {
    handler_.takesDrops = false;
    EXPECT_FALSE(drag({2}, 0));
    EXPECT_THAT(handler_.accepted, ElementsAre(above(0)));
}

TEST_F(TableDragContract, ADragFromAnotherTableNamesItAsTheSource) {
    EXPECT_TRUE(driver_->dragRows(other_, {1}, table_, 2));
    EXPECT_THAT(handler_.accepted, ElementsAre(Handler::Place{&table_, &other_, 2, DropOperation::above}));
}

TEST_F(TableDragContract, WithoutAHandlerNothingIsDraggedAndNothingDropped) {
    other_.setDragHandler(nullptr);
    EXPECT_FALSE(driver_->dragRows(other_, {1}, table_, 2));
    EXPECT_FALSE(driver_->dragRows(table_, {1}, other_, 2));
    EXPECT_THAT(handler_.validated, IsEmpty());
}

TEST_F(TableDragContract, WhatIsOfNoRegisteredTypeIsNotTaken) {
    table_.registerForDraggedTypes({"colour"});
    EXPECT_FALSE(drag({2}, 0));
    EXPECT_THAT(handler_.validated, IsEmpty());
    EXPECT_THAT(handler_.accepted, IsEmpty());
    table_.registerForDraggedTypes({"colour", type});
    EXPECT_TRUE(drag({2}, 0));
}

TEST_F(TableDragContract, ADisabledTableNeitherGivesNorTakes) {
    other_.setEnabled(false);
    EXPECT_FALSE(driver_->dragRows(other_, {1}, table_, 2));
    EXPECT_FALSE(driver_->dragRows(table_, {1}, other_, 2));
    EXPECT_THAT(handler_.accepted, IsEmpty());
}

TEST_F(TableDragContract, AltAndAnArrowDropTheRowAcrossItsNeighbour) {
    table_.selectRow(1, false);
    driver_->pressAltArrow(table_, 1);
    driver_->pressAltArrow(table_, -1);
    EXPECT_THAT(handler_.drags, ElementsAre(std::vector{1}, std::vector{1}));
    EXPECT_THAT(handler_.accepted, ElementsAre(above(3), above(0)));
}

TEST_F(TableDragContract, AltAndAnArrowStopAtBothEnds) {
    table_.selectRow(0, false);
    driver_->pressAltArrow(table_, -1);
    table_.selectRow(3, false);
    driver_->pressAltArrow(table_, 1);
    EXPECT_THAT(handler_.accepted, IsEmpty());
}

TEST_F(TableDragContract, AltAndAnArrowMoveOneSelectedRowOnly) {
    driver_->pressAltArrow(table_, 1);
    table_.selectRow(1, false);
    table_.selectRow(2, true);
    driver_->pressAltArrow(table_, 1);
    EXPECT_THAT(handler_.drags, IsEmpty());
    EXPECT_THAT(handler_.accepted, IsEmpty());
}

TEST_F(TableDragContract, AltAndAnArrowAskAsADragDoes) {
    table_.selectRow(1, false);
    handler_.answer = DragOperation::none;
    driver_->pressAltArrow(table_, 1);
    EXPECT_THAT(handler_.validated, ElementsAre(above(3)));
    handler_.answer = DragOperation::move;
    handler_.letsDrag = false;
    driver_->pressAltArrow(table_, -1);
    EXPECT_THAT(handler_.accepted, IsEmpty());
}

TEST_F(TableDragContract, AltAndAnArrowMoveNothingInADisabledTable) {
    table_.selectRow(1, false);
    table_.setEnabled(false);
    driver_->pressAltArrow(table_, 1);
    EXPECT_THAT(handler_.drags, IsEmpty());
}

} // namespace
} // namespace corvane::contract
