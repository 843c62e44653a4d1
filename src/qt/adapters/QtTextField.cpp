#include "qt/adapters/QtTextField.h"

#include "qt/Text.h"

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

QtTextField::QtTextField(QLineEdit& field, HandlerGuard& guard) : QtControl(field), guard_(guard) {
    const auto act = [this] { guard_.run("a text field's action", [this] { runAction(); }); };
    QObject::connect(&field, &QLineEdit::returnPressed, &context_, [this, act] {
        const bool good = !formatting_ || formatting_->commit();
        if (good && !whileTyping_) act();
    });
    QObject::connect(&field, &QLineEdit::textEdited, &context_, [this, act] {
        if (whileTyping_) act();
    });
}

void QtTextField::setFormatter(std::shared_ptr<toolkit::Formatter> formatter) {
    formatting_.reset();
    if (formatter) formatting_ = std::make_unique<FieldFormatting>(widget_, rulesOf(std::move(formatter)));
}

/// A formatter that fails refuses: what it didn't look at must not pass.
FieldFormatting::Rules QtTextField::rulesOf(std::shared_ptr<toolkit::Formatter> formatter) {
    FieldFormatting::Rules rules;
    rules.mayBecome = [this, formatter](FieldFormatting::Edit& edit) {
        return guard_.answer("an edit", false, [&] { return mayBecome(*formatter, edit); });
    };
    rules.commit = [this, formatter](const std::string& text) {
        return guard_.answer("the end of an edit", FieldFormatting::Commit{false, {}, {}},
                             [&] { return commit(*formatter, text); });
    };
    return rules;
}

void QtTextField::setStringValue(std::string_view text) {
    if (formatting_)
        formatting_->setText(fromUtf8(text));
    else
        widget_.setText(fromUtf8(text));
}

std::string QtTextField::stringValue() const {
    if (!formatting_ || whileTyping_) return toUtf8(widget_.text());
    (void)formatting_->commit();
    return toUtf8(formatting_->value());
}

} // namespace corvane::qt
