#include "haldend/files/NsswitchLine.h"

#include <algorithm>
#include <cctype>

namespace corvane::haldend {
namespace {

constexpr std::string_view sss = "sss";
constexpr std::array<LookupAction, 4> usualReactions{LookupAction::stop, LookupAction::proceed,
                                                     LookupAction::proceed, LookupAction::proceed};

bool isBlank(char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; }

bool isWord(std::string_view text, std::string_view word) {
    return std::ranges::equal(text, word,
                              [](unsigned char a, unsigned char b) { return std::toupper(a) == b; });
}

/// Reads the words and brackets after the name of a database.
class SourceReader {
public:
    SourceReader(std::string_view text, std::size_t start)
        : text_(text), at_(start), numberSign_(text.find('#', start)) {}

    /// Ends at the line's end, at a bracket without a source, or, with false, at an unknown reaction.
    [[nodiscard]] bool read(std::vector<NsswitchSource>& sources) {
        for (skipBlanks(); !isAtEnd() && text_[at_] != '['; skipBlanks()) {
            NsswitchSource source{"", usualReactions, at_, 0, 0, at_ >= numberSign_};
            while (!isAtEnd() && !isBlank(text_[at_]) && text_[at_] != '[')
                ++at_;
            source.name = text_.substr(source.begin, at_ - source.begin);
            source.nameEnd = source.end = at_;
            skipBlanks();
            if (!isAtEnd() && text_[at_] == '[') {
                if (!readReactions(source.reactions)) return false;
                source.end = at_;
            }
            sources.push_back(std::move(source));
        }
        return true;
    }

    /// Where the meaning ends: at a bracket that follows no source, or at the end.
    [[nodiscard]] std::size_t end() const { return at_; }

private:
    [[nodiscard]] bool isAtEnd() const { return at_ >= text_.size(); }
    [[nodiscard]] bool isAt(char c) const { return !isAtEnd() && text_[at_] == c; }
    void skipBlanks() {
        while (!isAtEnd() && isBlank(text_[at_]))
            ++at_;
    }
    std::string_view word() {
        const auto begin = at_;
        while (!isAtEnd() && !isBlank(text_[at_]) && text_[at_] != '=' && text_[at_] != ']')
            ++at_;
        return text_.substr(begin, at_ - begin);
    }

    bool readReactions(std::array<LookupAction, 4>& reactions) {
        ++at_;
        skipBlanks();
        do {
            if (!readReaction(reactions)) return false;
            skipBlanks();
        } while (!isAt(']'));
        ++at_;
        return true;
    }

    bool readReaction(std::array<LookupAction, 4>& reactions) {
        const bool isInverted = isAt('!');
        if (isInverted) ++at_;
        const auto status = statusNamed(word());
        skipBlanks();
        if (!status || !isAt('=')) return false;
        ++at_;
        skipBlanks();
        const auto action = actionNamed(word());
        if (!action) return false;
        auto& own = reactions[static_cast<std::size_t>(*status)];
        const auto kept = own;
        if (isInverted) reactions.fill(*action);
        own = isInverted ? kept : *action;
        return true;
    }

    static std::optional<LookupStatus> statusNamed(std::string_view text) {
        if (isWord(text, "SUCCESS")) return LookupStatus::success;
        if (isWord(text, "NOTFOUND")) return LookupStatus::notFound;
        if (isWord(text, "UNAVAIL")) return LookupStatus::unavailable;
        if (isWord(text, "TRYAGAIN")) return LookupStatus::tryAgain;
        return std::nullopt;
    }

    static std::optional<LookupAction> actionNamed(std::string_view text) {
        if (isWord(text, "RETURN")) return LookupAction::stop;
        if (isWord(text, "CONTINUE")) return LookupAction::proceed;
        if (isWord(text, "MERGE")) return LookupAction::merge;
        return std::nullopt;
    }

