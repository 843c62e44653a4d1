#include "haldend/files/SssdLines.h"

#include <gtest/gtest.h>

#include <array>
#include <cctype>
#include <map>
#include <optional>

#include "haldend/Dice.h"
#include "haldend/files/IniConfiguration.h"
#include "haldend/files/SssdFile.h"

// What SssdLines finds and changes in a text is what SSSD's own library reads there: shown with thousands of
// made-up texts.

using namespace corvane::haldend;
using corvane::haldend::test::Dice;

namespace {

constexpr unsigned long seed = 20240612;
constexpr int texts = 6000;
constexpr int fewestAccepted = 3000;

/// Where the library puts options that come before any title; nothing there is looked for by anybody.
constexpr std::string_view beforeTheFirst = "default";

const std::vector<std::string> titles{"sssd", "nss", "domain/a", "domain/b", "domain/a/sub", "application/c"};
const std::vector<std::string> keys{"domains", "id_provider", "ldap_uri", "services", "odd[key]", "a b"};

std::string inAnyCase(Dice& dice, std::string text) {
    const auto way = dice.below(5);
    for (auto& c : text)
        if (way == 0 || (way == 1 && dice.percent(50))) c = static_cast<char>(std::toupper(c));
    return text;
}

std::string perhapsBlank(Dice& dice, std::size_t chance) {
    return dice.percent(chance) ? dice.oneOf({" ", " ", "\t", "  ", " \t "}) : "";
}

std::string madeUpTitle(Dice& dice) {
    auto title = inAnyCase(dice, dice.oneOf(titles));
    if (dice.percent(3))
        title = dice.oneOf({"domain / a", "domain/ a", "a]b", "a[b", "domain/a b", "#a", "a;b"});
    return "[" + perhapsBlank(dice, 10) + title + perhapsBlank(dice, 10) + "]" + perhapsBlank(dice, 8) +
           (dice.below(400) == 0 ? dice.oneOf({"x", "# comment", "]"}) : "");
}

std::string madeUpValue(Dice& dice) {
    if (dice.percent(60)) return dice.oneOf({"ldap", "a, b", "x", "nss, pam", "ldap://h1 ldap://h2"});
    return dice.oneOf({"", "a=b", "=", "a;b#c", "\"quoted\"", "' x '", "[v]", "a]", "caf\xC3\xA9", "a \\",
                       "/* x */", "# no comment", "; nor this", "two\twords", "\v x", "x\f", "\xC2\xA0y"});
}

std::string madeUpOption(Dice& dice) {
    const auto key = dice.percent(95) ? inAnyCase(dice, dice.oneOf(keys))
                                      : dice.oneOf({"\"q\"", "k;", "k#", "/k", "*", "caf\xC3\xA9", "k\v"});
    return perhapsBlank(dice, 12) + key + perhapsBlank(dice, 50) + "=" + perhapsBlank(dice, 50) +
           madeUpValue(dice) + perhapsBlank(dice, 12);
}

std::string madeUpComment(Dice& dice, const std::string& lineEnd) {
    const std::vector<std::string> lines{"# comment", "; comment", "#[domain/a]", "# id_provider = x",
                                         "//x",       ";",         "/* one */",   "/**/",
                                         "/*",        "/*/"};
    auto text = dice.oneOf(lines);
    if (text != "/*" && text != "/*/") return text;
    for (auto count = dice.below(3); count > 0; --count)
        text += lineEnd + dice.oneOf({" * old", "[domain/a]", "id_provider = x", "", "# x", "*/ x"});
    return text + lineEnd + dice.oneOf({"*/", " */", "x */", "*/ ", "/*/"});
}

std::string madeUpLine(Dice& dice, const std::string& lineEnd) {
    const auto kind = dice.below(100);
    if (kind < 20) return madeUpTitle(dice);
    if (kind < 75) return madeUpOption(dice);
    if (kind < 85) return dice.oneOf({"", "", " ", "\t", "  \t"});
    if (kind < 99) return madeUpComment(dice, lineEnd);
    return dice.below(8) == 0
               ? dice.oneOf({"no equals sign", "[open", "= value", "  [indented]", " # indented"})
               : "";
}

std::string madeUpText(Dice& dice) {
    const std::string lineEnd = dice.percent(10) ? "\r\n" : "\n";
    std::string text = dice.percent(5) ? "\xEF\xBB\xBF" : "";
    if (dice.percent(95)) text += madeUpTitle(dice) + lineEnd;
    const auto count = dice.below(14);
    for (std::size_t i = 0; i < count; ++i)
        text += madeUpLine(dice, lineEnd) + (i + 1 < count || dice.percent(85) ? lineEnd : "");
    return text;
}

/// What the library reads: values by key, by title, folded; none when it refuses the text.
using Options = std::map<std::string, std::string>;
using Reading = std::map<std::string, Options>;

std::optional<Reading> readByLibrary(const std::string& text) {
    try {
        Reading reading;
        for (const auto& section : IniConfiguration(text).sections()) {
            if (section.title == beforeTheFirst) continue;
            auto& options = reading[foldedTitle(section.title)];
            for (const auto& option : section.options)
                options[foldedCase(option.key)] = option.value;
        }
        return reading;
    } catch (const IniDamage&) {
        return std::nullopt;
    }
}

/// "" when every section and key reads alike, and none of the others is found.
std::string difference(const SssdLines& lines, const Reading& reading) {
    auto all = titles;
    for (const auto& [title, options] : reading)
        all.push_back(title);
    for (const auto& title : all) {
        const auto section = reading.find(foldedTitle(title));
        const bool isThere = section != reading.end();
        if (lines.hasSection(title) != isThere) return "section " + title;
        auto allKeys = keys;
        if (isThere)
            for (const auto& [key, value] : section->second)
                allKeys.push_back(key);
        for (const auto& key : allKeys) {
            const bool isSet = isThere && section->second.contains(key);
            if (lines.has(title, key) != isSet) return (isSet ? "missed " : "found ") + title + ": " + key;
            const auto expected = isSet ? section->second.at(key) : "";
            if (lines.value(title, key) != expected)
                return title + ": " + key + " is \"" + expected + "\", not \"" + lines.value(title, key) +
                       "\"";
        }
    }
    return {};
}

/// One change, made to the lines and to what the library read before.
struct Edit {
    std::string what;
    Reading expected;
};

Edit setOption(Dice& dice, SssdLines& lines, Reading reading) {
    const auto section = inAnyCase(dice, dice.oneOf(titles)), key = inAnyCase(dice, dice.oneOf(keys));
    const auto value = dice.oneOf({"x", "", "a, b", "a=b", "a;b#c", "[v]", "*/", "/*", "caf\xC3\xA9"});
    lines.set(section, key, value);
    const auto found = reading.find(foldedTitle(section));
    if (found != reading.end()) found->second[foldedCase(key)] = value;
    return {"set " + section + ": " + key + " = " + value, reading};
}

Edit removeOption(Dice& dice, SssdLines& lines, Reading reading) {
    const auto section = inAnyCase(dice, dice.oneOf(titles)), key = inAnyCase(dice, dice.oneOf(keys));
    lines.remove(section, key);
    if (const auto found = reading.find(foldedTitle(section)); found != reading.end())
        found->second.erase(foldedCase(key));
    return {"remove " + section + ": " + key, reading};
}

Edit appendSection(Dice& dice, SssdLines& lines, Reading reading) {
    const auto section = dice.percent(50) ? "domain/new" : dice.oneOf(titles);
    lines.appendSection(section);
    lines.set(section, "added", "x");
    reading[foldedTitle(section)]["added"] = "x";
    return {"append " + section, reading};
}

Edit renameSection(Dice& dice, SssdLines& lines, Reading reading) {
    const auto section = inAnyCase(dice, dice.oneOf(titles));
    lines.renameSection(section, "domain/new");
    auto node = reading.extract(foldedTitle(section));
    if (!node.empty()) reading["domain/new"] = node.mapped();
    return {"rename " + section, reading};
}

Edit removeSection(Dice& dice, SssdLines& lines, Reading reading) {
    const auto section = inAnyCase(dice, dice.oneOf(titles));
    lines.removeSection(section);
    reading.erase(foldedTitle(section));
    return {"remove section " + section, reading};
}

Edit edited(Dice& dice, SssdLines& lines, const Reading& reading) {
    constexpr auto edits =
        std::to_array({setOption, removeOption, appendSection, renameSection, removeSection});
    return edits[dice.below(edits.size())](dice, lines, reading);
}

} // namespace

