#include "forms/FormReader.h"

#include <algorithm>
#include <functional>
#include <map>
#include <set>

namespace corvane::forms {
namespace {

template <typename Target>
using Setter = std::function<void(Target&, const util::Value&)>;
template <typename Target>
using Setters = std::map<std::string, Setter<Target>, std::less<>>;
template <typename Enum>
using Words = std::vector<std::pair<std::string, Enum>>;

const Words<Button::Role>& roles() {
    static const Words<Button::Role> words{{"action", Button::Role::action},
                                           {"accept", Button::Role::accept},
                                           {"cancel", Button::Role::cancel},
                                           {"destructive", Button::Role::destructive},
                                           {"copy", Button::Role::copy}};
    return words;
}
const Words<Button::Needs> needsWords{{"nothing", Button::Needs::nothing},
                                      {"oneRow", Button::Needs::oneRow},
                                      {"someRows", Button::Needs::someRows}};
const Words<Button::Key> keyWords{
    {"none", Button::Key::none}, {"activate", Button::Key::activate}, {"delete", Button::Key::remove}};
const Words<Item::Kind> kindWords{
    {"paragraph", Item::Kind::paragraph}, {"text", Item::Kind::text},     {"number", Item::Kind::number},
    {"password", Item::Kind::password},   {"check", Item::Kind::check},   {"choice", Item::Kind::choice},
    {"file", Item::Kind::file},           {"list", Item::Kind::list},     {"steps", Item::Kind::steps},
    {"progress", Item::Kind::progress},   {"result", Item::Kind::result}, {"group", Item::Kind::group},
    {"button", Item::Kind::button}};
const Words<Item::Style> styleWords{
    {"plain", Item::Style::plain}, {"hint", Item::Style::hint}, {"warning", Item::Style::warning}};
const Words<Item::Characters> charactersWords{{"any", Item::Characters::any},
                                              {"listed", Item::Characters::listed},
                                              {"ipv4Address", Item::Characters::ipv4Address}};
const Words<Step::State> stateWords{{"waiting", Step::State::waiting},
                                    {"running", Step::State::running},
                                    {"done", Step::State::done},
                                    {"failed", Step::State::failed},
                                    {"skipped", Step::State::skipped}};

[[noreturn]] void refuse(const std::string& reason) { throw FormError(reason); }

std::string textFrom(const util::Value& value) {
    if (value.isNull()) return "";
    const auto text = value.as<util::String>();
    if (text.isNull()) refuse("it isn't a string");
    if (text.text().size() > longestText)
        refuse("it is longer than " + std::to_string(longestText) + " bytes");
    return text.text();
}

bool truthFrom(const util::Value& value) {
    const auto number = value.as<util::Number>();
    if (number.isNull()) refuse("it is neither true nor false");
    return number.booleanValue();
}

std::int64_t integerFrom(const util::Value& value) {
    const auto number = value.as<util::Number>();
    if (number.isNull() || number.isBoolean() || number.isFloating()) refuse("it isn't a whole number");
    return number.integerValue();
}

std::int64_t integerWithin(const util::Value& value, std::int64_t least, std::int64_t most) {
    const auto number = integerFrom(value);
    if (number < least || number > most)
        refuse("it isn't from " + std::to_string(least) + " to " + std::to_string(most));
    return number;
}

template <typename Enum>
Enum wordFrom(const util::Value& value, const Words<Enum>& words) {
    const auto text = textFrom(value);
    std::string known;
    for (const auto& [word, meaning] : words) {
        if (word == text) return meaning;
        known += (known.empty() ? "" : ", ") + word;
    }
    refuse("\"" + text + "\" is none of " + known);
}

/// Runs `body`; what it refuses is said to be about `part`.
template <typename Body>
void about(const std::string& part, Body body) {
    try {
        body();
    } catch (const FormError& error) {
        refuse(part + ": " + error.what());
    }
}

template <typename Element, typename Read>
std::vector<Element> listFrom(const util::Value& value, std::size_t most, Read read) {
    const auto array = value.as<util::Array>();
    if (array.isNull() && !value.isNull()) refuse("it isn't an array");
    if (array.count() > most) refuse("it has more than " + std::to_string(most) + " elements");
    std::vector<Element> list;
    list.reserve(array.count());
    for (std::size_t i = 0; i < array.count(); ++i)
        about("element " + std::to_string(i + 1), [&] { list.push_back(read(array.at(i))); });
    return list;
}

template <typename Target>
Target readInto(Target target, const util::Value& value, const Setters<Target>& setters) {
    const auto dictionary = value.as<util::Dictionary>();
    if (dictionary.isNull()) refuse("it isn't a dictionary");
    for (const auto& key : dictionary.keys()) {
        const auto setter = setters.find(key);
        if (setter == setters.end()) refuse("there is no property \"" + key + "\"");
        about("\"" + key + "\"", [&] { setter->second(target, dictionary.valueForKey(key)); });
    }
    return target;
}

template <typename Target>
Setter<Target> text(std::string Target::*field) {
    return [field](Target& target, const util::Value& value) { target.*field = textFrom(value); };
}
template <typename Target>
Setter<Target> truth(bool Target::*field) {
    return [field](Target& target, const util::Value& value) {
        target.*field = value.isNull() ? Target().*field : truthFrom(value);
    };
}
template <typename Target, typename Enum>
Setter<Target> word(Enum Target::*field, const Words<Enum>& words) {
    return [field, &words](Target& target, const util::Value& value) {
        target.*field = value.isNull() ? Target().*field : wordFrom(value, words);
    };
}
template <typename Target>
Setter<Target> points(int Target::*field) {
    return [field](Target& target, const util::Value& value) {
        target.*field = static_cast<int>(integerWithin(value, 0, 4000));
    };
}
template <typename Target, typename Element>
Setter<Target> elements(std::vector<Element> Target::*field, std::size_t most, const Setters<Element>& each) {
    return [field, most, &each](Target& target, const util::Value& value) {
        target.*field = listFrom<Element>(
            value, most, [&](const util::Value& element) { return readInto(Element(), element, each); });
    };
}

const Setters<Button>& buttonSetters() {
    static const Setters<Button> setters{{"name", text(&Button::name)},
                                         {"title", text(&Button::title)},
                                         {"help", text(&Button::help)},
                                         {"role", word(&Button::role, roles())},
                                         {"needs", word(&Button::needs, needsWords)},
                                         {"key", word(&Button::key, keyWords)},
                                         {"checksFields", truth(&Button::checksFields)},
                                         {"default", truth(&Button::isDefault)},
                                         {"enabled", truth(&Button::isEnabled)},
                                         {"separated", truth(&Button::isSeparated)}};
    return setters;
}

const Setters<Choice>& choiceSetters() {
    static const Setters<Choice> setters{{"value", text(&Choice::value)}, {"title", text(&Choice::title)}};
    return setters;
}

const Setters<Row>& rowSetters() {
    static const Setters<Row> setters{{"title", text(&Row::title)}, {"detail", text(&Row::detail)}};
    return setters;
}

const Setters<Step>& stepSetters() {
    static const Setters<Step> setters{{"title", text(&Step::title)},
                                       {"state", word(&Step::state, stateWords)},
                                       {"detail", text(&Step::detail)}};
    return setters;
}

const Setters<Item>& itemSetters();

/// A value of the kind that the item's kind has.
void setValue(Item& item, const util::Value& value) {
    switch (item.kind) {
    case Item::Kind::number:
        item.isTextUnacceptable = false;
        item.value = value.isNull() ? value : util::Value(integerFrom(value));
        return;
    case Item::Kind::check:
        item.value = !value.isNull() && truthFrom(value);
        return;
    case Item::Kind::progress: // between 0 and 1; none while nobody knows
        if (const auto part = value.as<util::Number>(); !value.isNull()) {
            if (part.isNull()) refuse("it isn't a number");
            if (!(part.doubleValue() >= 0 && part.doubleValue() <= 1)) refuse("it isn't from 0 to 1");
        }
        item.value = value;
        return;
    case Item::Kind::list: {
        const auto rows = listFrom<std::int64_t>(value, mostRows, [&](const util::Value& row) {
            return integerWithin(row, 0, static_cast<std::int64_t>(item.rows.size()) - 1);
        });
        util::ValueList sorted;
        for (const auto row : std::set<std::int64_t>(rows.begin(), rows.end()))
            sorted.emplace_back(row);
        item.value = util::Array(std::move(sorted));
        return;
    }
    case Item::Kind::password: // data, which is overwritten when it is no longer needed
        item.value =
            value.as<util::Data>().isNull() ? util::Data(util::bytesFromText(textFrom(value))) : value;
        return;
    case Item::Kind::text:
    case Item::Kind::choice:
    case Item::Kind::file:
        item.value = textFrom(value);
        return;
    default:
        refuse("this kind of item has no value");
    }
}

void setRows(Item& item, const util::Value& value) {
    item.rows = listFrom<Row>(value, mostRows,
                              [](const util::Value& each) { return readInto(Row(), each, rowSetters()); });
    item.value = util::Array(util::ValueList());
}

/// What says nothing about other kinds of items than these.
const std::multimap<std::string, Item::Kind, std::less<>>& kindsOfKeys() {
    using Kind = Item::Kind;
    static const std::multimap<std::string, Kind, std::less<>> kinds{
        {"lines", Kind::text},        {"minimum", Kind::number},  {"maximum", Kind::number},
        {"unit", Kind::number},       {"choices", Kind::choice},  {"folder", Kind::file},
        {"fileKinds", Kind::file},    {"browsable", Kind::file},  {"rows", Kind::list},
        {"emptyMessage", Kind::list}, {"buttons", Kind::list},    {"steps", Kind::steps},
        {"paragraphs", Kind::result}, {"items", Kind::group},     {"folded", Kind::group},
        {"text", Kind::paragraph},    {"style", Kind::paragraph}, {"announced", Kind::paragraph},
        {"title", Kind::check},       {"title", Kind::group},     {"title", Kind::button},
        {"role", Kind::button}};
    return kinds;
}

std::string wordOf(Item::Kind kind) {
    return std::ranges::find(kindWords, kind, &std::pair<std::string, Item::Kind>::second)->first;
}

/// A key that another kind of item has would be ignored without a word.
void refuseKeyOfAnotherKind(const Item& item, const std::string& key) {
    const auto [first, last] = kindsOfKeys().equal_range(key);
    std::string kinds;
    for (auto each = first; each != last; ++each) {
        if (each->second == item.kind) return;
        kinds += (kinds.empty() ? "" : " or ") + wordOf(each->second);
    }
    if (!kinds.empty())
        refuse("the property \"" + key + "\" belongs to the kind " + kinds + ", not to " + wordOf(item.kind));
}

/// What the fields of a form show before anything is entered.
util::Value emptyValueOf(const Item& item) {
    switch (item.kind) {
    case Item::Kind::text:
    case Item::Kind::file:
        return "";
    case Item::Kind::password:
        return util::Data(util::Bytes());
    case Item::Kind::check:
        return false;
    case Item::Kind::list:
        return util::Array(util::ValueList());
    case Item::Kind::choice: // the first one is shown
        return item.choices.empty() ? "" : item.choices.front().value;
    default:
        return {};
    }
}

bool isUnanswered(const Item& item) {
    if (item.value.isNull() || item.kind != Item::Kind::choice) return item.value.isNull();
    const auto value = item.value.as<util::String>().text();
    return value.empty() && std::ranges::find(item.choices, value, &Choice::value) == item.choices.end();
}

/// An item's kind comes first: the meaning of its value depends on it.
Item readItem(const util::Value& value) {
    const auto dictionary = value.as<util::Dictionary>();
    if (dictionary.isNull()) refuse("it isn't a dictionary");
    Item item;
    about("\"kind\"", [&] { item.kind = wordFrom(dictionary.valueForKey("kind"), kindWords); });
    auto rest = util::Dictionary(dictionary.mutableCopy().object());
    rest.remove("kind");
    const auto chosen = rest.valueForKey("value"); // of rows that must be there first
    rest.remove("value");
    for (const auto& key : rest.keys())
        refuseKeyOfAnotherKind(item, key);
    item = readInto(std::move(item), rest, itemSetters());
    if (!chosen.isNull()) about("\"value\"", [&] { setValue(item, chosen); });
    if (isUnanswered(item)) item.value = emptyValueOf(item);
    return item;
}

/// Names an item in a message, by its name or its place.
std::vector<Item> readItems(const util::Value& value) {
    const auto array = value.as<util::Array>();
    if (array.isNull() && !value.isNull()) refuse("it isn't an array");
    if (array.count() > mostItems) refuse("it has more than " + std::to_string(mostItems) + " elements");
    std::vector<Item> items;
    for (std::size_t i = 0; i < array.count(); ++i) {
        const auto name = array.at(i).as<util::Dictionary>().textForKey("name");
        about(name.empty() ? "item " + std::to_string(i + 1) : "item \"" + name + "\"",
              [&] { items.push_back(readItem(array.at(i))); });
    }
    return items;
}

std::optional<std::int64_t> optionalInteger(const util::Value& value) {
    return value.isNull() ? std::nullopt : std::optional(integerFrom(value));
}

Setters<Item> fieldSetters() {
    return {{"label", text(&Item::label)},
            {"accessibleName", text(&Item::accessibleName)},
            {"placeholder", text(&Item::placeholder)},
            {"value", setValue},
            {"required", truth(&Item::isRequired)},
            {"complaint", text(&Item::complaint)},
            {"lines",
             [](Item& item, const util::Value& value) {
                 item.lines = value.isNull() ? 1 : static_cast<std::size_t>(integerWithin(value, 1, 100));
             }},
            {"characters", word(&Item::characters, charactersWords)},
            {"listedCharacters", text(&Item::listedCharacters)},
            {"minimum", [](Item& item, const util::Value& value) { item.minimum = optionalInteger(value); }},
            {"maximum", [](Item& item, const util::Value& value) { item.maximum = optionalInteger(value); }},
            {"unit", text(&Item::unit)},
            {"choices", elements(&Item::choices, mostRows, choiceSetters())},
            {"folder", text(&Item::folder)},
            {"fileKinds", text(&Item::fileKinds)},
            {"browsable", truth(&Item::isBrowsable)},
            {"button",
             [](Item& item, const util::Value& value) {
                 item.button = readInto(Button(), value, buttonSetters());
             }},
            {"enterPresses", text(&Item::enterPresses)}};
}

Setters<Item> shownSetters() {
    return {{"name", text(&Item::name)},
            {"visible", truth(&Item::isVisible)},
            {"enabled", truth(&Item::isEnabled)},
            {"help", text(&Item::help)},
            {"title", text(&Item::title)},
            {"text", text(&Item::text)},
            {"style", word(&Item::style, styleWords)},
            {"announced", truth(&Item::isAnnounced)},
            {"rows", setRows},
            {"emptyMessage", text(&Item::emptyMessage)},
            {"buttons", elements(&Item::buttons, mostItems, buttonSetters())},
            {"steps", elements(&Item::steps, mostItems, stepSetters())},
            {"paragraphs",
             [](Item& item, const util::Value& value) {
                 item.paragraphs = listFrom<std::string>(value, mostItems, textFrom);
             }},
            {"items",
             [](Item& item, const util::Value& value) {
                 item.items = readItems(value);
                 for (const auto& each : item.items)
                     if (each.kind == Item::Kind::group) refuse("a group can't hold another");
             }},
            {"folded", truth(&Item::isFolded)},
            {"role", word(&Item::role, roles())}};
}

const Setters<Item>& itemSetters() {
    static const Setters<Item> setters = [] {
        auto all = fieldSetters();
        all.merge(shownSetters());
        return all;
    }();
    return setters;
}

const Setters<FormDescription>& formSetters() {
    static const Setters<FormDescription> setters{
        {"kind",
         [](FormDescription& form, const util::Value& value) {
             form.isMessage = wordFrom(value, Words<bool>{{"window", false}, {"message", true}});
         }},
        {"name", text(&FormDescription::name)},
        {"title", text(&FormDescription::title)},
        {"message", text(&FormDescription::message)},
        {"details", text(&FormDescription::details)},
        {"width", points(&FormDescription::width)},
        {"height", points(&FormDescription::height)},
        {"items", [](FormDescription& form, const util::Value& value) { form.items = readItems(value); }},
        {"buttons", elements(&FormDescription::buttons, mostItems, buttonSetters())}};
    return setters;
}

/// Every name once: a change would otherwise reach one of two.
class Names {
public:
    void add(const std::string& name) {
        if (!name.empty() && !seen_.insert(name).second) refuse("the name \"" + name + "\" appears twice");
    }
    void add(const std::vector<Button>& buttons) {
        for (const auto& button : buttons)
            add(button.name);
    }
    void add(const std::vector<Item>& items) {
        for (const auto& item : items) {
            if (++count_ > mostItems) refuse("it has more than " + std::to_string(mostItems) + " items");
            add(item.name);
            if (item.button) add(item.button->name);
            add(item.buttons);
            add(item.items);
        }
    }

