#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "formatters/ToolkitBeep.h"
#include "forms/FormPresenter.h"
#include "forms/FormReader.h"
#include "platform/LocalizedStrings.h"
#include "toolkit/Formatter.h"

namespace corvane::forms {

/// What may be typed into fields is judged with these. Both outlive the forms.
struct FieldTools {
    formatters::ValidCharacterFormatter::Needs& beep;
    const platform::LocalizedStrings& strings;
};

/// One form while it is open: the state of its items, and the rules that are the same however it is shown.
/// A field that isn't in order keeps the form open; buttons follow the selection of their list. The plug-in
/// hears of what the user does, never of its own changes. Held by shared pointers, so that it may be let go
/// of while it reports something. What was entered is kept no longer than somebody holds the form. Main
/// thread.
class Form : public std::enable_shared_from_this<Form> {
public:
    enum class Event {
        changed, ///< the user has changed a field's value, or a list's selection
        entered, ///< the user has left a text field after typing, or pasted into it
        pressed, ///< a button; of one that accepts, the fields are in order
        closed   ///< by a button, or by closing the window; the last event
    };
    using Listener = std::function<void(Event event, const std::string& name)>;

    Form(FormDescription description, FieldTools tools, Listener listener);
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;
    /// Closes it without an event.
    ~Form();

    /// Shows it. Once.
    void open(FormPresenter& presenter);
    /// The same for a form that holds itself for as long as it is open.
    void openAndHold(FormPresenter& presenter);

    // For the plug-in. Names that aren't known throw `FormError`.
    [[nodiscard]] bool isOpen() const { return window_ != nullptr; }
    void raise();
    /// Without an event.
    void close();
    [[nodiscard]] util::Value value(const std::string& name) const;
    /// Changes a property of an item or button; with an empty name the form's "title".
    void set(const std::string& name, const std::string& key, const util::Value& value);
    /// Says what is wrong with a field, or, with an empty name, with the whole. While a button that accepts
    /// is being pressed this keeps the form open. The message is removed when that field is changed.
    void complain(const std::string& name, const std::string& text);
    void suggest(const std::string& name, const std::vector<std::string>& values);

    // For what shows it
    [[nodiscard]] const FormDescription& description() const { return description_; }
    /// Enabled, and as many rows selected as it needs.
    [[nodiscard]] bool canPress(const Button& button) const;
    /// What may be typed into the field; null where anything may.
    [[nodiscard]] std::shared_ptr<toolkit::Formatter> formatterOf(const Item& item) const;
    /// The text that shows the field's value.
    [[nodiscard]] std::string textOf(const Item& item) const;
    void userTyped(const std::string& name, const std::string& text);
    void userChecked(const std::string& name, bool isChecked);
    void userChose(const std::string& name, const std::string& value);
    void userSelected(const std::string& name, const std::vector<std::int64_t>& rows);
    void userEntered(const std::string& name);
    void userPressed(const std::string& name);
    /// Whether that button copies the report; whoever shows the form does it.
    [[nodiscard]] bool copiesReport(const std::string& name);
    /// A group was folded or unfolded. The plug-in doesn't hear of it.
    void userFolded(const std::string& name, bool isFolded);
    /// Escape, or the window's own way of closing.
    void userDismissed();
    /// The window has gone with what it belonged to. Nobody hears of it.
    void windowWentAway();

    /// Everything that the form reports, as text to be passed on: its title, steps and results.
    [[nodiscard]] std::string report() const;

private:
    [[nodiscard]] Item* find(std::vector<Item>& items, const std::string& name) const;
    [[nodiscard]] Item* itemNamed(const std::string& name);
    [[nodiscard]] Item& requiredItem(const std::string& name);
    [[nodiscard]] Button* buttonNamed(const std::string& name);
    [[nodiscard]] const Item* listOf(const Button& button) const;
    void change(Item& item, const util::Value& value);
    void tell(Event event, const std::string& name);
    void forgetProblemOf(const std::string& name);
    void showProblem(const std::string& name, const std::string& text);
    [[nodiscard]] bool fieldsAreInOrder();
    [[nodiscard]] const Item* firstWrong(const std::vector<Item>& items) const;

    FormDescription description_;
    FieldTools tools_;
    Listener listener_;
    std::unique_ptr<FormWindow> window_;
    std::shared_ptr<Form> itself_;
    std::string complainedAbout_;
    bool hasProblem_ = false;
};

/// The title without its mnemonic sign.
[[nodiscard]] std::string withoutMnemonic(const std::string& title);

} // namespace corvane::forms
