#include "haldend/files/NsswitchFile.h"

#include <algorithm>
#include <array>

#include "haldend/storage/Failure.h"

namespace corvane::haldend {
namespace {

constexpr std::array<std::string_view, 2> accountDatabases{"passwd", "group"};
constexpr std::array<std::string_view, 3> requiredDatabases{"passwd", "group", "initgroups"};
/// Those that the C library reads; a line about anything else is another program's.
constexpr std::array<std::string_view, 17> libraryDatabases{
    "aliases",    "ethers",   "group",    "group_compat", "gshadow",       "hosts",
    "initgroups", "netgroup", "networks", "passwd",       "passwd_compat", "protocols",
    "publickey",  "rpc",      "services", "shadow",       "shadow_compat"};

template <typename Range, typename T>
bool contains(const Range& range, const T& value) {
    return std::ranges::find(range, value) != std::ranges::end(range);
}

std::vector<std::string> linesOf(std::string_view text) {
    std::vector<std::string> lines;
    while (!text.empty()) {
        const auto end = std::min(text.find('\n'), text.size() - 1);
        lines.emplace_back(text.substr(0, end + 1));
        text.remove_prefix(end + 1);
    }
    return lines;
}

std::string joined(const std::vector<std::string>& lines) {
    std::string text;
    for (const auto& line : lines)
        text += line;
    return text;
}

std::string shown(std::string line) {
    while (!line.empty() && (line.back() == '\n' || line.back() == '\r'))
        line.pop_back();
    return line.size() > 80 ? line.substr(0, 80) + "…" : line;
}

Failure unreadable(const std::string& path, std::size_t number, const std::string& line) {
    return {halden::ErrorCode::storage, path + " is damaged and is left as it is.",
            "The C library doesn't know a reaction in line " + std::to_string(number) + ", \"" + shown(line) +
                "\", and therefore ignores the whole file.",
            "Correct the words in brackets on that line, or put an earlier version of the file back; then "
            "try again."};
}

Failure unreachable(const std::string& path, std::size_t number, const std::string& line,
                    const std::string& stop) {
    return {halden::ErrorCode::storage, "The machine can't be set up to look users up in a directory.",
            "SSSD would not be reached: in " + path + ", line " + std::to_string(number) + ", \"" +
                shown(line) + "\", the search ends at \"" + stop + "\".",
            "Take the reaction that ends the search out of that line, then apply again."};
}

Failure wouldLose(const std::string& path, std::size_t number, const std::string& line) {
    return {halden::ErrorCode::storage, path + " can't be changed as wanted and is left as it is.",
            "On line " + std::to_string(number) + ", \"" + shown(line) +
                "\", the other sources would no longer be asked as they are now.",
            "Simplify the reactions in brackets on that line, then apply again."};
}

Failure unterminated(const std::string& path, std::size_t number, const std::string& line) {
    return {halden::ErrorCode::storage, path + " can't be changed as wanted and is left as it is.",
            "The last line, number " + std::to_string(number) + ", \"" + shown(line) +
                "\", has no line end, so the C library ignores it. With one, sources would be asked that "
                "aren't now.",
            "Add a line end to that line, or take the line out, and check who can log in; then apply again."};
}

Failure missingDatabases(const std::string& path) {
    return {halden::ErrorCode::storage, "The machine can't be set up to look users up in a directory.",
            path + " has no line that begins with \"passwd:\" or \"group:\".",
            "Add the lines \"passwd: files\" and \"group: files\" to it and try again."};
}

NsswitchLinePair* pairOf(NsswitchMemory& memory, std::string_view database) {
    const auto found = std::ranges::find(memory, database, &NsswitchLinePair::database);
    return found == memory.end() ? nullptr : &*found;
}

/// What the line was in the wanted state before; none when it has been edited since.
std::optional<std::string> formerLine(NsswitchMemory& memory, const std::string& database,
                                      const std::string& line, bool wanted) {
    const auto* pair = pairOf(memory, database);
    if (!pair || pair->without.empty() || line != (wanted ? pair->without : pair->with)) return std::nullopt;
    return wanted ? pair->with : pair->without;
}

void remember(NsswitchMemory& memory, NsswitchLinePair pair) {
    if (auto* known = pairOf(memory, pair.database))
        *known = std::move(pair);
    else
        memory.push_back(std::move(pair));
}

} // namespace

NsswitchFile::NsswitchFile(std::string text, std::string path)
    : text_(std::move(text)), path_(std::move(path)), lines_(linesOf(text_)) {
    requireReadable();
}

void NsswitchFile::requireReadable() const {
    for (std::size_t i = 0; i < lines_.size(); ++i) {
        if (!isTerminated(i) || lines_[i].find('[') == std::string::npos) continue;
        const auto line = NsswitchLine::parse(lines_[i]);
        if (line && line->isRejected() && contains(libraryDatabases, line->database()))
            throw unreadable(path_, i + 1, lines_[i]);
    }
}

bool NsswitchFile::isTerminated(std::size_t index) const { return lines_[index].ends_with('\n'); }

/// The line that counts; one without a line end only where there is no other.
std::optional<std::size_t> NsswitchFile::lineOf(std::string_view database) const {
    std::optional<std::size_t> found;
    for (std::size_t i = 0; i < lines_.size(); ++i) {
        if (lines_[i].find(database) == std::string::npos || (found && !isTerminated(i))) continue;
        const auto line = NsswitchLine::parse(lines_[i]);
        if (line && line->database() == database) found = i;
    }
    return found;
}

std::optional<NsswitchLine> NsswitchFile::line(std::string_view database) const {
    const auto index = lineOf(database);
    if (!index || !isTerminated(*index)) return std::nullopt;
    return NsswitchLine::parse(lines_[*index]);
}

bool NsswitchFile::usesSssd() const {
    const auto passwd = line("passwd");
    return passwd && passwd->asks("sss");
}

bool NsswitchFile::isGenerated() const {
    return std::ranges::any_of(lines_, [](const auto& line) {
        return line.starts_with('#') && line.find("enerated by authselect") != std::string::npos;
    });
}

/// The line as it becomes when nothing is remembered about it.
std::string NsswitchFile::computed(std::size_t index, bool wanted) const {
    const auto before = NsswitchLine::parse(lines_[index]);
    if (!wanted) return before->withoutSss();
    const auto text = before->withSss();
    if (text) return *text;
    if (contains(requiredDatabases, before->database()))
        throw unreachable(path_, index + 1, lines_[index], before->stopBeforeSss());
    return lines_[index]; // who logs in isn't decided by this one
}

std::string NsswitchFile::changed(std::size_t index, bool wanted, NsswitchMemory& memory) const {
    const auto& line = lines_[index];
    const auto written = NsswitchLine::parse(line);
    // What the C library ignores stays ignored, or says no more than what it does by default.
    const bool isOurs = wanted && contains(accountDatabases, written->database());
    if (!isTerminated(index) && !isOurs) return line;
    const auto before =
        isTerminated(index) ? written : NsswitchLine::parse(written->database() + ": files\n");
    auto text = computed(index, wanted);
    if (text == line && (isTerminated(index) || !wanted)) return line;
    if (!text.ends_with('\n')) text += '\n'; // otherwise the C library ignores it
    const auto after = NsswitchLine::parse(text);
    if (!isTerminated(index) && !before->keepsOthersOf(*after)) throw unterminated(path_, index + 1, line);
    if (!after || !after->keepsOthersOf(*before)) throw wouldLose(path_, index + 1, line);
    remember(memory, wanted ? NsswitchLinePair{before->database(), line, text}
                            : NsswitchLinePair{before->database(), text, line});
    return text;
}

/// A machine that finds users but not their groups, or the other way round, is half configured.
void NsswitchFile::complete(std::vector<std::string>& lines, NsswitchMemory& memory, bool isAsItWas) const {
    const auto passwd = lineOf("passwd"), group = lineOf("group");
    if (passwd.has_value() == group.has_value()) return;
    const std::string database = passwd ? "group" : "passwd";
    const auto* pair = pairOf(memory, database);
    const bool wasAdded = pair && pair->without.empty();
    if (isAsItWas && !wasAdded) return;
    const auto text = wasAdded ? pair->with : database + ": files sss\n";
    lines[passwd ? *passwd : *group] += text;
    remember(memory, {database, "", text});
}

/// The lines that were added to complete the file.
void NsswitchFile::takeBack(std::vector<std::string>& lines, const NsswitchMemory& memory) const {
    for (const auto& pair : memory)
        if (pair.without.empty())
            if (const auto index = lineOf(pair.database); index && lines_[*index] == pair.with)
                lines[*index].clear();
}

std::string NsswitchFile::textUsingSssd(bool wanted, NsswitchMemory& memory) const {
    auto lines = lines_;
    const bool isTurned = usesSssd() != wanted;
    bool isAsItWas = false; // users or groups are looked up as the administrator once had it
    if (wanted && !lineOf("passwd") && !lineOf("group")) throw missingDatabases(path_);
    if (!wanted) takeBack(lines, memory);
    for (const std::string database : {"passwd", "group", "shadow", "netgroup", "initgroups"}) {
        const auto index = lineOf(database);
        if (!index || lines[*index].empty()) continue;
        auto& line = lines[*index];
        if (auto former = formerLine(memory, database, line, wanted)) {
            line = std::move(*former);
            isAsItWas = isAsItWas || contains(accountDatabases, database);
            continue;
        }
        line = changed(*index, wanted, memory);
        if (isTurned && line == lines_[*index]) remember(memory, {database, line, line});
    }
    if (wanted) complete(lines, memory, isAsItWas);
    return joined(lines);
}

std::string NsswitchFile::textUsingSssd(bool wanted) const {
    NsswitchMemory nothing;
    return textUsingSssd(wanted, nothing);
}

} // namespace corvane::haldend
