#include "qt/adapters/QtButton.h"

#include "qt/Text.h"

namespace corvane::qt {

QtButton::QtButton(QAbstractButton& button, HandlerGuard& guard) : QtControl(button) {
    QObject::connect(&button, &QAbstractButton::clicked, &context_,
                     [this, &guard] { guard.run("a button's action", [this] { runAction(); }); });
}

void QtButton::setTitle(std::string_view title) { widget_.setText(withoutMnemonics(fromUtf8(title))); }

std::string QtButton::title() const { return toUtf8(visibleText(widget_.text())); }

} // namespace corvane::qt