    [[nodiscard]] bool has(const std::string& name) const { return seen_.contains(name); }

private:
    std::set<std::string> seen_;
    std::size_t count_ = 0;
};

/// What a button says of a list means something only beside one.
void refuseListWords(const Button& button) {
    if (button.needs != Button::Needs::nothing || button.key != Button::Key::none)
        refuse("button \"" + button.name + "\": \"needs\" and \"key\" are for buttons beside a list");
}

void checkItems(const std::vector<Item>& items, const Names& names) {
    for (const auto& item : items) {
        if (item.button) refuseListWords(*item.button);
        if (!item.enterPresses.empty() && !names.has(item.enterPresses))
            refuse("item \"" + item.name + "\": \"enterPresses\": there is no button \"" + item.enterPresses +
                   "\"");
        if (item.minimum && item.maximum && *item.minimum > *item.maximum)
            refuse("item \"" + item.name + "\": \"minimum\" is above \"maximum\"");
        checkItems(item.items, names);
    }
}

} // namespace

FormDescription readForm(const util::Dictionary& description) {
    auto form = readInto(FormDescription(), description, formSetters());
    if (form.title.empty()) refuse("it has no \"title\"");
    if (form.isMessage && !form.items.empty()) refuse("a message has no \"items\"");
    Names names;
    names.add(form.items);
    names.add(form.buttons);
    checkItems(form.items, names);
    for (const auto& button : form.buttons)
        refuseListWords(button);
    return form;
}

void setProperty(Item& item, const std::string& key, const util::Value& value) {
    if (key == "kind" || key == "name" || key == "items" || key == "buttons" || key == "button")
        refuse("\"" + key + "\" of an item can't be changed");
    const auto setter = itemSetters().find(key);
    if (setter == itemSetters().end()) refuse("there is no property \"" + key + "\"");
    refuseKeyOfAnotherKind(item, key);
    auto changed = item;
    about("\"" + key + "\"", [&] { setter->second(changed, value); });
    if (isUnanswered(changed)) changed.value = emptyValueOf(changed);
    item = std::move(changed);
}

void setProperty(Button& button, const std::string& key, const util::Value& value) {
    if (key == "name") refuse("\"name\" of a button can't be changed");
    const auto setter = buttonSetters().find(key);
    if (setter == buttonSetters().end()) refuse("there is no property \"" + key + "\"");
    auto changed = button;
    about("\"" + key + "\"", [&] { setter->second(changed, value); });
    button = std::move(changed);
}

} // namespace corvane::forms
