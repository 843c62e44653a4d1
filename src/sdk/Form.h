#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "Errors.h"
#include "FormItems.h"
#include "Guard.h"
#include "Host.h"

namespace corvane::sdk {

/// A form on the screen. It is closed with this object, so keep it where the plug-in lives; closing it takes
/// its handlers along. May be replaced or destroyed in one of its own handlers. Operations on a form that was
/// never opened do nothing; names that the form doesn't have, and reading a field as what it isn't, throw
/// `CallError`. A handler that throws is reported to the user, and its form stays open. Main thread.
class Form {
public:
    Form() = default;
    /// Shows the form. Throws `CallError` when the description can't be shown, or the host is too old.
    [[nodiscard]] Form(const Host& host, const FormWindow& window)
        : state_(std::make_shared<State>(host, window)) {
        const CorvaneFormListener listener{sizeof listener, state_.get(), &State::happened};
        state_->form = opened(host, window, &listener);
        state_->forms = host.table().forms;
    }
    Form(Form&&) = default;
    Form& operator=(Form&& other) noexcept {
        const Form old(std::move(*this));
        state_ = std::move(other.state_);
        return *this;
    }
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;
    ~Form() { close(); }

    /// Shows a form whose buttons have nothing to do but to close it, such as a message.
    static void show(const Host& host, const FormWindow& window) { (void)opened(host, window, nullptr); }

    [[nodiscard]] bool isOpen() const { return state_ && table().isOpen(object()) != 0; }
    void raise() const {
        if (state_) table().raise(object());
    }
    /// Without a word to the handlers.
    void close() {
        if (const auto state = std::move(state_); state && state->forms != nullptr)
            state->forms->close(state->form.get());
    }

    // Values of fields
    [[nodiscard]] std::string text(const std::string& item) const {
        return value(item, CORVANE_STRING).text();
    }
    /// None when the field is empty.
    [[nodiscard]] std::optional<std::int64_t> number(const std::string& item) const {
        const auto found = value(item, CORVANE_INTEGER);
        return found ? std::optional(found.integer()) : std::nullopt;
    }
    [[nodiscard]] bool isChecked(const std::string& item) const {
        return value(item, CORVANE_BOOLEAN).boolean();
    }
    /// What a list has selected, rising.
    [[nodiscard]] std::vector<std::size_t> selection(const std::string& item) const {
        const auto rows = value(item, CORVANE_ARRAY);
        std::vector<std::size_t> all;
        for (std::uint64_t i = 0; i < rows.count(); ++i)
            all.push_back(static_cast<std::size_t>(rows.at(i).integer()));
        return all;
    }
    /// A password. Overwrite it after use.
    [[nodiscard]] std::string secret(const std::string& item) const {
        const auto found = value(item, CORVANE_DATA);
        const auto bytes = found.bytes();
        return {bytes.begin(), bytes.end()};
    }