    std::string_view text_;
    std::size_t at_;
    std::size_t numberSign_;
};

/// The reactions in brackets to everything but a success, with a blank before them; "" when they are the
/// usual ones.
std::string failureReactions(const NsswitchSource& source) {
    constexpr std::pair<LookupStatus, const char*> names[] = {{LookupStatus::notFound, "NOTFOUND"},
                                                              {LookupStatus::unavailable, "UNAVAIL"},
                                                              {LookupStatus::tryAgain, "TRYAGAIN"}};
    std::string text;
    for (const auto& [status, name] : names)
        if (source.reactionTo(status) == LookupAction::stop)
            text += (text.empty() ? " [" : " ") + std::string(name) + "=return";
    return text.empty() ? text : text + "]";
}

bool isSss(const NsswitchSource& source) { return source.name == sss; }

constexpr std::size_t mostVaried = 6; // 4 to the 6th combinations; longer lines are comments in disguise

using Answers = std::vector<LookupStatus>;

/// The answers for a line's sources when the sources `names` answer `answers`; any other, `sss` with them,
/// knows nothing.
Answers answersFor(const NsswitchLine& line, const std::vector<std::string>& names, const Answers& answers) {
    Answers all;
    std::size_t next = 0;
    for (const auto& source : line.sources()) {
        const bool isOne = next < names.size() && source.name == names[next];
        all.push_back(!isOne                  ? LookupStatus::notFound
                      : next < answers.size() ? answers[next]
                                              : LookupStatus::unavailable);
        if (isOne) ++next;
    }
    return all;
}

std::vector<std::string> othersAsked(const NsswitchLine& line, const NsswitchLine::Search& search) {
    std::vector<std::string> names;
    for (const auto index : search.asked)
        if (line.sources()[index].name != sss) names.push_back(line.sources()[index].name);
    return names;
}

std::vector<std::string> others(const NsswitchLine& line) {
    std::vector<std::string> names;
    for (const auto& source : line.sources())
        if (source.name != sss) names.push_back(source.name);
    return names;
}

bool isSubsequence(const std::vector<std::string>& part, const std::vector<std::string>& whole) {
    auto next = whole.begin();
    return std::ranges::all_of(part, [&](const auto& name) {
        next = std::find(next, whole.end(), name);
        return next != whole.end() && (++next, true);
    });
}

} // namespace

std::optional<NsswitchLine> NsswitchLine::parse(std::string_view text) {
    const auto whole = text.substr(0, text.find('\0'));
    std::size_t at = 0;
    while (at < whole.size() && isBlank(whole[at]))
        ++at;
    const auto name = at;
    while (at < whole.size() && !isBlank(whole[at]) && whole[at] != ':')
        ++at;
    if (at == whole.size() || at == name) return std::nullopt;
    NsswitchLine line;
    line.text_ = text;
    line.database_ = whole.substr(name, at - name);
    while (at < whole.size() && (isBlank(whole[at]) || whole[at] == ':'))
        ++at;
    line.sourcesBegin_ = at;
    SourceReader reader(whole, at);
    line.isRejected_ = !reader.read(line.sources_);
    line.meaningEnd_ = reader.end();
    return line;
}

NsswitchLine::Search NsswitchLine::search(const std::vector<LookupStatus>& answers) const {
    Search result;
    bool isKept = false; // a record waits for one of a later source
    for (std::size_t i = 0; i < sources_.size(); ++i) {
        result.asked.push_back(i);
        const auto status = addsUp() ? answers[i] : merged(answers[i], sources_[i], isKept);
        result.isFound = status == LookupStatus::success || (addsUp() && result.isFound);
        if (sources_[i].reactionTo(status) == LookupAction::stop) break;
    }
    return result;
}

/// What an answer counts as. A record that is kept is given back for each later source that has none, and
/// stays kept until one has. Only groups can be kept and added to; in other databases either is an error.
LookupStatus NsswitchLine::merged(LookupStatus status, const NsswitchSource& source, bool& isKept) const {
    constexpr auto success = LookupStatus::success;
    const auto withRecord = mergesGroups() ? success : LookupStatus::unavailable;
    if (isKept) {
        isKept = status != success;
        status = isKept ? success : withRecord;
    }
    if (status != success || source.reactionTo(success) != LookupAction::merge) return status;
    isKept = true;
    return withRecord;
}

bool NsswitchLine::asks(std::string_view source) const {
    std::vector<LookupStatus> nobody(sources_.size(), LookupStatus::notFound);
    return std::ranges::any_of(search(nobody).asked,
                               [&](auto index) { return sources_[index].name == source; });
}

std::vector<std::size_t> NsswitchLine::realSources() const {
    std::vector<std::size_t> found;
    for (std::size_t i = 0; i < sources_.size(); ++i)
        if (!sources_[i].isAfterNumberSign) found.push_back(i);
    return found;
}

std::string NsswitchLine::stopBeforeSss() const {
    for (const auto index : realSources()) {
        const auto& source = sources_[index];
        if (source.name == sss) return {};
        if (source.reactionTo(LookupStatus::notFound) == LookupAction::stop)
            return text_.substr(source.begin, source.end - source.begin);
    }
    return {};
}

/// What comes after the end of the meaning would come to life again behind another source.
NsswitchLine NsswitchLine::cutToMeaning() const {
    if (meaningEnd_ >= text_.size()) return *this;
    const auto lineEnd = text_.substr(std::min(text_.find_last_not_of("\r\n") + 1, text_.size()));
    auto kept = text_.substr(0, text_.find_last_not_of(" \t", meaningEnd_ - 1) + 1);
    return *parse(kept + lineEnd);
}

std::optional<std::string> NsswitchLine::withSss() const {
    if (meaningEnd_ < text_.size() && std::ranges::none_of(sources_, isSss)) {
        const auto cut = cutToMeaning();
        if (cut.meaningEnd_ == cut.text_.size()) return cut.withSss();
    }
    const auto real = realSources();
    const auto named = [&](std::string_view name) {
        return std::ranges::find_if(real, [&](auto index) { return sources_[index].name == name; });
    };
    if (named(sss) != real.end()) return asks(sss) ? std::make_optional(text_) : std::nullopt;
    if (real.empty()) {
        auto text = text_;
        const auto last = text.find_last_not_of(" \t\r\n", sourcesBegin_ == 0 ? 0 : sourcesBegin_ - 1);
        return text.insert(last + 1, " files sss");
    }
    const auto anchor = named("files") == real.end() ? real.end() - 1 : named("files");
    for (auto before = real.begin(); before <= anchor; ++before)
        if (sources_[*before].reactionTo(LookupStatus::notFound) == LookupAction::stop) return std::nullopt;
    // What a merge at the end keeps is lost but for groups; with `sss` after it, it would be found.
    const auto& source = sources_[*anchor];
    const bool isLast = anchor + 1 == real.end();
    const bool isLost =
        isLast && !mergesGroups() && source.reactionTo(LookupStatus::success) == LookupAction::merge;
    if (isLost && database_ != "passwd") return std::nullopt;
    return withSssAfter(*anchor, isLast);
}

std::string NsswitchLine::withSssAfter(std::size_t anchor, bool isLast) const {
    const auto& source = sources_[anchor];
    auto text = text_;
    if (!isLast) {
        const bool merges = !addsUp() && source.reactionTo(LookupStatus::success) == LookupAction::merge;
        const auto next = sources_[anchor + 1].begin;
        const std::string word = merges     ? "sss [SUCCESS=merge] "
                                 : addsUp() ? "sss [SUCCESS=continue] "
                                            : "sss ";
        return text.insert(next, isBlank(text[next - 1]) ? word : " " + word);
    }
    // With a line of their own the groups of a user end with the first source that knows one.
    const bool isGroupList = addsUp() && !source.hasReactions();
    return text.insert(source.end, isGroupList ? " [SUCCESS=continue] sss" : " sss");
}

/// Where `sss` and what belongs to it begins and ends; a blank is included.
std::vector<NsswitchLine::Range> NsswitchLine::rangesOfSss() const {
    std::vector<Range> ranges;
    for (std::size_t i = 0; i < sources_.size(); ++i) {
        const auto& source = sources_[i];
        if (!isSss(source)) continue;
        const bool isFollowed =
            i + 1 < sources_.size() && sources_[i + 1].isAfterNumberSign == source.isAfterNumberSign;
        const bool isPreceded = i > 0 && !isSss(sources_[i - 1]);
        if (isFollowed)
            ranges.push_back({source.begin, sources_[i + 1].begin, ""});
        else
            ranges.push_back({isPreceded ? sources_[i - 1].end : source.begin, source.end, ""});
    }
    return ranges;
}

std::string NsswitchLine::withoutSss() const {
    if (std::ranges::none_of(sources_, isSss)) return text_;
    if (meaningEnd_ < text_.size()) return cutToMeaning().withoutSss();
    auto ranges = rangesOfSss();
    // A success that was passed on to `sss`, where the search ended, has nothing left to be passed on to.
    for (const auto index : passingOnToSss())
        ranges.push_back({sources_[index].nameEnd, sources_[index].end, failureReactions(sources_[index])});
    std::ranges::sort(ranges, std::ranges::greater(), &Range::begin);
    auto text = text_;
    for (const auto& range : ranges)
        text.replace(range.begin, range.end - range.begin, range.instead);
    const auto real = realSources();
    const bool isEmptied =
        !real.empty() && std::ranges::all_of(real, [&](auto i) { return isSss(sources_[i]); });
    return isEmptied ? text.insert(sources_[real.front()].begin, "files") : text;
}

/// The sources whose success goes on to `sss` and no further.
std::vector<std::size_t> NsswitchLine::passingOnToSss() const {
    std::vector<std::size_t> found;
    for (std::size_t i = 0; i + 1 < sources_.size(); ++i) {
        const auto& next = sources_[i + 1];
        if (isSss(sources_[i]) || !isSss(next) || sources_[i].isAfterNumberSign) continue;
        const auto action = sources_[i].reactionTo(LookupStatus::success);
        const bool isLast =
            std::ranges::all_of(sources_.begin() + static_cast<std::ptrdiff_t>(i) + 1, sources_.end(),
                                [](const auto& one) { return isSss(one) || one.isAfterNumberSign; });
        const bool endsThere = !addsUp() && next.reactionTo(LookupStatus::success) != LookupAction::merge;
        if (action != LookupAction::stop && (isLast || (action == LookupAction::merge && endsThere)))
            found.push_back(i);
    }
    return found;
}

bool NsswitchLine::keepsOthersOf(const NsswitchLine& before) const {
    if (isRejected_ || sources_.empty()) return false;
    const auto names = others(before);
    if (!isSubsequence(names, others(*this))) return false;
    const auto varied = std::min(names.size(), mostVaried);
    const std::size_t combinations = std::size_t{1} << (2 * varied);
    for (std::size_t number = 0; number < combinations; ++number) {
        Answers answers;
        for (std::size_t i = 0; i < varied; ++i)
            answers.push_back(static_cast<LookupStatus>(number >> (2 * i) & 3U));
        const auto then = before.search(answersFor(before, names, answers));
        const auto now = search(answersFor(*this, names, answers));
        if (then.isFound && !now.isFound) return false;
        if (!isSubsequence(othersAsked(before, then), othersAsked(*this, now))) return false;
    }
    return true;
}

} // namespace corvane::haldend
