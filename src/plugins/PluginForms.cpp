#include "plugins/PluginForms.h"

#include "plugins/HostObject.h"
#include "plugins/PluginHostTable.h"

namespace corvane::plugins {
namespace {

int32_t codeOf(forms::Form::Event event) {
    switch (event) {
    case forms::Form::Event::changed:
        return CORVANE_FORM_CHANGED;
    case forms::Form::Event::entered:
        return CORVANE_FORM_ENTERED;
    case forms::Form::Event::pressed:
        return CORVANE_FORM_PRESSED;
    case forms::Form::Event::closed:
        break;
    }
    return CORVANE_FORM_CLOSED;
}

/// As much of the plug-in's table as the host knows.
CorvaneFormListener copyOf(const CorvaneFormListener* listener) {
    CorvaneFormListener copy{};
    if (listener == nullptr || !CORVANE_OFFERS(CorvaneFormListener, listener, happened)) return copy;
    copy.self = listener->self;
    copy.happened = listener->happened;
    return copy;
}

forms::Form* formOf(const CorvaneObject* object) {
    const auto* form = contentOf<std::shared_ptr<forms::Form>>(object);
    return form == nullptr ? nullptr : form->get();
}

std::string textOf(const char* text) { return receivedText::repaired(text); }

/// A reason as people read it.
std::string sentence(std::string reason) {
    if (!reason.empty() && reason.front() >= 'a' && reason.front() <= 'z') reason.front() -= 'a' - 'A';
    return reason + ".";
}

/// Runs `body` on a form; a mistake of the plug-in's is reported through `place`.
template <typename Result, typename Body>
Result onForm(Result otherwise, const CorvaneObject* object, CorvaneObject** place, Body body) noexcept {
    return shielded<Result>(otherwise, place, [&]() -> Result {
        auto* form = formOf(object);
        try {
            if (form != nullptr) return body(*form);
            report({CORVANE_ERROR_PARAMETER, "What the plug-in passed isn't a form.", "", ""}, place);
        } catch (const forms::FormError& error) {
            report({CORVANE_ERROR_PARAMETER, "The form can't do that.", sentence(error.what()), ""}, place);
        }
        return otherwise;
    });
}

template <typename Body>
int8_t change(const CorvaneObject* object, CorvaneObject** place, Body body) noexcept {
    return onForm<int8_t>(0, object, place, [&](forms::Form& form) { return body(form), int8_t{1}; });
}

CorvaneObject* openForm(void* context, const CorvaneObject* description, const CorvaneFormListener* listener,
                        CorvaneObject** place) {
    return shielded<CorvaneObject*>(nullptr, place, [&]() -> CorvaneObject* {
        try {
            auto& forms = static_cast<PluginHostTable*>(context)->forms();
            return newReference(forms.open(valueOf(description).as<util::Dictionary>(), listener));
        } catch (const forms::FormError& error) {
            report({CORVANE_ERROR_PARAMETER, "The plug-in's window can't be shown.",
                    std::string("In its description, ") + error.what() + ".",
                    "Ask the plug-in's developer, or install another build."},
                   place);
            return nullptr;
        }
    });
}

void fillChanges(CorvaneForms& table) {
    table.set = [](CorvaneObject* object, const char* item, const char* key, const CorvaneObject* value,
                   CorvaneObject** place) {
        return change(object, place,
                      [&](forms::Form& form) { form.set(textOf(item), textOf(key), valueOf(value)); });
    };
    table.complain = [](CorvaneObject* object, const char* item, const char* text, CorvaneObject** place) {
        return change(object, place, [&](forms::Form& form) { form.complain(textOf(item), textOf(text)); });
    };
    table.suggest = [](CorvaneObject* object, const char* item, const CorvaneObject* texts,
                       CorvaneObject** place) {
        return change(object, place, [&](forms::Form& form) {
            form.suggest(textOf(item), valueOf(texts).as<util::Array>().texts());
        });
    };
}

} // namespace

PluginForms::~PluginForms() {
    for (const auto& each : open_)
        if (const auto form = each.lock()) form->close();
}

std::shared_ptr<forms::Form> PluginForms::open(const util::Dictionary& description,
                                               const CorvaneFormListener* listener) {
    std::erase_if(open_, [](const auto& form) { return form.expired(); });
    const auto heard = copyOf(listener);
    const auto tell = [callbacks = callbacks_, heard](forms::Form::Event event, const std::string& name) {
        if (heard.happened == nullptr) return;
        callbacks.run("a form", [&] { heard.happened(heard.self, codeOf(event), name.c_str()); });
    };
    const auto surroundings = callbacks_.host().surroundings();
    auto form = std::make_shared<forms::Form>(forms::readForm(description), surroundings.fieldTools, tell);
    form->openAndHold(surroundings.formPresenter);
    open_.push_back(form);
    return form;
}

const CorvaneForms& hostFormsTable() {
    static const CorvaneForms table = [] {
        CorvaneForms made{};
        made.size = sizeof made;
        made.open = openForm;
        made.isOpen = [](const CorvaneObject* object) {
            const auto* form = formOf(object);
            return int8_t{form != nullptr && form->isOpen()};
        };
        made.raise = [](CorvaneObject* object) {
            change(object, nullptr, [](forms::Form& form) { form.raise(); });
        };
        made.close = [](CorvaneObject* object) {
            change(object, nullptr, [](forms::Form& form) { form.close(); });
        };
        made.value = [](const CorvaneObject* object, const char* item, CorvaneObject** place) {
            return onForm<CorvaneObject*>(nullptr, object, place, [&](forms::Form& form) {
                return newReference(form.value(textOf(item)));
            });
        };
        fillChanges(made);
        return made;
    }();
    return table;
}

} // namespace corvane::plugins
