#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "toolkit/DragAndDrop.h"
#include "toolkit/View.h"

namespace corvane::toolkit {

/// The theme's own colours for text: ordinary, secondary, alarming.
enum class TextColor { black, gray, red };
enum class CellType { text, checkBox };
enum class ImagePosition { none = 0, imageOnly = 1, left = 2, right = 3, below = 4, above = 5 };

/// How a column draws and edits: one cell for the column, adjusted before each row is drawn.
struct Cell {
    CellType type = CellType::text;
    std::string title;
    std::string alternateTitle;
    ImagePosition imagePosition = ImagePosition::none;
    bool enabled = true;
    bool on = false; ///< state of a check box
    TextColor textColor = TextColor::black;
    std::string note; ///< beside a text, secondary; read out behind it
};

class TableColumn {
public:
    virtual ~TableColumn() = default;
    [[nodiscard]] virtual std::string identifier() const = 0;
    virtual void setDataCell(std::shared_ptr<Cell> cell) = 0;
    [[nodiscard]] virtual std::shared_ptr<Cell> dataCell() const = 0;
};

class TableView;

/// What a cell shows: a text, or the column's own cell with its state set.
using ObjectValue = std::variant<std::string, std::shared_ptr<Cell>>;

/// Rows count from 0. An answer for a row that isn't there must be harmless.
class TableDataSource {
public:
    virtual ~TableDataSource() = default;
    [[nodiscard]] virtual int numberOfRowsInTableView(const TableView& table) = 0;
    [[nodiscard]] virtual ObjectValue objectValueForTableColumn(const TableView& table,
                                                                const TableColumn& column, int row) = 0;
    /// The user has toggled a check box.
    virtual void setObjectValue(const TableView& table, bool value, const TableColumn& column, int row) = 0;
};

class TableDelegate {
public:
    virtual ~TableDelegate() = default;
    virtual void willDisplayCell(const TableView& table, Cell& cell, const TableColumn& column, int row) = 0;
    [[nodiscard]] virtual bool shouldSelectRow(const TableView& table, int row) = 0;
    virtual void tableViewSelectionDidChange(const TableView& table) = 0;
};

/// A list of rows. The control's own action is unused; `setDoubleAction` is what a double click or the
/// return key on a selected row does. Data source and delegate are borrowed and outlive their use here.
class TableView : public Control {
public:
    virtual void setDataSource(TableDataSource* source) = 0;
    virtual void setDelegate(TableDelegate* delegate) = 0;
    virtual void setDoubleAction(Action action) = 0;
    /// What the delete key does while the table has the keyboard.
    virtual void setDeleteAction(Action action) = 0;

    /// Null when there is no such column.
    [[nodiscard]] virtual TableColumn* tableColumnWithIdentifier(std::string_view identifier) = 0;
    virtual void removeTableColumn(TableColumn& column) = 0;
    virtual void sizeToFit() = 0;
    /// Types that may be dropped here. Rows are dragged with the mouse, and moved by one with the keyboard.
    virtual void registerForDraggedTypes(const std::vector<std::string>& types) = 0;
    /// Borrowed. Without one nothing is dragged and nothing dropped.
    virtual void setDragHandler(TableDragHandler* handler) = 0;

    /// Asks the data source for everything again. Selected rows that are gone are no longer selected.
    virtual void reloadData() = 0;
    [[nodiscard]] virtual int numberOfRows() const = 0;
    /// What the table says, and reads out, while it has no rows; "" for nothing.
    virtual void setEmptyMessage(std::string_view message) = 0;

    virtual void setAllowsEmptySelection(bool allows) = 0;
    virtual void setAllowsMultipleSelection(bool allows) = 0;
    /// The row selected last, −1 for none.
    [[nodiscard]] virtual int selectedRow() const = 0;
    /// In ascending order.
    [[nodiscard]] virtual std::vector<int> selectedRows() const = 0;
    /// The program may select any row that is there, asked or not; the delegate is asked about the user's
    /// choices alone and is told of every change.
    virtual void selectRow(int row, bool byExtendingSelection) = 0;
    virtual void deselectRow(int row) = 0;
    virtual void deselectAll() = 0;
};

} // namespace corvane::toolkit
