#pragma once

#include <gtest/gtest.h>

#include <map>
#include <set>

#include "fakes/FakeControls.h"
#include "toolkit/TableView.h"

namespace corvane::fakes {

class FakePasteboard final : public toolkit::Pasteboard {
public:
    void declareTypes(const std::vector<std::string>& types) override {
        strings_.clear();
        for (const auto& type : types)
            strings_[type];
    }
    void setString(std::string_view text, std::string_view type) override {
        const auto found = strings_.find(std::string(type));
        ASSERT_NE(found, strings_.end()) << type << " was not declared";
        found->second = text;
    }
    [[nodiscard]] std::vector<std::string> types() const override {
        std::vector<std::string> all;
        for (const auto& [type, text] : strings_)
            all.push_back(type);
        return all;
    }
    [[nodiscard]] std::optional<std::string> stringForType(std::string_view type) const override {
        const auto found = strings_.find(std::string(type));
        return found == strings_.end() ? std::nullopt : std::optional(found->second);
    }

private:
    std::map<std::string, std::string> strings_;
};

class FakeTableColumn final : public toolkit::TableColumn {
public:
    explicit FakeTableColumn(std::string identifier) : identifier_(std::move(identifier)) {}
    [[nodiscard]] std::string identifier() const override { return identifier_; }
    void setDataCell(std::shared_ptr<toolkit::Cell> cell) override { cell_ = std::move(cell); }
    [[nodiscard]] std::shared_ptr<toolkit::Cell> dataCell() const override { return cell_; }

private:
    std::string identifier_;
    std::shared_ptr<toolkit::Cell> cell_ = std::make_shared<toolkit::Cell>();
};

/// Rows are counted when the table is loaded, as in a real one: a changed list shows after `reloadData`.
class FakeTableView final : public FakeControlOf<toolkit::TableView> {
public:
    FakeTableView(Journal& journal, std::string name, const std::vector<std::string>& columns)
        : FakeControlOf(journal, std::move(name)) {
        for (const auto& column : columns)
            columns_.push_back(std::make_unique<FakeTableColumn>(column));
    }

    void setDataSource(toolkit::TableDataSource* source) override { source_ = source; }
    void setDelegate(toolkit::TableDelegate* delegate) override { delegate_ = delegate; }
    void setDoubleAction(toolkit::Control::Action action) override { doubleAction_ = std::move(action); }
    void setDeleteAction(toolkit::Control::Action action) override { deleteAction_ = std::move(action); }

    [[nodiscard]] toolkit::TableColumn* tableColumnWithIdentifier(std::string_view identifier) override {
        const auto found = std::ranges::find_if(
            columns_, [&](const auto& column) { return column->identifier() == identifier; });
        return found == columns_.end() ? nullptr : found->get();
    }
    void removeTableColumn(toolkit::TableColumn& column) override {
        note("removeColumn " + column.identifier());
        const auto found = std::ranges::find(columns_, &column, [](const auto& each) { return each.get(); });
        if (found == columns_.end()) return;
        removed_.push_back(std::move(*found));
        columns_.erase(found);
    }
    void sizeToFit() override { note("sizeToFit"); }
    void registerForDraggedTypes(const std::vector<std::string>& types) override {
        draggedTypes_ = types;
        for (const auto& type : types)
            note("registerForDraggedType " + type);
    }

    void setDragHandler(toolkit::TableDragHandler* handler) override { dragHandler_ = handler; }

    void reloadData() override {
        rows_ = source_ != nullptr ? source_->numberOfRowsInTableView(*this) : 0;
        note("reloadData");
        if (std::erase_if(selection_, [this](int row) { return row >= rows_; }) > 0) tellSelectionChanged();
    }
    [[nodiscard]] int numberOfRows() const override { return rows_; }
    void setEmptyMessage(std::string_view message) override { emptyMessage_ = message; }
    /// What is to be read in place of rows; "" while there are some.
    [[nodiscard]] std::string shownEmptyMessage() const { return rows_ == 0 ? emptyMessage_ : ""; }

    void setAllowsEmptySelection(bool allows) override { note(allows ? "allowEmpty" : "forbidEmpty"); }
    void setAllowsMultipleSelection(bool allows) override {
        multiple_ = allows;
        note(allows ? "allowMultiple" : "forbidMultiple");
    }
    [[nodiscard]] int selectedRow() const override { return selection_.empty() ? -1 : selection_.back(); }
    [[nodiscard]] std::vector<int> selectedRows() const override {
        auto rows = selection_;
        std::ranges::sort(rows);
        return rows;
    }
    void selectRow(int row, bool byExtendingSelection) override {
        note("select " + std::to_string(row));
        if (row < 0 || row >= rows_) return;
        const auto before = selectedRows();
        if (!byExtendingSelection || !multiple_) selection_.clear();
        std::erase(selection_, row);
        selection_.push_back(row);
        if (selectedRows() != before) tellSelectionChanged();
    }
    void deselectRow(int row) override {
        note("deselect " + std::to_string(row));
        if (std::erase(selection_, row) > 0) tellSelectionChanged();
    }
    void deselectAll() override {
        note("deselectAll");
        if (selection_.empty()) return;
        selection_.clear();
        tellSelectionChanged();
    }

