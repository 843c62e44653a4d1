#pragma once

#include "FormParts.h"

/// The parts of a form's description, to be put together:
///
///     FormWindow window("example", "Example");
///     window.add(FormItem::text("server", "&Server:").required("Name the server."));
///     window.add(FormItem::number("port", "&Port:", 1, 65535).value(389));
///     window.button(FormButton::ok([this] { take(); })).button(FormButton::cancel());
///
/// Names identify items and buttons; "&" makes the letter after it the mnemonic. All of these are values.
namespace corvane::sdk {

class FormItem {
public:
    /// Of any kind; those below cover all of them.
    FormItem(const std::string& kind, const std::string& name) : name_(name) {
        part_.set("kind", kind);
        part_.set("name", name);
    }
    [[nodiscard]] static FormItem text(const std::string& name, const std::string& label) {
        return FormItem("text", name).set("label", label);
    }
    [[nodiscard]] static FormItem password(const std::string& name, const std::string& label) {
        return FormItem("password", name).set("label", label);
    }
    [[nodiscard]] static FormItem file(const std::string& name, const std::string& label) {
        return FormItem("file", name).set("label", label);
    }
    /// A whole number, both bounds included; or nothing, unless it is required.
    [[nodiscard]] static FormItem number(const std::string& name, const std::string& label,
                                         std::int64_t minimum, std::int64_t maximum) {
        return FormItem("number", name).set("label", label).set("minimum", minimum).set("maximum", maximum);
    }
    [[nodiscard]] static FormItem check(const std::string& name, const std::string& title) {
        return FormItem("check", name).set("title", title);
    }
    /// One of the choices that are added; its value is a text.
    [[nodiscard]] static FormItem choice(const std::string& name, const std::string& label) {
        return FormItem("choice", name).set("label", label);
    }
    [[nodiscard]] static FormItem list(const std::string& name, const std::string& accessibleName) {
        return FormItem("list", name).set("accessibleName", accessibleName);
    }
    /// A text of its own; `style`: "plain", "hint" or "warning".
    [[nodiscard]] static FormItem paragraph(const std::string& text, const std::string& name = "",
                                            const std::string& style = "plain") {
        return FormItem("paragraph", name).set("text", text).set("style", style);
    }
    /// What goes on, one line a step.
    [[nodiscard]] static FormItem steps(const std::string& name, const std::vector<FormStep>& all = {}) {
        return FormItem("steps", name).set("steps", partsOf(all));
    }
    /// A bar. Its value is from 0 to 1; without one it only says that something goes on.
    [[nodiscard]] static FormItem progress(const std::string& name, const std::string& accessibleName) {
        return FormItem("progress", name).set("accessibleName", accessibleName);
    }
    /// What came of it; empty until `Form::setParagraphs`.
    [[nodiscard]] static FormItem result(const std::string& name) { return {"result", name}; }
    /// A button in the middle of the window.
    [[nodiscard]] static FormItem button(const std::string& name, const std::string& title,
                                         FormHandler pressed) {
        return FormItem("button", name).set("title", title).on(CORVANE_FORM_PRESSED, std::move(pressed));
    }
    /// Items that can be folded away.
    [[nodiscard]] static FormItem group(const std::string& name, const std::string& title) {
        return FormItem("group", name).set("title", title);
    }

