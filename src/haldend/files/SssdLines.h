#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace corvane::haldend {

/// The text of sssd.conf line by line, for editing. It finds lines where SSSD's own library finds them:
/// titles and keys fold case, a value is the whole rest of its line. What isn't named in a call keeps its
/// bytes, and taking away what was added returns the text of before. The caller has the library read the
/// result. Value type; what it held is wiped when it is destroyed.
class SssdLines {
public:
    explicit SssdLines(std::string_view text);
    SssdLines(const SssdLines&) = delete;
    SssdLines& operator=(const SssdLines&) = delete;
    ~SssdLines();

    /// `section` is a title without its brackets, as in "domain/staff". A section that is in several
    /// places is one.
    [[nodiscard]] bool hasSection(std::string_view section) const { return !blocksOf(section).empty(); }
    [[nodiscard]] bool hasOptions(std::string_view section) const;
    [[nodiscard]] bool has(std::string_view section, std::string_view key) const;
    /// The value as SSSD reads it: of several lines the last one's. "" when it isn't set.
    [[nodiscard]] std::string value(std::string_view section, std::string_view key) const;
    /// Changes the line that counts, or adds one behind the last option of the section, which is there.
    void set(std::string_view section, std::string_view key, std::string_view value);
    /// Every line of that option; absent is harmless.
    void remove(std::string_view section, std::string_view key);

    /// The whole line that counts, unchanged; "" when there is none.
    [[nodiscard]] std::string line(std::string_view section, std::string_view key) const;
    /// Puts another line in its place; nothing happens when there is none.
    void replaceLine(std::string_view section, std::string_view key, std::string_view line);

    /// From here on sections are added before this one; "" for none.
    void setLastSection(std::string section) { lastSection_ = std::move(section); }
    /// At the end, after an empty line.
    void appendSection(std::string_view section);
    /// At the start, before an empty line.
    void prependSection(std::string_view section);
    /// From its title to its last option, with one empty line before it (after it at the start). Comments
    /// that follow stay: they may belong to what comes next.
    void removeSection(std::string_view section);
    void renameSection(std::string_view from, std::string_view to);

    /// Nothing but blanks is left.
    [[nodiscard]] bool isBlank() const;
    [[nodiscard]] std::string text() const;

private:
    struct Block {
        std::size_t title;      ///< line of the title
        std::size_t end;        ///< behind the last line before the next title
        std::size_t lastOption; ///< line of the last option, `title` when there is none
    };
    [[nodiscard]] std::vector<Block> blocksOf(std::string_view section) const;
    [[nodiscard]] std::vector<Block> blocksAsRead(std::string_view section) const;
    /// Lines of the option in the order in which they are read; the last one counts.
    [[nodiscard]] std::vector<std::size_t> linesOf(std::string_view section, std::string_view key) const;
    void insert(std::size_t at, std::string line);
    void erase(std::size_t first, std::size_t end);

    void findComments();

    std::vector<std::string> lines_;
    std::vector<bool> comments_; ///< for each line: part of a comment of several lines
    std::string mark_;           ///< a byte order mark
    std::string lineEnd_;        ///< what a new line ends with before its "\n"
    std::string lastSection_;
    bool endsWithNewline_;
};

} // namespace corvane::haldend
