#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "Host.h"

/// What the items of forms are made of. All of these are values.
namespace corvane::sdk {

class FormPart;

/// A value of a description: none, true or false, a number, a text, or an array of one of these or of parts.
/// Made from whatever a program has at hand: each type of number keeps its value, each type of text its
/// bytes.
class FormValue {
public:
    using Content =
        std::variant<std::monostate, bool, std::int64_t, double, std::string, std::vector<std::string>,
                     std::vector<std::int64_t>, std::shared_ptr<const std::vector<FormPart>>,
                     std::shared_ptr<const FormPart>>;
    FormValue() = default;
    FormValue(bool truth) : content_(truth) {}
    template <std::integral Number>
    FormValue(Number number) : content_(static_cast<std::int64_t>(number)) {}
    template <std::floating_point Number>
    FormValue(Number number) : content_(static_cast<double>(number)) {}
    template <std::convertible_to<std::string_view> Text>
    FormValue(const Text& text) : content_(std::string(std::string_view(text))) {}
    FormValue(std::nullptr_t) = delete;
    FormValue(std::vector<std::string> texts) : content_(std::move(texts)) {}
    FormValue(std::vector<std::int64_t> numbers) : content_(std::move(numbers)) {}
    FormValue(const std::vector<FormPart>& parts);
    FormValue(std::shared_ptr<const FormPart> part) : content_(std::move(part)) {}
    [[nodiscard]] const Content& content() const { return content_; }

private:
    Content content_;
};

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

inline FormValue::FormValue(const std::vector<FormPart>& parts)
    : content_(std::make_shared<const std::vector<FormPart>>(parts)) {}

inline void FormPart::set(const std::string& key, FormValue to) {
    entries_.insert_or_assign(key, std::move(to));
}

[[nodiscard]] inline Object objectOf(const FormPart& part, const Host& host);

/// The value as an object; none for nothing.
[[nodiscard]] inline Object objectOf(const FormValue& of, const Host& host) {
    const auto& value = of.content();
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
    if (const auto* parts = std::get_if<std::shared_ptr<const std::vector<FormPart>>>(&value))
        return arrayOf(**parts, [&](const FormPart& each) { return objectOf(each, host); });
    if (const auto* part = std::get_if<std::shared_ptr<const FormPart>>(&value))
        return objectOf(**part, host);
    return {};
}

/// A text as data, which the host overwrites when it is no longer needed.
[[nodiscard]] inline Object secretOf(const FormValue& value, const Host& host) {
    const auto* text = std::get_if<std::string>(&value.content());
    if (text == nullptr) return objectOf(value, host);
    return host.data({reinterpret_cast<const std::uint8_t*>(text->data()), text->size()});
}

inline Object objectOf(const FormPart& part, const Host& host) {
    auto dictionary = host.dictionary();
    const auto& entries = part.entries();
    const auto kind = entries.find("kind");
    const auto* kindText =
        kind == entries.end() ? nullptr : std::get_if<std::string>(&kind->second.content());
    const bool isSecret = kindText != nullptr && *kindText == "password";
    for (const auto& [key, value] : entries)
        dictionary.set(key, isSecret && key == "value" ? secretOf(value, host) : objectOf(value, host));
    return dictionary;
}

/// What a choice offers: `value` for the plug-in, `title` for the user.
struct FormChoice {
    std::string value;
    std::string title;
    [[nodiscard]] FormPart part() const {
        FormPart made;
        made.set("value", value);
        made.set("title", title);
        return made;
    }
};

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
    /// Checks the fields and closes the form, unless the handler complains or throws.
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
