#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "util/Containers.h"

/// What a form consists of. Plain values, read from a plug-in's description by `FormReader` and kept up to
/// date by `Form`; whoever shows a form reads them. Texts are UTF-8 and plain, not markup; "&" in front of a
/// letter of a title or label makes it the mnemonic.
namespace corvane::forms {

struct Button {
    enum class Role {
        action,
        accept,      ///< the fields are checked; the form closes unless the plug-in complains
        cancel,      ///< closes the form, as Escape does
        destructive, ///< an action that can't be taken back; closes a message
        copy         ///< copies what the form reports to the clipboard
    };
    /// How many rows of its list must be selected.
    enum class Needs { nothing, oneRow, someRows };
    enum class Key { none, activate, remove };

    std::string name;
    std::string title;
    std::string help;
    Role role = Role::action;
    Needs needs = Needs::nothing; ///< of the list that the button belongs to
    Key key = Key::none;          ///< Return, Enter or a double click on a row; the Delete key
    bool checksFields = false;
    bool isDefault = false;
    bool isEnabled = true;
    bool isSeparated = false; ///< some room in front of it
};

struct Choice {
    std::string value;
    std::string title;
    friend bool operator==(const Choice&, const Choice&) = default;
};

struct Row {
    std::string title;
    std::string detail; ///< a second, smaller line
    friend bool operator==(const Row&, const Row&) = default;
};

struct Step {
    enum class State { waiting, running, done, failed, skipped };
    std::string title;
    State state = State::waiting;
    std::string detail; ///< what was seen
    friend bool operator==(const Step&, const Step&) = default;
};

struct Item {
    enum class Kind {
        paragraph,
        text,
        number,
        password,
        check,
        choice,
        file,
        list,
        steps,
        progress,
        result,
        group,
        button
    };
    enum class Style { plain, hint, warning };
    enum class Characters { any, listed, ipv4Address };

    Kind kind = Kind::paragraph;
    std::string name; ///< unique in the form; "" for what nobody refers to
    bool isVisible = true;
    bool isEnabled = true;
    std::string help;

    // Fields
    std::string label;
    std::string accessibleName; ///< "" for the label
    std::string placeholder;
    /// String of a text, choice or file; data of a password; number or null of a number; boolean of a check;
    /// array of row numbers, rising, of a list; number from 0 to 1, or null, of a progress.
    util::Value value;
    bool isRequired = false;
    std::string complaint; ///< shown when the field isn't in order; "" for a general one
    std::size_t lines = 1; ///< of a text
    Characters characters = Characters::any;
    std::string listedCharacters;
    std::optional<std::int64_t> minimum; ///< of a number, included
    std::optional<std::int64_t> maximum;
    std::string unit;                ///< behind a number
    std::vector<Choice> choices;     ///< of a choice
    std::string folder, fileKinds;   ///< where looking for a file begins; "Title (*.pem *.crt);;All (*)"
    bool isBrowsable = true;         ///< the file is on this machine
    std::optional<Button> button;    ///< beside the field
    std::string enterPresses;        ///< the button that Return in the field presses
    bool isTextUnacceptable = false; ///< a number's text is no number within the bounds

    // Lists, and what is only shown
    std::string title; ///< of a check, button or group
    std::string text;  ///< of a paragraph
    Style style = Style::plain;
    bool isAnnounced = false; ///< changes of the text are read out
    std::vector<Row> rows;
    std::string emptyMessage;
    std::vector<Button> buttons; ///< beside a list
    std::vector<Step> steps;
    std::vector<std::string> paragraphs; ///< of a result; the first is its headline
    std::vector<Item> items;             ///< of a group
    bool isFolded = false;
    Button::Role role = Button::Role::action; ///< of a button
};

/// A window, or a message with one or more answers.
struct FormDescription {
    bool isMessage = false;
    std::string name; ///< for tests, assistive technology and other ways of showing it
    std::string title;
    std::string message; ///< of a message: what it says, in one sentence
    std::string details; ///< and in more
    int width = 0;       ///< in points; 0 for what the items need
    int height = 0;      ///< least height, likewise
    std::vector<Item> items;
    std::vector<Button> buttons; ///< below everything else
};

} // namespace corvane::forms