    FormItem& value(FormValue to) { return set("value", std::move(to)); }
    FormItem& help(const std::string& text) { return set("help", text); }
    FormItem& placeholder(const std::string& text) { return set("placeholder", text); }
    FormItem& accessibleName(const std::string& text) { return set("accessibleName", text); }
    /// Must be filled in; `complaint` says so, or what else is wrong with it.
    FormItem& required(const std::string& complaint = "") {
        return set("required", true).set("complaint", complaint);
    }
    FormItem& unit(const std::string& text) { return set("unit", text); }
    FormItem& lines(int count) { return set("lines", count); }
    /// Nothing but these can be typed.
    FormItem& characters(const std::string& listed) {
        return set("characters", "listed").set("listedCharacters", listed);
    }
    FormItem& ipv4Address() { return set("characters", "ipv4Address"); }
    FormItem& enterPresses(const std::string& button) { return set("enterPresses", button); }
    FormItem& emptyMessage(const std::string& text) { return set("emptyMessage", text); }
    FormItem& announced() { return set("announced", true); }
    FormItem& hidden() { return set("visible", false); }
    FormItem& disabled() { return set("enabled", false); }
    FormItem& folded() { return set("folded", true); }
    FormItem& set(const std::string& property, FormValue to) {
        part_.set(property, std::move(to));
        return *this;
    }
    FormItem& addChoice(const std::string& choiceValue, const std::string& title) {
        choices_.push_back(FormChoice{choiceValue, title}.part());
        return set("choices", choices_);
    }
    FormItem& rows(const std::vector<FormRow>& all) { return set("rows", partsOf(all)); }
    /// Beside a list.
    FormItem& addButton(const FormButton& button) {
        button.addHandlers(handlers_);
        buttons_.push_back(button.part());
        return set("buttons", buttons_);
    }
    /// Beside a field.
    FormItem& button(const FormButton& beside) {
        beside.addHandlers(handlers_);
        return set("button", std::make_shared<const FormPart>(beside.part()));
    }
    /// Into a group.
    FormItem& add(const FormItem& item) {
        item.addHandlers(handlers_);
        items_.push_back(item.part());
        return set("items", items_);
    }
    FormItem& onChange(FormHandler changed) { return on(CORVANE_FORM_CHANGED, std::move(changed)); }
    /// The field was left after typing, or pasted into.
    FormItem& onEntered(FormHandler entered) { return on(CORVANE_FORM_ENTERED, std::move(entered)); }

    [[nodiscard]] const FormPart& part() const { return part_; }
    void addHandlers(FormHandlers& all) const { all.insert(handlers_.begin(), handlers_.end()); }

private:
    FormItem& on(std::int32_t event, FormHandler handler) {
        handlers_[{event, name_}] = std::move(handler);
        return *this;
    }

    std::string name_;
    FormPart part_;
    FormHandlers handlers_;
    std::vector<FormPart> choices_, buttons_, items_;
};

/// A form as it is to be shown.
class FormWindow {
public:
    FormWindow(const std::string& name, const std::string& title) {
        part_.set("name", name);
        part_.set("title", title);
    }
    /// A message with buttons for answers.
    [[nodiscard]] static FormWindow message(const std::string& name, const std::string& title,
                                            const std::string& text, const std::string& details) {
        FormWindow made(name, title);
        made.part_.set("kind", "message");
        made.part_.set("message", text);
        made.part_.set("details", details);
        return made;
    }
    /// In points; 0 for what the items need.
    FormWindow& size(int width, int height) {
        part_.set("width", width);
        part_.set("height", height);
        return *this;
    }
    FormWindow& add(const FormItem& item) {
        item.addHandlers(handlers_);
        items_.push_back(item.part());
        return *this;
    }
    FormWindow& button(const FormButton& below) {
        below.addHandlers(handlers_);
        buttons_.push_back(below.part());
        return *this;
    }
    /// However it was closed.
    FormWindow& onClosed(FormHandler closed) {
        handlers_[{CORVANE_FORM_CLOSED, ""}] = std::move(closed);
        return *this;
    }

    [[nodiscard]] Object object(const Host& host) const {
        auto whole = part_;
        if (!items_.empty()) whole.set("items", items_);
        whole.set("buttons", buttons_);
        return objectOf(whole, host);
    }
    [[nodiscard]] const FormHandlers& handlers() const { return handlers_; }

private:
    FormPart part_;
    std::vector<FormPart> items_, buttons_;
    FormHandlers handlers_;
};

/// What a failed request says, as a message: what failed, why, and what to try.
[[nodiscard]] inline FormWindow errorMessage(const std::string& title, const CallError& error) {
    auto details = error.reason();
    if (!details.empty() && !error.recovery().empty()) details += "\n\n";
    auto message = FormWindow::message("error", title, error.what(), details + error.recovery());
    return message.button(FormButton("errorOk", "OK", {}, "accept").isDefault());
}

} // namespace corvane::sdk
