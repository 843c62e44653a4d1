#include "views/EmptyMessageTableView.h"

namespace corvane::views {

void EmptyMessageTableView::setMesageForEmptyList(std::string_view message) {
    setAttributedMesageForEmptyList(
        toolkit::AttributedString{std::string(message),
                                  {toolkit::NamedColor::gray,
                                   18,
                                   {toolkit::TextAlignment::center, toolkit::LineBreakMode::wordWrapping}}});
}

void EmptyMessageTableView::setAttributedMesageForEmptyList(
    std::optional<toolkit::AttributedString> message) {
    _emptyListMsg = std::move(message);
    table_.setNeedsDisplay();
}

void EmptyMessageTableView::setMessageRow(std::int32_t row) {
    _msgRow = row;
    table_.setNeedsDisplay();
}

void EmptyMessageTableView::drawRect(toolkit::Canvas& canvas) {
    table_.drawTable();
    if (!_emptyListMsg || table_.numberOfRows() != 0) return;
    // The frame and not the bounds, on purpose: the message keeps its place in what the table scrolls in.
    const auto frame = table_.frame();
    const double rowHeight = table_.rowHeight();
    const double messageHeight = canvas.sizeOfText(*_emptyListMsg).height;
    const double band = _msgRow * (rowHeight + table_.intercellSpacing().height);
    canvas.drawText(
        *_emptyListMsg,
        {{frame.origin.x, frame.origin.y + (rowHeight - messageHeight) * 0.5 + band}, frame.size});
}

} // namespace corvane::views
