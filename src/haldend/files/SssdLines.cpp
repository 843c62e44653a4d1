#include "haldend/files/SssdLines.h"

#include <algorithm>
#include <functional>
#include <map>

#include "haldend/files/SssdFile.h"
#include "util/Bytes.h"

namespace corvane::haldend {
namespace {

constexpr std::string_view blanks = " \t\r\v\f";

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

/// A title begins its line; what is indented is an option.
bool isTitle(std::string_view line) { return line.starts_with('['); }

std::string_view titleIn(std::string_view line) { return trimmed(line.substr(1, line.rfind(']') - 1)); }

bool isTitleOf(std::string_view line, std::string_view section) {
    return isTitle(line) && foldedTitle(titleIn(line)) == foldedTitle(section);
}

/// SSSD's library overlooks an end that begins its line.
bool endsComment(std::string_view line) {
    const auto text = line.substr(0, line.find_last_not_of(blanks) + 1);
    return text.size() > 2 && text.ends_with("*/");
}

std::string keyOf(std::string_view line) {
    if (line.empty() || line.front() == '#' || line.front() == ';' || isTitle(line)) return {};
    const auto equals = line.find('=');
    return equals == std::string_view::npos ? std::string() : foldedCase(trimmed(line.substr(0, equals)));
}

std::string titled(std::string_view section) { return "[" + std::string(section) + "]"; }

} // namespace

SssdLines::SssdLines(std::string_view text) : endsWithNewline_(text.empty() || text.ends_with('\n')) {
    if (text.starts_with(byteOrderMark)) {
        mark_ = byteOrderMark;
        text.remove_prefix(byteOrderMark.size());
    }
    while (!text.empty()) {
        const auto end = text.find('\n');
        lines_.emplace_back(text.substr(0, end));
        text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
    }
    const bool hasCarriageReturns = !lines_.empty() && lines_.front().ends_with('\r');
    if (hasCarriageReturns) lineEnd_ = "\r";
    findComments();
}

/// Comments of several lines begin a line with "/*"; nothing in them is a title or an option.
void SssdLines::findComments() {
    bool isInside = false;
    for (const auto& line : lines_) {
        const bool isFirst = !isInside && line.starts_with("/*");
        isInside = isInside || isFirst;
        comments_.push_back(isInside || line.starts_with("//"));
        if (endsComment(std::string_view(line).substr(isFirst ? 1 : 0))) isInside = false; // "/*/" has none
    }
}

SssdLines::~SssdLines() {
    for (auto& line : lines_)
        util::wipe(line);
}

std::vector<SssdLines::Block> SssdLines::blocksOf(std::string_view section) const {
    std::vector<Block> blocks;
    bool isInside = false;
    for (std::size_t i = 0; i < lines_.size(); ++i) {
        if (comments_[i]) {
            if (isInside) blocks.back().end = i + 1;
            continue;
        }
        if (isTitle(lines_[i])) {
            isInside = isTitleOf(lines_[i], section);
            if (isInside) blocks.push_back({i, i, i});
        }
        if (!isInside) continue;
        blocks.back().end = i + 1;
        if (!keyOf(lines_[i]).empty()) blocks.back().lastOption = i;
    }
    return blocks;
}

/// The library puts together what has the same title but for case; one with other blanks around its slash is
/// read after that, wherever it is.
std::vector<SssdLines::Block> SssdLines::blocksAsRead(std::string_view section) const {
    auto blocks = blocksOf(section);
    std::map<std::string, std::size_t> places;
    const auto placeOf = [&](const Block& block) {
        return places.try_emplace(foldedCase(titleIn(lines_[block.title])), places.size()).first->second;
    };
    for (const auto& block : blocks)
        (void)placeOf(block);
    std::ranges::stable_sort(blocks, {}, placeOf);
    return blocks;
}

std::vector<std::size_t> SssdLines::linesOf(std::string_view section, std::string_view key) const {
    std::vector<std::size_t> found;
    const auto folded = foldedCase(key);
    for (const auto& block : blocksAsRead(section))
        for (auto i = block.title + 1; i < block.end; ++i)
            if (!comments_[i] && keyOf(lines_[i]) == folded) found.push_back(i);
    return found;
}

bool SssdLines::hasOptions(std::string_view section) const {
    return std::ranges::any_of(blocksOf(section),
                               [](const auto& block) { return block.lastOption != block.title; });
}

bool SssdLines::has(std::string_view section, std::string_view key) const {
    return !linesOf(section, key).empty();
}

std::string SssdLines::line(std::string_view section, std::string_view key) const {
    const auto found = linesOf(section, key);
    return found.empty() ? std::string() : lines_[found.back()];
}

std::string SssdLines::value(std::string_view section, std::string_view key) const {
    const auto whole = line(section, key);
    const auto equals = whole.find('=');
    return equals == std::string::npos ? std::string()
                                       : std::string(trimmed(std::string_view(whole).substr(equals + 1)));
}

void SssdLines::set(std::string_view section, std::string_view key, std::string_view value) {
    const auto found = linesOf(section, key);
    if (found.empty()) {
        const auto blocks = blocksOf(section);
        if (blocks.empty()) return;
        insert(blocks.front().lastOption + 1, std::string(key) + " = " + std::string(value) + lineEnd_);
        return;
    }
    auto& line = lines_[found.back()];
    const auto equals = line.find('=');
    const auto first = line.find_first_not_of(blanks, equals + 1);
    const auto start = first == std::string::npos ? equals + 1 : first;
    const auto last = line.find_last_not_of(blanks);
    const auto separator = first == std::string::npos && !value.empty() ? " " : "";
    auto changed = line.substr(0, start) + separator + std::string(value) +
                   (first == std::string::npos ? "" : line.substr(last + 1));
    util::wipe(line);
    line = std::move(changed);
}

void SssdLines::remove(std::string_view section, std::string_view key) {
    auto found = linesOf(section, key);
    std::ranges::sort(found, std::greater()); // so that the numbers of those that are left stay right
    for (const auto index : found)
        erase(index, index + 1);
}

void SssdLines::replaceLine(std::string_view section, std::string_view key, std::string_view line) {
    const auto found = linesOf(section, key);
    if (!found.empty()) lines_[found.back()] = line;
}

void SssdLines::appendSection(std::string_view section) {
    const auto last = lastSection_.empty() ? std::vector<Block>() : blocksOf(lastSection_);
    const auto at = last.empty() ? lines_.size() : last.front().title;
    insert(at, titled(section) + lineEnd_);
    if (lines_.size() > 1) insert(at, lineEnd_);
}

void SssdLines::prependSection(std::string_view section) {
    if (!lines_.empty()) insert(0, lineEnd_);
    insert(0, titled(section) + lineEnd_);
}

void SssdLines::removeSection(std::string_view section) {
    auto blocks = blocksOf(section);
    std::ranges::reverse(blocks);
    for (const auto& block : blocks) {
        auto first = block.title;
        auto end = block.lastOption + 1;
        if (first > 0 && trimmed(lines_[first - 1]).empty())
            --first;
        else if (first == 0 && end < lines_.size() && trimmed(lines_[end]).empty())
            ++end;
        erase(first, end);
    }
}

void SssdLines::renameSection(std::string_view from, std::string_view to) {
    for (const auto& block : blocksOf(from)) {
        auto& line = lines_[block.title];
        line.replace(0, line.rfind(']') + 1, titled(to));
    }
}

bool SssdLines::isBlank() const {
    return std::ranges::all_of(lines_, [](const auto& line) { return trimmed(line).empty(); });
}

std::string SssdLines::text() const {
    std::string text = mark_;
    for (std::size_t i = 0; i < lines_.size(); ++i)
        text += lines_[i] + (i + 1 < lines_.size() || endsWithNewline_ ? "\n" : "");
    return text;
}

void SssdLines::insert(std::size_t at, std::string line) {
    lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(at), std::move(line));
    comments_.insert(comments_.begin() + static_cast<std::ptrdiff_t>(at), false);
}

void SssdLines::erase(std::size_t first, std::size_t end) {
    for (auto i = first; i < end; ++i)
        util::wipe(lines_[i]);
    const auto from = static_cast<std::ptrdiff_t>(first), to = static_cast<std::ptrdiff_t>(end);
    lines_.erase(lines_.begin() + from, lines_.begin() + to);
    comments_.erase(comments_.begin() + from, comments_.begin() + to);
}

} // namespace corvane::haldend
