#pragma once

#include <gtest/gtest.h>

#include "fakes/FakePlatform.h"
#include "formatters/ValidCharacterFormatter.h"
#include "util/Leaves.h"

namespace corvane::formatters {

struct CountedBeeps final : ValidCharacterFormatter::Needs {
    void beep() override { ++count; }
    int count = 0;
};

/// What a commit did to two places that held something before.
struct Commit {
    bool accepted;
    std::string value;
    std::string description;
    friend bool operator==(const Commit&, const Commit&) = default;
    friend void PrintTo(const Commit& commit, std::ostream* out) {
        *out << (commit.accepted ? "accepted " : "refused ") << commit.value << " / " << commit.description;
    }
};
inline const std::string untouched = "(untouched)";

inline Commit commit(toolkit::Formatter& formatter, std::optional<std::string_view> text) {
    util::Value value = untouched;
    auto description = untouched;
    const bool accepted = formatter.getObjectValueForString(&value, text, &description);
    return {accepted, value.description(), description};
}

/// Types into a field that held `original` and makes sure that nothing handed over was changed.
inline bool mayBecome(toolkit::Formatter& formatter, const std::string& text,
                      const std::string& original = "") {
    auto proposed = text;
    toolkit::TextRange selection{text.size(), 0};
    auto description = untouched;
    const bool valid =
        formatter.isPartialEditValid(proposed, selection, original, {original.size(), 0}, &description);
    EXPECT_EQ(proposed, text);
    EXPECT_EQ(selection, (toolkit::TextRange{text.size(), 0}));
    EXPECT_EQ(description, untouched);
    return valid;
}

/// Asks about the text alone; the two places must stay as they are.
inline bool isPartialStringValid(toolkit::Formatter& formatter, const std::string& text) {
    std::optional<std::string> instead = untouched;
    auto description = untouched;
    const bool valid = formatter.isPartialStringValid(text, &instead, &description);
    EXPECT_EQ(instead, untouched);
    EXPECT_EQ(description, untouched);
    EXPECT_EQ(formatter.isPartialStringValid(text, nullptr, nullptr), valid) << "without places to write to";
    return valid;
}

} // namespace corvane::formatters