    // Changes; none of them is reported to a handler
    /// `key` as in descriptions: "placeholder", "minimum" and so on.
    void set(const std::string& item, const std::string& key, const FormValue& to) const {
        if (state_) put(item, key, objectOf(to, state_->host));
    }
    void setValue(const std::string& item, const FormValue& to) const { set(item, "value", to); }
    void setText(const std::string& item, const std::string& to) const { set(item, "text", to); }
    void setVisible(const std::string& item, bool visible) const { set(item, "visible", visible); }
    void setEnabled(const std::string& item, bool enabled) const { set(item, "enabled", enabled); }
    void setTitle(const std::string& item, const std::string& to) const { set(item, "title", to); }
    void setRows(const std::string& item, const std::vector<FormRow>& rows) const {
        set(item, "rows", partsOf(rows));
    }
    void setChoices(const std::string& item, const std::vector<FormChoice>& choices) const {
        set(item, "choices", partsOf(choices));
    }
    void setSecret(const std::string& item, std::span<const std::uint8_t> secret) const {
        if (state_) put(item, "value", state_->host.data(secret));
    }
    void setSteps(const std::string& item, const std::vector<FormStep>& steps) const {
        set(item, "steps", partsOf(steps));
    }
    void setParagraphs(const std::string& item, const std::vector<std::string>& texts) const {
        set(item, "paragraphs", texts);
    }
    void select(const std::string& item, const std::vector<std::size_t>& rows) const {
        set(item, "value", std::vector<std::int64_t>(rows.begin(), rows.end()));
    }
    /// Says what is wrong with a field, or with everything where `item` is "", and gives it the keyboard.
    /// While a button that accepts is being pressed, the form stays open for it.
    void complain(const std::string& item, const std::string& about) const {
        if (!state_) return;
        checked([&](CorvaneObject** error) {
            table().complain(object(), item.empty() ? nullptr : item.c_str(), about.c_str(), error);
        });
    }
    /// Offers texts to choose from for a field.
    void suggest(const std::string& item, const std::vector<std::string>& texts) const {
        if (!state_) return;
        const auto offered = state_->host.array(texts);
        checked(
            [&](CorvaneObject** error) { table().suggest(object(), item.c_str(), offered.get(), error); });
    }

private:
    struct State : std::enable_shared_from_this<State> {
        State(const Host& itsHost, const FormWindow& window) : host(itsHost), handlers(window.handlers()) {}
        static void happened(void* self, std::int32_t event, const char* item) {
            const auto state = static_cast<State*>(self)->shared_from_this(); // a handler may drop the form
            const auto handler = state->handlers.find({event, item});
            if (handler == state->handlers.end()) return;
            const bool isDone = guard(&state->host.table(), "a form", false,
                                      [&] { return static_cast<void>(handler->second()), true; });
            if (!isDone && event == CORVANE_FORM_PRESSED) state->keepOpen();
        }
        /// What the user has entered isn't thrown away for a mistake of the plug-in's.
        void keepOpen() const {
            if (form)
                host.table().forms->complain(form.get(), nullptr,
                                             "The plug-in failed when this button was pressed.", nullptr);
        }
        Host host;
        FormHandlers handlers;
        Object form;
        const CorvaneForms* forms = nullptr; ///< stays valid when the plug-in object is gone
    };

    static Object opened(const Host& host, const FormWindow& window, const CorvaneFormListener* listener) {
        if (!host.offers(&CorvaneHost::forms))
            throw CallError("This version of Corvane can’t show the plug-in’s window.", "",
                            "Install a newer version of Corvane.", CORVANE_ERROR_HOST);
        CorvaneObject* error = nullptr;
        const auto description = window.object(host);
        const auto& table = host.table();
        Object form(*table.objects, table.forms->open(table.context, description.get(), listener, &error));
        if (error != nullptr) throw CallError(Object(*table.objects, error));
        return form;
    }
    [[nodiscard]] const CorvaneForms& table() const { return *state_->host.table().forms; }
    [[nodiscard]] CorvaneObject* object() const { return state_->form.get(); }
    template <typename Call>
    void checked(Call call) const {
        CorvaneObject* error = nullptr;
        call(&error);
        if (error != nullptr) throw CallError(Object(*state_->host.table().objects, error));
    }
    void put(const std::string& item, const std::string& key, const Object& to) const {
        checked([&](CorvaneObject** error) {
            table().set(object(), item.c_str(), key.c_str(), to.get(), error);
        });
    }
    /// None where the field has none.
    [[nodiscard]] Object value(const std::string& item, std::int32_t kind) const {
        if (!state_) return {};
        CorvaneObject* taken = nullptr;
        checked([&](CorvaneObject** error) { taken = table().value(object(), item.c_str(), error); });
        Object found(*state_->host.table().objects, taken);
        if (found && found.kind() != kind)
            throw CallError("The form can't do that.",
                            "The item \"" + item + "\" holds a value of another kind.", "",
                            CORVANE_ERROR_PARAMETER);
        return found;
    }

    std::shared_ptr<State> state_;
};

} // namespace corvane::sdk
