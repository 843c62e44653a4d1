#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane::haldend {

/// What a source can answer to a question.
enum class LookupStatus { success, notFound, unavailable, tryAgain };
/// What the C library does then. `merge` adds up the members of a group that several sources know.
enum class LookupAction { proceed, stop, merge };

/// One source of a line with the reactions in brackets that follow it and belong to it.
struct NsswitchSource {
    std::string name;
    std::array<LookupAction, 4> reactions; ///< by `LookupStatus`
    std::size_t begin = 0;                 ///< offset of the name in the line
    std::size_t nameEnd = 0;
    std::size_t end = 0;            ///< after the reactions
    bool isAfterNumberSign = false; ///< looks like a comment; some versions of the C library read it anyway

    [[nodiscard]] LookupAction reactionTo(LookupStatus status) const {
        return reactions[static_cast<std::size_t>(status)];
    }
    [[nodiscard]] bool hasReactions() const { return end != nameEnd; }
};

/// One line of nsswitch.conf, read as the C library reads it: blanks and a colon in any mixture after the
/// name, words that end at a blank or a bracket, and a second bracket in a row, or one in front, that ends
/// the meaning of the line. A value; editing returns a new text.
class NsswitchLine {
public:
    /// `text` is one line, with or without its line end. None when it is blank, a comment, or no more than a
    /// name.
    [[nodiscard]] static std::optional<NsswitchLine> parse(std::string_view text);

    [[nodiscard]] const std::string& text() const { return text_; }
    [[nodiscard]] const std::string& database() const { return database_; }
    [[nodiscard]] const std::vector<NsswitchSource>& sources() const { return sources_; }
    /// A reaction that the C library doesn't know. It then ignores the whole file, not just this line.
    [[nodiscard]] bool isRejected() const { return isRejected_; }

    /// True when `source` is asked for a name that no source before it knows.
    [[nodiscard]] bool asks(std::string_view source) const;
    /// Where the search ends before `sss` would be asked, as in "files [NOTFOUND=return]"; "" when it
    /// doesn't.
    [[nodiscard]] std::string stopBeforeSss() const;

    /// The line with `sss` right after `files` and its reactions, or last where there is no `files`; with the
    /// reaction that merges groups where `files` has it and something follows. Unchanged when `sss` is
    /// there. None when `sss` would never be asked.
    [[nodiscard]] std::optional<std::string> withSss() const;
    /// The line without `sss` and the reactions that belong to it. Where nothing is left, `files` takes its
    /// place.
    [[nodiscard]] std::string withoutSss() const;

    /// True when every other source is still asked wherever `before` asked it, in its order, and what was
    /// found still is; `sss` itself knows nothing in this comparison. `this` is the new line.
    [[nodiscard]] bool keepsOthersOf(const NsswitchLine& before) const;

    /// The sources asked for a question, in order, when source number i answers `answers[i]`, and whether the
    /// answer in the end is a record.
    struct Search {
        std::vector<std::size_t> asked;
        bool isFound = false;
    };
    [[nodiscard]] Search search(const std::vector<LookupStatus>& answers) const;

private:
    [[nodiscard]] std::vector<std::size_t> realSources() const;
    /// The groups of a user: what one source knows stays, whatever the next one says.
    [[nodiscard]] bool addsUp() const { return database_ == "initgroups"; }
    [[nodiscard]] bool mergesGroups() const { return database_ == "group"; }
    [[nodiscard]] LookupStatus merged(LookupStatus status, const NsswitchSource& source, bool& isKept) const;
    [[nodiscard]] std::string withSssAfter(std::size_t anchor, bool isLast) const;
    struct Range {
        std::size_t begin, end;
        std::string instead;
    };
    [[nodiscard]] std::vector<Range> rangesOfSss() const;
    [[nodiscard]] NsswitchLine cutToMeaning() const;
    [[nodiscard]] std::vector<std::size_t> passingOnToSss() const;

    std::string text_;
    std::string database_;
    std::vector<NsswitchSource> sources_;
    std::size_t sourcesBegin_ = 0;
    std::size_t meaningEnd_ = 0;
    bool isRejected_ = false;
};

} // namespace corvane::haldend
