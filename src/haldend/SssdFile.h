#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "haldend/Lenses.h"
#include "util/Bytes.h"

namespace corvane::haldend {

/// One `[domain/NAME]` section: a directory that SSSD can serve. A password among its options is wiped when
/// the object goes.
struct SssdDomain {
    std::string name;
    std::map<std::string, std::string, std::less<>>
        options; ///< as SSSD reads them: the whole rest of the line

    ~SssdDomain();
    friend bool operator==(const SssdDomain&, const SssdDomain&) = default;
    /// The option's value, `fallback` when it isn't set.
    [[nodiscard]] std::string option(std::string_view key, std::string_view fallback = "") const;
};

/// The text of /etc/sssd/sssd.conf. A value; the file itself is never touched. Throws `Failure` when the text
/// doesn't follow the grammar. An empty text stands for a file that isn't there.
class SssdFile {
public:
    SssdFile(std::shared_ptr<Lenses> lenses, std::string text, std::string path);
    SssdFile(const SssdFile&) = default;
    SssdFile& operator=(const SssdFile&) = default;
    ~SssdFile() { util::wipe(text_); } // it may hold passwords

    [[nodiscard]] const std::string& text() const { return text_; }
    /// The domain sections in the file's order, a name that stands twice once.
    [[nodiscard]] const std::vector<SssdDomain>& domains() const { return domains_; }
    /// The names on the `domains` line of the section `[sssd]`, in its order.
    [[nodiscard]] const std::vector<std::string>& listedDomains() const { return listed_; }
    /// The text with exactly `names` on that line; unchanged when they already stand there so. Everything
    /// else keeps its octets. A missing section or line is added.
    [[nodiscard]] std::string textListing(const std::vector<std::string>& names) const;

private:
    std::shared_ptr<Lenses> lenses_;
    std::string text_;
    std::string path_;
    std::vector<SssdDomain> domains_;
    std::vector<std::string> listed_;
};

/// The parts of a list like "a, b ,c" without blanks and empty parts.
[[nodiscard]] std::vector<std::string> commaSeparated(std::string_view text);
/// The other way round: "a, b, c".
[[nodiscard]] std::string commaJoined(const std::vector<std::string>& parts);

} // namespace corvane::haldend
