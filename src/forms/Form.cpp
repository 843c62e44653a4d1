#include "forms/Form.h"

#include <algorithm>

#include "formatters/IPv4AddressFormatter.h"
#include "formatters/NumberEnforcer.h"

namespace corvane::forms {
namespace {

[[noreturn]] void refuseName(const std::string& name) {
    throw FormError("the form has no item \"" + name + "\"");
}

std::string trimmed(const std::string& text) {
    const auto first = text.find_first_not_of(" \t\r\n");
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

bool isEmpty(const Item& item) {
    if (const auto data = item.value.as<util::Data>(); !data.isNull()) return data.bytes().empty();
    if (const auto text = item.value.as<util::String>(); !text.isNull()) return trimmed(text.text()).empty();
    return item.value.isNull();
}

/// "Port" for "&Port:".
std::string plainLabel(const Item& item) {
    auto label = withoutMnemonic(item.label.empty() ? item.accessibleName : item.label);
    if (label.ends_with(':')) label.pop_back();
    return label.empty() ? item.name : label;
}

std::string rangeOf(const Item& item) {
    if (item.minimum && item.maximum)
        return " from " + std::to_string(*item.minimum) + " to " + std::to_string(*item.maximum);
    if (item.minimum) return " of at least " + std::to_string(*item.minimum);
    return item.maximum ? " of at most " + std::to_string(*item.maximum) : "";
}

bool isOutOfBounds(const Item& item) {
    const auto number = item.value.as<util::Number>();
    if (item.kind != Item::Kind::number || number.isNull()) return false;
    return (item.minimum && number.integerValue() < *item.minimum) ||
           (item.maximum && number.integerValue() > *item.maximum);
}

/// What is wrong with a field, "" for nothing.
std::string problemOf(const Item& item) {
    const bool isWrong = item.isTextUnacceptable || isOutOfBounds(item) || (item.isRequired && isEmpty(item));
    if (!isWrong) return "";
    if (!item.complaint.empty()) return item.complaint;
    if (item.kind == Item::Kind::number) return plainLabel(item) + ": enter a number" + rangeOf(item) + ".";
    return plainLabel(item) + ": fill in this field.";
}

const char* wordFor(Step::State state) {
    switch (state) {
    case Step::State::running:
        return "in progress";
    case Step::State::done:
        return "succeeded";
    case Step::State::failed:
        return "failed";
    case Step::State::skipped:
        return "skipped";
    case Step::State::waiting:
        break;
    }
    return "not yet tried";
}

void addReport(const std::vector<Item>& items, std::string& text) {
    for (const auto& item : items) {
        for (const auto& step : item.steps)
            text +=
                "\n" + trimmed(withoutMnemonic(step.title) + ": " + wordFor(step.state) + ". " + step.detail);
        for (const auto& paragraph : item.paragraphs)
            text += "\n" + paragraph;
        addReport(item.items, text);
    }
}

Button* buttonAmong(std::vector<Button>& buttons, const std::string& name) {
    const auto found = std::ranges::find(buttons, name, &Button::name);
    return found == buttons.end() ? nullptr : &*found;
}

Button* buttonOf(std::vector<Item>& items, const std::string& name) {
    for (auto& item : items) {
        if (item.button && item.button->name == name) return &*item.button;
        if (auto* beside = buttonAmong(item.buttons, name)) return beside;
        if (auto* inside = buttonOf(item.items, name)) return inside;
    }
    return nullptr;
}

/// The list that has the button beside it.
const Item* listWith(const std::vector<Item>& items, const Button& button) {
    for (const auto& item : items) {
        for (const auto& each : item.buttons)
            if (&each == &button) return &item;
        if (const auto* inside = listWith(item.items, button)) return inside;
    }
    return nullptr;
}

} // namespace

std::string withoutMnemonic(const std::string& title) {
    std::string plain;
    for (std::size_t i = 0; i < title.size(); ++i) {
        if (title[i] == '&' && i + 1 < title.size()) ++i; // "&&" is one of them
        plain += title[i];
    }
    return plain;
}

Form::Form(FormDescription description, FieldTools tools, Listener listener)
    : description_(std::move(description)), tools_(tools), listener_(std::move(listener)) {}

Form::~Form() { close(); }

void Form::open(FormPresenter& presenter) {
    window_ = presenter.present(*this);
    window_->open();
}

void Form::openAndHold(FormPresenter& presenter) {
    open(presenter);
    itself_ = shared_from_this();
}

void Form::raise() {
    if (window_) window_->raise();
}

void Form::close() {
    const auto held = std::move(itself_); // may be the last
    if (const auto window = std::move(window_)) window->close();
}

Item* Form::find(std::vector<Item>& items, const std::string& name) const {
    for (auto& item : items) {
        if (item.name == name) return &item;
        if (auto* inside = find(item.items, name)) return inside;
    }
    return nullptr;
}

Item* Form::itemNamed(const std::string& name) {
    return name.empty() ? nullptr : find(description_.items, name);
}

Item& Form::requiredItem(const std::string& name) {
    auto* item = itemNamed(name);
    if (item == nullptr) refuseName(name);
    return *item;
}

Button* Form::buttonNamed(const std::string& name) {
    if (name.empty()) return nullptr;
    if (auto* below = buttonAmong(description_.buttons, name)) return below;
    return buttonOf(description_.items, name);
}

const Item* Form::listOf(const Button& button) const { return listWith(description_.items, button); }

bool Form::canPress(const Button& button) const {
    if (!button.isEnabled) return false;
    if (button.needs == Button::Needs::nothing) return true;
    const auto* list = listOf(button);
    const auto selected = list == nullptr ? 0 : list->value.as<util::Array>().count();
    return button.needs == Button::Needs::oneRow ? selected == 1 : selected > 0;
}

util::Value Form::value(const std::string& name) const {
    auto* item = const_cast<Form*>(this)->itemNamed(name);
    if (item == nullptr) refuseName(name);
    return item->value;
}

void Form::set(const std::string& name, const std::string& key, const util::Value& value) {
    if (name.empty()) {
        if (key != "title") throw FormError("of the form itself only the \"title\" can be changed");
        description_.title = value.as<util::String>().text();
        if (window_) window_->titleChanged();
        return;
    }
    if (auto* button = buttonNamed(name)) {
        setProperty(*button, key, value);
        if (window_) window_->buttonsChanged();
        return;
    }
    auto& item = requiredItem(name);
    setProperty(item, key, value);
    if (window_ == nullptr) return;
    window_->itemChanged(item);
    if (item.kind == Item::Kind::list) window_->buttonsChanged();
}

void Form::complain(const std::string& name, const std::string& text) {
    if (!name.empty()) (void)requiredItem(name);
    showProblem(name, text);
}

void Form::showProblem(const std::string& name, const std::string& text) {
    hasProblem_ = !text.empty();
    complainedAbout_ = name;
    if (window_) window_->showProblem(name, text);
}

void Form::suggest(const std::string& name, const std::vector<std::string>& values) {
    const auto& item = requiredItem(name);
    if (window_ && !values.empty()) window_->suggest(item, values);
}

std::shared_ptr<toolkit::Formatter> Form::formatterOf(const Item& item) const {
    if (item.kind == Item::Kind::number) {
        auto formatter = std::make_shared<formatters::NumberEnforcer>(tools_.strings);
        if (item.minimum) formatter->setMinimum(util::Decimal::fromText(std::to_string(*item.minimum)));
        if (item.maximum) formatter->setMaximum(util::Decimal::fromText(std::to_string(*item.maximum)));
        return formatter;
    }
    if (item.characters == Item::Characters::ipv4Address)
        return std::make_shared<formatters::IPv4AddressFormatter>(tools_.beep, tools_.strings);
    if (item.characters == Item::Characters::any) return nullptr;
    auto formatter = std::make_shared<formatters::ValidCharacterFormatter>(tools_.beep);
    formatter->setValidCharacterSet(
        std::make_shared<const util::CharacterSet>(util::CharacterSet::charactersOf(item.listedCharacters)));
    return formatter;
}

std::string Form::textOf(const Item& item) const {
    if (const auto data = item.value.as<util::Data>(); !data.isNull())
        return util::textFromBytes(data.bytes());
    if (const auto number = item.value.as<util::Number>(); !number.isNull())
        return std::to_string(number.integerValue());
    return item.value.as<util::String>().text();
}

void Form::tell(Event event, const std::string& name) {
    if (listener_) listener_(event, name);
}

void Form::change(Item& item, const util::Value& value) {
    const auto self = shared_from_this();
    const auto name = item.name;
    if (item.value == value && !item.isTextUnacceptable) return;
    item.value = value;
    forgetProblemOf(name);
    if (item.kind == Item::Kind::list && window_) window_->buttonsChanged();
    tell(Event::changed, name);
}

void Form::userTyped(const std::string& name, const std::string& text) {
    auto& item = requiredItem(name);
    if (item.kind == Item::Kind::password) return change(item, util::Data(util::bytesFromText(text)));
    if (item.kind != Item::Kind::number) return change(item, text);
    util::Value number;
    const bool isGood = formatterOf(item)->getObjectValueForString(&number, trimmed(text), nullptr);
    const bool wasGood = !item.isTextUnacceptable;
    item.isTextUnacceptable = !isGood;
    if (isGood || wasGood) forgetProblemOf(name);
    const auto read = number.as<util::Number>();
    const auto value = read.isNull() || !isGood ? util::Value() : util::Value(read.integerValue());
    item.value == value ? void() : change(item, value);
}

void Form::userChecked(const std::string& name, bool isChecked) { change(requiredItem(name), isChecked); }

void Form::userChose(const std::string& name, const std::string& value) { change(requiredItem(name), value); }

void Form::userSelected(const std::string& name, const std::vector<std::int64_t>& rows) {
    util::ValueList values(rows.begin(), rows.end());
    change(requiredItem(name), util::Array(std::move(values)));
}

void Form::userFolded(const std::string& name, bool isFolded) {
    if (auto* group = itemNamed(name)) group->isFolded = isFolded;
}

void Form::userEntered(const std::string& name) {
    const auto self = shared_from_this();
    tell(Event::entered, name);
}

void Form::forgetProblemOf(const std::string& name) {
    if (hasProblem_ && complainedAbout_ == name) showProblem(name, "");
}

const Item* Form::firstWrong(const std::vector<Item>& items) const {
    for (const auto& item : items) {
        if (!item.isVisible || !item.isEnabled) continue;
        if (!problemOf(item).empty()) return &item;
        if (const auto* inside = firstWrong(item.items)) return inside;
    }
    return nullptr;
}

bool Form::fieldsAreInOrder() {
    if (hasProblem_) showProblem(complainedAbout_, "");
    const auto* wrong = firstWrong(description_.items);
    if (wrong != nullptr) showProblem(wrong->name, problemOf(*wrong));
    return wrong == nullptr;
}

void Form::userPressed(const std::string& name) {
    const auto self = shared_from_this();
    const auto* button = buttonNamed(name);
    const auto* item = button == nullptr ? itemNamed(name) : nullptr;
    if (button == nullptr && (item == nullptr || !item->isEnabled)) return;
    if (button != nullptr && !canPress(*button)) return;
    const auto role = button == nullptr ? item->role : button->role;
    const bool checks = role == Button::Role::accept || (button != nullptr && button->checksFields);
    if (checks && !fieldsAreInOrder()) return;
    tell(Event::pressed, name);
    // A message is off the screen once it is answered, and nothing keeps a cancelled form open.
    const bool closesAnyhow = role == Button::Role::cancel || description_.isMessage;
    if (closesAnyhow || (role == Button::Role::accept && !hasProblem_)) userDismissed();
}

bool Form::copiesReport(const std::string& name) {
    if (const auto* button = buttonNamed(name)) return button->role == Button::Role::copy;
    const auto* item = itemNamed(name);
    return item != nullptr && item->role == Button::Role::copy;
}

void Form::userDismissed() {
    if (window_ == nullptr) return;
    const auto self = shared_from_this();
    close();
    tell(Event::closed, "");
}

void Form::windowWentAway() {
    const auto held = std::move(itself_); // may be the last
    window_.reset();
}

std::string Form::report() const {
    auto text = description_.title;
    addReport(description_.items, text);
    return text;
}

} // namespace corvane::forms
