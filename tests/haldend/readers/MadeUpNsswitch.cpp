#include "haldend/readers/MadeUpNsswitch.h"

#include <cctype>

namespace corvane::haldend::test {
namespace {

std::string inAnyCase(Dice& dice, std::string text) {
    const auto way = dice.below(4);
    for (auto& c : text)
        if (way == 1 || (way == 2 && dice.percent(50))) c = static_cast<char>(std::tolower(c));
    return text;
}

/// What has the C library ignore the whole file has to be rare.
bool isRarity(Dice& dice) { return dice.below(600) == 0; }

std::string blank(Dice& dice) { return dice.oneOf({" ", " ", " ", "\t", "  ", " \t ", "\v", "\f", "\r"}); }
std::string perhapsBlank(Dice& dice, std::size_t chance) { return dice.percent(chance) ? blank(dice) : ""; }

std::string reaction(Dice& dice) {
    const bool isOdd = isRarity(dice);
    const auto status =
        isOdd ? dice.oneOf({"FOUND", "", "SUCCESS2", "RETURN", "SUCC ESS"})
              : dice.oneOf({"SUCCESS", "SUCCESS", "NOTFOUND", "NOTFOUND", "UNAVAIL", "TRYAGAIN"});
    const auto action = isRarity(dice) ? dice.oneOf({"stop", "", "merged", "re turn"})
                                       : dice.oneOf({"RETURN", "CONTINUE", "CONTINUE", "MERGE"});
    return std::string(dice.percent(20) ? isRarity(dice) ? "! " : "!" : "") + inAnyCase(dice, status) +
           perhapsBlank(dice, 10) + (isRarity(dice) ? dice.oneOf({"", "==", ":"}) : "=") +
           perhapsBlank(dice, 10) + inAnyCase(dice, action);
}

std::string brackets(Dice& dice) {
    std::string text = "[" + perhapsBlank(dice, 10);
    const auto count = isRarity(dice) ? 0 : 1 + dice.below(3);
    for (std::size_t i = 0; i < count; ++i)
        text += (i == 0 ? "" : !isRarity(dice) ? blank(dice) : dice.oneOf({"", ",", ";"})) + reaction(dice);
    return text + perhapsBlank(dice, 10) + (isRarity(dice) ? "" : "]");
}

std::string source(Dice& dice) {
    if (dice.percent(88)) return dice.oneOf({"a", "b", "c", "sss"});
    return dice.oneOf({"files", "A", "#", "#b", ":", "a:", "a]", "SSS", "x,"});
}

std::string sources(Dice& dice) {
    std::string text = dice.percent(2) ? brackets(dice) : "";
    const auto count = dice.below(5);
    for (std::size_t i = 0; i < count; ++i) {
        text += (i == 0 ? perhapsBlank(dice, 80) : blank(dice)) + source(dice);
        if (dice.percent(45)) text += perhapsBlank(dice, 80) + brackets(dice);
        if (dice.percent(3)) text += perhapsBlank(dice, 50) + brackets(dice);
    }
    return text + perhapsBlank(dice, 20);
}

std::string database(Dice& dice) {
    if (dice.percent(85)) return dice.oneOf({"passwd", "passwd", "group", "group", "initgroups"});
    return dice.oneOf({"shadow", "netgroup", "hosts", "automount", "PASSWD", "Group", "passwd_compat", "pass",
                       "#passwd", "", "#"});
}

std::string separator(Dice& dice) {
    if (dice.percent(80)) return ":";
    return dice.oneOf({" ", " :", "::", ": :", "", "\t", ":\t:", "\r", "="});
}

std::string line(Dice& dice) {
    if (dice.percent(6)) return dice.oneOf({"", " ", "# a comment", "#", "passwd", "passwd:", "group:", "["});
    auto text = perhapsBlank(dice, 10) + database(dice) + separator(dice) + sources(dice);
    if (dice.percent(4)) text += dice.oneOf({" # a b", "# a", " #", " # [NOTFOUND=return] c"});
    if (dice.percent(1)) text.insert(dice.below(text.size() + 1), 1, '\0');
    return text;
}

} // namespace

std::string madeUpNsswitch(Dice& dice) {
    const std::string lineEnd = dice.percent(10) ? "\r\n" : "\n";
    std::string text = dice.percent(1) ? "\xEF\xBB\xBF" : "";
    const auto count = 1 + dice.below(5);
    for (std::size_t i = 0; i < count; ++i)
        text += line(dice) + (i + 1 < count || dice.percent(85) ? lineEnd : "");
    return text;
}

} // namespace corvane::haldend::test
