#include "qt/widgets/FormatterRules.h"

namespace corvane::qt {
namespace {

toolkit::TextRange rangeOf(FieldFormatting::Range range) { return {range.location, range.length}; }

bool mayBecome(toolkit::Formatter& formatter, FieldFormatting::Edit& edit) {
    auto selection = rangeOf(edit.proposedSelection);
    std::string description; // typing is refused without words
    const bool may = formatter.isPartialEditValid(edit.proposed, selection, edit.original,
                                                  rangeOf(edit.originalSelection), &description);
    edit.proposedSelection = {selection.location, selection.length};
    return may;
}

FieldFormatting::Commit commit(toolkit::Formatter& formatter, const std::string& text) {
    FieldFormatting::Commit result;
    util::Value value;
    result.accepted = formatter.getObjectValueForString(&value, text, &result.description);
    if (result.accepted) result.text = formatter.stringForObjectValue(value).value_or(text);
    return result;
}

} // namespace

FieldFormatting::Rules rulesOf(std::shared_ptr<toolkit::Formatter> formatter, HandlerGuard& guard) {
    FieldFormatting::Rules rules;
    rules.mayBecome = [&guard, formatter](FieldFormatting::Edit& edit) {
        return guard.answer("an edit", false, [&] { return mayBecome(*formatter, edit); });
    };
    rules.commit = [&guard, formatter](const std::string& text) {
        return guard.answer("the end of an edit", FieldFormatting::Commit{false, {}, {}},
                            [&] { return commit(*formatter, text); });
    };
    return rules;
}

} // namespace corvane::qt
