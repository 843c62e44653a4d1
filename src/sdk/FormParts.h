#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "Host.h"

/// What the items of forms are made of. All of these are values.
namespace corvane::sdk {

class FormPart;
/// A value of a description; nothing stands for a null.
using FormValue =
    std::variant<std::monostate, bool, std::int64_t, double, std::string, std::vector<std::string>,
                 std::vector<std::int64_t>, std::vector<FormPart>, std::shared_ptr<const FormPart>>;
using FormHandler = std::function<void()>;
/// By event and name.
using FormHandlers = std::map<std::pair<std::int32_t, std::string>, FormHandler>;

/// A dictionary of a description.
class FormPart {
public:
    void set(const std::string& key, FormValue to);
    [[nodiscard]] const std::map<std::string, FormValue>& entries() const { return entries_; }

private:
    std::map<std::string, FormValue> entries_;
};

inline void FormPart::set(const std::string& key, FormValue to) {
    entries_.insert_or_assign(key, std::move(to));
}

[[nodiscard]] inline Object objectOf(const FormPart& part, const Host& host);

/// The value as an object; none for nothing.
[[nodiscard]] inline Object objectOf(const FormValue& value, const Host& host) {
    const auto arrayOf = [&](const auto& elements, auto make) {
        auto array = host.array();
        for (const auto& element : elements)
            array.append(make(element));
        return array;
    };
    if (const auto* truth = std::get_if<bool>(&value)) return host.boolean(*truth);
    if (const auto* number = std::get_if<std::int64_t>(&value)) return host.integer(*number);
    if (const auto* real = std::get_if<double>(&value)) return host.real(*real);
    if (const auto* text = std::get_if<std::string>(&value)) return host.string(*text);
    if (const auto* texts = std::get_if<std::vector<std::string>>(&value)) return host.array(*texts);
    if (const auto* numbers = std::get_if<std::vector<std::int64_t>>(&value))
        return arrayOf(*numbers, [&](std::int64_t each) { return host.integer(each); });
    if (const auto* parts = std::get_if<std::vector<FormPart>>(&value))
        return arrayOf(*parts, [&](const FormPart& each) { return objectOf(each, host); });
    if (const auto* part = std::get_if<std::shared_ptr<const FormPart>>(&value))
        return objectOf(**part, host);
    return {};
}

inline Object objectOf(const FormPart& part, const Host& host) {
    auto dictionary = host.dictionary();
    for (const auto& [key, value] : part.entries())
        dictionary.set(key, objectOf(value, host));
    return dictionary;
}

/// A row of a list.
struct FormRow {
    std::string title;
    std::string detail = {};
    [[nodiscard]] FormPart part() const {
        FormPart made;
        made.set("title", title);
        made.set("detail", detail);
        return made;
    }
};

/// A step of something that goes on. States: "waiting", "running", "done", "failed", "skipped".
struct FormStep {
    std::string title;
    std::string state = "waiting";
    std::string detail = {};
    [[nodiscard]] FormPart part() const {
        FormPart made;
        made.set("title", title);
        made.set("state", state);
        made.set("detail", detail);
        return made;
    }
};

template <typename Parts>
[[nodiscard]] std::vector<FormPart> partsOf(const Parts& parts) {
    std::vector<FormPart> made;
    for (const auto& each : parts)
        made.push_back(each.part());
    return made;
}

class FormButton {
public:
    /// `role`: "action", "accept", "cancel", "destructive" or "copy".
    FormButton(const std::string& name, const std::string& title, FormHandler pressed = {},
               const std::string& role = "action")
        : name_(name), pressed_(std::move(pressed)) {
        part_.set("name", name);
        part_.set("title", title);
        part_.set("role", role);
    }
    /// Checks the fields and closes the form, unless the handler complains.
    [[nodiscard]] static FormButton ok(FormHandler pressed, const std::string& name = "ok") {
        return {name, "OK", std::move(pressed), "accept"};
    }
    [[nodiscard]] static FormButton cancel(const std::string& name = "cancel") {
        return {name, "Cancel", {}, "cancel"};
    }

    FormButton& help(const std::string& text) { return set("help", text); }
    FormButton& isDefault() { return set("default", true); }
    /// How many rows of its list must be selected: "oneRow" or "someRows".
    FormButton& needs(const std::string& rows) { return set("needs", rows); }
    /// Pressed by "activate" (Return, a double click) or "delete" on the rows of its list.
    FormButton& key(const std::string& which) { return set("key", which); }
    /// Only while the fields are in order.
    FormButton& checksFields() { return set("checksFields", true); }
    FormButton& separated() { return set("separated", true); }
    FormButton& disabled() { return set("enabled", false); }
    FormButton& set(const std::string& property, FormValue to) {
        part_.set(property, std::move(to));
        return *this;
    }

    [[nodiscard]] const FormPart& part() const { return part_; }
    void addHandlers(FormHandlers& all) const {
        if (pressed_) all[{CORVANE_FORM_PRESSED, name_}] = pressed_;
    }

private:
    std::string name_;
    FormPart part_;
    FormHandler pressed_;
};

} // namespace corvane::sdk
