#include "qt/KeyEvents.h"

#include "qt/Text.h"

namespace corvane::qt {

namespace {

// With Ctrl held the event's text is a control character, so that letters are taken from the key itself.
std::string characters(const QKeyEvent& event) {
    const int key = event.key();
    const bool isCharacter = key > 0 && key < Qt::Key_Escape;
    if (!isCharacter) return toUtf8(event.text());
    const auto text = QString(QChar(char16_t(key)));
    return toUtf8(event.modifiers() & Qt::ShiftModifier ? text : text.toLower());
}

} // namespace

toolkit::Event toolkitEvent(const QKeyEvent& event) {
    toolkit::Event result;
    result.type =
        event.type() == QEvent::KeyRelease ? toolkit::EventType::keyUp : toolkit::EventType::keyDown;
    result.modifiers.command = event.modifiers() & Qt::ControlModifier;
    result.modifiers.control = event.modifiers() & Qt::MetaModifier;
    result.modifiers.option = event.modifiers() & Qt::AltModifier;
    result.modifiers.shift = event.modifiers() & Qt::ShiftModifier;
    result.charactersIgnoringModifiers = characters(event);
    return result;
}

} // namespace corvane::qt