    /// A column that was taken out of the table; null when none of that name was.
    [[nodiscard]] const FakeTableColumn* removedColumn(std::string_view identifier) const {
        for (const auto& column : removed_)
            if (column->identifier() == identifier) return column.get();
        return nullptr;
    }
    /// The user clicks a row; false when the delegate doesn't let it be selected.
    [[nodiscard]] bool clickRow(int row, bool extending = false) {
        if (!isEnabled() || (delegate_ != nullptr && !delegate_->shouldSelectRow(*this, row))) return false;
        selectRow(row, extending && multiple_);
        return true;
    }
    void doubleClickRow(int row) {
        if (clickRow(row) && doubleAction_) doubleAction_(*this);
    }
    void pressDelete() {
        if (isEnabled() && deleteAction_) deleteAction_(*this);
    }
    /// The user drags rows of this table to a place between rows of `target` (or onto one). False when the
    /// drag can't begin, the target doesn't take it there, or nothing comes of it.
    [[nodiscard]] bool dragRows(const std::vector<int>& rows, FakeTableView& target, int place,
                                toolkit::DropOperation operation = toolkit::DropOperation::above) {
        FakePasteboard pasteboard;
        if (!isEnabled() || dragHandler_ == nullptr || !dragHandler_->writeRows(*this, rows, pasteboard))
            return false;
        const toolkit::DraggingInfo info{this, pasteboard};
        auto* handler = target.dragHandler_;
        if (!target.takesTypesOf(pasteboard) ||
            handler->validateDrop(target, info, place, operation) == toolkit::DragOperation::none)
            return false;
        return handler->acceptDrop(target, info, place, operation);
    }
    /// The user presses Alt and an arrow: the one selected row is moved by one, up (-1) or down (1).
    [[nodiscard]] bool pressAltArrow(int step) {
        if (selection_.size() != 1) return false;
        const int place = step < 0 ? selection_.front() - 1 : selection_.front() + 2;
        return place >= 0 && place <= rows_ && dragRows(selection_, *this, place);
    }
    [[nodiscard]] toolkit::TableDragHandler* dragHandler() const { return dragHandler_; }
    void toggleCheckBox(const std::string& column, int row, bool value) {
        source_->setObjectValue(*this, value, *tableColumnWithIdentifier(column), row);
    }

    [[nodiscard]] bool isCheckedAt(const std::string& column, int row) {
        const auto value = source_->objectValueForTableColumn(*this, *tableColumnWithIdentifier(column), row);
        const auto* cell = std::get_if<std::shared_ptr<toolkit::Cell>>(&value);
        return cell != nullptr && (*cell)->on;
    }

    /// What a text column shows in a row.
    [[nodiscard]] std::string textAt(const std::string& column, int row) {
        const FakeTableColumn absent(column);
        const auto* found = tableColumnWithIdentifier(column);
        const auto value = source_->objectValueForTableColumn(*this, found != nullptr ? *found : absent, row);
        const auto* text = std::get_if<std::string>(&value);
        return text != nullptr ? *text : "<cell>";
    }
    [[nodiscard]] std::vector<std::string> texts(const std::string& column) {
        std::vector<std::string> all;
        for (int row = 0; row < rows_; ++row)
            all.push_back(textAt(column, row));
        return all;
    }
    /// The cell as it is drawn in a row, beginning with `before`.
    [[nodiscard]] toolkit::Cell drawnCell(const std::string& column, int row, toolkit::Cell before = {}) {
        delegate_->willDisplayCell(*this, before, *tableColumnWithIdentifier(column), row);
        return before;
    }

private:
    [[nodiscard]] bool takesTypesOf(const FakePasteboard& pasteboard) const {
        const auto takes = [this](const std::string& type) {
            return std::ranges::count(draggedTypes_, type) > 0;
        };
        return isEnabled() && dragHandler_ != nullptr && std::ranges::any_of(pasteboard.types(), takes);
    }
    void tellSelectionChanged() {
        if (delegate_ != nullptr) delegate_->tableViewSelectionDidChange(*this);
    }

    std::vector<std::unique_ptr<FakeTableColumn>> columns_;
    std::vector<std::unique_ptr<FakeTableColumn>> removed_;
    toolkit::TableDataSource* source_ = nullptr;
    toolkit::TableDelegate* delegate_ = nullptr;
    toolkit::TableDragHandler* dragHandler_ = nullptr;
    toolkit::Control::Action doubleAction_;
    toolkit::Control::Action deleteAction_;
    std::vector<std::string> draggedTypes_;
    std::vector<int> selection_;
    std::string emptyMessage_;
    int rows_ = 0;
    bool multiple_ = false;
};

} // namespace corvane::fakes
