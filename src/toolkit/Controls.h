#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "toolkit/Formatter.h"
#include "toolkit/View.h"

namespace corvane::toolkit {

class Button : public Control {
public:
    virtual void setTitle(std::string_view title) = 0;
    [[nodiscard]] virtual std::string title() const = 0;
};

/// One choice out of a fixed list of items.
class PopUpButton : public Control {
public:
    /// `index` −1 shows none as chosen; an index past the end is ignored.
    virtual void selectItemAtIndex(int index) = 0;
    /// −1 when none is chosen.
    [[nodiscard]] virtual int indexOfSelectedItem() const = 0;
    [[nodiscard]] virtual int numberOfItems() const = 0;
    /// Makes the shown title that of the chosen item (empty when none is).
    virtual void synchronizeTitleAndSelectedItem() = 0;
};

/// One line of text. The action runs when the user ends the edit with the return key.
class TextField : public Control {
public:
    /// Lets the action run after each keystroke, and no longer for the return key.
    virtual void setSendsActionWhileTyping(bool sends) = 0;
    /// Judges what the user types from here on; null takes the formatter away. The edit is committed by the
    /// return key and when the keyboard goes elsewhere: a refused text stays to be repaired, with the reason
    /// shown beside the field until the text is acceptable again, and the action doesn't run.
    virtual void setFormatter(std::shared_ptr<Formatter> formatter) = 0;
    /// Taken as it is; no formatter is asked.
    virtual void setStringValue(std::string_view text) = 0;
    /// With a formatter the text of the value that was accepted last, after committing what is being typed. A
    /// field whose action runs while typing answers what is typed.
    [[nodiscard]] virtual std::string stringValue() const = 0;
};

/// A line of text that the user reads.
class Label : public View {
public:
    virtual void setText(std::string_view text) = 0;
};

/// A strip in a pane that says what is the case until something is done about it; its buttons are controls of
/// their own. Read out when it appears, and when its texts change while it is there.
class Notice : public View {
public:
    virtual void setMessageText(std::string_view text) = 0;
    /// Smaller, below the message; "" for none.
    virtual void setInformativeText(std::string_view text) = 0;
};

/// Says in the window that the program is busy and takes no input, once that lasts longer than a moment. The
/// work is done on the main thread between the two calls.
class BusyIndicator {
public:
    virtual ~BusyIndicator() = default;
    virtual void begin(std::string_view text) = 0;
    virtual void end() = 0;
};

class ProgressIndicator : public View {
public:
    virtual void setIndeterminate(bool indeterminate) = 0;
    [[nodiscard]] virtual bool isIndeterminate() const = 0;
    /// Lets the bar move while the main thread is busy, where the toolkit can.
    virtual void setUsesThreadedAnimation(bool uses) = 0;
    virtual void startAnimation() = 0;
    virtual void stopAnimation() = 0;
    virtual void setNeedsDisplay() = 0;
    /// Draws at once, without waiting for the event loop.
    virtual void display() = 0;
};

} // namespace corvane::toolkit
