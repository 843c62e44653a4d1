#include "qt/adapters/QtTextField.h"

#include "qt/Text.h"
#include "qt/widgets/FormatterRules.h"

namespace corvane::qt {

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
    if (formatter)
        formatting_ = std::make_unique<FieldFormatting>(widget_, rulesOf(std::move(formatter), guard_));
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
