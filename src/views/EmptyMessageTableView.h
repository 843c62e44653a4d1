#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "toolkit/Canvas.h"

namespace corvane::views {

/// A table that says something in grey while it has no rows. Main thread.
class EmptyMessageTableView {
public:
    /// The table that it is.
    struct Table {
        virtual ~Table() = default;
        /// The table without a message.
        virtual void drawTable() = 0;
        [[nodiscard]] virtual int numberOfRows() const = 0;
        /// In what the table scrolls in.
        [[nodiscard]] virtual toolkit::Rect frame() const = 0;
        [[nodiscard]] virtual double rowHeight() const = 0;
        [[nodiscard]] virtual toolkit::Size intercellSpacing() const = 0;
        virtual void setNeedsDisplay() = 0;
    };

    /// `table` outlives this.
    explicit EmptyMessageTableView(Table& table) : table_(table) {}

    /// In the system font of 18 points, grey and centred. These two names are spelled without the second "s";
    /// the spelling is what others call and stays.
    void setMesageForEmptyList(std::string_view message);
    /// As it is; none says nothing.
    void setAttributedMesageForEmptyList(std::optional<toolkit::AttributedString> message);
    /// The row, counting from 0, in whose middle the message stands.
    void setMessageRow(std::int32_t row);
    /// The table has come out of its interface file.
    void awakeFromNib() { setMessageRow(0); }
    /// What is said while there are no rows.
    [[nodiscard]] const std::optional<toolkit::AttributedString>& message() const { return _emptyListMsg; }

    void drawRect(toolkit::Canvas& canvas);

private:
    Table& table_;
    std::optional<toolkit::AttributedString> _emptyListMsg;
    std::int32_t _msgRow = 0;
};

} // namespace corvane::views