TEST(SssdLines, madeUpTexts_areReadAsTheLibraryReadsThem) {
    Dice dice(seed);
    int accepted = 0, different = 0;
    for (int i = 0; i < texts; ++i) {
        const auto text = madeUpText(dice);
        const auto reading = readByLibrary(text);
        if (!reading) continue;
        ++accepted;
        const auto found = difference(SssdLines(text), *reading);
        if (found.empty() || ++different > 5) continue;
        ADD_FAILURE() << "seed " << seed << ", text " << i << ": " << found << "\n" << text;
    }
    EXPECT_EQ(different, 0);
    EXPECT_GE(accepted, fewestAccepted);
}

TEST(SssdLines, editedMadeUpTexts_readAsBeforeButForTheChange) {
    Dice dice(seed);
    int done = 0, different = 0;
    for (int i = 0; i < texts; ++i) {
        const auto text = madeUpText(dice);
        const auto before = readByLibrary(text);
        if (!before) continue;
        ++done;
        SssdLines lines(text);
        const auto edit = edited(dice, lines, *before);
        if (readByLibrary(lines.text()) == edit.expected || ++different > 5) continue;
        ADD_FAILURE() << "seed " << seed << ", text " << i << ", " << edit.what << "\n"
                      << text << "\n--- became ---\n"
                      << lines.text();
    }
    EXPECT_EQ(different, 0);
    EXPECT_GE(done, fewestAccepted);
}

TEST(SssdLines, sectionAddedToAMadeUpTextAndRemoved_restoresTheBytes) {
    Dice dice(seed);
    int done = 0, different = 0;
    for (int i = 0; i < texts; ++i) {
        const auto text = madeUpText(dice);
        if (!readByLibrary(text)) continue;
        ++done;
        SssdLines lines(text);
        lines.appendSection("domain/new");
        lines.set("domain/new", "id_provider", "ldap");
        lines.removeSection("domain/new");
        if (lines.text() == text || ++different > 5) continue;
        ADD_FAILURE() << "seed " << seed << ", text " << i << "\n"
                      << text << "\n--- became ---\n"
                      << lines.text();
    }
    EXPECT_EQ(different, 0);
    EXPECT_GE(done, fewestAccepted);
}
