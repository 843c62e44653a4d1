#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane::toolkit {

class TableView;

/// What a drop would do with what is dragged.
enum class DragOperation { none = 0, move = 16 };
/// Where a drop would go: onto a row, or between rows, above the one named.
enum class DropOperation { on = 0, above = 1 };

/// What is being dragged: texts by type. Lives for one drag.
class Pasteboard {
public:
    virtual ~Pasteboard() = default;
    /// Forgets what there was and announces these types.
    virtual void declareTypes(const std::vector<std::string>& types) = 0;
    virtual void setString(std::string_view text, std::string_view type) = 0;
    [[nodiscard]] virtual std::vector<std::string> types() const = 0;
    /// None when the type isn't there.
    [[nodiscard]] virtual std::optional<std::string> stringForType(std::string_view type) const = 0;
};

struct DraggingInfo {
    const TableView* source; ///< null for a drag that began outside of this program's tables
    Pasteboard& pasteboard;
};

/// Decides about drags of a table's rows and drops onto it. Rows count from 0; a drop above the row that is
/// the count goes behind the last row. Main thread.
class TableDragHandler {
public:
    virtual ~TableDragHandler() = default;
    /// The user begins to drag rows; false forbids it.
    [[nodiscard]] virtual bool writeRows(TableView& table, const std::vector<int>& rows,
                                         Pasteboard& pasteboard) = 0;
    [[nodiscard]] virtual DragOperation validateDrop(TableView& table, const DraggingInfo& info,
                                                     int proposedRow, DropOperation proposedOperation) = 0;
    /// False when nothing came of it.
    [[nodiscard]] virtual bool acceptDrop(TableView& table, const DraggingInfo& info, int row,
                                          DropOperation operation) = 0;
};

} // namespace corvane::toolkit
