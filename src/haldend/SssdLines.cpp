#include "haldend/SssdLines.h"

#include <algorithm>

#include "util/Bytes.h"

namespace corvane::haldend {
namespace {

constexpr std::string_view blanks = " \t\r";

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

bool isTitle(std::string_view line) { return trimmed(line).starts_with('['); }

bool isTitleOf(std::string_view line, std::string_view section) {
    const auto text = trimmed(line);
    return text.starts_with('[') && trimmed(text.substr(1, text.find(']') - 1)) == section;
}

std::string_view keyOf(std::string_view line) {
    const auto text = trimmed(line);
    if (text.empty() || text.front() == '#' || text.front() == ';' || text.front() == '[') return {};
    const auto equals = text.find('=');
    return equals == std::string_view::npos ? std::string_view() : trimmed(text.substr(0, equals));
}

std::string titled(std::string_view section) { return "[" + std::string(section) + "]"; }

} // namespace

SssdLines::SssdLines(std::string_view text) : endsWithNewline_(text.empty() || text.ends_with('\n')) {
    while (!text.empty()) {
        const auto end = text.find('\n');
        lines_.emplace_back(text.substr(0, end));
        text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
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

std::vector<std::size_t> SssdLines::linesOf(std::string_view section, std::string_view key) const {
    std::vector<std::size_t> found;
    for (const auto& block : blocksOf(section))
        for (auto i = block.title + 1; i < block.end; ++i)
            if (keyOf(lines_[i]) == key) found.push_back(i);
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
        insert(blocks.front().lastOption + 1, std::string(key) + " = " + std::string(value));
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
    std::ranges::reverse(found); // so that the numbers of those that are left stay right
    for (const auto index : found)
        erase(index, index + 1);
}

void SssdLines::replaceLine(std::string_view section, std::string_view key, std::string_view line) {
    const auto found = linesOf(section, key);
    if (!found.empty()) lines_[found.back()] = line;
}

void SssdLines::appendSection(std::string_view section) {
    if (!lines_.empty()) lines_.emplace_back();
    lines_.push_back(titled(section));
}

void SssdLines::prependSection(std::string_view section) {
    if (!lines_.empty()) insert(0, "");
    insert(0, titled(section));
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
        line.replace(line.find('['), line.find(']') - line.find('[') + 1, titled(to));
    }
}

bool SssdLines::isBlank() const {
    return std::ranges::all_of(lines_, [](const auto& line) { return trimmed(line).empty(); });
}

std::string SssdLines::text() const {
    std::string text;
    for (std::size_t i = 0; i < lines_.size(); ++i)
        text += lines_[i] + (i + 1 < lines_.size() || endsWithNewline_ ? "\n" : "");
    return text;
}

void SssdLines::insert(std::size_t at, std::string line) {
    lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(at), std::move(line));
}

void SssdLines::erase(std::size_t first, std::size_t end) {
    for (auto i = first; i < end; ++i)
        util::wipe(lines_[i]);
    lines_.erase(lines_.begin() + static_cast<std::ptrdiff_t>(first),
                 lines_.begin() + static_cast<std::ptrdiff_t>(end));
}

} // namespace corvane::haldend
