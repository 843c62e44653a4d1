#include "qt/QtTextField.h"

#include "qt/Text.h"

namespace corvane::qt {

QtTextField::QtTextField(QLineEdit& field, HandlerGuard& guard) : QtControl(field) {
    const auto act = [this, &guard] { guard.run("a text field's action", [this] { runAction(); }); };
    QObject::connect(&field, &QLineEdit::returnPressed, &context_, [this, act] {
        if (!whileTyping_) act();
    });
    QObject::connect(&field, &QLineEdit::textEdited, &context_, [this, act] {
        if (whileTyping_) act();
    });
}

void QtTextField::setStringValue(std::string_view text) { widget_.setText(fromUtf8(text)); }

std::string QtTextField::stringValue() const { return toUtf8(widget_.text()); }

} // namespace corvane::qt
