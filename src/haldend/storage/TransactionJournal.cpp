#include "haldend/storage/TransactionJournal.h"

#include <array>

namespace corvane::haldend {
namespace {

constexpr std::string_view heading = "corvane journal 1";
constexpr std::string_view ending = "end";

std::string_view takeUntil(std::string_view& text, char separator) {
    const auto at = text.find(separator);
    const auto part = text.substr(0, at);
    text = at == std::string_view::npos ? std::string_view() : text.substr(at + 1);
    return part;
}

std::optional<TransactionJournal::Entry> entryFrom(std::string_view line) {
    std::array<std::string_view, 3> fields;
    for (auto& field : fields)
        field = takeUntil(line, '\t');
    const auto before = Fingerprint::fromText(fields[1]);
    const auto after = Fingerprint::fromText(fields[2]);
    if (!line.empty() || fields[0].empty() || !before || !after) return std::nullopt;
    return TransactionJournal::Entry{std::string(fields[0]), *before, *after};
}

} // namespace

std::string TransactionJournal::text() const {
    std::string text = std::string(heading) + "\n";
    for (const auto& entry : entries)
        text += entry.file + "\t" + entry.before.text() + "\t" + entry.after.text() + "\n";
    return text + std::string(ending) + "\n";
}

std::optional<TransactionJournal> TransactionJournal::fromText(std::string_view text) {
    if (takeUntil(text, '\n') != heading) return std::nullopt;
    TransactionJournal journal;
    while (!text.empty()) {
        const auto line = takeUntil(text, '\n');
        if (line == ending) return journal;
        const auto entry = entryFrom(line);
        if (!entry) return std::nullopt;
        journal.entries.push_back(*entry);
    }
    return std::nullopt;
}

} // namespace corvane::haldend
