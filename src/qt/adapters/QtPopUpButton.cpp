#include "qt/adapters/QtPopUpButton.h"

namespace corvane::qt {

QtPopUpButton::QtPopUpButton(QComboBox& box, HandlerGuard& guard) : QtControl(box) {
    QObject::connect(&box, &QComboBox::activated, &context_,
                     [this, &guard] { guard.run("a pop-up's action", [this] { runAction(); }); });
}

void QtPopUpButton::selectItemAtIndex(int index) {
    if (index >= -1 && index < widget_.count()) widget_.setCurrentIndex(index);
}

int QtPopUpButton::indexOfSelectedItem() const { return widget_.currentIndex(); }

int QtPopUpButton::numberOfItems() const { return widget_.count(); }

} // namespace corvane::qt
