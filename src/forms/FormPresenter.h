#pragma once

#include <memory>
#include <string>
#include <vector>

namespace corvane::forms {

class Form;
struct Item;

/// A form on the screen. Reads the items of its `Form`, and reports through its public operations what the
/// user does. Main thread.
class FormWindow {
public:
    virtual ~FormWindow() = default;
    /// Shows it, in front of what the program shows already; once.
    virtual void open() = 0;
    virtual void raise() = 0;
    /// Takes it off the screen. Nothing is reported from then on.
    virtual void close() = 0;
    /// Something about this item has changed. The text that a user is just typing isn't touched unless the
    /// item's value is another one.
    virtual void itemChanged(const Item& item) = 0;
    /// Which buttons can be pressed, and their titles, may have changed.
    virtual void buttonsChanged() = 0;
    /// The title of the form has changed.
    virtual void titleChanged() = 0;
    /// Shows what is wrong, reads it out, and gives the keyboard to the item if there is one of that name;
    /// an empty text takes the message away.
    virtual void showProblem(const std::string& itemName, const std::string& text) = 0;
    /// Offers values for a field to choose from; the one that the user chooses is typed there.
    virtual void suggest(const Item& item, const std::vector<std::string>& values) = 0;
};

/// What shows forms: windows of a desktop, or questions in a terminal.
class FormPresenter {
public:
    virtual ~FormPresenter() = default;
    /// `form` outlives the window.
    [[nodiscard]] virtual std::unique_ptr<FormWindow> present(Form& form) = 0;
};

} // namespace corvane::forms
