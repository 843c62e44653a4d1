#include "haldend/SssdFile.h"

#include <algorithm>

#include "util/Bytes.h"

namespace corvane::haldend {
namespace {

constexpr const char* grammar = "Sssd.lns";
constexpr const char* mainSection = "target[. = 'sssd']";
constexpr std::string_view domainPrefix = "domain/";

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(" \t\r");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

/// Collects sections and options line by line. The grammar used for editing ends a value at "#" or ";", while
/// SSSD takes the whole line, and passwords hold such characters.
class OptionScanner {
public:
    explicit OptionScanner(std::vector<SssdDomain>& domains) : domains_(domains) {}

    void scan(std::string_view text) {
        while (!text.empty()) {
            const auto end = text.find('\n');
            scanLine(trimmed(text.substr(0, end)));
            text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
        }
    }

private:
    void scanLine(std::string_view line) {
        if (line.empty() || line.front() == '#' || line.front() == ';') return;
        if (line.front() == '[') return startSection(line);
        const auto equals = line.find('=');
        if (current_ == none || equals == std::string_view::npos) return;
        domains_[current_].options.insert_or_assign(std::string(trimmed(line.substr(0, equals))),
                                                    std::string(trimmed(line.substr(equals + 1))));
    }

    void startSection(std::string_view line) {
        const auto title = trimmed(line.substr(1, line.find(']') - 1));
        current_ = none;
        if (!title.starts_with(domainPrefix)) return;
        const auto name = title.substr(domainPrefix.size());
        const auto found = std::ranges::find(domains_, name, &SssdDomain::name);
        current_ = static_cast<std::size_t>(found - domains_.begin());
        if (found == domains_.end()) domains_.push_back({std::string(name), {}});
    }

    static constexpr std::size_t none = static_cast<std::size_t>(-1);
    std::vector<SssdDomain>& domains_;
    std::size_t current_ = none;
};

} // namespace

std::vector<std::string> commaSeparated(std::string_view text) {
    std::vector<std::string> parts;
    while (!text.empty()) {
        const auto comma = text.find(',');
        if (const auto part = trimmed(text.substr(0, comma)); !part.empty()) parts.emplace_back(part);
        text = comma == std::string_view::npos ? std::string_view() : text.substr(comma + 1);
    }
    return parts;
}

SssdDomain::~SssdDomain() {
    if (const auto password = options.find("ldap_default_authtok"); password != options.end())
        util::wipe(password->second);
}

std::string SssdDomain::option(std::string_view key, std::string_view fallback) const {
    const auto found = options.find(key);
    return found == options.end() ? std::string(fallback) : found->second;
}

SssdFile::SssdFile(std::shared_ptr<Lenses> lenses, std::string text, std::string path)
    : lenses_(std::move(lenses)), text_(std::move(text)), path_(std::move(path)) {
    if (text_.empty()) return;
    const LensText tree(*lenses_, grammar, text_, path_);
    for (const auto& line : tree.matches(std::string(mainSection) + "/domains"))
        listed_ = commaSeparated(tree.value(line).value_or(""));
    OptionScanner(domains_).scan(text_);
}

std::string SssdFile::textListing(const std::vector<std::string>& names) const {
    if (names == listed_) return text_;
    LensText tree(*lenses_, grammar, text_, path_);
    if (tree.matches(mainSection).empty()) tree.set("target[last()+1]", "sssd");
    const std::string line = std::string(mainSection) + "[last()]/domains";
    const auto existing = tree.matches(std::string(mainSection) + "/domains");
    tree.set(existing.empty() ? line : existing.back(), commaJoined(names));
    return tree.text();
}

std::string commaJoined(const std::vector<std::string>& parts) {
    std::string text;
    for (const auto& part : parts)
        text += (text.empty() ? "" : ", ") + part;
    return text;
}

} // namespace corvane::haldend
