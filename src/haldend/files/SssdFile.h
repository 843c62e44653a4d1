#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "util/Bytes.h"

namespace corvane::haldend {

struct IniSection;

/// One `[domain/NAME]` section, or `[application/NAME]`: something that SSSD can serve users from. A password
/// among its options is wiped when the object is destroyed.
struct SssdDomain {
    std::string name;
    std::map<std::string, std::string, std::less<>>
        options; ///< keys in lower case, values as SSSD reads them
    bool isApplication = false;
    bool isListedInQuotes = false; ///< SSSD then overlooks `enabled = false`
    std::string outside{};         ///< why SSSD doesn't get to the section, a clause; "" when it does

    ~SssdDomain();
    friend bool operator==(const SssdDomain&, const SssdDomain&) = default;
    /// The option's value, `fallback` when it isn't set.
    [[nodiscard]] std::string option(std::string_view key, std::string_view fallback = "") const;
    /// What `enabled` says; none when it isn't set, or is set to something else than true or false.
    [[nodiscard]] std::optional<bool> enabled() const;
    /// Why SSSD can't serve the section, a clause as in "its name has a character that SSSD doesn't take"; ""
    /// when it can.
    [[nodiscard]] std::string obstacle() const;
};

/// A file of the folder conf.d, which SSSD reads after sssd.conf and which overrides it.
struct SssdSnippet {
    std::string path;
    std::string text;
    ~SssdSnippet() { util::wipe(text); }
    friend bool operator==(const SssdSnippet&, const SssdSnippet&) = default;
};

/// /etc/sssd/sssd.conf and its snippets, read through SSSD's own library. A value; no file is ever touched.
/// An empty text is a file that isn't there.
class SssdFile {
public:
    /// `snippets` in SSSD's order; one that the library refuses is skipped, as SSSD does. Throws `Failure`,
    /// with line and reason, when SSSD can't read the text itself.
    SssdFile(std::string text, std::vector<SssdSnippet> snippets, std::string path);
    SssdFile(std::string text, std::string path) : SssdFile(std::move(text), {}, std::move(path)) {}
    SssdFile(const SssdFile&) = default;
    SssdFile(SssdFile&&) = default;
    SssdFile& operator=(const SssdFile&) = default;
    SssdFile& operator=(SssdFile&&) = default;
    ~SssdFile() { util::wipe(text_); } // it may hold passwords

    [[nodiscard]] const std::string& text() const { return text_; }
    [[nodiscard]] const std::string& path() const { return path_; }
    [[nodiscard]] const std::vector<SssdSnippet>& snippets() const { return snippets_; }
    /// The sections in the order of the files, sections of subdomains left out.
    [[nodiscard]] const std::vector<SssdDomain>& domains() const { return domains_; }
    /// None for a name without a section; case doesn't matter.
    [[nodiscard]] const SssdDomain* domainNamed(std::string_view name) const;
    /// The names on the `domains` line that counts, spelled like their sections where they have one.
    [[nodiscard]] const std::vector<std::string>& listedDomains() const { return listed_; }
    /// The sections that SSSD serves, in its order: those on the line and those that are enabled by
    /// themselves.
    [[nodiscard]] const std::vector<std::string>& servedDomains() const { return served_; }
    /// The title after which SSSD reads nothing more; "" for none.
    [[nodiscard]] const std::string& readingEnd() const { return readingEnd_; }
    /// The value of an option in `[nss]`, where it counts for all domains; "" when it isn't set.
    [[nodiscard]] std::string responderOption(std::string_view key) const;
    /// Why SSSD wouldn't start, a sentence; "" when it would.
    [[nodiscard]] const std::string& trouble() const { return trouble_; }
    /// The snippet that decides the value of an option; "" when none does. Without a key: the last one that
    /// has the section.
    [[nodiscard]] std::string snippetDeciding(std::string_view section, std::string_view key = {}) const;

private:
    /// Which snippet decides, by folded title: of each option by folded key, and the last one of all.
    struct Deciding {
        std::string last;
        std::map<std::string, std::string, std::less<>> byKey;
    };

    void readSections();
    void noteDeciding(const std::string& path, const std::vector<IniSection>& sections);
    void readSection(const IniSection& section);
    void findOrphans();
    void readList(const std::string& line);
    void decideServed();

    std::string text_;
    std::vector<SssdSnippet> snippets_;
    std::string path_;
    std::vector<SssdDomain> domains_;
    std::map<std::string, std::size_t, std::less<>> places_; ///< in `domains_`, by folded name
    std::string line_;                                       ///< the value of `domains`
    std::vector<std::string> listed_, served_;
    std::map<std::string, Deciding, std::less<>> deciding_;
    std::string readingEnd_, trouble_;
    std::map<std::string, std::string, std::less<>> responder_; ///< options of `[nss]`, by folded key
    bool servesFiles_ = false; ///< the machine's own files, which SSSD can serve beside the sections
};

/// The parts of a list like "a, b ,c" without blanks and empty parts.
[[nodiscard]] std::vector<std::string> commaSeparated(std::string_view text);
/// The other way round: "a, b, c".
[[nodiscard]] std::string commaJoined(const std::vector<std::string>& parts);
/// The names of a `domains` line: as `commaSeparated`, and a part in quotation marks is what they enclose.
[[nodiscard]] std::vector<std::string> domainsIn(std::string_view line);
/// Names of sections, keys and domains fold the case of ASCII letters.
[[nodiscard]] std::string foldedCase(std::string_view text);
/// A title as SSSD compares it: folded, without blanks at the ends and around the first slash.
[[nodiscard]] std::string foldedTitle(std::string_view title);

} // namespace corvane::haldend
